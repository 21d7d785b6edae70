#include <gtest/gtest.h>

#include <random>

#include "scene.h"
#include "style/bytecursor.h"

namespace ombrevale::pixeltest {
namespace {

using modDeclares::DeltaEntry;
using modDeclares::STYDeltaIndex;
using modDeclares::STYDeltaStore;

const ByteString kSprite5Delta = {0, 0, 1, 0x77};
const ByteString kTwoRuns = {5, 0, 2, 0xAA, 0xBB, 1, 0, 1, 0xCC};
// Position 259 (column 3, row 1), then column 30 of row 2 for four pixels.
const ByteString kFarRuns = {0x03, 0x01, 4, 0x11, 0x12, 0x13, 0x14, 0x17, 0x01, 4, 0x21, 0x22, 0x23, 0x24};

class Deltas : public Scene {
protected:
    void SetUp() override {
        Scene::SetUp();
        // Sprite 5 first, so sprite 0's deltas start behind its bytes; a
        // second entry for sprite 0 must never be found.
        STYDeltaIndex = {DeltaEntry{5, 1, 0, {4}}, DeltaEntry{0, 3, 0, {9, 0, 14}}, DeltaEntry{0, 1, 0, {2}},
                         DeltaEntry{4, 1, 0, {3}}};
        for (const auto* d : {&kSprite5Delta, &kTwoRuns, &kFarRuns})
            STYDeltaStore.insert(STYDeltaStore.end(), d->begin(), d->end());
        STYDeltaStore.insert(STYDeltaStore.end(), {9, 9, 0, 0, 0});
    }
};

TEST_F(Deltas, FindsEachDeltaBySumsOfSizes) {
    EXPECT_EQ(doc.GetDeltaString(0, 5), kSprite5Delta);
    EXPECT_EQ(doc.GetDeltaString(0, 0), kTwoRuns);
    EXPECT_TRUE(doc.GetDeltaString(1, 0).empty());
    EXPECT_EQ(doc.GetDeltaString(2, 0), kFarRuns);
    EXPECT_TRUE(doc.GetDeltaString(3, 0).empty()) << "deltaNumber equal to deltaCount";
    EXPECT_TRUE(doc.GetDeltaString(-1, 0).empty());
    EXPECT_TRUE(doc.GetDeltaString(0, 6).empty()) << "no entry";
    EXPECT_EQ(doc.GetDeltaString(0, 4), (ByteString{0, 0, 0}));
}

TEST_F(Deltas, RenderDeltaDrawsRunsInRowsOf256) {
    TestPicture pic;
    doc.RenderDelta(0, 0, pic, 2);
    const std::map<std::pair<int, int>, std::int32_t> two = {
        {{5, 0}, ExpectedColour(2, 0xAA)}, {{6, 0}, ExpectedColour(2, 0xBB)}, {{8, 0}, ExpectedColour(2, 0xCC)}};
    EXPECT_EQ(pic.set, two);

    pic.set.clear();
    doc.RenderDelta(2, 0, pic, 1);
    std::map<std::pair<int, int>, std::int32_t> far;
    for (int i = 0; i < 4; ++i) {
        far[{3 + i, 1}] = ExpectedColour(1, static_cast<std::size_t>(0x11 + i));
        far[{30 + i, 2}] = ExpectedColour(1, static_cast<std::size_t>(0x21 + i));  // past the sprite's edge, one row
    }
    EXPECT_EQ(pic.set, far);
    EXPECT_TRUE(hooks.messages().empty());

    pic.set.clear();
    doc.RenderDelta(0, 0, pic, kPaletteCount);
    EXPECT_TRUE(pic.set.empty());
    EXPECT_EQ(hooks.messages().size(), 1u) << "a palette the style lacks is named";
}

// Position 259 of a 32-wide sprite is row 1, column 3; the saved picture shows
// it one column right, bottom row first.
TEST_F(Deltas, SaveDeltaLaysTheDeltaOneColumnRight) {
    std::int16_t pal = -1;
    ASSERT_TRUE(doc.SaveDelta(File("d.bmp"), 2, 0, pal));
    EXPECT_EQ(pal, SpriteOwnPalette(0));
    const Bytes f = ombrevale::stylewriter::ReadFile(File("d.bmp"));
    EXPECT_EQ(f[1078 + 8 * 32 + 4], 0x11);
    EXPECT_EQ(f[1078 + 8 * 32 + 3], SpriteByte(256 + 3));
    EXPECT_EQ(f[1078 + 7 * 32 + 31], 0x21);
}

// Changes at row 0 column 5, row 0 column 31 and row 1 column 0 of a 32-wide
// sprite: three runs of one pixel each, at distances 4, 25 and 224.
TEST_F(Deltas, SetDeltaBitsRebuildsTheStoreAndLaterDeltasStillRead) {
    ByteString bits = doc.GetBits(0);
    const std::size_t W = 32;
    auto cell = [&](std::size_t r, std::size_t c) -> std::uint8_t& { return bits[(9 - r) * W + c]; };
    cell(0, 5) = 0xF0;
    cell(0, 31) = 0xF1;
    cell(1, 0) = 0xF2;
    const ByteString expected = {4, 0, 1, 0xF0, 25, 0, 1, 0xF1, 224, 0, 1, 0xF2};
    const std::size_t before = STYDeltaStore.size();
    const ByteString image = bits;

    ASSERT_TRUE(doc.SetDeltaBits(1, 0, bits));
    EXPECT_EQ(doc.GetDeltaString(1, 0), expected);
    EXPECT_EQ(STYDeltaIndex[1].deltaSizes,
              (std::vector<std::int16_t>{9, static_cast<std::int16_t>(expected.size()), 14}));
    EXPECT_EQ(STYDeltaStore.size(), before + expected.size());
    EXPECT_EQ(doc.GetDeltaString(0, 0), kTwoRuns);
    EXPECT_EQ(doc.GetDeltaString(2, 0), kFarRuns);
    EXPECT_EQ(doc.GetDeltaString(0, 4), (ByteString{0, 0, 0}));
    EXPECT_EQ(bits, [&] {  // the caller's string now holds the image top row first
        ByteString top;
        for (std::size_t r = 0; r < 10; ++r)
            top.insert(top.end(), image.begin() + static_cast<long>((9 - r) * W),
                       image.begin() + static_cast<long>((10 - r) * W));
        return top;
    }());

    ByteString same = doc.GetBits(0);
    ASSERT_TRUE(doc.SetDeltaBits(2, 0, same));
    EXPECT_TRUE(doc.GetDeltaString(2, 0).empty());
    EXPECT_EQ(doc.GetDeltaString(0, 4), (ByteString{0, 0, 0}));
}

TEST_F(Deltas, SaveAfterSetDeltaBitsWritesTheNewDelsSizeAndTheOldDelx) {
    doc.Present[static_cast<std::size_t>(Section::DELX)] = true;
    doc.Present[static_cast<std::size_t>(Section::DELS)] = true;
    doc.lDelxBytes = 4 + 2 + 4 + 6 + 4 + 2 + 4 + 2;
    ByteString bits = doc.GetBits(0);
    bits[9 * 32 + 3] ^= 0xFF;
    bits[9 * 32 + 4] ^= 0xFF;
    bits[9 * 32 + 5] ^= 0xFF;
    ASSERT_TRUE(doc.SetDeltaBits(1, 0, bits));
    ASSERT_TRUE(doc.SaveSTY(File("out.sty")));
    const Bytes f = ombrevale::stylewriter::ReadFile(File("out.sty"));
    ByteCursor in(f);
    in.Skip(6);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(in.Take(4).data()), 4), "DELX");
    EXPECT_EQ(in.I32(), doc.lDelxBytes);
    in.Skip(static_cast<std::size_t>(doc.lDelxBytes));
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(in.Take(4).data()), 4), "DELS");
    EXPECT_EQ(in.I32(), static_cast<std::int32_t>(4 + 9 + 6 + 14 + 5));
}

