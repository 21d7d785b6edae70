#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "style/clssty.h"

namespace {

modDeclares::CarRecord Car(std::uint8_t model, std::uint8_t sprite) {
    modDeclares::CarRecord c;
    c.model = model;
    c.sprite = sprite;
    return c;
}

struct ModelCase {
    std::int32_t model;
    std::int16_t expected;
};

class SpriteNumFromModelNum : public ::testing::TestWithParam<ModelCase> {
protected:
    void SetUp() override {
        // The sprite byte counts only when it is exactly 1; the first record
        // of a model decides.
        modDeclares::STYCarInfo = {Car(10, 1), Car(11, 0), Car(12, 1), Car(13, 2), Car(14, 1), Car(12, 1)};
    }
    void TearDown() override { modDeclares::ResetSharedStores(); }
};

TEST_P(SpriteNumFromModelNum, CountsEarlierRecordsWithTheirOwnSprite) {
    EXPECT_EQ(clsSTY{}.SpriteNumFromModelNum(GetParam().model), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Models, SpriteNumFromModelNum,
                         ::testing::Values(ModelCase{10, 0}, ModelCase{11, 1}, ModelCase{12, 1}, ModelCase{13, 2},
                                           ModelCase{14, 2}, ModelCase{99, 4}, ModelCase{-1, 4},
                                           ModelCase{10 + 256, 4}),
                         [](const auto& p) {
                             return "Model" + std::string(p.param.model < 0 ? "Minus" : "") +
                                    std::to_string(std::abs(p.param.model));
                         });

}  // namespace

// ResetSharedStores empties every store, and what TakeSharedStores took,
// RestoreSharedStores puts back.
TEST(SharedStores, RestoreGivesBackWhatWasTaken) {
    using namespace modDeclares;
    STYDeltaStore = {1};
    STYPalData.assign(1, Palette{});
    STYPalIndex = {2};
    STYDeltaIndex.resize(1);
    STYPalBase[7] = 3;
    STYSpriteBase[5] = 4;
    STYCarInfo = {Car(5, 1)};
    STYRecycle = {6, 255};
    STYFontBase = {1, {7}};
    const SharedStores taken = TakeSharedStores();
    ResetSharedStores();
    ASSERT_EQ(TakeSharedStores(), SharedStores{});
    RestoreSharedStores(taken);
    EXPECT_EQ(TakeSharedStores(), taken);
    ResetSharedStores();
}
