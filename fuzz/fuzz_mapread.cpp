// Any bytes as a GTA2 map. A map that is read must hold only blocks its table
// has, count its tiles, and give every column a stack of drawn levels that
// lie at or below the cut, highest first; a refused one must say why.

#include <cstddef>
#include <cstdint>
#include <span>

#include "fuzz_common.h"
#include "map/describe.h"
#include "map/usage.h"

using namespace ombrevale;

extern "C" int LLVMFuzzerInitialize(int*, char***) { return 0; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto read = map::ReadMap(std::span<const std::uint8_t>(data, size), "fuzz.gmp");
    if (!read.map) {
        if (read.error.empty()) fuzzing::Broken("a refused map says nothing");
        return 0;
    }
    const map::Map& m = *read.map;
    if (m.cells.size() != static_cast<std::size_t>(map::kCells)) fuzzing::Broken("the grid has another size");
    for (const std::uint32_t b : m.cells)
        if (b >= m.blocks.size()) fuzzing::Broken("a cell names a block the table lacks");
    const map::TileUsage u = map::CountTiles(m);
    std::int64_t lids = 0;
    for (const auto c : u.lids) lids += c;
    if (lids > map::kCells) fuzzing::Broken("more lids than cells");
    const int cut = static_cast<int>(size % map::kLevels);
    for (int y = 0; y < map::kSide; y += 17)
        for (int x = 0; x < map::kSide; x += 13) {
            const map::Stack s = map::DrawnStack(m, x, y, cut);
            for (int i = 0; i < s.count; ++i)
                if (s.z[static_cast<std::size_t>(i)] > cut ||
                    (i > 0 && s.z[static_cast<std::size_t>(i)] >= s.z[static_cast<std::size_t>(i - 1)]))
                    fuzzing::Broken("a stack out of order or above the cut");
            map::DescribeColumn(m, x, y, cut);
        }
    map::ColumnsUsing(m, static_cast<int>(size % map::kTileNumbers));
    return 0;
}
