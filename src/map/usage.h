#pragma once
// What a map uses of its style's tiles, and which blocks a top-down view
// shows in a column.

#include <array>
#include <cstdint>
#include <vector>

#include "map/gbmp.h"

namespace ombrevale::map {

inline constexpr int kTileNumbers = 1024;

struct TileUsage {
    // Cells by lid tile (tile 0 left out, 1023 counted) and side faces by tile (0 left out).
    std::array<std::int32_t, kTileNumbers> lids{};
    std::array<std::int32_t, kTileNumbers> sides{};
    // Frames of the tile animations, which the game draws in place of their base tile.
    std::array<bool, kTileNumbers> animated{};
    bool Used(int tile) const {
        if (tile < 0 || tile >= kTileNumbers) return false;
        const auto t = static_cast<std::size_t>(tile);
        return lids[t] > 0 || sides[t] > 0 || animated[t];
    }
};
TileUsage CountTiles(const Map& m);

struct Column {
    int x = 0, y = 0;
};
// Columns that have tile as a lid or on a side at any level, row by row.
std::vector<Column> ColumnsUsing(const Map& m, int tile);

// The levels a view from above draws in a column, the highest first: the
// highest block at or below cut with a drawn lid, and under a flat lid the
// blocks below it, down to the first lid that is not flat.
struct Stack {
    int count = 0;
    std::array<std::int8_t, kLevels> z{};
    int Top() const { return count > 0 ? z[0] : -1; }
};
Stack DrawnStack(const Map& m, int x, int y, int cut);

}  // namespace ombrevale::map
