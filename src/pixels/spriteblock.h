#pragma once
// Sprite rows as they lie in the store: rows of 256, W bytes taken from each.

#include <cstdint>

#include "style/clssty.h"

namespace ombrevale::spriteblock {

struct Geometry {
    std::int64_t offset = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t padded = 0;  // W
};

// The record of a sprite that exists.
Geometry Of(const clsSTY& doc, std::int32_t idx);

// The W bytes of each row, top row first. A row that runs past the end of
// the store comes back short; one that starts outside it comes back empty.
ByteString RowsTopFirst(const clsSTY& doc, const Geometry& g);

// RowsTopFirst with delta `delta` of sprite `sprite` written over it, as SaveDelta
// exports it; what passes the block's end is dropped.
ByteString RowsWithDelta(const clsSTY& doc, const Geometry& g, std::int16_t sprite, std::int16_t delta);

// Rows of W bytes in the other order; a short last row stays short.
ByteString FlipRows(const ByteString& block, std::int32_t W);

}  // namespace ombrevale::spriteblock
