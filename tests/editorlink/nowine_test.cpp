// The Linux link when Wine, the prefix or the helper is missing or stops
// answering: silent, and no wait.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

#include "editorlink/modcontrolwin.h"
#include "settings/linkhelper.h"
#include "support/tempdir.h"

namespace {

struct NoWineCase {
    const char* label;
    const char* prefix;  // in a temp folder; nullptr: the temp folder itself
    const char* wine;
    const char* helper;            // nullptr: a file that is not there
    const char* script = nullptr;  // instead: this shell script
};

class NoWineTest : public testing::TestWithParam<NoWineCase> {};

TEST_P(NoWineTest, SearchFindsNothingAndClickReachesNobodyAtOnce) {
    ombrevale::linkhelper::Shutdown();  // forgets the last case's failed start
    ombrevale::testsupport::TempDir dir;
    setenv("WINEPREFIX", (GetParam().prefix ? dir.File(GetParam().prefix) : dir.path().string()).c_str(), 1);
    setenv("OMBREVALE_WINE", GetParam().wine, 1);
    if (GetParam().script) std::ofstream(dir.File("helper.sh")) << GetParam().script;
    setenv("OMBREVALE_LINK_EXE", GetParam().helper ? GetParam().helper : dir.File("helper.sh").c_str(), 1);
    const auto start = std::chrono::steady_clock::now();
    modControlWin::hWndEditorList = 4242;
    modControlWin::FindEditorList();
    std::int32_t item = 12;
    modControlWin::clickListboxItem(modControlWin::hWndEditorList, item);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    EXPECT_EQ(item, 0);
    // Whatever answers in the helper's place never counts as up.
    for (int i = 0; i < 30; ++i, std::this_thread::sleep_for(std::chrono::milliseconds(10)))
        ASSERT_FALSE(ombrevale::linkhelper::Ready());
    EXPECT_EQ(modControlWin::hWndEditorList, 4242u);
}

INSTANTIATE_TEST_SUITE_P(Missing, NoWineTest,
                         testing::Values(NoWineCase{"no_prefix", "absent", "wine", "/bin/true"},
                                         NoWineCase{"no_wine", nullptr, "/nonexistent/wine", "/bin/true"},
                                         NoWineCase{"no_helper", nullptr, "/bin/echo", nullptr},
                                         NoWineCase{"helper_dies_at_once", nullptr, "/bin/false", "/bin/true"},
                                         // Answers every request as the helper would, but is not it.
                                         NoWineCase{"not_the_helper", nullptr, "/bin/sh", nullptr,
                                                    "echo hello; while read l; do echo found 99; done"}),
                         [](const auto& row) { return std::string(row.param.label); });

// The first helper greets and then hangs; the ones started after it answer.
TEST(HungHelper, CallsReturnAtOnceAndQueuedWorkReachesTheNextHelper) {
    using namespace std::chrono;
    ombrevale::linkhelper::Shutdown();
    ombrevale::testsupport::TempDir dir;
    const std::string clicks = dir.File("clicks");
    std::ofstream(dir.File("helper.sh")) << "echo ombrevale-link 1\n"
                                         << "mkdir " << dir.File("ran") << " 2>/dev/null && exec sleep 600\n"
                                         << "while read -r l; do case \"$l\" in\n"
                                         << "find) echo found 77;;\n"
                                         << "click*) echo \"$l\" >> " << clicks << "; echo \"item ${l##* }\";;\n"
                                         << "quit) exit 0;;\n"
                                         << "esac; done\n";
    setenv("WINEPREFIX", dir.path().c_str(), 1);
    setenv("OMBREVALE_WINE", "/bin/sh", 1);
    setenv("OMBREVALE_LINK_EXE", dir.File("helper.sh").c_str(), 1);
    ombrevale::linkhelper::Start();
    for (auto until = steady_clock::now() + seconds(5); !ombrevale::linkhelper::Ready() && steady_clock::now() < until;)
        std::this_thread::sleep_for(milliseconds(5));
    ASSERT_TRUE(ombrevale::linkhelper::Ready());

    // As the search answers: the queued click and search may go out in either order.
    modControlWin::hWndEditorList = 77;
    steady_clock::duration longest{};
    for (auto until = steady_clock::now() + seconds(1); steady_clock::now() < until;) {
        const auto start = steady_clock::now();
        modControlWin::FindEditorList();
        std::int32_t item = 321;
        modControlWin::clickListboxItem(modControlWin::hWndEditorList, item);
        longest = std::max(longest, steady_clock::now() - start);
        std::this_thread::sleep_for(milliseconds(10));
    }
    EXPECT_LT(longest, milliseconds(50)) << "a call waited for the hung helper";

    // Nobody asks for a start from here on: the hang is found and the helper started again on its own.
    std::string line;
    for (auto until = steady_clock::now() + seconds(15); line.empty() && steady_clock::now() < until;) {
        std::this_thread::sleep_for(milliseconds(20));
        std::ifstream log(clicks);
        std::getline(log, line);
    }
    EXPECT_EQ(line, "click 77 321");
    ombrevale::linkhelper::Shutdown();
}

}  // namespace
