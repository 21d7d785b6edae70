#pragma once
// The names of the zone types and of a block's ground and faces, as a map maker reads them.

#include <string>

#include "map/gbmp.h"

namespace ombrevale::map {

// "general", "navigation", ...; an unknown type as its number.
std::string ZoneTypeName(int type);
// 0 air, 1 road, 2 pavement, 3 field.
const char* GroundName(int ground);

// One line on the column at (x, y) as a view with level cut `cut` draws it:
// the drawn block's level, its lid (tile, turn, flip, light), slope and
// ground, the tiles of its four sides and the zones there.
std::string DescribeColumn(const Map& m, int x, int y, int cut);

}  // namespace ombrevale::map
