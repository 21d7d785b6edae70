#include "style/tile.h"

// One zero block for every blank tile.
Tile::Tile() {
    static const SharedPixelBlock blank = [] {
        const PixelBlock zeros{};
        return InternPixelBlock(zeros.data());
    }();
    block_ = blank;
}
