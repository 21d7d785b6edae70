// modControlWin on Linux: the Win32 calls are made by ombrevale-link.exe under
// Wine, on the helper's own thread. Without it the search finds nothing and a
// click reaches nobody.
#include <chrono>
#include <cstdio>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include "editorlink/modcontrolwin.h"
#include "settings/linkhelper.h"

namespace modControlWin {

namespace {

// Queue slots: one search and one click wait at most; a newer one replaces its own kind.
enum Slot { kSearch, kClick };

// A helper with nothing else to do answers a click in a few milliseconds; the
// window waits no longer than this for Item.
constexpr auto kClickWait = std::chrono::milliseconds(20);

void SearchNow() {
    std::vector<std::string> answer;
    unsigned long h = 0;
    if (ombrevale::linkhelper::Request("find", answer) && std::sscanf(answer[0].c_str(), "found %lu", &h) == 1 &&
        h != 0)
        hWndEditorList = static_cast<std::uint32_t>(h);
}

// False when the helper did not answer: a message to nobody.
bool ClickNow(std::uint32_t hWnd, std::int32_t& Item) {
    std::vector<std::string> answer;
    long row = 0;
    if (!ombrevale::linkhelper::Request("click " + std::to_string(hWnd) + " " + std::to_string(Item), answer) ||
        std::sscanf(answer[0].c_str(), "item %ld", &row) != 1)
        return false;
    Item = static_cast<std::int32_t>(row);
    return true;
}

}  // namespace

void StartEditorLink() { ombrevale::linkhelper::Start(); }

void HoldEditorLink() { ombrevale::linkhelper::Hold(true); }

void ReleaseEditorLink() { ombrevale::linkhelper::Hold(false); }

void FindEditorList() { ombrevale::linkhelper::WhenUp(kSearch, SearchNow); }

void clickListboxItem(std::uint32_t hWnd, std::int32_t& Item) {
    // Behind queued work the click goes to hWndEditorList as a search queued before it leaves it.
    const bool ready = ombrevale::linkhelper::Ready();
    const std::int32_t row = Item;
    auto answer = std::make_shared<std::promise<std::int32_t>>();
    auto reported = answer->get_future();
    ombrevale::linkhelper::WhenUp(kClick, [hWnd, ready, row, answer] {
        std::int32_t item = row;
        // A message to nobody answers 0, as SendMessageA does for a dead handle.
        answer->set_value(ClickNow(ready ? hWnd : hWndEditorList.load(), item) ? item : 0);
    });
    Item = 0;
    if (ready && reported.wait_for(kClickWait) == std::future_status::ready) {
        try {
            Item = reported.get();
        } catch (const std::future_error&) {
            // Dropped unsent (a start that failed): a message to nobody.
        }
    }
}

// The Linux window keeps itself on top through its own window flags.
std::int32_t SetTopMost(std::uintptr_t, bool) { return 0; }

}  // namespace modControlWin
