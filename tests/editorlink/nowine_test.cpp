// The Linux link when Wine, the prefix or the helper is missing: silent, and no wait.
#include <gtest/gtest.h>

#include <cstdlib>

#include "editorlink/modcontrolwin.h"
#include "settings/linkhelper.h"
#include "support/tempdir.h"

namespace {

struct NoWineCase {
    const char* label;
    const char* prefix;  // relative to a temp folder; nullptr: a prefix that exists
    const char* wine;
    const char* helper;
};

class NoWineTest : public testing::TestWithParam<NoWineCase> {};

// Each case gets a fresh process state: the helper is never started successfully here.
TEST_P(NoWineTest, SearchFindsNothingAndClickReachesNobody) {
    ombrevale::linkhelper::Shutdown();
    testsupport::TempDir dir;
    std::string prefix = GetParam().prefix ? dir.File(GetParam().prefix) : dir.path().string();
    setenv("WINEPREFIX", prefix.c_str(), 1);
    setenv("OMBREVALE_WINE", GetParam().wine, 1);
    std::string helper = GetParam().helper ? GetParam().helper : dir.File("missing.exe");
    setenv("OMBREVALE_LINK_EXE", helper.c_str(), 1);
    modControlWin::hWndEditorList = 4242;
    modControlWin::FindEditorList();
    EXPECT_EQ(modControlWin::hWndEditorList, 4242u);
    std::int32_t item = 12;
    modControlWin::clickListboxItem(modControlWin::hWndEditorList, item);
    EXPECT_EQ(item, 0);
}

INSTANTIATE_TEST_SUITE_P(Missing, NoWineTest,
                         testing::Values(NoWineCase{"no_prefix", "absent", "wine", "/bin/true"},
                                         NoWineCase{"no_wine", nullptr, "/nonexistent/wine", "/bin/true"},
                                         NoWineCase{"no_helper", nullptr, "/bin/echo", nullptr},
                                         NoWineCase{"helper_dies_at_once", nullptr, "/bin/false", "/bin/true"},
                                         NoWineCase{"helper_says_nothing_useful", nullptr, "/bin/echo", "/bin/true"}),
                         [](const auto& row) { return std::string(row.param.label); });

}  // namespace
