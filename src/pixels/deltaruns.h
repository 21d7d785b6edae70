#pragma once
// Reading a delta's runs: distance (2 bytes), length n (1), n pixels. The
// running position P counts in rows of 256 from the sprite's top left.

#include <algorithm>
#include <cstdint>
#include <span>

#include "style/bytes.h"

namespace ombrevale::deltaruns {

// Calls visit(P, pixels) for every run. A run cut short by the end of the
// delta gives the pixels that are there and ends the walk.
template <typename Visit>
void ForEachRun(std::span<const std::uint8_t> s, Visit visit) {
    std::int64_t P = 0;
    std::size_t at = 0;
    while (at + 3 <= s.size()) {
        // The distance is a signed little-endian 16-bit number.
        P += static_cast<std::int16_t>(static_cast<std::uint16_t>(s[at] | (s[at + 1] << 8)));
        const std::size_t n = s[at + 2];
        const std::size_t have = std::min(n, s.size() - at - 3);
        visit(P, std::span<const std::uint8_t>(s.data() + at + 3, have));
        P += static_cast<std::int64_t>(n);
        at += 3 + n;
    }
}

// Where a delta starts in STYDeltaStore and how long it is; nothing for a
// sprite without an entry or a delta number outside the entry.
struct Place {
    std::size_t entry = 0;
    std::size_t start = 0;
    std::size_t length = 0;
};
bool Find(std::int16_t deltaNumber, std::int16_t spriteIdx, Place& out);

}  // namespace ombrevale::deltaruns
