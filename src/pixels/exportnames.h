#pragma once
// The names an export gives its files, relative to its folder, and the way
// back from a name to what it holds: "tiles/tile-0005.bmp",
// "sprites/sprite-0012.png", "deltas/sprite-0012-delta-03.bmp",
// "palettes/palette-007.pal". Also the captions the window's lists give.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ombrevale::exportnames {

enum class Kind { Tile, Sprite, Delta, Palette };

struct Name {
    Kind kind = Kind::Tile;
    std::int32_t number = 0;  // tile, sprite or palette
    std::int32_t delta = 0;   // for a delta
    bool png = false;         // else BMP; a palette is a JASC file

    bool operator==(const Name&) const = default;
};

std::string Path(const Name& name);
// Nothing for a name the export does not write, or a number past 32,767.
std::optional<Name> Parse(std::string_view relative);

// "Car: 12", "Font: 40": a sprite's caption in the Sprites list, from the six
// group counts (car, ped, code object, map object, user, font).
std::string SpriteCaption(const std::array<std::int16_t, 6>& groups, std::int32_t sprite);

}  // namespace ombrevale::exportnames
