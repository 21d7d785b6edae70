#pragma once
// Checks that keep a request inside the document's stores before the pixel
// engine is asked: a number the caller gives, or one the file itself holds.

#include <cstdint>
#include <string>

class clsSTY;

namespace ombrevale::cli {

// The physical palette of tile t; throws Failure if the tile or its palette is outside the stores.
std::int16_t CheckedTilePalette(const clsSTY& doc, const std::string& file, std::int64_t tile);
// Sprite s must exist and lie inside the sprite data.
void CheckSprite(const clsSTY& doc, const std::string& file, std::int64_t sprite);
// The physical palette a sprite is drawn in: its own for -1, else pal itself.
std::int16_t CheckedSpritePalette(const clsSTY& doc, const std::string& file, std::int64_t sprite, std::int64_t pal);
// Sprite s must exist and its first delta entry must hold delta d.
void CheckDelta(const clsSTY& doc, const std::string& file, std::int64_t sprite, std::int64_t d);

}  // namespace ombrevale::cli
