// modControlWin with the Win32 calls themselves.
#include <windows.h>

#include <cctype>
#include <string>

#include "editorlink/modcontrolwin.h"
#include "editorlink/win32search.h"

namespace modControlWin {

namespace {

constexpr char kTitlePrefix[] = "gta2 editor";
constexpr LONG kListId = 1050;
constexpr int kClassBuffer = 260;
bool matched = false;

HWND Handle(std::uint32_t h) { return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(h)); }

std::uint32_t Number(HWND h) { return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(h)); }

std::string GetWindowTitle(HWND hWnd) {
    int n = GetWindowTextLengthA(hWnd) + 1;
    if (n <= 1) return {};
    std::string buf(static_cast<std::size_t>(n), '\0');
    GetWindowTextA(hWnd, buf.data(), n);
    buf.resize(static_cast<std::size_t>(n - 1));
    return buf;
}

std::string GetWindowClass(HWND hWnd) {
    char buf[kClassBuffer] = {};
    int n = GetClassNameA(hWnd, buf, kClassBuffer);
    return n <= 0 ? std::string() : std::string(buf, static_cast<std::size_t>(n));
}

BOOL CALLBACK EnumChildProc(HWND hWnd, LPARAM) {
    LONG id = GetWindowLongA(hWnd, GWL_ID);
    if (id == kListId && GetWindowClass(hWnd) == "ListBox") {
        hWndEditorList = Number(hWnd);
        matched = true;
        return 0;
    }
    return 1;
}

BOOL CALLBACK EnumWindowsProc(HWND hWnd, LPARAM) {
    std::string title = GetWindowTitle(hWnd);
    std::string start = title.substr(0, 11);
    for (char& c : start) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (start == kTitlePrefix || title.empty()) EnumChildWindows(hWnd, EnumChildProc, 1);
    return 1;
}

}  // namespace

std::uint32_t SearchEditorList() {
    matched = false;
    EnumWindows(EnumWindowsProc, 0);
    return matched ? hWndEditorList.load() : 0;
}

void StartEditorLink() {}

void HoldEditorLink() {}

void ReleaseEditorLink() {}

void FindEditorList() { SearchEditorList(); }

void clickListboxItem(std::uint32_t hWnd, std::int32_t& Item) {
    HWND h = Handle(hWnd);
    RECT rect = {0, 0, 0, 0};
    SendMessageA(h, LB_SETCURSEL, static_cast<WPARAM>(static_cast<std::intptr_t>(Item)), 0);
    Item = static_cast<std::int32_t>(SendMessageA(h, LB_GETCURSEL, 0, 0));
    SendMessageA(h, LB_GETITEMRECT, static_cast<WPARAM>(static_cast<std::intptr_t>(Item)),
                 reinterpret_cast<LPARAM>(&rect));
    // Client coordinates of a row just scrolled into view fit 16 bits.
    std::int32_t lp = MakeLParam(static_cast<std::int16_t>(rect.left), static_cast<std::int16_t>(rect.top));
    auto lParam = static_cast<LPARAM>(static_cast<std::uint32_t>(lp));
    PostMessageA(h, WM_LBUTTONDOWN, MK_LBUTTON, lParam);
    PostMessageA(h, WM_LBUTTONUP, MK_LBUTTON, lParam);
}

std::int32_t SetTopMost(std::uintptr_t hWnd, bool OnTop) {
    HWND after = OnTop ? HWND_TOPMOST : HWND_NOTOPMOST;
    BOOL r = SetWindowPos(reinterpret_cast<HWND>(hWnd), after, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE);
    return OnTop ? static_cast<std::int32_t>(r) : 0;
}

}  // namespace modControlWin
