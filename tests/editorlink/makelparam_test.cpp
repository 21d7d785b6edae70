// MakeLParam, and the Linux link when there is no Wine to run it.
#include <gtest/gtest.h>

#include <cstdlib>

#include "editorlink/linkhelper.h"
#include "editorlink/modcontrolwin.h"
#include "support/tempdir.h"

namespace {

struct LParamCase {
    std::int16_t x, y;
    std::uint32_t expected;
};

class MakeLParamTest : public testing::TestWithParam<LParamCase> {};

TEST_P(MakeLParamTest, PacksYHighAndXLow) {
    EXPECT_EQ(static_cast<std::uint32_t>(modControlWin::MakeLParam(GetParam().x, GetParam().y)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Pairs, MakeLParamTest,
                         testing::Values(LParamCase{5, 3, 0x00030005u}, LParamCase{-1, 0, 0x0000FFFFu},
                                         LParamCase{0, -1, 0xFFFF0000u}, LParamCase{0, 0, 0u},
                                         LParamCase{-32768, 32767, 0x7FFF8000u}, LParamCase{-2, -2, 0xFFFEFFFEu}));

struct NoWineCase {
    const char* label;
    const char* prefix;  // relative to a temp folder; nullptr: a prefix that exists
    const char* wine;
    const char* helper;
};

class NoWineTest : public testing::TestWithParam<NoWineCase> {};

// Each case gets a fresh process state: the helper is never started successfully here.
TEST_P(NoWineTest, SearchFindsNothingAndClickReachesNobody) {
    linkhelper::Shutdown();
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
