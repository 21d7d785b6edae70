#include "pixels/checks.h"

#include "style/hooks.h"
#include "style/moddeclares.h"
#include "style/palettebases.h"

namespace ombrevale::pixelchecks {
namespace {

std::optional<std::int16_t> Existing(std::optional<std::int16_t> pal) {
    if (pal && !PaletteExists(*pal)) return std::nullopt;
    return pal;
}

}  // namespace

using modDeclares::STYPalData;

bool Refuse(const std::string& what) {
    MsgBox(what, "Ombrevale", MsgIcon::Exclamation);
    return false;
}

bool TileExists(const clsSTY& doc, std::int32_t idx) {
    return idx >= 0 && static_cast<std::size_t>(idx) < doc.STYTileStore.size();
}

bool SpriteExists(const clsSTY& doc, std::int32_t idx) {
    return idx >= 0 && static_cast<std::size_t>(idx) < doc.STYSpriteIndex.size();
}

bool PaletteExists(std::int32_t pal) { return pal >= 0 && static_cast<std::size_t>(pal) < STYPalData.size(); }

std::optional<std::int16_t> PhysicalPalette(std::int32_t virtualNumber) {
    return Existing(palettebases::PhysicalAt(virtualNumber));
}

std::optional<std::int16_t> TilePalette(const clsSTY& doc, std::int32_t idx) {
    if (!TileExists(doc, idx)) {
        Refuse("There is no tile " + std::to_string(idx) + ": the style holds tiles 0 to " +
               std::to_string(static_cast<std::int64_t>(doc.STYTileStore.size()) - 1) + ".");
        return std::nullopt;
    }
    const auto pal = Existing(palettebases::TilePalette(idx));
    if (!pal) Refuse("Tile " + std::to_string(idx) + " has no palette in this style's palette table.");
    return pal;
}

std::optional<std::int16_t> SpritePalette(const clsSTY& doc, std::int32_t idx, std::int16_t pal) {
    if (!SpriteExists(doc, idx)) {
        Refuse("There is no sprite " + std::to_string(idx) + ": the style holds sprites 0 to " +
               std::to_string(static_cast<std::int64_t>(doc.STYSpriteIndex.size()) - 1) + ".");
        return std::nullopt;
    }
    if (pal != -1) {
        if (PaletteExists(pal)) return pal;
        Refuse("There is no palette " + std::to_string(pal) + ": the style holds palettes 0 to " +
               std::to_string(static_cast<std::int64_t>(STYPalData.size()) - 1) + ".");
        return std::nullopt;
    }
    const auto own = Existing(palettebases::SpritePalette(idx));
    if (!own) Refuse("Sprite " + std::to_string(idx) + " has no palette in this style's palette table.");
    return own;
}

}  // namespace ombrevale::pixelchecks
