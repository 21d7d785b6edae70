#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pixels/paletteusage.h"
#include "style/moddeclares.h"

namespace {

using namespace ombrevale::paletteusage;
using namespace modDeclares;

modDeclares::CarRecord Car(std::uint8_t sprite, std::vector<std::uint8_t> remaps) {
    modDeclares::CarRecord c;
    c.sprite = sprite;
    c.remaps = std::move(remaps);
    c.numRemaps = static_cast<std::uint8_t>(c.remaps.size());
    return c;
}

class PaletteUsageTest : public ::testing::Test {
protected:
    // 4 tiles, 3 sprites (2 cars), remaps 0 to 3; the sprites' entries start at 4, the remaps' at 7.
    void SetUp() override {
        STYPalBase = {4, 3, 4, 0, 0, 0, 0, 0};
        STYSpriteBase = {2, 1, 0, 0, 0, 0};
        //            tiles         sprites    remaps 0..3
        STYPalIndex = {5, 6, 5, 7, 6, 5, 5, 9, 5, 6, 5};
        // Record 1 shares record 0's sprite; record 2 shows sprite 1.
        STYCarInfo = {Car(1, {1, 3}), Car(0, {0}), Car(1, {2, 0, 3})};
    }
    void TearDown() override { ResetSharedStores(); }
};

TEST_F(PaletteUsageTest, TilesSpritesAndRemapsThatResolveToIt) {
    const Usage u = UsesOfPalette(5, 4, 3);
    EXPECT_EQ(u.tiles, (std::vector<int>{0, 2}));
    EXPECT_EQ(u.sprites, (std::vector<int>{1, 2}));
    // Remap 1 (entry 8) and remap 3 (entry 10) are palette 5; record 1's remap 0 is not the pane's.
    EXPECT_EQ(u.remaps, (std::vector<RemapUse>{{0, 0, 1}, {0, 1, 3}, {1, 2, 3}}));
}

TEST_F(PaletteUsageTest, TableEndsBeforeARemapsEntry) {
    STYPalIndex.resize(9);
    const Usage u = UsesOfPalette(5, 4, 3);
    EXPECT_EQ(u.remaps, (std::vector<RemapUse>{{0, 0, 1}}));
}

struct RecordCase {
    int sprite;
    int record;
};
class CarRecordOfSpriteTest : public ::testing::TestWithParam<RecordCase> {
protected:
    void SetUp() override { STYCarInfo = {Car(1, {}), Car(0, {}), Car(2, {}), Car(1, {})}; }
    void TearDown() override { ResetSharedStores(); }
};

TEST_P(CarRecordOfSpriteTest, FirstRecordReachingIt) {
    EXPECT_EQ(CarRecordOfSprite(GetParam().sprite), GetParam().record);
}

INSTANTIATE_TEST_SUITE_P(Sprites, CarRecordOfSpriteTest,
                         ::testing::Values(RecordCase{0, 0}, RecordCase{1, -1}, RecordCase{2, 2}, RecordCase{3, 3},
                                           RecordCase{4, -1}, RecordCase{-1, -1}),
                         [](const auto& p) {
                             return "Sprite" +
                                    std::string(p.param.sprite < 0 ? "Minus1" : std::to_string(p.param.sprite));
                         });

}  // namespace
