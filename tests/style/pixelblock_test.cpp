// Shared pixel blocks: equal bytes are one block while anyone holds it, and a
// tile replaced whole never changes a tile or a picture that shared its block.
#include <gtest/gtest.h>

#include "style/clssty.h"
#include "style/pixelblock.h"
#include "stylewriter/stylewriter.h"
#include "support/tempdir.h"

namespace {

using ombrevale::stylewriter::TilePixels;

TilePixels Pattern(std::uint8_t seed) {
    TilePixels p;
    for (std::size_t i = 0; i < p.size(); ++i) p[i] = static_cast<std::uint8_t>(seed + i * 7 + i / 64);
    return p;
}

struct PairCase {
    const char* name;
    TilePixels a, b;
    bool shared;
};

TEST(PixelBlock, EqualBytesAreOneBlockUntilTheLastHolderGoes) {
    auto lastDiffers = Pattern(3);
    lastDiffers.back() ^= 1;
    auto firstDiffers = Pattern(3);
    firstDiffers.front() ^= 0x80;
    const PairCase cases[] = {
        {"zeros", TilePixels{}, TilePixels{}, true},           {"same pattern", Pattern(3), Pattern(3), true},
        {"last byte differs", Pattern(3), lastDiffers, false}, {"first byte differs", Pattern(3), firstDiffers, false},
        {"other pattern", Pattern(3), Pattern(4), false},
    };
    for (const PairCase& c : cases) {
        SCOPED_TRACE(c.name);
        const std::size_t before = InternedPixelBlocks();
        {
            // Held beyond a, so the first block is alive when b is made.
            auto a = InternPixelBlock(c.a.data());
            auto b = InternPixelBlock(c.b.data());
            EXPECT_EQ(a == b, c.shared);
            EXPECT_TRUE(std::equal(a->begin(), a->end(), c.a.begin()));
            EXPECT_TRUE(std::equal(b->begin(), b->end(), c.b.begin()));
            EXPECT_LE(InternedPixelBlocks(), before + (c.shared ? 1 : 2));
        }
        EXPECT_EQ(InternedPixelBlocks(), before);
    }
}

TEST(PixelBlock, LoadedTwinTilesShareAndAnEditLeavesTheTwin) {
    const std::vector<TilePixels> tiles = {Pattern(1), Pattern(2), Pattern(1), Pattern(9)};
    ombrevale::testsupport::TempDir dir;
    const std::string path = dir.File("twins.sty");
    ombrevale::stylewriter::WriteFile(
        path, ombrevale::stylewriter::StyleBytes().Add("TILE", ombrevale::stylewriter::TilePayload(tiles)).bytes());
    clsSTY doc;
    ASSERT_TRUE(doc.LoadSTY(path));
    ASSERT_EQ(doc.STYTileStore.size(), 4u);
    EXPECT_EQ(doc.STYTileStore[0].Block(), doc.STYTileStore[2].Block());
    EXPECT_NE(doc.STYTileStore[0].Block(), doc.STYTileStore[1].Block());

    // Replacing tile 0 must not reach tile 2 through the block they shared.
    doc.STYTileStore[0] = Tile(Pattern(5));
    EXPECT_TRUE(std::equal(doc.STYTileStore[2].begin(), doc.STYTileStore[2].end(), tiles[2].begin()));
    EXPECT_TRUE(std::equal(doc.STYTileStore[0].begin(), doc.STYTileStore[0].end(), Pattern(5).begin()));
    EXPECT_EQ(Tile(), Tile(TilePixels{}));
}

}  // namespace
