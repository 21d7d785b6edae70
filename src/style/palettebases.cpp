#include "style/palettebases.h"

#include "style/moddeclares.h"

namespace ombrevale::palettebases {

using modDeclares::STYPalBase;
using modDeclares::STYPalIndex;

std::int64_t SpriteEntry(std::int64_t sprite) { return std::int64_t{STYPalBase[0]} + sprite; }

std::int64_t RemapEntry(std::int64_t remap) { return std::int64_t{STYPalBase[0]} + STYPalBase[1] + remap; }

std::optional<std::int16_t> PhysicalAt(std::int64_t entry) {
    if (entry < 0 || static_cast<std::uint64_t>(entry) >= STYPalIndex.size()) return std::nullopt;
    return STYPalIndex[static_cast<std::size_t>(entry)];
}

std::optional<std::int16_t> TilePalette(std::int64_t tile) { return PhysicalAt(tile); }

std::optional<std::int16_t> SpritePalette(std::int64_t sprite) { return PhysicalAt(SpriteEntry(sprite)); }

std::optional<std::int16_t> RemapPalette(std::int64_t remap) { return PhysicalAt(RemapEntry(remap)); }

}  // namespace ombrevale::palettebases
