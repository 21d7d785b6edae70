// A palette of a picture's own: it goes where nothing else draws, and every
// other tile, sprite and table entry draws exactly as before.
#include <functional>

#include "pixels/ownpalette.h"
#include "pixels/pictureimport.h"
#include "scene.h"
#include "support/storesnapshot.h"

namespace ombrevale::pixeltest {
namespace {

using namespace modDeclares;
using ownpalette::Target;
using ownpalette::TargetKind;

constexpr auto kMost = ownpalette::kMostPalettes;

// Palette 2 is named by tile 1 and sprites 2, 5 and 8 (entries 6, 9 and 12).
void Tile1Alone(clsSTY&) {
    for (const std::size_t e : {6u, 9u, 12u}) STYPalIndex[e] = 0;
}

// Palettes up to count, each a copy of palette 0 (0: never written).
void Palettes(clsSTY& doc, std::int32_t count, bool written) {
    const Palette fill = written ? STYPalData[0] : Palette{};
    STYPalData.resize(static_cast<std::size_t>(count), fill);
    doc.iPalCount = static_cast<std::int16_t>(count);
}

struct Case {
    const char* name;
    Target target;
    std::function<void(clsSTY&)> setUp;
    std::int16_t palette;
    bool inPlace;
    std::int16_t count;
};

class OwnPalette : public Scene, public ::testing::WithParamInterface<Case> {};

// The colours each PALX entry stands for, and each picture's numbers.
struct Drawn {
    std::vector<Palette> byEntry;
    std::vector<ByteString> pictures;
};

Drawn Draw(const clsSTY& doc) {
    Drawn d;
    for (const std::int16_t p : STYPalIndex) d.byEntry.push_back(STYPalData.at(static_cast<std::size_t>(p)));
    for (std::int32_t t = 0; t < doc.GetNumOfTiles(); ++t) d.pictures.push_back(pictureimport::TileNumbers(doc, t));
    for (std::int32_t s = 0; s < doc.GetNumOfSprx(); ++s)
        d.pictures.push_back(pictureimport::SpriteNumbers(doc, s, -1));
    return d;
}

TEST_P(OwnPalette, TakesAPaletteNothingElseDrawsIn) {
    const Case& c = GetParam();
    c.setUp(doc);
    const bool tile = c.target.kind == TargetKind::Tile;
    // The sprites' entries follow the tiles', as Draw lists the pictures.
    const std::size_t entry = static_cast<std::size_t>(tile ? c.target.number : kTileCount + c.target.number);
    const std::size_t picture = entry;
    const Palette from = STYPalData.at(static_cast<std::size_t>(STYPalIndex[entry]));
    ownpalette::Reduced reduced;
    const auto& sprite = kSprites[tile ? 0 : c.target.number];
    const std::size_t pixels = tile ? kTileBytes : std::size_t{sprite.width} * sprite.height;
    for (std::size_t i = 0; i < pixels; ++i) reduced.numbers.push_back(static_cast<std::uint8_t>(i * 7 % 256));
    for (int n = 1; n <= 255; ++n)
        reduced.colours.push_back(
            {static_cast<std::uint8_t>(n), static_cast<std::uint8_t>(255 - n), static_cast<std::uint8_t>(n * 3), 255});
    const Drawn before = Draw(doc);

    const ownpalette::Plan plan = ownpalette::PlanFor(doc, c.target);
    ASSERT_TRUE(plan.place) << plan.refusal;
    EXPECT_EQ(plan.place->palette, c.palette);
    EXPECT_EQ(plan.place->inPlace, c.inPlace);
    ASSERT_FALSE(ownpalette::Apply(doc, c.target, *plan.place, reduced));
    EXPECT_EQ(doc.GetNumOfPals(), c.count);
    EXPECT_EQ(STYPalData.size(), static_cast<std::size_t>(c.count));
    ASSERT_EQ(STYPalIndex[entry], c.palette);

    const Drawn after = Draw(doc);
    EXPECT_EQ(after.pictures[picture], reduced.numbers);
    const Palette& own = STYPalData[static_cast<std::size_t>(c.palette)];
    // Colour 0 stays the transparent colour the target had, fourth byte and all.
    EXPECT_TRUE(std::equal(own.begin(), own.begin() + 4, from.begin()));
    for (int n = 1; n <= 255; ++n)
        EXPECT_EQ(doc.GetCol(c.palette, n), reduced.colours[static_cast<std::size_t>(n - 1)].r +
                                                reduced.colours[static_cast<std::size_t>(n - 1)].g * 256 +
                                                reduced.colours[static_cast<std::size_t>(n - 1)].b * 65536);
    for (std::size_t e = 0; e < before.byEntry.size(); ++e) {
        if (e == entry) continue;
        EXPECT_EQ(after.byEntry[e], before.byEntry[e]) << "entry " << e;
    }
    for (std::size_t p = 0; p < before.pictures.size(); ++p) {
        if (p == picture) continue;
        EXPECT_EQ(after.pictures[p], before.pictures[p]) << "picture " << p;
    }
    EXPECT_TRUE(hooks.messages().empty());
}

void Nothing(clsSTY&) {}
// Palette 3 is named by nothing but holds colours: only one never written counts as free.
void FreePaletteUnwritten(clsSTY& d) {
    Palettes(d, 64, false);
    STYPalData[3][9] = 1;
}
// An entry past the sprites' (a remap's) draws in palette 2 too.
void RemapSharesPalette2(clsSTY& d) {
    Tile1Alone(d);
    STYPalIndex.push_back(2);
}
void FullStyleTile1Alone(clsSTY& d) {
    Tile1Alone(d);
    Palettes(d, kMost, true);
}

INSTANTIATE_TEST_SUITE_P(
    Places, OwnPalette,
    ::testing::Values(Case{"SharedTileGetsAPage", {TargetKind::Tile, 1}, Nothing, 3, false, 64},
                      Case{"SharedSpriteTakesAFree", {TargetKind::Sprite, 4}, FreePaletteUnwritten, 4, false, 64},
                      Case{"OnlyUserRewrittenInPlace", {TargetKind::Tile, 1}, Tile1Alone, 2, true, kPaletteCount},
                      Case{"EntryPastTheSpritesSharesIt", {TargetKind::Tile, 1}, RemapSharesPalette2, 3, false, 64},
                      Case{
                          "FullStyleStillRewritesInPlace", {TargetKind::Tile, 1}, FullStyleTile1Alone, 2, true, kMost}),
    [](const auto& row) { return std::string(row.param.name); });

struct Refusal {
    const char* name;
    Target target;
    std::function<void(clsSTY&)> setUp;
    const char* says;
};

class OwnPaletteRefused : public Scene, public ::testing::WithParamInterface<Refusal> {};

TEST_P(OwnPaletteRefused, SaysWhyAndChangesNothing) {
    const Refusal& r = GetParam();
    r.setUp(doc);
    const auto before = testsupport::TakeSnapshot(doc);
    const ownpalette::Plan plan = ownpalette::PlanFor(doc, r.target);
    EXPECT_FALSE(plan.place);
    EXPECT_NE(plan.refusal.find(r.says), std::string::npos) << plan.refusal;
    EXPECT_TRUE(testsupport::TakeSnapshot(doc) == before);
}

// Every palette holds colours, so none is free.
void FullStyle(clsSTY& d) { Palettes(d, kMost, true); }
// A remap recolours by colour numbers: new numbers would scramble every remap.
void CarWithRemaps(clsSTY&) {
    STYSpriteBase[0] = 3;
    STYCarInfo.resize(2);
    STYCarInfo[0].sprite = 1;
    STYCarInfo[1].sprite = 1;
    STYCarInfo[1].remaps = {0, 1};
}
void PedsRemapped(clsSTY&) {
    STYSpriteBase[0] = 1;
    STYSpriteBase[1] = 4;
    STYPalBase[3] = 1;
}

INSTANTIATE_TEST_SUITE_P(
    Targets, OwnPaletteRefused,
    ::testing::Values(Refusal{"Delta", {TargetKind::Delta, 0, 1}, Nothing, "drawn in its sprite's palette"},
                      Refusal{"FullStyle", {TargetKind::Tile, 1}, FullStyle, "no room for another palette"},
                      Refusal{
                          "CarWithRemaps", {TargetKind::Sprite, 1}, CarWithRemaps, "Car: 2 (sprite 1) has 2 remaps"},
                      Refusal{"PedsRemapped", {TargetKind::Sprite, 2}, PedsRemapped, "has 1 remap,"}),
    [](const auto& row) { return std::string(row.param.name); });

// The pixels go first: a picture that does not fit leaves the palettes as
// they were, and the caller gets the reason to tell as it tells things.
TEST_F(Scene, OwnPaletteOfAPictureThatDoesNotFitChangesNothing) {
    const Target target{TargetKind::Tile, 1};
    const auto plan = ownpalette::PlanFor(doc, target);
    ASSERT_TRUE(plan.place);
    const auto before = testsupport::TakeSnapshot(doc);
    const auto problem = ownpalette::Apply(doc, target, *plan.place, {ByteString(100, 1), {{1, 2, 3, 255}}});
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->text, "The picture for tile 1 is not 64 x 64 pixels.");
    EXPECT_TRUE(testsupport::TakeSnapshot(doc) == before);
    EXPECT_TRUE(hooks.messages().empty());
}

}  // namespace
}  // namespace ombrevale::pixeltest
