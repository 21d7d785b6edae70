#pragma once
// Which pictures a physical palette colours: the tiles and sprites whose own
// palette it is, and the car remaps that resolve to it.

#include <cstdint>
#include <vector>

namespace ombrevale::paletteusage {

struct RemapUse {
    int sprite = 0;
    // Place of the remap in its car record's list, from 0.
    int position = 0;
    int remap = 0;
    bool operator==(const RemapUse&) const = default;
};

struct Usage {
    std::vector<int> tiles;
    std::vector<int> sprites;
    std::vector<RemapUse> remaps;
};

// The car record that sprite s shows: the first record whose running sum of
// sprite bytes (record 0's own not counted) reaches s; -1 when none does.
int CarRecordOfSprite(int s);

// Tiles 0 to tileCount - 1 and sprites 0 to spriteCount - 1, through STYPalIndex and STYPalBase.
Usage UsesOfPalette(int physical, int tileCount, int spriteCount);

}  // namespace ombrevale::paletteusage
