#include "pixels/ownpalette.h"

#include <algorithm>
#include <cctype>

#include "pixels/checks.h"
#include "pixels/exportnames.h"
#include "pixels/paletteusage.h"
#include "pixels/pictureimport.h"
#include "style/messages.h"
#include "style/moddeclares.h"
#include "style/palettebases.h"

namespace ombrevale::ownpalette {
namespace {

using modDeclares::STYPalData;
using modDeclares::STYPalIndex;

// Named by any PALX entry: the game reaches palettes only through the table,
// and entries past the car remaps (peds, objects, fonts) count as much.
std::vector<int> Namings() {
    std::vector<int> n(STYPalData.size(), 0);
    for (const std::int16_t p : STYPalIndex)
        if (p >= 0 && static_cast<std::size_t>(p) < n.size()) ++n[static_cast<std::size_t>(p)];
    return n;
}

// A palette no entry names and nobody has written: what a page holds past its used palettes.
std::optional<std::int16_t> FreePalette(const clsSTY& doc, const std::vector<int>& namings) {
    const auto count =
        std::min<std::size_t>(STYPalData.size(), static_cast<std::size_t>(std::max<int>(doc.iPalCount, 0)));
    for (std::size_t p = 0; p < count; ++p) {
        const auto& pal = STYPalData[p];
        if (namings[p] == 0 && std::all_of(pal.begin(), pal.end(), [](std::uint8_t b) { return b == 0; }))
            return static_cast<std::int16_t>(p);
    }
    return std::nullopt;
}

// How many remaps recolour sprite s: its car record's, or those of its group.
std::size_t RemapsOf(std::int32_t s) {
    const auto& groups = modDeclares::STYSpriteBase;
    if (s < groups[0]) {
        const int record = paletteusage::CarRecordOfSprite(s);
        return record < 0 ? 0 : modDeclares::STYCarInfo[static_cast<std::size_t>(record)].remaps.size();
    }
    std::int32_t first = groups[0];
    for (std::size_t g = 1; g < groups.size(); ++g) {
        if (s < first + groups[g])
            return static_cast<std::size_t>(std::max<std::int16_t>(modDeclares::STYPalBase[2 + g], 0));
        first += groups[g];
    }
    return 0;
}

}  // namespace

std::string Describe(const Target& target) {
    switch (target.kind) {
        case TargetKind::Tile:
            return "tile " + std::to_string(target.number);
        case TargetKind::Sprite:
            return "sprite " + std::to_string(target.number);
        case TargetKind::Delta:
            break;
    }
    return "delta " + std::to_string(target.delta) + " of sprite " + std::to_string(target.number);
}

Plan PlanFor(const clsSTY& doc, const Target& target) {
    std::string name = Describe(target);
    name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
    const auto refuse = [](std::string why) { return Plan{std::nullopt, std::move(why)}; };
    if (target.kind == TargetKind::Delta)
        return refuse(name +
                      " cannot have a palette of its own: a delta is drawn in its sprite's palette. It can take the "
                      "nearest colours of that palette.");
    const bool tile = target.kind == TargetKind::Tile;
    if (tile ? !pixelchecks::TileExists(doc, target.number) : !pixelchecks::SpriteExists(doc, target.number))
        return refuse("There is no " + Describe(target) + ".");
    // A remap is a whole palette that recolours the sprite by its colour
    // numbers: new numbers would draw every remap as noise, and the remaps'
    // palettes are shared by other sprites.
    if (const std::size_t remaps = tile ? 0 : RemapsOf(target.number); remaps > 0)
        return refuse(exportnames::SpriteCaption(modDeclares::STYSpriteBase, target.number) + " (" + Describe(target) +
                      ") has " + std::to_string(remaps) + (remaps == 1 ? " remap" : " remaps") +
                      ", which recolour it by its colour numbers: with a palette of its own they would draw as "
                      "noise. It can take the nearest colours of its palette.");
    Place place;
    place.entry = tile ? target.number : static_cast<std::int32_t>(palettebases::SpriteEntry(target.number));
    const auto from = pixelchecks::PhysicalPalette(place.entry);
    if (!from) return refuse(name + " has no palette in this style's palette table.");
    place.from = *from;
    place.countAfter = doc.iPalCount;
    const std::vector<int> namings = Namings();
    if (namings[static_cast<std::size_t>(*from)] == 1) {
        place.palette = *from;
        place.inPlace = true;
        return {place, {}};
    }
    if (const auto free = FreePalette(doc, namings)) {
        place.palette = *free;
        return {place, {}};
    }
    const std::int32_t count = std::max<std::int32_t>(doc.iPalCount, 0);
    const std::int32_t after = (count / 64 + 1) * 64;
    if (after > kMostPalettes)
        return refuse("The style has no room for another palette: PPAL holds " + GroupedNumber(count) +
                      " palettes, as many as its 16-bit count allows in pages of 64, and every one is in use.");
    place.palette = static_cast<std::int16_t>(count);
    place.countAfter = static_cast<std::int16_t>(after);
    return {place, {}};
}

ombrevale::Outcome Apply(clsSTY& doc, const Target& target, const Place& place, const Reduced& reduced) {
    const auto problem = target.kind == TargetKind::Tile
                             ? pictureimport::IntoTile(doc, target.number, reduced.numbers)
                             : pictureimport::IntoSprite(doc, target.number, reduced.numbers);
    if (problem) return problem;
    // Colour 0 and whatever the picture leaves unused come from the palette
    // the target had, so its transparent pixels look as they did.
    const modDeclares::Palette pal = STYPalData[static_cast<std::size_t>(place.from)];
    if (place.countAfter > doc.iPalCount) {
        STYPalData.resize(static_cast<std::size_t>(place.countAfter));
        doc.iPalCount = place.countAfter;
    }
    auto& out = STYPalData[static_cast<std::size_t>(place.palette)];
    out = pal;
    const std::size_t n = std::min<std::size_t>(reduced.colours.size(), 255);
    for (std::size_t c = 0; c < n; ++c) {
        const auto& rgb = reduced.colours[c];
        out[(c + 1) * 4] = rgb.b;
        out[(c + 1) * 4 + 1] = rgb.g;
        out[(c + 1) * 4 + 2] = rgb.r;
    }
    STYPalIndex[static_cast<std::size_t>(place.entry)] = place.palette;
    return std::nullopt;
}

}  // namespace ombrevale::ownpalette
