// Every byte of the BMP files, against the file format's table and the
// pixel formulas, and the two byte-string helpers.

#include <gtest/gtest.h>

#include "pixels/modbmp.h"
#include "scene.h"

namespace ombrevale::pixeltest {
namespace {

// The head every file must have: BM, file size, reserved, pixel offset, then
// the info head (size 40, width, height, 1 plane, 8 bits; compression, image
// size and resolutions 0; 256 colours used and important).
void ExpectHead(const Bytes& f, std::int32_t width, std::int32_t height, std::size_t blockBytes) {
    namespace sw = ombrevale::stylewriter;
    const Bytes head =
        sw::Cat({sw::Text("BM"), sw::LE32(static_cast<std::int64_t>(1078 + blockBytes)), sw::LE32(0), sw::LE32(1078),
                 sw::LE32(40), sw::LE32(width), sw::LE32(height), sw::LE16(1), sw::LE16(8), sw::LE32(0), sw::LE32(0),
                 sw::LE32(0), sw::LE32(0), sw::LE32(256), sw::LE32(256)});
    ASSERT_GE(f.size(), 1078u);
    EXPECT_EQ(Bytes(f.begin(), f.begin() + 54), head);
}

void ExpectColourTable(const Bytes& f, std::size_t pal) {
    for (std::size_t c = 0; c < 256; ++c) {
        const auto stored = StoredColour(pal, c);
        for (std::size_t b = 0; b < 4; ++b) ASSERT_EQ(f[54 + c * 4 + b], stored[b]) << "colour " << c << " byte " << b;
    }
}

class SpriteBmp : public Scene, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(SpriteBmp, HeadTableAndRowsMatchTheStore) {
    const std::size_t s = GetParam();
    const auto& spec = kSprites[s];
    const std::size_t W = (spec.width + 3u) / 4u * 4u;
    doc.DrawTransparent(true);  // a file holds the stored colour 0 whatever the screen shows
    std::int16_t pal = -1;
    ASSERT_TRUE(doc.SaveSprite(File("s.bmp"), static_cast<std::int32_t>(s), pal));
    EXPECT_EQ(pal, SpriteOwnPalette(s));
    const Bytes f = ombrevale::stylewriter::ReadFile(File("s.bmp"));
    ExpectHead(f, spec.width, spec.height, W * spec.height);
    ExpectColourTable(f, static_cast<std::size_t>(SpriteOwnPalette(s)));
    ASSERT_EQ(f.size(), 1078 + W * spec.height);
    // Bottom row first; the padding bytes are the store's, not zeros.
    for (std::size_t y = 0; y < spec.height; ++y)
        for (std::size_t x = 0; x < W; ++x)
            ASSERT_EQ(f[1078 + (spec.height - 1 - y) * W + x],
                      SpriteByte(static_cast<std::size_t>(spec.offset) + y * 256 + x))
                << "x " << x << " y " << y;
}

INSTANTIATE_TEST_SUITE_P(Widths, SpriteBmp, ::testing::Values(0, 1, 2, 3, 4, 5, 6, 7, 8), [](const auto& p) {
    const auto& spec = kSprites[p.param];
    return "Sprite" + std::to_string(p.param) + "_" + std::to_string(spec.width) + "x" + std::to_string(spec.height);
});

TEST_F(Scene, TileBmpIsBottomRowFirstWithItsOwnPalette) {
    doc.DrawTransparent(true);
    ASSERT_TRUE(doc.SaveTile(File("t.bmp"), 2));
    const Bytes f = ombrevale::stylewriter::ReadFile(File("t.bmp"));
    ASSERT_EQ(f.size(), 5174u);
    ExpectHead(f, 64, 64, 4096);
    ExpectColourTable(f, static_cast<std::size_t>(TilePalette(2)));
    for (std::size_t r = 0; r < 64; ++r)
        for (std::size_t c = 0; c < 64; ++c) ASSERT_EQ(f[1078 + (63 - r) * 64 + c], TilePixel(2, r, c));
}

// SaveTile writes over a longer file and keeps its tail; sprites and deltas
// remove the file first.
TEST_F(Scene, OnlyTilesLeaveTheTailOfALongerFile) {
    const Bytes longer(9000, 0xEE);
    ombrevale::stylewriter::WriteFile(File("t.bmp"), longer);
    ombrevale::stylewriter::WriteFile(File("s.bmp"), longer);
    ombrevale::stylewriter::WriteFile(File("d.bmp"), longer);
    ASSERT_TRUE(doc.SaveTile(File("t.bmp"), 0));
    std::int16_t pal = -1;
    ASSERT_TRUE(doc.SaveSprite(File("s.bmp"), 0, pal));
    ASSERT_TRUE(doc.SaveDelta(File("d.bmp"), 0, 0, pal));
    const Bytes t = ombrevale::stylewriter::ReadFile(File("t.bmp"));
    ASSERT_EQ(t.size(), 9000u);
    EXPECT_EQ(Bytes(t.begin() + 2, t.begin() + 6), ombrevale::stylewriter::LE32(5174));
    EXPECT_EQ(t[5174], 0xEE);
    EXPECT_EQ(ombrevale::stylewriter::ReadFile(File("s.bmp")).size(), 1078u + 320);
    EXPECT_EQ(ombrevale::stylewriter::ReadFile(File("d.bmp")).size(), 1078u + 320);
}

struct ValueCase {
    Bytes bytes;
    std::int16_t expected;
};

class ByteStringValue : public ::testing::TestWithParam<ValueCase> {};

TEST_P(ByteStringValue, ReadsLittleEndianSigned) {
    EXPECT_EQ(modBMP::ByteStringValue(GetParam().bytes), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Table, ByteStringValue,
                         ::testing::Values(ValueCase{{0x34, 0x12}, 0x1234}, ValueCase{{0x05, 0x00}, 5},
                                           ValueCase{{0x00, 0x80}, -32768}, ValueCase{{0xFF, 0xFF}, -1},
                                           ValueCase{{0x2A}, 42}, ValueCase{{0xFF}, 255}, ValueCase{{}, 0}));

}  // namespace
}  // namespace ombrevale::pixeltest
