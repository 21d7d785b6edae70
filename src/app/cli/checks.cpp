#include "checks.h"

#include "clierror.h"
#include "commands.h"
#include "style/clssty.h"
#include "style/moddeclares.h"
#include "style/palettebases.h"

namespace ombrevale::cli {
namespace {

void CheckPhysical(const clsSTY& doc, const std::string& file, const std::string& who, std::int64_t pal) {
    if (pal < 0 || pal >= doc.GetNumOfPals())
        throw Failure(file, who + " uses palette " + std::to_string(pal) + " but the style has " +
                                std::to_string(doc.GetNumOfPals()) + " palettes");
}

}  // namespace

std::int16_t CheckedTilePalette(const clsSTY& doc, const std::string& file, std::int64_t tile) {
    CheckRange(file, "tile", tile, 0, doc.GetNumOfTiles() - 1);
    const auto pal = palettebases::TilePalette(tile);
    if (!pal) throw Failure(file, "tile " + std::to_string(tile) + " has no entry in the palette index");
    CheckPhysical(doc, file, "tile " + std::to_string(tile), *pal);
    return *pal;
}

void CheckSprite(const clsSTY& doc, const std::string& file, std::int64_t sprite) {
    CheckRange(file, "sprite", sprite, 0, static_cast<std::int64_t>(doc.STYSpriteIndex.size()) - 1);
    const SpriteRecord& r = doc.STYSpriteIndex[static_cast<std::size_t>(sprite)];
    const std::int64_t padded = (r.width + 3) / 4 * 4;
    const std::int64_t last = r.height == 0 ? 0 : static_cast<std::int64_t>(r.offset) + (r.height - 1) * 256 + padded;
    if (r.offset < 0 || last > static_cast<std::int64_t>(doc.STYSpriteData.size()))
        throw Failure(file, "sprite " + std::to_string(sprite) + " lies outside the sprite data (offset " +
                                std::to_string(r.offset) + ", " + std::to_string(r.width) + "x" +
                                std::to_string(r.height) + ", " + std::to_string(doc.STYSpriteData.size()) +
                                " bytes of sprite data)");
}

std::int16_t CheckedSpritePalette(const clsSTY& doc, const std::string& file, std::int64_t sprite, std::int64_t pal) {
    if (pal != -1) {
        CheckRange(file, "palette", pal, -1, doc.GetNumOfPals() - 1);
        return static_cast<std::int16_t>(pal);
    }
    const auto own = palettebases::SpritePalette(sprite);
    if (!own)
        throw Failure(file, "sprite " + std::to_string(sprite) + " has no entry in the palette index (entry " +
                                std::to_string(palettebases::SpriteEntry(sprite)) + " of " +
                                std::to_string(modDeclares::STYPalIndex.size()) + ")");
    CheckPhysical(doc, file, "sprite " + std::to_string(sprite), *own);
    return *own;
}

void CheckDelta(const clsSTY& doc, const std::string& file, std::int64_t sprite, std::int64_t d) {
    CheckSprite(doc, file, sprite);
    int count = 0;
    for (const auto& e : modDeclares::STYDeltaIndex)
        if (e.sprite == sprite) {
            count = e.deltaCount;
            break;
        }
    if (count == 0) throw Failure(file, "sprite " + std::to_string(sprite) + " has no deltas");
    CheckRange(file, "delta", d, 0, count - 1);
}

}  // namespace ombrevale::cli
