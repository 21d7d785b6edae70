#pragma once
// The part of the stores an edit changes, taken before and after it, so that
// undo and redo put the stores back byte for byte. Each part is small beside
// the whole style: one tile, one sprite's block, one palette, the deltas or
// the recycling list.

#include <cstdint>
#include <optional>
#include <vector>

#include "style/clssty.h"
#include "style/moddeclares.h"

namespace ombrevale::editparts {

enum class Kind { Tile, Sprite, Deltas, Palette, Recycling };

struct Part {
    Kind kind = Kind::Tile;
    // The tile, the sprite or the palette; unused for the deltas and the recycling list.
    std::int32_t number = 0;
    std::optional<Tile> tile;
    // The sprite's block as GetBits gives it, the palette, the delta store or the recycling list.
    ByteString bytes;
    std::vector<modDeclares::DeltaEntry> deltaIndex;

    bool operator==(const Part&) const = default;
};

Part Take(const clsSTY& doc, Kind kind, std::int32_t number);
// Puts a part taken from this document back; a part of something the
// document no longer has changes nothing.
void Put(clsSTY& doc, const Part& part);

}  // namespace ombrevale::editparts
