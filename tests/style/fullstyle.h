#pragma once
// A small style file holding all fourteen sections, in the writer's order and
// with the writer's size figures, so that saving it gives back its bytes.

#include "support/stylebytes.h"

namespace styletest {

struct FullStyle {
    testsupport::StyleBytes file;
    std::vector<testsupport::TilePixels> tiles;       // 8 tiles: two strips
    std::vector<testsupport::PaletteBytes> palettes;  // 128 palettes: two pages
};

FullStyle MakeFullStyle();

// The same sections in another order, with lower-case tags and odd sizes for
// the fixed-length sections.
testsupport::StyleBytes MakeScrambledStyle(const FullStyle& full);

}  // namespace styletest
