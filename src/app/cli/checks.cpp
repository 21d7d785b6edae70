#include "checks.h"

#include "clierror.h"
#include "commands.h"
#include "style/clssty.h"

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
    const auto& index = modDeclares::STYPalIndex;
    if (static_cast<std::uint64_t>(tile) >= index.size())
        throw Failure(file, "tile " + std::to_string(tile) + " has no entry in the palette index");
    const std::int16_t pal = index[static_cast<std::size_t>(tile)];
    CheckPhysical(doc, file, "tile " + std::to_string(tile), pal);
    return pal;
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
    const std::int64_t virtualNumber = modDeclares::STYPalBase[0] + sprite;
    const auto& index = modDeclares::STYPalIndex;
    if (virtualNumber < 0 || static_cast<std::uint64_t>(virtualNumber) >= index.size())
        throw Failure(file, "sprite " + std::to_string(sprite) + " has no entry in the palette index (entry " +
                                std::to_string(virtualNumber) + " of " + std::to_string(index.size()) + ")");
    const std::int16_t own = index[static_cast<std::size_t>(virtualNumber)];
    CheckPhysical(doc, file, "sprite " + std::to_string(sprite), own);
    return own;
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
