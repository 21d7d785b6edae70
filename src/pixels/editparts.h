#pragma once
// The part of the stores an edit changes, taken before and after it, so that
// undo and redo put the stores back byte for byte. Each part is small beside
// the whole style: one tile, one sprite's block, one palette, the span of the
// deltas that changed, the recycling list or one car record.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "style/clssty.h"
#include "style/moddeclares.h"

namespace ombrevale::editparts {

// PaletteEntry: one entry of PALX. PaletteCount: how many palettes PPAL holds,
// which a palette of a picture's own may raise by a page.
enum class Kind { Tile, Sprite, Deltas, Palette, Recycling, Car, PaletteEntry, PaletteCount };

struct Part {
    // Where a narrowed part of the deltas goes: its bytes take the place of
    // `replaces` bytes of the store from `at`, which are the other side's.
    struct Splice {
        std::size_t at = 0;
        std::size_t replaces = 0;
        bool operator==(const Splice&) const = default;
    };

    Kind kind = Kind::Tile;
    // The tile, the sprite, the palette or the car record; unused for the deltas and the recycling list.
    std::int32_t number = 0;
    std::optional<Tile> tile;
    std::optional<modDeclares::CarRecord> car;
    // The sprite's block as GetBits gives it, the palette, the delta store (or
    // its changed span) or the recycling list.
    ByteString bytes;
    std::vector<modDeclares::DeltaEntry> deltaIndex;
    // None: bytes is the whole delta store.
    std::optional<Splice> splice;
    // The physical palette the entry names, or the count of palettes.
    std::int32_t value = 0;

    bool operator==(const Part&) const = default;
};

Part Take(const clsSTY& doc, Kind kind, std::int32_t number);
// Puts a part taken from this document back; a part of something the
// document no longer has changes nothing.
void Put(clsSTY& doc, const Part& part);

// Cuts two whole parts of the deltas, taken before and after one edit, down to
// the span where they differ; other parts stay as they are. Put of either
// still gives its side of the stores, from the other side.
void Narrow(Part& before, Part& after);
// The memory an undo step of these two parts holds, in bytes.
std::size_t StepBytes(const Part& before, const Part& after);

}  // namespace ombrevale::editparts
