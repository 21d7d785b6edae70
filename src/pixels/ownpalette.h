#pragma once
// A picture that brings colours of its own into a tile or a sprite. Each has
// a PALX entry of its own, but many entries name one physical palette, so the
// target gets a physical palette that nothing else draws in: its present one
// rewritten when the target is its only user, else a free one, else one on a
// page added to PPAL. Every other picture keeps the palette it had.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "pixels/picturefile.h"
#include "style/clssty.h"

namespace ombrevale::ownpalette {

// PPAL grows by pages of 64 and its count is signed 16-bit: 511 pages.
inline constexpr std::int32_t kMostPalettes = 511 * 64;

enum class TargetKind { Tile, Sprite, Delta };

struct Target {
    TargetKind kind = TargetKind::Tile;
    std::int32_t number = 0;  // the tile, or the sprite (of the delta)
    std::int16_t delta = -1;
};

// A picture as colour numbers, row 0 at the top, and the colours they stand
// for: number n is colours[n - 1]. Number 0 stays the transparency key.
struct Reduced {
    ByteString numbers;
    std::vector<picturefile::Rgba> colours;
};

struct Place {
    std::int32_t entry = 0;    // the target's PALX entry
    std::int16_t from = 0;     // the physical palette it names now
    std::int16_t palette = 0;  // the one it will name
    bool inPlace = false;      // palette == from: the target was its only user
    // GetNumOfPals afterwards: above today's when a page is added.
    std::int16_t countAfter = 0;
};

struct Plan {
    std::optional<Place> place;
    std::string refusal;  // why there is no place, in words for the user
};

// "tile 7", "sprite 12", "delta 3 of sprite 12".
std::string Describe(const Target& target);
// What an import would do, changing nothing.
Plan PlanFor(const clsSTY& doc, const Target& target);
// Writes the pixels, then the palette and the entry, at the place PlanFor
// gave. When the pixels do not fit, why; nothing has changed then.
ombrevale::Outcome Apply(clsSTY& doc, const Target& target, const Place& place, const Reduced& reduced);

}  // namespace ombrevale::ownpalette
