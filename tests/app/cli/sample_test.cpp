// The committed sample is exactly what the generator writes, and it holds what
// the window and the font pane rely on.
#include <gtest/gtest.h>

#include <algorithm>

#include "cliprocess.h"
#include "map/gbmp.h"
#include "pixels/deltaruns.h"
#include "style/clssty.h"
#include "style/surfaces.h"
#include "stylewriter/stylewriter.h"

namespace {

namespace sw = ombrevale::stylewriter;
using namespace ombrevale::clitest;

TEST(SampleStyle, RegeneratingGivesTheCommittedBytes) {
    ombrevale::testsupport::TempDir dir;
    ASSERT_EQ(ombrevale::clitest::Run(OMBREVALE_MAKE_SAMPLE, {dir.File("fresh.sty")}).exitCode, 0);
    EXPECT_TRUE(sw::ReadFile(dir.File("fresh.sty")) == sw::ReadFile(kSample))
        << "samples/ombrevale-sample.sty is out of date: run make-sample-style";
    EXPECT_EQ(ombrevale::clitest::Run(OMBREVALE_MAKE_SAMPLE, {}).exitCode, 2);
}

TEST(SampleStyle, HoldsTheFontGlyphsAndDeltasInsideTheirCars) {
    modDeclares::ResetSharedStores();
    clsSTY doc;
    ASSERT_TRUE(doc.LoadSTY(kSample));
    const auto& base = modDeclares::STYSpriteBase;
    EXPECT_EQ(base[0] + base[1] + base[2] + base[3] + base[4], 1366) << "the first glyph is sprite 1366";
    for (int s = 1366; s < 1366 + 94; ++s) EXPECT_GT(doc.GetSpriteWidth(s) * doc.GetSpriteHeight(s), 0) << s;
    // The font pane draws a space with the sprite before '!': a blank glyph.
    const ByteString space = doc.GetBits(1365);
    EXPECT_FALSE(space.empty());
    EXPECT_TRUE(std::all_of(space.begin(), space.end(), [](std::uint8_t b) { return b == 0; }));
    // Every delta's runs stay inside its sprite.
    ASSERT_FALSE(modDeclares::STYCarInfo.empty());
    for (const auto& e : modDeclares::STYDeltaIndex)
        for (std::int16_t d = 0; d < e.deltaCount; ++d) {
            ombrevale::deltaruns::Place place;
            ASSERT_TRUE(ombrevale::deltaruns::Find(d, e.sprite, place));
            const auto bytes = std::span(modDeclares::STYDeltaStore).subspan(place.start, place.length);
            ombrevale::deltaruns::ForEachRun(bytes, [&](std::int64_t P, auto pixels) {
                EXPECT_LE(P % 256 + static_cast<std::int64_t>(pixels.size()), doc.GetSpriteWidth(e.sprite));
                EXPECT_LT(P / 256, doc.GetSpriteHeight(e.sprite));
            });
        }
}

}  // namespace

namespace {

// The sample map is what its generator writes, and it is drawn with the
// sample style's own art: roads on road tiles, water on water, every face a
// tile the style has.
TEST(SampleMap, RegeneratingGivesTheCommittedBytesAndItsTilesSuitTheirBlocks) {
    ombrevale::testsupport::TempDir dir;
    ASSERT_EQ(ombrevale::clitest::Run(OMBREVALE_MAKE_SAMPLE_MAP, {dir.File("fresh.gmp")}).exitCode, 0);
    EXPECT_TRUE(sw::ReadFile(dir.File("fresh.gmp")) == sw::ReadFile(OMBREVALE_SAMPLE_MAP))
        << "samples/ombrevale-sample.gmp is out of date: run make-sample-map";

    modDeclares::ResetSharedStores();
    clsSTY doc;
    ASSERT_TRUE(doc.LoadSTY(kSample));
    const auto surfaces = ombrevale::surfaces::ReadSurfaces(doc.STYSurfaceSpec, doc.GetNumOfTiles()).type;
    const auto read = ombrevale::map::LoadMap(OMBREVALE_SAMPLE_MAP);
    ASSERT_TRUE(read.map) << read.error;
    const auto& m = *read.map;
    int roads = 0, water = 0, faces = 0, unfit = 0;
    for (int z = 0; z < ombrevale::map::kLevels; ++z)
        for (int y = 0; y < ombrevale::map::kSide; ++y)
            for (int x = 0; x < ombrevale::map::kSide; ++x) {
                const auto& b = m.At(x, y, z);
                const int lid = ombrevale::map::TileOf(b.lid);
                if (b.HasDrawnLid() && b.GroundType() == 1 && b.SlopeShape() == 0) {
                    ++roads;
                    unfit += surfaces[static_cast<std::size_t>(lid)] != 3;
                }
                if (z == 0 && b.HasDrawnLid()) {
                    ++water;
                    unfit += surfaces[static_cast<std::size_t>(lid)] != 4;
                }
                for (const auto face : {b.left, b.right, b.top, b.bottom, b.lid}) {
                    const int t = ombrevale::map::TileOf(face);
                    if (t == 0 || t == ombrevale::map::kNoLid) continue;
                    ++faces;
                    unfit += t >= doc.GetNumOfTiles();
                }
            }
    EXPECT_GT(roads, 1000);
    EXPECT_GT(water, 50000);
    EXPECT_GT(faces, roads + water);
    EXPECT_EQ(unfit, 0);
    EXPECT_FALSE(m.zones.empty() || m.lights.empty() || m.animations.empty());
    modDeclares::ResetSharedStores();
}

}  // namespace
