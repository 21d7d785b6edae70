#include "style/palettebases.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "style/moddeclares.h"

namespace {

namespace pb = ombrevale::palettebases;

struct Lookup {
    const char* name;
    std::int16_t tiles, sprites;  // STYPalBase[0] and [1]
    std::optional<std::int16_t> (*find)(std::int64_t);
    std::int64_t number;
    std::optional<std::int16_t> palette;
};

class PaletteBases : public ::testing::TestWithParam<Lookup> {
protected:
    void TearDown() override { modDeclares::ResetSharedStores(); }
};

// Three tiles' entries, two sprites', two remaps': each names a palette of its own.
TEST_P(PaletteBases, EntryNamesItsPhysicalPalette) {
    const Lookup& c = GetParam();
    modDeclares::STYPalIndex = {10, 11, 12, 20, 21, 30, 31};
    modDeclares::STYPalBase = {c.tiles, c.sprites, 9, 9, 9, 9, 9, 9};
    EXPECT_EQ(c.find(c.number), c.palette);
}

constexpr auto kNone = std::nullopt;

INSTANTIATE_TEST_SUITE_P(Table, PaletteBases,
                         ::testing::Values(Lookup{"Tile", 3, 2, pb::TilePalette, 2, 12},
                                           Lookup{"TilePastTable", 3, 2, pb::TilePalette, 7, kNone},
                                           Lookup{"Sprite", 3, 2, pb::SpritePalette, 1, 21},
                                           Lookup{"SpritePastTable", 3, 2, pb::SpritePalette, 4, kNone},
                                           Lookup{"Remap", 3, 2, pb::RemapPalette, 0, 30},
                                           Lookup{"RemapLast", 3, 2, pb::RemapPalette, 1, 31},
                                           Lookup{"RemapPastTable", 3, 2, pb::RemapPalette, 2, kNone},
                                           Lookup{"RemapBeforeTable", 3, 2, pb::RemapPalette, -6, kNone},
                                           // A damaged PALB: counts below zero move the bases back.
                                           Lookup{"NegativeTileCount", -3, 2, pb::SpritePalette, 3, 10},
                                           Lookup{"NegativeTileCountBeforeTable", -3, 2, pb::SpritePalette, 0, kNone},
                                           Lookup{"NegativeSpriteCount", 3, -2, pb::RemapPalette, 0, 11},
                                           Lookup{"BasesPastTable", 32767, 32767, pb::RemapPalette, 0, kNone}),
                         [](const auto& p) { return std::string(p.param.name); });

}  // namespace
