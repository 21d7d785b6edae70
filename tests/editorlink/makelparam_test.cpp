// MakeLParam packs a press position the way the list box reads it: negative
// coordinates keep to their own 16 bits.
#include <gtest/gtest.h>

#include "editorlink/modcontrolwin.h"

TEST(MakeLParam, PacksYHighAndXLow) {
    struct Row {
        std::int16_t x, y;
        std::uint32_t packed;
    };
    for (const Row& r :
         {Row{5, 3, 0x00030005u}, Row{-1, 0, 0x0000FFFFu}, Row{-32768, 32767, 0x7FFF8000u}, Row{-2, -2, 0xFFFEFFFEu}})
        EXPECT_EQ(static_cast<std::uint32_t>(modControlWin::MakeLParam(r.x, r.y)), r.packed) << r.x << "," << r.y;
}
