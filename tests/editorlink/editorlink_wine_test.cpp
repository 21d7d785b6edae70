// The editor link end to end under Wine and Xvfb: the Linux backend drives
// ombrevale-link.exe, whose real EnumWindows/SendMessageA/PostMessageA reach
// editor-stand-in.exe windows.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <sstream>
#include <thread>

#include "editorlink/modcontrolwin.h"
#include "settings/linkhelper.h"
#include "standin.h"
#include "support/tempdir.h"

using standin::StandIn;
using standin::Window;

namespace {

// Starts the helper and waits until it has answered and drained its queue.
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
        ASSERT_EQ(standin::MissingPieces(), "") << "the Wine tests cannot run";
        ASSERT_TRUE(LinkUp()) << "ombrevale-link.exe did not come up";
    }
    void TearDown() override { ombrevale::linkhelper::Shutdown(); }
};

const auto* const kWine = testing::AddGlobalTestEnvironment(new WineEnvironment);

// Titles of the top-level windows in EnumWindows order, as the helper sees them.
std::vector<unsigned long> EnumerationOrder() {
    std::vector<std::string> lines;
    std::vector<unsigned long> order;
    if (!ombrevale::linkhelper::Request("windows", lines)) return order;
    for (const auto& l : lines) {
        unsigned long h = 0;
        if (std::sscanf(l.c_str(), "window %lu", &h) == 1) order.push_back(h);
    }
    return order;
}

struct SearchCase {
    const char* label;
    std::vector<Window> windows;
    std::vector<std::size_t> holders;  // windows with a qualifying title and list box; the last enumerated wins
};

class SearchTest : public testing::TestWithParam<SearchCase> {
protected:
    testsupport::TempDir dir_;
};

TEST_P(SearchTest, FindsTheEditorListOrKeepsTheOldHandle) {
    std::vector<std::unique_ptr<StandIn>> running;
    for (std::size_t i = 0; i < GetParam().windows.size(); ++i) {
        running.push_back(std::make_unique<StandIn>(GetParam().windows[i], dir_.File("w" + std::to_string(i))));
        ASSERT_TRUE(running.back()->ok()) << "stand-in " << i << " did not come up";
    }
    constexpr std::uint32_t kOld = 0x7ffe;
    // Windows still settling may change the z-order under the search; then look again.
    std::vector<unsigned long> before, after;
    for (int attempt = 0; attempt < 5 && (attempt == 0 || before != after); ++attempt) {
        before = EnumerationOrder();
        modControlWin::hWndEditorList = kOld;
        modControlWin::FindEditorList();
        after = EnumerationOrder();
    }
    ASSERT_EQ(before, after) << "the window order kept changing";
    if (GetParam().holders.empty()) {
        EXPECT_EQ(modControlWin::hWndEditorList, kOld);
        return;
    }
    unsigned long expected = 0;
    for (unsigned long frame : after)
        for (std::size_t i : GetParam().holders)
            if (running[i]->frame() == frame) expected = running[i]->list();
    ASSERT_NE(expected, 0u);
    EXPECT_EQ(modControlWin::hWndEditorList, expected);
}

Window W(std::string title, int id = 1050, std::string cls = "ListBox") { return Window{std::move(title), id, cls}; }

INSTANTIATE_TEST_SUITE_P(
    Windows, SearchTest,
    testing::Values(
        SearchCase{"stand_in", {W("GTA2 Editor - stand-in")}, {0}},
        SearchCase{"capitals_only", {W("GTA2 EDITOR")}, {0}}, SearchCase{"empty_title_qualifies", {W("")}, {0}},
        SearchCase{"ten_characters", {W("gta2 edito")}, {}}, SearchCase{"character_ahead", {W(" GTA2 Editor")}, {}},
        SearchCase{"button_with_1050", {W("GTA2 Editor", 1050, "Button")}, {}},
        SearchCase{"listbox_with_1049", {W("GTA2 Editor", 1049)}, {}},
        SearchCase{"decoys_then_editor", {W("gta2 edito"), W("GTA2 Editor", 1049), W("GTA2 Editor x")}, {2}},
        SearchCase{"two_editors_last_wins", {W("GTA2 Editor one"), W("GTA2 Editor two")}, {0, 1}}),
    [](const auto& row) { return std::string(row.param.label); });

