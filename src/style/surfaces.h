#pragma once
// The surface types of the tiles, read from the "SPEC" bytes: nine lists of
// 16-bit tile numbers, each closed by 0, for types 2 to 10; every tile no
// list names is type 1.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "style/bytes.h"

namespace ombrevale::surfaces {

inline constexpr int kTypes = 10;
// Type k is kTypeNames[k - 1].
inline constexpr std::array<std::string_view, kTypes> kTypeNames = {
    "normal",     "grass/dirt",  "road",       "water",     "electrified", "electrified platform",
    "wood floor", "metal floor", "metal wall", "grass wall"};

struct SurfaceMap {
    // One type from 1 to kTypes a tile.
    std::vector<std::uint8_t> type;
    // Empty when the bytes were sound; else what was wrong, in one sentence.
    std::string problem;
};

// Reads as far as the bytes are sound: an odd last byte, a list the bytes end
// inside and numbers beyond the tiles are passed over and named in problem.
SurfaceMap ReadSurfaces(const ByteString& spec, int tileCount);

}  // namespace ombrevale::surfaces
