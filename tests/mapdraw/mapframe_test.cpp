// The map drawn from above: the orientation rule of a lid, exact pixels of a
// tile at 64 pixels a block, a flat lid over the block below, and the hatching
// of a tile the style lacks.
#include <gtest/gtest.h>

#include <algorithm>

#include "map/gbmp.h"
#include "mapdraw/mapframe.h"
#include "mapdraw/tilepyramid.h"
#include "mapwriter/mapwriter.h"
#include "style/clssty.h"
#include "style/moddeclares.h"
#include "stylewriter/stylewriter.h"
#include "support/tempdir.h"

namespace {

using namespace ombrevale;

struct Turn {
    const char* name;
    bool flip;
    int turns;
    // Where the unturned tile's pixel lands of a 4 x 4 tile for each of
    // (0,0), (3,0), (0,3): the corners name the rule.
    int tl, tr, bl;  // source index (v * 4 + u) seen at the lid's top left, top right and bottom left
};

class Orientation : public ::testing::TestWithParam<Turn> {};

TEST_P(Orientation, FlipMirrorsThenTurnsClockwise) {
    const auto face = mapwriter::Lid(1, 0, false, GetParam().flip, GetParam().turns);
    const auto at = [&](int u, int v) {
        const auto p = mapdraw::SourcePixel(face, u, v, 4);
        return p.v * 4 + p.u;
    };
    EXPECT_EQ(at(0, 0), GetParam().tl);
    EXPECT_EQ(at(3, 0), GetParam().tr);
    EXPECT_EQ(at(0, 3), GetParam().bl);
}

// Source corners: top left 0, top right 3, bottom left 12, bottom right 15.
INSTANTIATE_TEST_SUITE_P(Lid, Orientation,
                         ::testing::Values(Turn{"Plain", false, 0, 0, 3, 12}, Turn{"Quarter", false, 1, 12, 0, 15},
                                           Turn{"Half", false, 2, 15, 12, 3}, Turn{"ThreeQuarters", false, 3, 3, 15, 0},
                                           Turn{"Flipped", true, 0, 3, 0, 15},
                                           Turn{"FlippedQuarter", true, 1, 15, 3, 12}),
                         [](const auto& row) { return std::string(row.param.name); });

class FrameTest : public ::testing::Test {
protected:
    void SetUp() override {
        modDeclares::ResetSharedStores();
        auto full = stylewriter::MakeFullStyle();
        tiles_ = full.tiles;
        palettes_ = full.palettes;
        const std::string path = dir_.File("style.sty");
        stylewriter::WriteFile(path, full.file.bytes());
        ASSERT_TRUE(doc_.LoadSTY(path));
    }
    void TearDown() override { modDeclares::ResetSharedStores(); }

    map::Map Read(const mapwriter::Grid& g) {
        auto read = map::ReadMap(mapwriter::MapBytes().Add("DMAP", mapwriter::DmapPayload(g)).bytes(), "t.gmp");
        return std::move(*read.map);
    }
    // Tile t's colour at (x, y) as the sheet draws it.
    std::uint32_t Sheet(int t, int x, int y) const {
        const int c = tiles_[static_cast<std::size_t>(t)][static_cast<std::size_t>(y * 64 + x)];
        const auto& p =
            modDeclares::STYPalData[static_cast<std::size_t>(modDeclares::STYPalIndex[static_cast<std::size_t>(t)])];
        return 0xFF000000u | std::uint32_t{p[static_cast<std::size_t>(c) * 4 + 2]} << 16 |
               std::uint32_t{p[static_cast<std::size_t>(c) * 4 + 1]} << 8 | p[static_cast<std::size_t>(c) * 4];
    }
    std::vector<std::uint32_t> Draw(const map::Map& m, double blockPx, int w, int h) {
        std::vector<std::uint32_t> px(static_cast<std::size_t>(w * h));
        mapdraw::TilePyramid tiles(doc_);
        mapdraw::MapFrame frame;
        frame.Draw(m, tiles, {blockPx, 0, 0}, {}, px.data(), w, h, w);
        missing_ = tiles.Missing();
        return px;
    }

    testsupport::TempDir dir_;
    clsSTY doc_;
    std::vector<stylewriter::TilePixels> tiles_;
    std::vector<stylewriter::PaletteBytes> palettes_;
    std::vector<int> missing_;
};

TEST_F(FrameTest, AtSixtyFourPixelsABlockALidIsItsTileTurned) {
    mapwriter::Grid g;
    // Tiles 1 and 2 of the full style have palettes in both pages.
    g.at(0, 0, 1).lid = mapwriter::Lid(1);
    g.at(1, 0, 2).lid = mapwriter::Lid(2, 0, false, false, 1);
    const auto px = Draw(Read(g), 64, 128, 64);
    int wrong = 0;
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) {
            wrong += px[static_cast<std::size_t>(y * 128 + x)] != Sheet(1, x, y);
            // A quarter turn clockwise: the tile's left column is the lid's top row.
            wrong += px[static_cast<std::size_t>(y * 128 + 64 + x)] != Sheet(2, y, 63 - x);
        }
    EXPECT_EQ(wrong, 0);
}

TEST_F(FrameTest, AFlatLidShowsTheBlockBelowThroughColourZeroOnly) {
    // A tile with colour 0 and other colours, of those with a palette; tile 0 is never drawn.
    int keyed = -1;
    for (const int t : {1, 2, 4}) {
        if (keyed >= 0) break;
        const auto& p = tiles_[static_cast<std::size_t>(t)];
        if (std::count(p.begin(), p.end(), 0) > 0 && std::count(p.begin(), p.end(), 0) < 4096) keyed = t;
    }
    ASSERT_GE(keyed, 0);
    const int below = keyed == 1 ? 2 : 1;
    mapwriter::Grid g;
    g.at(0, 0, 1).lid = mapwriter::Lid(below);
    g.at(0, 0, 2).lid = mapwriter::Lid(keyed, 0, true);
    const auto px = Draw(Read(g), 64, 64, 64);
    int wrong = 0;
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) {
            const bool key = tiles_[static_cast<std::size_t>(keyed)][static_cast<std::size_t>(y * 64 + x)] == 0;
            wrong += px[static_cast<std::size_t>(y * 64 + x)] != (key ? Sheet(below, x, y) : Sheet(keyed, x, y));
        }
    EXPECT_EQ(wrong, 0);
}

TEST_F(FrameTest, ATileTheStyleLacksIsHatchedAndNamed) {
    mapwriter::Grid g;
    g.at(0, 0, 1).lid = mapwriter::Lid(900);
    const auto px = Draw(Read(g), 16, 16, 16);
    EXPECT_EQ(missing_, std::vector<int>{900});
    EXPECT_EQ(px[0], mapdraw::HatchAt(0, 0, 16));
    EXPECT_NE(px[0], px[2]);
}

}  // namespace
