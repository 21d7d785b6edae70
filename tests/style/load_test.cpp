#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "style/clssty.h"
#include "stylefiletest.h"
#include "stylewriter/stylewriter.h"
#include "support/hookrecorder.h"
#include "support/storesnapshot.h"

using namespace ombrevale::testsupport;
using namespace ombrevale::stylewriter;
using namespace modDeclares;

namespace {

using LoadTest = StyleFileTest;

TEST_F(LoadTest, EveryStoreHoldsWhatTheFileSays) {
    const auto full = ombrevale::stylewriter::MakeFullStyle();
    HookRecorder hooks;
    ASSERT_TRUE(Load(full.file.bytes()));
    EXPECT_TRUE(hooks.messages().empty());

    EXPECT_EQ(doc.GetNumOfTiles(), 8);
    ASSERT_EQ(doc.STYTileStore.size(), 8u);
    for (std::size_t t = 0; t < 8; ++t)
        EXPECT_TRUE(std::equal(doc.STYTileStore[t].begin(), doc.STYTileStore[t].end(), full.tiles[t].begin())) << t;

    EXPECT_EQ(doc.GetNumOfPals(), 128);
    ASSERT_EQ(STYPalData.size(), 128u);
    for (std::size_t p = 0; p < 128; ++p)
        EXPECT_TRUE(std::equal(STYPalData[p].begin(), STYPalData[p].end(), full.palettes[p].begin())) << p;

    EXPECT_EQ(doc.GetNumOfPalx(), 5);
    EXPECT_EQ(STYPalIndex, (std::vector<std::int16_t>{0, 1, 127, -1, 64}));
    EXPECT_EQ(doc.GetNumOfSprx(), 2);
    EXPECT_EQ(doc.STYSpriteIndex, (std::vector<SpriteRecord>{{0, 4, 2, 0xBEEF}, {266, 30, 3, 1}}));
    ASSERT_EQ(doc.STYSpriteData.size(), 1024u);
    EXPECT_EQ(doc.STYSpriteData[3], 3 ^ 0x5A);

    EXPECT_EQ(STYSpriteBase, (std::array<std::int16_t, 6>{3, 2, 1, 1, 0, -2}));
    EXPECT_EQ(STYPalBase, (std::array<std::int16_t, 8>{8, 5, 3, 4, 5, 6, 7, -8}));
    EXPECT_EQ(STYFontBase, (FontBase{3, {10, 20, -1}}));

    ASSERT_EQ(STYDeltaIndex.size(), 3u);
    EXPECT_EQ(STYDeltaIndex[0], (DeltaEntry{2, 2, 0xA5, {3, 0}}));
    EXPECT_EQ(STYDeltaIndex[1], (DeltaEntry{5, 0, 0x11, {}}));
    EXPECT_EQ(STYDeltaIndex[2], (DeltaEntry{7, 1, 0, {4}}));
    EXPECT_EQ(doc.lDelxBytes, 18);
    EXPECT_EQ(STYDeltaStore, (ByteString{1, 0, 5, 9, 9, 0, 0, 0, 0xAA}));
    EXPECT_EQ(doc.lDelsBytes, 9);

    ASSERT_EQ(STYCarInfo.size(), 3u);
    EXPECT_EQ(STYCarInfo[0].model, 10);
    EXPECT_EQ(STYCarInfo[0].remaps, (std::vector<std::uint8_t>{40, 41, 42}));
    EXPECT_EQ(STYCarInfo[0].doors, (std::vector<std::uint16_t>{0x1234, 0xFFFF}));
    EXPECT_EQ(STYCarInfo[0].infoFlags2, 0x81);
    EXPECT_TRUE(STYCarInfo[1].remaps.empty());
    EXPECT_EQ(STYCarInfo[1].numDoors, 0);
    EXPECT_EQ(STYCarInfo[2].rearWindowOffset, 8);
    EXPECT_EQ(doc.lCariBytes, 22 + 15 + 16);

    EXPECT_EQ(doc.STYObjectInfo, (ByteString{1, 2, 3, 4}));
    EXPECT_EQ(STYRecycle, (std::vector<std::uint8_t>{7, 123, 255}));
    EXPECT_EQ(doc.STYSurfaceSpec, (ByteString{1, 0, 0, 0, 2, 0, 0, 0}));
    for (std::size_t s = 0; s < kSectionCount; ++s) EXPECT_TRUE(doc.Present[s]) << kSectionTags[s];
}

// One progress step per section at the bytes read so far, the tag included,
// with the tag's own letters.
TEST_F(LoadTest, ReportsProgressOncePerSectionWithTheFilesLetters) {
    const Bytes file = StyleBytes().Add("tile", Bytes(16384, 1)).Add("Zq9!", Bytes(10, 0)).Add("OBJI", {5}).bytes();
    HookRecorder hooks;
    ASSERT_TRUE(Load(file));
    const std::size_t second = 6 + 8 + 16384;
    const std::vector<std::string> expected = {
        "start 1 " + std::to_string(file.size()) + " Loading...",
        "step 10 Loading Section tile...",
        "step " + std::to_string(second + 4) + " Loading Section Zq9!...",
        "step " + std::to_string(second + 18 + 4) + " Loading Section OBJI...",
        "end",
    };
    EXPECT_EQ(hooks.calls(), expected);
    EXPECT_EQ(doc.STYObjectInfo, ByteString{5});
}

struct MagicCase {
    const char* name;
    Bytes bytes;
};

class WrongMagic : public LoadTest, public ::testing::WithParamInterface<MagicCase> {};

TEST_P(WrongMagic, IsRefusedWithTheInvalidFileMessageAndStoresStayAsTheyWere) {
    ASSERT_TRUE(Load(ombrevale::stylewriter::MakeFullStyle().file.bytes(), "first.sty"));
    const StoreSnapshot before = TakeSnapshot(doc);
    HookRecorder hooks;
    EXPECT_FALSE(Load(GetParam().bytes));
    EXPECT_EQ(hooks.calls(),
              (std::vector<std::string>{"start 1 " + std::to_string(GetParam().bytes.size()) + " Loading...",
                                        "msg ERROR|ERROR Invalid File|exclamation"}));
    EXPECT_EQ(TakeSnapshot(doc), before);
}

INSTANTIATE_TEST_SUITE_P(Magic, WrongMagic,
                         ::testing::Values(MagicCase{"LowerCase", StyleBytes("gbst").Add("OBJI", {9}).bytes()},
                                           MagicCase{"Empty", {}}, MagicCase{"ThreeBytes", Text("GBS")},
                                           MagicCase{"SectionTagFirst", Cat({Text("OBJI"), LE32(1), {9}})}),
                         [](const auto& p) { return std::string(p.param.name); });

// Counts are the size over the record length, rounded to the nearest whole
// number with ties going to the even one; exactly that many records are read.
struct RoundingCase {
    const char* tag;
    std::int32_t size;
    int unit;
    std::int16_t expected;
};

class Rounding : public LoadTest, public ::testing::WithParamInterface<RoundingCase> {};

TEST_P(Rounding, CountsAreRoundedHalfToEven) {
    const auto& c = GetParam();
    Bytes payload(static_cast<std::size_t>(c.expected * c.unit));
    for (std::size_t i = 0; i < payload.size(); ++i) payload[i] = static_cast<std::uint8_t>(i + 1);
    const Bytes file = StyleBytes().AddWithSize(c.tag, c.size, payload).Add("OBJI", {42}).bytes();
    ASSERT_TRUE(Load(file));
    const bool sprites = std::string(c.tag) == "SPRX";
    EXPECT_EQ(sprites ? doc.GetNumOfSprx() : doc.GetNumOfPalx(), c.expected);
    EXPECT_EQ(sprites ? doc.STYSpriteIndex.size() : STYPalIndex.size(), static_cast<std::size_t>(c.expected));
    // The next head follows the records actually read.
    EXPECT_EQ(doc.STYObjectInfo, ByteString{42});
}

INSTANTIATE_TEST_SUITE_P(Counts, Rounding,
                         ::testing::Values(RoundingCase{"SPRX", 12, 8, 2}, RoundingCase{"SPRX", 20, 8, 2},
                                           RoundingCase{"SPRX", 28, 8, 4}, RoundingCase{"SPRX", 4, 8, 0},
                                           RoundingCase{"PALX", 3, 2, 2}, RoundingCase{"PALX", 5, 2, 2}),
                         [](const auto& p) { return std::string(p.param.tag) + "_" + std::to_string(p.param.size); });

TEST_F(LoadTest, SecondLoadReplacesOnlyTheStoresItsFileHolds) {
    ASSERT_TRUE(Load(ombrevale::stylewriter::MakeFullStyle().file.bytes(), "first.sty"));
    const Bytes second = StyleBytes()
                             .Add("DELX", Cat({LE16(9), {1, 0}, LE16(2)}))
                             .Add("CARI", {99, 1, 8, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0})
                             .Add("RECY", {255})
                             .bytes();
    ASSERT_TRUE(Load(second, "second.sty"));
    EXPECT_EQ(STYDeltaIndex, (std::vector<DeltaEntry>{{9, 1, 0, {2}}}));
    ASSERT_EQ(STYCarInfo.size(), 1u);
    EXPECT_EQ(STYCarInfo[0].model, 99);
    EXPECT_EQ(STYRecycle, std::vector<std::uint8_t>{255});
    EXPECT_EQ(doc.STYObjectInfo, (ByteString{1, 2, 3, 4}));
    EXPECT_TRUE(doc.IsPresent(Section::OBJI));
    EXPECT_EQ(doc.GetNumOfTiles(), 8);
}

}  // namespace
