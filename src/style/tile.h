#pragma once
// One tile: 64 rows of 64 colour numbers, row 0 at the top, row r at bytes
// r * 64. A tile is replaced whole, never written in place, so its block can
// be shared: with equal tiles and with the tile's picture on the sheet.

#include <cstddef>
#include <cstdint>
#include <span>

#include "style/pixelblock.h"

class Tile {
public:
    // Every pixel colour 0.
    Tile();
    explicit Tile(std::span<const std::uint8_t, kPixelBlockBytes> bytes) : block_(InternPixelBlock(bytes.data())) {}

    const std::uint8_t* data() const { return block_->data(); }
    static constexpr std::size_t size() { return kPixelBlockBytes; }
    const std::uint8_t* begin() const { return data(); }
    const std::uint8_t* end() const { return data() + size(); }
    std::uint8_t operator[](std::size_t i) const { return (*block_)[i]; }
    const SharedPixelBlock& Block() const { return block_; }

    friend bool operator==(const Tile& a, const Tile& b) { return a.block_ == b.block_ || *a.block_ == *b.block_; }

private:
    SharedPixelBlock block_;
};
