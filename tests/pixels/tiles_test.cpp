#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "scene.h"

namespace ombrevale::pixeltest {
namespace {

class RenderTile : public Scene, public ::testing::WithParamInterface<bool> {};

// The key colour is in colour 0 for the length of the write only.
TEST_P(RenderTile, ShowsColourZeroAsTheKeyOnlyWhenTransparent) {
    const bool transparent = GetParam();
    doc.DrawTransparent(transparent);
    const auto before = modDeclares::STYPalData;
    TestPicture pic;
    ASSERT_TRUE(doc.RenderTile(0, pic));
    EXPECT_EQ(modDeclares::STYPalData, before);
    EXPECT_EQ(pic.wipes, 1);
    EXPECT_EQ(doc.lPal(), TilePalette(0));
    EXPECT_EQ(doc.lWidth(), 64);
    EXPECT_EQ(doc.lHeight(), 64);

    const Bytes f = ombrevale::stylewriter::ReadFile("temp.bmp");
    const auto stored = StoredColour(static_cast<std::size_t>(TilePalette(0)), 0);
    const Bytes colour0(f.begin() + 54, f.begin() + 58);
    const Bytes key{255, 0, 255, stored[3]};
    EXPECT_EQ(colour0, transparent ? key : Bytes(stored.begin(), stored.end()));

    ASSERT_EQ(pic.Width(), 64);
    for (int r = 0; r < 64; ++r)
        for (int c = 0; c < 64; ++c) {
            const std::uint8_t px = TilePixel(0, static_cast<std::size_t>(r), static_cast<std::size_t>(c));
            const std::int32_t expected =
                (px == 0 && transparent) ? 0xFF00FF : ExpectedColour(static_cast<std::size_t>(TilePalette(0)), px);
            ASSERT_EQ(pic.At(c, r), expected) << c << "," << r;
        }
    EXPECT_TRUE(hooks.messages().empty());
}

INSTANTIATE_TEST_SUITE_P(Transparency, RenderTile, ::testing::Bool());

TEST_F(Scene, SetBitsTileTakesRowsTopFirstAndFillsShortRowsWith32) {
    ASSERT_TRUE(doc.SaveTile(File("t.bmp"), 3));
    const Bytes f = ombrevale::stylewriter::ReadFile(File("t.bmp"));
    ASSERT_TRUE(doc.SetBitsTile(3, ByteString(f.begin() + 1078, f.end())));
    for (std::size_t r = 0; r < 64; ++r)
        for (std::size_t c = 0; c < 64; ++c) ASSERT_EQ(doc.STYTileStore[3][r * 64 + c], TilePixel(3, 63 - r, c));

    ASSERT_TRUE(doc.SetBitsTile(2, ByteString(100, 7)));
    for (std::size_t i = 0; i < 4096; ++i) ASSERT_EQ(doc.STYTileStore[2][i], i < 100 ? 7 : 32) << i;
}

// A number that names nothing is refused with one message: no picture, no
// file, no store changed.
struct Refusal {
    const char* name;
    std::function<bool(clsSTY&, const std::string&, TestPicture&)> call;
};

class Refused : public Scene, public ::testing::WithParamInterface<Refusal> {};

TEST_P(Refused, TellsOnceAndWritesNothing) {
    const auto palettes = modDeclares::STYPalData;
    const auto sprites = doc.STYSpriteData;
    const auto deltas = modDeclares::STYDeltaStore;
    TestPicture pic;
    EXPECT_FALSE(GetParam().call(doc, File("out.bmp"), pic));
    EXPECT_EQ(hooks.messages().size(), 1u);
    EXPECT_FALSE(std::filesystem::exists(File("out.bmp")));
    EXPECT_FALSE(std::filesystem::exists("temp.bmp"));
    EXPECT_EQ(pic.loads, 0);
    EXPECT_EQ(modDeclares::STYPalData, palettes);
    EXPECT_EQ(doc.STYSpriteData, sprites);
    EXPECT_EQ(modDeclares::STYDeltaStore, deltas);
}

using Pic = TestPicture;
using Path = const std::string&;
std::int16_t own = -1, three = 3;

INSTANTIATE_TEST_SUITE_P(
    BadNumbers, Refused,
    ::testing::Values(
        Refusal{"TileMinusOne", [](clsSTY& d, Path, Pic& p) { return d.RenderTile(-1, p); }},
        Refusal{"TilePastEnd", [](clsSTY& d, Path f, Pic&) { return d.SaveTile(f, 4); }},
        Refusal{"TileWithoutPaletteEntry",
                [](clsSTY& d, Path, Pic& p) { return modDeclares::STYPalIndex[0] = 99, d.RenderTile(0, p); }},
        Refusal{"SpritePastEnd", [](clsSTY& d, Path f, Pic&) { return d.SaveSprite(f, 9, own = -1); }},
        Refusal{"SpritePaletteMissing", [](clsSTY& d, Path, Pic& p) { return d.RenderSprite(0, p, three = 3); }},
        Refusal{
            "SpriteOwnPaletteBeyondTable",
            [](clsSTY& d, Path f, Pic&) { return modDeclares::STYPalBase[0] = 1000, d.SaveSprite(f, 0, own = -1); }},
        Refusal{"DeltaOfMissingSprite", [](clsSTY& d, Path f, Pic&) { return d.SaveDelta(f, 0, -3, own = -1); }},
        Refusal{"SetBitsTilePastEnd", [](clsSTY& d, Path, Pic&) { return d.SetBitsTile(7, ByteString(4096, 1)); }},
        Refusal{"SetBitsSpritePastEnd", [](clsSTY& d, Path, Pic&) { return d.SetBits(40, ByteString(8, 1)); }},
        Refusal{"ImportIntoMissingPalette", [](clsSTY& d, Path f, Pic&) { return d.ImportPalette(f, 3); }},
        Refusal{"ColourOutOfRange", [](clsSTY& d, Path, Pic&) { return d.GetCol(0, 256) != 0; }},
        Refusal{"PaletteOutOfRange", [](clsSTY& d, Path, Pic&) { return d.GetCol(-1, 0) != 0; }}),
    [](const auto& p) { return std::string(p.param.name); });

}  // namespace
}  // namespace ombrevale::pixeltest
