// The committed sample is exactly what the generator writes, and it is what it claims to be.
#include <gtest/gtest.h>

#include <algorithm>

#include "runprogram.h"
#include "style/clssty.h"
#include "stylewriter/stylewriter.h"
#include "support/tempdir.h"

namespace {

TEST(SampleStyle, RegeneratingGivesTheCommittedBytes) {
    testsupport::TempDir dir;
    const std::string fresh = dir.File("fresh.sty");
    const auto r = clitest::Run(OMBREVALE_MAKE_SAMPLE, {fresh});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto committed = ombrevale::stylewriter::ReadFile(clitest::kSample);
    const auto regenerated = ombrevale::stylewriter::ReadFile(fresh);
    ASSERT_EQ(regenerated.size(), committed.size());
    EXPECT_TRUE(regenerated == committed) << "samples/ombrevale-sample.sty is out of date: run make-sample-style";
}

TEST(SampleStyle, GeneratorWithoutOutputPathIsAUsageError) {
    const auto r = clitest::Run(OMBREVALE_MAKE_SAMPLE, {});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("usage:"), std::string::npos);
}

// What the window and the font pane rely on.
TEST(SampleStyle, HoldsEverySectionAFullTileSetAndTheFontGlyphs) {
    modDeclares::ResetSharedStores();
    clsSTY doc;
    ASSERT_TRUE(doc.LoadSTY(clitest::kSample));
    for (int i = 0; i < kSectionCount; ++i)
        EXPECT_TRUE(doc.IsPresent(static_cast<Section>(i))) << kSectionTags[static_cast<std::size_t>(i)];
    EXPECT_GE(doc.GetNumOfTiles(), 992);
    EXPECT_GE(doc.GetNumOfPals(), 128);
    EXPECT_GE(doc.GetNumOfSprx(), 1460);
    const auto& base = modDeclares::STYSpriteBase;
    EXPECT_EQ(base[0] + base[1] + base[2] + base[3] + base[4], 1366);
    EXPECT_GE(base[5], 94);
    int sum = 0;
    for (auto v : base) sum += v;
    EXPECT_EQ(sum, doc.GetNumOfSprx());
    // Every glyph of '!'..'~' is a real picture, and every sprite lies inside the sprite data.
    for (int code = 33; code <= 126; ++code) {
        const auto& r = doc.STYSpriteIndex[static_cast<std::size_t>(1366 + code - 33)];
        EXPECT_GT(r.width, 0);
        EXPECT_GT(r.height, 0);
    }
    // The font pane draws a space with the sprite before '!': a blank glyph.
    const ByteString space = doc.GetBits(1365);
    EXPECT_FALSE(space.empty());
    EXPECT_TRUE(std::all_of(space.begin(), space.end(), [](std::uint8_t b) { return b == 0; }));
    for (const auto& r : doc.STYSpriteIndex)
        EXPECT_LE(static_cast<std::size_t>(r.offset) + static_cast<std::size_t>((r.height - 1) * 256 + r.width),
                  doc.STYSpriteData.size());
    // Every picture's palette is a real one.
    for (auto p : modDeclares::STYPalIndex) EXPECT_LT(p, doc.GetNumOfPals());
    // Cars: every record has a sprite with deltas, and every delta's runs stay inside the sprite.
    ASSERT_FALSE(modDeclares::STYCarInfo.empty());
    std::size_t place = 0;
    for (const auto& e : modDeclares::STYDeltaIndex) {
        const auto& r = doc.STYSpriteIndex[static_cast<std::size_t>(e.sprite)];
        for (int d = 0; d < e.deltaCount; ++d) {
            const auto size = static_cast<std::size_t>(e.deltaSizes[static_cast<std::size_t>(d)]);
            std::size_t at = place, end = place + size;
            int pos = 0;
            while (at < end) {
                pos += modDeclares::STYDeltaStore[at] | modDeclares::STYDeltaStore[at + 1] << 8;
                const int n = modDeclares::STYDeltaStore[at + 2];
                EXPECT_LT(pos % 256 + n, r.width + 1);
                EXPECT_LT(pos / 256, r.height);
                pos += n;
                at += 3 + static_cast<std::size_t>(n);
            }
            EXPECT_EQ(at, end);
            place = end;
        }
    }
    EXPECT_EQ(place, modDeclares::STYDeltaStore.size());
    // The recycling list: ascending models, at most 64, closed by 255.
    const auto& recy = modDeclares::STYRecycle;
    ASSERT_GE(recy.size(), 2u);
    EXPECT_EQ(recy.back(), 255);
    EXPECT_LE(recy.size() - 1, 64u);
    for (std::size_t i = 1; i + 1 < recy.size(); ++i) EXPECT_LT(recy[i - 1], recy[i]);
}

}  // namespace
