#include "map/describe.h"

#include "map/usage.h"

namespace ombrevale::map {

std::string ZoneTypeName(int type) {
    switch (type) {
        case 0:
            return "general";
        case 1:
            return "navigation";
        case 2:
            return "traffic light";
        case 5:
            return "arrow blocker";
        case 6:
            return "railway station";
        case 7:
            return "bus stop";
        case 8:
            return "trigger";
        case 10:
            return "information";
        case 11:
            return "station entry";
        case 12:
            return "station exit";
        case 13:
            return "railway stop";
        case 14:
            return "gang";
        case 15:
            return "local navigation";
        case 16:
            return "restart";
        case 20:
            return "arrest restart";
        default:
            return "type " + std::to_string(type);
    }
}

const char* GroundName(int ground) {
    static const char* const kNames[] = {"air", "road", "pavement", "field"};
    return kNames[ground & 3];
}

std::string DescribeColumn(const Map& m, int x, int y, int cut) {
    std::string text = "x " + std::to_string(x) + ", y " + std::to_string(y);
    const Stack stack = DrawnStack(m, x, y, cut);
    if (stack.count == 0) {
        text += ": nothing drawn";
    } else {
        const BlockInfo& b = m.At(x, y, stack.Top());
        text += ", z " + std::to_string(stack.Top()) + "   lid " + std::to_string(TileOf(b.lid));
        text += " (" + std::to_string(90 * QuarterTurns(b.lid)) + "\u00B0";
        if (IsFlipped(b.lid)) text += ", flipped";
        if (IsFlat(b.lid)) text += ", flat";
        text += ", light " + std::to_string(LightOf(b.lid)) + ")";
        text += "   slope " + std::to_string(b.SlopeShape()) + ", " + GroundName(b.GroundType());
        const auto s = b.Sides();
        text += "   sides L " + std::to_string(TileOf(s[0])) + " R " + std::to_string(TileOf(s[1])) + " T " +
                std::to_string(TileOf(s[2])) + " B " + std::to_string(TileOf(s[3]));
    }
    std::string zones;
    for (const Zone& z : m.zones)
        if (x >= z.x && x < z.x + z.w && y >= z.y && y < z.y + z.h) zones += (zones.empty() ? "" : ", ") + z.name;
    if (!zones.empty()) text += "   zones: " + zones;
    return text;
}

}  // namespace ombrevale::map
