#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "style/spritesearch.h"

namespace {

using ombrevale::spritesearch::FindSprite;

struct SearchCase {
    std::string name;
    std::string text;
    std::optional<int> sprite;
};

class FindSpriteTest : public ::testing::TestWithParam<SearchCase> {};

// 3 cars, 2 peds, 1 code object, 0 map objects, 2 user, 4 font: 12 sprites.
TEST_P(FindSpriteTest, NamesTheListRow) {
    EXPECT_EQ(FindSprite(GetParam().text, {3, 2, 1, 0, 2, 4}), GetParam().sprite);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, FindSpriteTest,
    ::testing::Values(SearchCase{"FirstCar", "car 1", 0}, SearchCase{"LastCar", "car 3", 2},
                      SearchCase{"CarBeyondItsGroup", "car 4", std::nullopt}, SearchCase{"Ped", "ped 2", 4},
                      SearchCase{"CaptionAsListed", "  Ped:  1 ", 3}, SearchCase{"CodeShort", "CODE 1", 5},
                      SearchCase{"EmptyGroup", "map 1", std::nullopt}, SearchCase{"AfterAnEmptyGroup", "user 2", 7},
                      SearchCase{"Font", "font 4", 11}, SearchCase{"SpriteNumber", "11", 11},
                      SearchCase{"SpriteNumberBeyond", "12", std::nullopt},
                      SearchCase{"UnknownGroup", "bus 1", std::nullopt}),
    [](const auto& p) { return p.param.name; });

}  // namespace
