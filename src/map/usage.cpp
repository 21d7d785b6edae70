#include "map/usage.h"

#include <algorithm>

namespace ombrevale::map {

TileUsage CountTiles(const Map& m) {
    TileUsage u;
    for (const std::uint32_t b : m.cells) {
        const BlockInfo& block = m.blocks[b];
        if (const int lid = TileOf(block.lid); lid != 0) ++u.lids[static_cast<std::size_t>(lid)];
        for (const std::uint16_t side : block.Sides())
            if (const int t = TileOf(side); t != 0) ++u.sides[static_cast<std::size_t>(t)];
    }
    for (const Animation& a : m.animations) {
        u.animated[a.baseTile % kTileNumbers] = true;
        for (const std::uint16_t t : a.tiles) u.animated[t % kTileNumbers] = true;
    }
    return u;
}

std::vector<Column> ColumnsUsing(const Map& m, int tile) {
    std::vector<Column> found;
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x)
            for (int z = 0; z < kLevels; ++z) {
                const BlockInfo& b = m.At(x, y, z);
                const auto s = b.Sides();
                if (TileOf(b.lid) == tile || TileOf(s[0]) == tile || TileOf(s[1]) == tile || TileOf(s[2]) == tile ||
                    TileOf(s[3]) == tile) {
                    found.push_back({x, y});
                    break;
                }
            }
    return found;
}

Stack DrawnStack(const Map& m, int x, int y, int cut) {
    Stack s;
    for (int z = std::min(cut, kLevels - 1); z >= 0; --z) {
        const BlockInfo& b = m.At(x, y, z);
        if (!b.HasDrawnLid()) continue;
        s.z[static_cast<std::size_t>(s.count++)] = static_cast<std::int8_t>(z);
        if (!IsFlat(b.lid)) break;
    }
    return s;
}

}  // namespace ombrevale::map
