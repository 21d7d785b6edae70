// editor-stand-in.exe: a stand-in for the GTA2 editor in tests. A top-level
// window with a list box of 992 rows that logs what reaches it:
//   editor-stand-in.exe LOG [--title T] [--id N] [--class C] [--clock 1]
// Log lines: "ready <top window> <control>", "setcursel <wParam> <selection after>",
// "getitemrect <index> <left> <top> <right> <bottom>",
// "lbuttondown|lbuttonup <wParam> <x> <y> <selection>", with --clock followed by
// " at <Unix time in ns>" (the wall clock, comparable with a Linux program's).
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

FILE* logFile = nullptr;
WNDPROC listProc = nullptr;
bool withClock = false;

long long UnixNs() {
    FILETIME ft;
    GetSystemTimePreciseAsFileTime(&ft);
    const long long ticks =
        static_cast<long long>((static_cast<unsigned long long>(ft.dwHighDateTime) << 32) | ft.dwLowDateTime);
    // FILETIME counts 100 ns from 1601.
    return (ticks - 116444736000000000LL) * 100;
}

void LogPress(const char* what, long w, long x, long y, long sel) {
    std::fprintf(logFile, "%s %ld %ld %ld %ld", what, w, x, y, sel);
    if (withClock) std::fprintf(logFile, " at %lld", UnixNs());
    std::fputc('\n', logFile);
    std::fflush(logFile);
}

void Log(const char* fmt, long a, long b = 0, long c = 0, long d = 0, long e = 0) {
    std::fprintf(logFile, fmt, a, b, c, d, e);
    std::fputc('\n', logFile);
    std::fflush(logFile);
}

long Selection(HWND h) { return static_cast<long>(CallWindowProcA(listProc, h, LB_GETCURSEL, 0, 0)); }

LRESULT CALLBACK ListHook(HWND h, UINT msg, WPARAM wp, LPARAM lp) {
    LRESULT r = CallWindowProcA(listProc, h, msg, wp, lp);
    auto w = static_cast<long>(wp);
    long x = static_cast<short>(LOWORD(lp)), y = static_cast<short>(HIWORD(lp));
    switch (msg) {
        case LB_SETCURSEL:
            Log("setcursel %ld %ld", w, Selection(h));
            break;
        case LB_GETITEMRECT: {
            const RECT* rc = reinterpret_cast<const RECT*>(lp);
            Log("getitemrect %ld %ld %ld %ld %ld", w, rc->left, rc->top, rc->right, rc->bottom);
            break;
        }
        case WM_LBUTTONDOWN:
            LogPress("lbuttondown", w, x, y, Selection(h));
            break;
        case WM_LBUTTONUP:
            LogPress("lbuttonup", w, x, y, Selection(h));
            break;
        default:
            break;
    }
    return r;
}

LRESULT CALLBACK FrameProc(HWND h, UINT msg, WPARAM wp, LPARAM lp) {
    if (msg == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcA(h, msg, wp, lp);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: editor-stand-in.exe LOG [--title T] [--id N] [--class C]\n");
        return 2;
    }
    std::string title = "GTA2 Editor - stand-in", cls = "ListBox";
    long id = 1050;
    for (int i = 2; i + 1 < argc; i += 2) {
        if (!std::strcmp(argv[i], "--title")) title = argv[i + 1];
        if (!std::strcmp(argv[i], "--id")) id = std::strtol(argv[i + 1], nullptr, 10);
        if (!std::strcmp(argv[i], "--class")) cls = argv[i + 1];
        if (!std::strcmp(argv[i], "--clock")) withClock = std::strtol(argv[i + 1], nullptr, 10) != 0;
    }
    logFile = std::fopen(argv[1], "ab");
    if (!logFile) return 1;
    HINSTANCE inst = GetModuleHandleA(nullptr);
    WNDCLASSA wc = {};
    wc.lpfnWndProc = FrameProc;
    wc.hInstance = inst;
    wc.lpszClassName = "OmbrevaleEditorStandIn";
    wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    RegisterClassA(&wc);
    HWND frame = CreateWindowExA(0, wc.lpszClassName, title.c_str(), WS_OVERLAPPEDWINDOW, 10, 10, 320, 420, nullptr,
                                 nullptr, inst, nullptr);
    DWORD style = WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_BORDER;
    if (cls == "ListBox") style |= LBS_NOTIFY;
    HWND list = CreateWindowExA(0, cls.c_str(), "", style, 5, 5, 290, 360, frame,
                                reinterpret_cast<HMENU>(static_cast<std::intptr_t>(id)), inst, nullptr);
    if (cls == "ListBox") {
        for (int row = 1; row <= 992; ++row) {
            char text[32];
            std::snprintf(text, sizeof text, "Tile %d", row);
            SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
        }
    }
    listProc = reinterpret_cast<WNDPROC>(SetWindowLongPtrA(list, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ListHook)));
    ShowWindow(frame, SW_SHOWNOACTIVATE);
    UpdateWindow(frame);
    Log("ready %ld %ld", static_cast<long>(reinterpret_cast<std::uintptr_t>(frame)),
        static_cast<long>(reinterpret_cast<std::uintptr_t>(list)));
    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
    std::fclose(logFile);
    return 0;
}
