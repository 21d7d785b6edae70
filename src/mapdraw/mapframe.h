#pragma once
// The map seen from above, drawn into a frame of pixels: each column's lid
// from its tile's picture (mirrored by flip, then turned clockwise by its
// quarter turns), flat lids over what lies below. The cost is about the
// frame's pixels at every zoom: blocks smaller than their tile on screen draw
// from the tile's smaller copies.

#include <cstdint>
#include <vector>

#include "map/gbmp.h"
#include "map/usage.h"

namespace ombrevale::mapdraw {

class TilePyramid;

// Which pixel of an unturned tile of side pixels shows at (u, v) of the lid
// drawn with face's flip and turn. The one home of the map's orientation rule.
struct TilePixel {
    int u, v;
};
TilePixel SourcePixel(std::uint16_t face, int u, int v, int side);

// Of 256: how bright a lid of light level 0 to 3 draws when shaded.
int LightFactor(int level);

struct View {
    double blockPx = 16;  // screen pixels a block
    double left = 0;      // screen pixels scrolled, from the map's left edge
    double top = 0;
};

struct DrawOptions {
    int levelCut = map::kLevels - 1;
    bool shade = false;  // darker by the lid's light level
    // One flag a column, [y][x]: columns not flagged draw dimmed. None: all as they are.
    const std::vector<std::uint8_t>* marked = nullptr;
};

class MapFrame {
public:
    // The map and level cut whose stacks are held; call after either changes.
    void Follow(const map::Map& m, int levelCut);
    const map::Stack& StackAt(int x, int y) const { return stacks_[static_cast<std::size_t>(y * map::kSide + x)]; }
    // Into argb, w x h pixels, stride pixels a row.
    void Draw(const map::Map& m, TilePyramid& tiles, const View& view, const DrawOptions& options, std::uint32_t* argb,
              int w, int h, int stride);

private:
    std::vector<map::Stack> stacks_;
    int cut_ = -1;
};

// The screen span of block b: [first, last) pixels.
struct Span {
    int first, last;
};
Span BlockSpan(int b, double blockPx, double scrolled);

}  // namespace ombrevale::mapdraw
