#pragma once
// The pixel engine's refusals: a number that names nothing in the stores is
// told through the message hook and the operation does nothing.

#include <cstdint>
#include <optional>
#include <string>

#include "style/clssty.h"

namespace ombrevale::pixelchecks {

// Shows "what" as a refusal and returns false.
bool Refuse(const std::string& what);

bool TileExists(const clsSTY& doc, std::int32_t idx);
bool SpriteExists(const clsSTY& doc, std::int32_t idx);
bool PaletteExists(std::int32_t pal);

// The physical palette of a virtual number, if the table has that entry and
// the entry names a palette that exists.
std::optional<std::int16_t> PhysicalPalette(std::int32_t virtualNumber);

// Checked lookups that tell the user what is wrong when they fail.
std::optional<std::int16_t> TilePalette(const clsSTY& doc, std::int32_t idx);
std::optional<std::int16_t> SpritePalette(const clsSTY& doc, std::int32_t idx, std::int16_t pal);

}  // namespace ombrevale::pixelchecks
