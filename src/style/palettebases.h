#pragma once
// Where a tile, a sprite and a car remap find their palette. The palette
// table (PALX, STYPalIndex) holds the tiles' entries first, the sprites' from
// the tile count (STYPalBase[0]) on, then the remaps' from tile count +
// sprite count. A remap counted from the wrong base shows wrong colours only
// on cars, so every lookup comes here.

#include <cstdint>
#include <optional>

namespace ombrevale::palettebases {

// Virtual palette numbers: the entries of the palette table.
std::int64_t SpriteEntry(std::int64_t sprite);
std::int64_t RemapEntry(std::int64_t remap);

// The physical palette the table names at an entry, nothing for an entry
// outside the table. Whether that palette exists is the caller's question.
std::optional<std::int16_t> PhysicalAt(std::int64_t entry);

std::optional<std::int16_t> TilePalette(std::int64_t tile);
std::optional<std::int16_t> SpritePalette(std::int64_t sprite);
std::optional<std::int16_t> RemapPalette(std::int64_t remap);

}  // namespace ombrevale::palettebases
