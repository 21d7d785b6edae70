// modControlWin on Linux: the Win32 calls are made by ombrevale-link.exe under
// Wine. Without it the search finds nothing and a click reaches nobody.
#include <cstdio>
#include <string>
#include <vector>

#include "editorlink/linkhelper.h"
#include "editorlink/modcontrolwin.h"

namespace modControlWin {

void FindEditorList() {
    std::vector<std::string> answer;
    unsigned long h = 0;
    if (linkhelper::Request("find", answer) && std::sscanf(answer[0].c_str(), "found %lu", &h) == 1 && h != 0)
        hWndEditorList = static_cast<std::uint32_t>(h);
}

void clickListboxItem(std::uint32_t hWnd, std::int32_t& Item) {
    std::vector<std::string> answer;
    long row = 0;
    // A message to nobody answers 0, as SendMessageA does for a dead handle.
    if (linkhelper::Request("click " + std::to_string(hWnd) + " " + std::to_string(Item), answer) &&
        std::sscanf(answer[0].c_str(), "item %ld", &row) == 1)
        Item = static_cast<std::int32_t>(row);
    else
        Item = 0;
}

// The Linux window keeps itself on top through its own window flags.
std::int32_t SetTopMost(std::uintptr_t, bool) { return 0; }

}  // namespace modControlWin