// Whatever changes (outside column 0, which the format cannot place), the
// saved delta shows the image.
TEST_F(Deltas, SavedDeltaShowsTheChangedImage) {
    std::mt19937 rng(7);
    for (const std::int16_t s : std::initializer_list<std::int16_t>{0, 4, 7}) {
        STYDeltaIndex.push_back(DeltaEntry{s, 1, 0, {0}});
        const std::size_t W = (kSprites[s].width + 3u) / 4u * 4u;
        for (int round = 0; round < 20; ++round) {
            ByteString bits = doc.GetBits(s);
            for (int k = 0; k < 12; ++k) {
                const std::size_t at = rng() % bits.size();
                if (at % W != 0 || W == 256) bits[at] = static_cast<std::uint8_t>(rng());
            }
            bits[bits.size() - W] = doc.GetBits(s)[bits.size() - W];  // top-left cell: position 0
            const ByteString image = bits;
            ASSERT_TRUE(doc.SetDeltaBits(0, s, bits));
            std::int16_t pal = -1;
            ASSERT_TRUE(doc.SaveDelta(File("d.bmp"), 0, s, pal));
            const Bytes f = ombrevale::stylewriter::ReadFile(File("d.bmp"));
            ASSERT_EQ(Bytes(f.begin() + 1078, f.end()), image) << "sprite " << s << " round " << round;
        }
    }
}

TEST_F(Deltas, OversizedRunIsRefusedAndNothingChanges) {
    STYDeltaIndex.push_back(DeltaEntry{7, 1, 0, {0}});
    ByteString bits = doc.GetBits(7);
    for (std::size_t x = 1; x < 256; ++x) bits[2 * 256 + x] ^= 0xFF;  // 255 pixels in a row
    const auto store = STYDeltaStore;
    const ByteString given = bits;
    EXPECT_FALSE(doc.SetDeltaBits(0, 7, bits));
    EXPECT_EQ(STYDeltaStore, store);
    EXPECT_EQ(bits, given);
    EXPECT_EQ(hooks.messages().size(), 1u);
}

// Runs that claim more pixels than their delta holds, or step backwards.
TEST_F(Deltas, HostileRunsStayInsideThePictureAndTheBlock) {
    STYDeltaStore = {0xFF, 0xFF, 200, 1, 2, 0x10, 0x00, 250, 3};
    STYDeltaIndex = {DeltaEntry{0, 2, 0, {5, 4}}, DeltaEntry{1, 1, 0, {900}}};
    TestPicture pic;
    doc.RenderDelta(0, 0, pic, 0);
    EXPECT_TRUE(pic.set.empty()) << "a run before the sprite's start is not drawn";
    doc.RenderDelta(1, 0, pic, 0);
    EXPECT_EQ(pic.set.size(), 1u);
    std::int16_t pal = -1;
    EXPECT_TRUE(doc.SaveDelta(File("d.bmp"), 1, 0, pal));
    EXPECT_TRUE(doc.SaveDelta(File("d.bmp"), 0, 1, pal));
    EXPECT_TRUE(doc.GetDeltaString(0, 1).empty());
}

}  // namespace
}  // namespace ombrevale::pixeltest
