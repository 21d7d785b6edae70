#pragma once
// 64 x 64 colour numbers that never change once made. Blocks made through
// InternPixelBlock from equal bytes are one block for as long as anyone holds
// it: a tile of the document and its picture on the tile sheet share their
// 4 KB instead of each keeping a copy, and so do equal tiles.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

inline constexpr std::size_t kPixelBlockBytes = 64 * 64;
using PixelBlock = std::array<std::uint8_t, kPixelBlockBytes>;
using SharedPixelBlock = std::shared_ptr<const PixelBlock>;

// A block equal to the kPixelBlockBytes at bytes, shared with any living one.
SharedPixelBlock InternPixelBlock(const std::uint8_t* bytes);

// Distinct blocks alive in the pool.
std::size_t InternedPixelBlocks();
