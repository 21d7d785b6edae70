#pragma once
// Maps for the tests, from the independent writer in tools/mapwriter.

#include <vector>

#include "map/gbmp.h"
#include "mapwriter/mapwriter.h"

namespace ombrevale::testsupport {

using mapwriter::Bytes;

// A few blocks: a building column at (0, 0) of levels 1 to 3, a road at
// (5, 7), water at level 0 at (255, 255), and quirks of real files: slope 63
// at level 0, a lid of 1023 on a plain block, slope 63 with a ground type.
inline mapwriter::Grid SmallTown() {
    using namespace mapwriter;
    Grid g;
    for (int z = 1; z <= 3; ++z) {
        Block& b = g.at(0, 0, z);
        b.left = Side(661 + z);
        b.top = Side(700, true, true);
        if (z == 3) b.lid = Lid(365, 2, false, true, 1);
    }
    g.at(5, 7, 1) = {0, 0, 0, 0, Lid(209, 1), 0x12, Slope(1)};
    g.at(255, 255, 0).lid = Lid(77);
    g.at(10, 10, 0).slope = Slope(0, 63);
    g.at(10, 10, 0).lid = Lid(78);
    g.at(11, 10, 2) = {Side(5), 0, 0, 0, Lid(1023), 0, Slope(2, 63)};
    return g;
}

inline ombrevale::map::ReadResult Read(const Bytes& bytes) { return ombrevale::map::ReadMap(bytes, "test.gmp"); }

}  // namespace ombrevale::testsupport
