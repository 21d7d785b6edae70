#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pixels/paletteusage.h"
#include "style/moddeclares.h"

namespace {

using namespace ombrevale::paletteusage;
using namespace modDeclares;

CarRecord Car(std::uint8_t sprite, std::vector<std::uint8_t> remaps) {
    CarRecord c;
    c.sprite = sprite;
    c.remaps = std::move(remaps);
    return c;
}

struct RecordCase {
    int sprite;
    int record;
};

class PaletteUsageTest : public ::testing::TestWithParam<RecordCase> {
protected:
    // 4 tiles, 3 sprites (2 cars); the sprites' entries start at 4, the remaps' at 7.
    // Record 1 shares record 0's sprite, record 2 shows sprite 1, record 3 has a sprite byte of 2.
    void SetUp() override {
        STYPalBase = {4, 3, 4, 0, 0, 0, 0, 0};
        STYSpriteBase = {2, 1, 0, 0, 0, 0};
        STYPalIndex = {5, 6, 5, 7, /* sprites */ 6, 5, 5, /* remaps */ 9, 5, 6, 5};
        STYCarInfo = {Car(1, {1, 3}), Car(0, {0}), Car(1, {2, 0, 3}), Car(2, {1})};
    }
    void TearDown() override { ResetSharedStores(); }
};

// Remaps 1 and 3 are palette 5; record 1's remap is not the pane's, and record 3 shows no car sprite.
TEST_F(PaletteUsageTest, TilesSpritesAndRemapsThatResolveToIt) {
    const Usage u = UsesOfPalette(5, 4, 3);
    EXPECT_EQ(u.tiles, (std::vector<int>{0, 2}));
    EXPECT_EQ(UsesOfPalette(6, 4, 3).tiles, (std::vector<int>{1}));  // the first sprite's entry is no tile's
    EXPECT_EQ(u.sprites, (std::vector<int>{1, 2}));
    EXPECT_EQ(u.remaps, (std::vector<RemapUse>{{0, 0, 1}, {0, 1, 3}, {1, 2, 3}}));
    STYPalIndex.resize(9);  // the table ends before remap 3's entry
    EXPECT_EQ(UsesOfPalette(5, 4, 3).remaps, (std::vector<RemapUse>{{0, 0, 1}}));
}

TEST_P(PaletteUsageTest, CarRecordOfSpriteIsTheFirstToReachIt) {
    EXPECT_EQ(CarRecordOfSprite(GetParam().sprite), GetParam().record);
}

INSTANTIATE_TEST_SUITE_P(Sprites, PaletteUsageTest,
                         ::testing::Values(RecordCase{0, 0}, RecordCase{1, 2}, RecordCase{2, -1}, RecordCase{3, 3},
                                           RecordCase{4, -1}, RecordCase{-1, -1}));

}  // namespace
