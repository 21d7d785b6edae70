#pragma once
// A copy of every store of the document and of modDeclares, so a test can say
// "nothing changed" or "these two loads hold the same" in one comparison.

#include <array>
#include <vector>

#include "style/clssty.h"
#include "style/moddeclares.h"

namespace ombrevale::testsupport {

struct StoreSnapshot {
    ByteString spriteData;
    std::array<std::int16_t, 4> counts{};
    std::array<std::int32_t, 3> byteTotals{};
    std::vector<Tile> tiles;
    std::vector<SpriteRecord> spriteIndex;
    ByteString objectInfo;
    ByteString surfaceSpec;
    std::array<bool, kSectionCount> present{};
    modDeclares::SharedStores shared;

    bool operator==(const StoreSnapshot&) const = default;
};

inline StoreSnapshot TakeSnapshot(const clsSTY& doc) {
    return {doc.STYSpriteData,
            {doc.iTileCount, doc.iPalCount, doc.iPalxCount, doc.iSprxCount},
            {doc.lDelxBytes, doc.lDelsBytes, doc.lCariBytes},
            doc.STYTileStore,
            doc.STYSpriteIndex,
            doc.STYObjectInfo,
            doc.STYSurfaceSpec,
            doc.Present,
            modDeclares::TakeSharedStores()};
}

}  // namespace ombrevale::testsupport
