// ombrevale-link.exe: runs under Wine and makes the editor link's Win32 calls
// for the Linux program. One request a line on stdin, one answer a line on stdout:
//   find                 -> "found <list box>" or "none"
//   click <hwnd> <item>  -> "item <row the list box reported>"
//   topmost <hwnd> <0|1> -> "result <n>"
//   windows              -> "window <hwnd> <title>" for each top-level window, then "end"
//   regvalue <hive> <key> <name> -> the value as RegQueryValueExA reads it (settings/regwire.h)
//   quit
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "editorlink/modcontrolwin.h"
#include "editorlink/win32search.h"
#include "settings/cregistry.h"
#include "settings/regwire.h"

namespace {

BOOL CALLBACK ListWindow(HWND hWnd, LPARAM) {
    char title[512] = {};
    GetWindowTextA(hWnd, title, sizeof title);
    std::printf("window %lu %s\n", static_cast<unsigned long>(reinterpret_cast<std::uintptr_t>(hWnd)), title);
    return 1;
}

std::string ReadValue(std::int32_t hive, const std::string& key, const std::string& name) {
    cRegistry reg;
    reg.ClassKey(hive);
    reg.SectionKey(key);
    reg.ValueKey(name);
    // No value type is negative: one left so means the read found nothing.
    reg.ValueType(-1);
    RegValue v = reg.Value();
    return ombrevale::regwire::ValueAnswer(reg.ValueType() != -1, reg.ValueType(), v);
}

}  // namespace

int main() {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    std::printf("ombrevale-link 1\n");
    char line[1024];
    while (std::fgets(line, sizeof line, stdin)) {
        std::string cmd(line);
        while (!cmd.empty() && (cmd.back() == '\n' || cmd.back() == '\r')) cmd.pop_back();
        unsigned long h = 0;
        long item = 0;
        int on = 0;
        std::int32_t hive = 0;
        std::string key, name;
        if (cmd == "find") {
            std::uint32_t found = modControlWin::SearchEditorList();
            if (found)
                std::printf("found %lu\n", static_cast<unsigned long>(found));
            else
                std::printf("none\n");
        } else if (std::sscanf(cmd.c_str(), "click %lu %ld", &h, &item) == 2) {
            auto row = static_cast<std::int32_t>(item);
            modControlWin::clickListboxItem(static_cast<std::uint32_t>(h), row);
            std::printf("item %ld\n", static_cast<long>(row));
        } else if (std::sscanf(cmd.c_str(), "topmost %lu %d", &h, &on) == 2) {
            std::printf("result %ld\n", static_cast<long>(modControlWin::SetTopMost(h, on != 0)));
        } else if (cmd == "windows") {
            EnumWindows(ListWindow, 0);
            std::printf("end\n");
        } else if (ombrevale::regwire::ParseValueRequest(cmd, hive, key, name)) {
            std::printf("%s\n", ReadValue(hive, key, name).c_str());
        } else if (cmd == "quit") {
            break;
        } else {
            std::printf("error unknown request\n");
        }
    }
    return 0;
}