class ClickTest : public testing::TestWithParam<std::int32_t> {
protected:
    static void SetUpTestSuite() {
        dir_ = new testsupport::TempDir;
        editor_ = new StandIn(Window{}, dir_->File("editor.log"));
    }
    static void TearDownTestSuite() {
        delete editor_;
        delete dir_;
    }
    static testsupport::TempDir* dir_;
    static StandIn* editor_;
};

testsupport::TempDir* ClickTest::dir_ = nullptr;
StandIn* ClickTest::editor_ = nullptr;

TEST_P(ClickTest, SelectsReadsBackAndClicksTheRowsTopLeft) {
    ASSERT_TRUE(editor_->ok());
    modControlWin::FindEditorList();
    ASSERT_EQ(modControlWin::hWndEditorList, editor_->list());
    std::size_t from = editor_->Lines().size();
    std::int32_t item = GetParam();
    modControlWin::clickListboxItem(modControlWin::hWndEditorList, item);
    ASSERT_TRUE(editor_->WaitFor("lbuttonup", from, 5000));
    auto lines = editor_->Lines();
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(from));
    ASSERT_EQ(lines.size(), 4u);
    long asked = -1, selected = -1, index = -1, left = -1, top = -1, right = 0, bottom = 0;
    ASSERT_EQ(std::sscanf(lines[0].c_str(), "setcursel %ld %ld", &asked, &selected), 2) << lines[0];
    EXPECT_EQ(asked, GetParam());
    EXPECT_EQ(item, selected) << "Item holds what LB_GETCURSEL reported";
    if (GetParam() < 992) {
        EXPECT_EQ(selected, GetParam());
    }
    ASSERT_EQ(std::sscanf(lines[1].c_str(), "getitemrect %ld %ld %ld %ld %ld", &index, &left, &top, &right, &bottom),
              5);
    EXPECT_EQ(index, selected) << "the rectangle of the reported row, not the asked one";
    std::ostringstream press, release;
    press << "lbuttondown 1 " << left << " " << top << " " << selected;
    release << "lbuttonup 1 " << left << " " << top << " " << selected;
    EXPECT_EQ(lines[2], press.str());
    EXPECT_EQ(lines[3], release.str());
    EXPECT_GT(bottom, top);
}

INSTANTIATE_TEST_SUITE_P(Rows, ClickTest, testing::Values(0, 1, 500, 991, 992, 5000),
                         [](const auto& row) { return "row_" + std::to_string(row.param); });

TEST(EditorLifetime, ClosedEditorKeepsItsHandleAndANewOneIsPickedUp) {
    testsupport::TempDir dir;
    auto first = std::make_unique<StandIn>(Window{}, dir.File("first.log"));
    ASSERT_TRUE(first->ok());
    modControlWin::FindEditorList();
    ASSERT_EQ(modControlWin::hWndEditorList, first->list());
    first->Stop();
    first.reset();
    modControlWin::FindEditorList();
    std::uint32_t stale = modControlWin::hWndEditorList;
    std::int32_t item = 7;
    modControlWin::clickListboxItem(stale, item);  // reaches nobody, and says nothing
    EXPECT_EQ(item, 0);

    StandIn second(Window{}, dir.File("second.log"));
    ASSERT_TRUE(second.ok());
    modControlWin::FindEditorList();
    EXPECT_EQ(modControlWin::hWndEditorList, second.list());
}

TEST(HandOver, ClicksDuringTheHelpersStartGoOutOnceItIsUpTheLastOneOnly) {
    testsupport::TempDir dir;
    StandIn editor(Window{}, dir.File("starting.log"));
    ASSERT_TRUE(editor.ok());
    ombrevale::linkhelper::Shutdown();
    modControlWin::hWndEditorList = 0;
    ombrevale::linkhelper::Start();
    ASSERT_FALSE(ombrevale::linkhelper::Ready()) << "Wine answered before the clicks could be made";
    for (std::int32_t row : {3, 7}) {
        modControlWin::FindEditorList();
        std::int32_t item = row;
        modControlWin::clickListboxItem(modControlWin::hWndEditorList, item);
        EXPECT_EQ(item, 0) << "nothing has answered yet";
    }
    ASSERT_TRUE(LinkUp());
    EXPECT_EQ(modControlWin::hWndEditorList, editor.list());
    ASSERT_TRUE(editor.WaitFor("lbuttonup", 1, 5000));
    auto lines = editor.Lines();
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[1], "setcursel 7 7");
}

}  // namespace
