// The editor link end to end under Wine and Xvfb: the Linux backend drives
// ombrevale-link.exe, whose real EnumWindows/SendMessageA/PostMessageA reach
// editor-stand-in.exe windows.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>

#include "editorlink/modcontrolwin.h"
#include "settings/linkhelper.h"
#include "standin.h"
#include "support/tempdir.h"

using ombrevale::standin::StandIn;
using ombrevale::standin::Window;

namespace {

// Starts the helper and waits until it has answered and drained its queue:
// after it, a search made before has run.
bool LinkUp() {
    ombrevale::linkhelper::Start();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!ombrevale::linkhelper::Ready() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return ombrevale::linkhelper::Ready();
}

class WineEnvironment : public testing::Environment {
public:
    void SetUp() override {
        ASSERT_EQ(ombrevale::standin::MissingPieces(), "") << "the Wine tests cannot run";
        ASSERT_TRUE(LinkUp()) << "ombrevale-link.exe did not come up";
    }
    void TearDown() override { ombrevale::linkhelper::Shutdown(); }
};

const auto* const kWine = testing::AddGlobalTestEnvironment(new WineEnvironment);

// The top-level windows in EnumWindows order, as the helper sees them.
std::vector<unsigned long> EnumerationOrder() {
    std::vector<std::string> lines;
    std::vector<unsigned long> order;
    // Behind the search queued before it, however long that takes.
    ombrevale::linkhelper::Request("windows", lines, 10000);
    for (const auto& l : lines)
        if (unsigned long h = 0; std::sscanf(l.c_str(), "window %lu", &h) == 1) order.push_back(h);
    return order;
}

struct SearchCase {
    const char* label;
    std::vector<Window> windows;
    std::vector<std::size_t> holders;  // windows that qualify; the last enumerated wins
};

class SearchTest : public testing::TestWithParam<SearchCase> {};

TEST_P(SearchTest, FindsTheEditorListOrKeepsTheOldHandle) {
    ombrevale::testsupport::TempDir dir;
    std::vector<std::unique_ptr<StandIn>> running;
    for (const Window& w : GetParam().windows) {
        running.push_back(std::make_unique<StandIn>(w, dir.File("w" + std::to_string(running.size()))));
        ASSERT_TRUE(running.back()->ok()) << "stand-in " << w.title << " did not come up";
    }
    // Windows still settling may change the z-order under the search; then look again.
    std::vector<unsigned long> before, after;
    for (int attempt = 0; attempt < 5 && (attempt == 0 || before != after); ++attempt) {
        before = EnumerationOrder();
        modControlWin::hWndEditorList = 0x7ffe;
        modControlWin::FindEditorList();
        after = EnumerationOrder();
    }
    ASSERT_EQ(before, after) << "the window order kept changing";
    unsigned long expected = 0x7ffe;
    for (unsigned long frame : after)
        for (std::size_t i : GetParam().holders)
            if (running[i]->frame() == frame) expected = running[i]->list();
    EXPECT_EQ(modControlWin::hWndEditorList, expected);
}

Window W(std::string title, int id = 1050, std::string cls = "ListBox") { return Window{std::move(title), id, cls}; }

INSTANTIATE_TEST_SUITE_P(
    Windows, SearchTest,
    testing::Values(SearchCase{"near_misses",
                               {W("gta2 edito"), W(" GTA2 Editor"), W("GTA2 Editor", 1050, "Button"),
                                W("GTA2 Editor", 1049)},
                               {}},
                    SearchCase{"capitals", {W("GTA2 EDITOR")}, {0}}, SearchCase{"empty_title", {W("")}, {0}},
                    SearchCase{"two_editors", {W("GTA2 Editor one"), W("gta2 editor two")}, {0, 1}}),
    [](const auto& row) { return std::string(row.param.label); });

TEST(Click, ReachesTheEditorUntilItClosesAndTheNextOneOnceTheHelperIsUp) {
    ombrevale::testsupport::TempDir dir;
    auto editor = std::make_unique<StandIn>(Window{}, dir.File("first.log"));
    ASSERT_TRUE(editor->ok());
    modControlWin::FindEditorList();
    ASSERT_TRUE(LinkUp());
    ASSERT_EQ(modControlWin::hWndEditorList, editor->list());
    // The first row, the last, and one past the stand-in's 992: the row LB_SETCURSEL selected is clicked.
    for (std::int32_t row : {0, 991, 5000}) {
        SCOPED_TRACE(row);
        ASSERT_TRUE(LinkUp()) << "Item is only waited for when nothing is queued";
        const std::size_t from = editor->Lines().size();
        std::int32_t item = row;
        modControlWin::clickListboxItem(modControlWin::hWndEditorList, item);
        ASSERT_TRUE(editor->WaitFor("lbuttonup", from, 5000));
        const auto lines = editor->Lines();
        ASSERT_EQ(lines.size(), from + 4);
        EXPECT_TRUE(row >= 992 || item == row);
        EXPECT_EQ(lines[from], "setcursel " + std::to_string(row) + " " + std::to_string(item))
            << "Item holds what LB_GETCURSEL reported";
        long left = -1, top = -1, right = 0, bottom = 0;
        const std::string rect = "getitemrect " + std::to_string(item) + " %ld %ld %ld %ld";
        ASSERT_EQ(std::sscanf(lines[from + 1].c_str(), rect.c_str(), &left, &top, &right, &bottom), 4);
        EXPECT_GT(bottom, top);
        const std::string at = " 1 " + std::to_string(left) + " " + std::to_string(top) + " " + std::to_string(item);
        EXPECT_EQ(lines[from + 2], "lbuttondown" + at);
        EXPECT_EQ(lines[from + 3], "lbuttonup" + at);
    }
    const unsigned long closed = editor->list();
    editor.reset();
    modControlWin::FindEditorList();
    ASSERT_TRUE(LinkUp());
    EXPECT_EQ(modControlWin::hWndEditorList, closed) << "the last handle stays";
    std::int32_t item = 7;
    modControlWin::clickListboxItem(modControlWin::hWndEditorList, item);
    EXPECT_EQ(item, 0) << "a message to nobody answers 0";

    // Searches and clicks made while the helper starts wait for it; the last click only goes out.
    editor = std::make_unique<StandIn>(Window{}, dir.File("second.log"));
    ASSERT_TRUE(editor->ok());
    // Held, as the window holds it until its first paint: Wine is not launched.
    ombrevale::linkhelper::Shutdown();
    modControlWin::HoldEditorLink();
    modControlWin::StartEditorLink();
    for (std::int32_t row : {3, 7}) {
        modControlWin::FindEditorList();
        item = row;
        modControlWin::clickListboxItem(modControlWin::hWndEditorList, item);
        EXPECT_EQ(item, 0) << "nothing has answered yet";
    }
    std::this_thread::sleep_for(std::chrono::seconds(1));
    ASSERT_FALSE(ombrevale::linkhelper::Ready()) << "a held start launched Wine";
    modControlWin::ReleaseEditorLink();
    ASSERT_TRUE(LinkUp());
    EXPECT_EQ(modControlWin::hWndEditorList, editor->list());
    ASSERT_TRUE(editor->WaitFor("lbuttonup", 1, 5000));
    const auto lines = editor->Lines();
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[1], "setcursel 7 7");
}

}  // namespace
