#include <gtest/gtest.h>

#include "pixels/pictureimport.h"
#include "scene.h"

namespace ombrevale::pixeltest {
namespace {

// Store byte of sprite s at column x (padding included), row y.
std::uint8_t StoreAt(std::size_t s, std::size_t x, std::size_t y) {
    return SpriteByte(static_cast<std::size_t>(kSprites[s].offset) + y * 256 + x);
}

struct RenderCase {
    const char* name;
    std::size_t sprite;
    std::int16_t pal;  // -1: its own
    bool transparent;
};

class RenderSprite : public Scene, public ::testing::WithParamInterface<RenderCase> {};

TEST_P(RenderSprite, ShowsTheSpriteInTheChosenPaletteAndRestoresIt) {
    const auto& c = GetParam();
    doc.DrawTransparent(c.transparent);
    const auto before = modDeclares::STYPalData;
    const std::int16_t expectedPal = c.pal == -1 ? SpriteOwnPalette(c.sprite) : c.pal;
    std::int16_t pal = c.pal;
    TestPicture pic;
    ASSERT_TRUE(doc.RenderSprite(static_cast<std::int32_t>(c.sprite), pic, pal));
    EXPECT_EQ(pal, expectedPal);
    EXPECT_EQ(doc.lPal(), expectedPal);
    EXPECT_EQ(doc.lWidth(), kSprites[c.sprite].width);
    EXPECT_EQ(doc.lHeight(), kSprites[c.sprite].height);
    EXPECT_EQ(pic.wipes, 0) << "a sprite is not wiped first";
    EXPECT_EQ(modDeclares::STYPalData, before);
    ASSERT_EQ(pic.Width(), kSprites[c.sprite].width);
    for (std::size_t y = 0; y < kSprites[c.sprite].height; ++y)
        for (std::size_t x = 0; x < kSprites[c.sprite].width; ++x) {
            const std::uint8_t px = StoreAt(c.sprite, x, y);
            const std::int32_t expected =
                px == 0 && c.transparent ? 0xFF00FF : ExpectedColour(static_cast<std::size_t>(expectedPal), px);
            ASSERT_EQ(pic.At(static_cast<int>(x), static_cast<int>(y)), expected) << x << "," << y;
        }
}

INSTANTIATE_TEST_SUITE_P(Cases, RenderSprite,
                         ::testing::Values(RenderCase{"OwnPalette", 0, -1, false},
                                           RenderCase{"OwnPaletteTransparent", 0, -1, true},
                                           RenderCase{"PaletteZeroIsNotOwn", 1, 0, false},
                                           RenderCase{"ExplicitPaletteTransparent", 4, 2, true},
                                           RenderCase{"Width255", 7, -1, true},
                                           RenderCase{"ReadsIntoNextRow", 2, -1, false}),
                         [](const auto& p) { return std::string(p.param.name); });

TEST_F(Scene, EmptySpriteLeavesThePictureAsItWas) {
    TestPicture pic;
    std::int16_t pal = -1;
    ASSERT_TRUE(doc.RenderSprite(0, pic, pal));
    pal = -1;
    EXPECT_FALSE(doc.RenderSprite(8, pic, pal));
    EXPECT_EQ(pic.Width(), 30);
    EXPECT_TRUE(hooks.messages().empty());
}

// Padding bytes are written too: they are the neighbour's pixels.
TEST_F(Scene, SetBitsWritesWholePaddedRowsBottomFirst) {
    const std::size_t W = 32;  // sprite 0 is 30 wide
    ByteString bits(W * 10);
    for (std::size_t i = 0; i < bits.size(); ++i) bits[i] = static_cast<std::uint8_t>(200 + i % 50);
    ASSERT_TRUE(doc.SetBits(0, bits));
    for (std::size_t y = 0; y < 10; ++y)
        for (std::size_t x = 0; x < W; ++x) ASSERT_EQ(doc.STYSpriteData[y * 256 + x], bits[(9 - y) * W + x]);
    EXPECT_EQ(doc.STYSpriteData[32], SpriteByte(32)) << "only W bytes a row";
}

TEST_F(Scene, ShortBitsWriteTheBottomRowsOnly) {
    const auto store = doc.STYSpriteData;
    ASSERT_TRUE(doc.SetBits(0, ByteString(32 + 5, 9)));
    for (std::size_t x = 0; x < 32; ++x) EXPECT_EQ(doc.STYSpriteData[9 * 256 + x], 9);
    for (std::size_t x = 0; x < 5; ++x) EXPECT_EQ(doc.STYSpriteData[8 * 256 + x], 9);
    EXPECT_EQ(doc.STYSpriteData[8 * 256 + 5], store[8 * 256 + 5]);
    EXPECT_EQ(doc.STYSpriteData[0], store[0]);
    ASSERT_TRUE(doc.SetBits(0, {}));
}

// Rows that pass the end of the store come back short and are cut on write;
// a damaged record may put a sprite before the store's start too.
TEST_F(Scene, RowsPastTheStoreEndsAreShortNeverWritten) {
    doc.STYSpriteIndex.push_back({47 * 256 + 250, 12, 3, 0});
    doc.STYSpriteIndex.push_back({INT32_MIN, 12, 3, 0});
    const ByteString bits = doc.GetBits(9);
    EXPECT_EQ(bits.size(), 6u);
    EXPECT_TRUE(pictureimport::SpriteNumbers(doc, 9, -1).empty()) << "no whole picture to fit an import to";
    // One byte of its second row left: that byte first, as the bottom row.
    const auto& d = doc.STYSpriteData;
    doc.STYSpriteIndex.push_back({static_cast<std::int32_t>(d.size()) - 257, 4, 2, 0});
    EXPECT_EQ(doc.GetBits(11), (ByteString{d.end()[-1], d.end()[-257], d.end()[-256], d.end()[-255], d.end()[-254]}));
    const std::size_t size = doc.STYSpriteData.size();
    ASSERT_TRUE(doc.SetBits(9, ByteString(36, 1)));
    EXPECT_EQ(doc.STYSpriteData.size(), size);
    const ByteString store = doc.STYSpriteData;
    ASSERT_TRUE(doc.SetBits(10, ByteString(36, 1)));
    EXPECT_EQ(doc.STYSpriteData, store);
}

}  // namespace
}  // namespace ombrevale::pixeltest
