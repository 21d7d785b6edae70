#pragma once
// The sample's tile set: a city seen from above, 64 x 64 pixels a tile.

#include <vector>

#include "canvas.h"

namespace ombrevale::sample {

inline constexpr int kTileCount = 992;

// Surface types as the game's SPEC lists them; 1 is "normal" and is not listed.
enum Surface {
    kNormal = 1,
    kGrassDirt = 2,
    kRoad = 3,
    kWater = 4,
    kElectrified = 5,
    kElectrifiedPlatform = 6,
    kWoodFloor = 7,
    kMetalFloor = 8,
    kMetalWall = 9,
    kGrassWall = 10
};

struct TileArt {
    Canvas pixels{64, 64};
    int palette = 0;  // physical palette, 0 .. kTilePalettes - 1
    int surface = kNormal;
};

std::vector<TileArt> BuildTiles();

}  // namespace ombrevale::sample
