// MakeLParam packs a press position the way the list box reads it.
#include <gtest/gtest.h>

#include "editorlink/modcontrolwin.h"

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

}  // namespace
