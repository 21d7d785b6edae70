#include "style/surfaces.h"

#include <algorithm>

namespace ombrevale::surfaces {

SurfaceMap ReadSurfaces(const ByteString& spec, int tileCount) {
    SurfaceMap map;
    map.type.assign(static_cast<std::size_t>(std::max(0, tileCount)), 1);
    std::vector<std::string> faults;
    if (spec.size() % 2 != 0) faults.push_back("its length is odd, so its last byte was left out");
    const std::size_t words = spec.size() / 2;
    std::size_t i = 0;
    int type = 2;
    long beyond = 0;
    bool unclosed = false;
    // An empty section says nothing: every tile is normal.
    for (; type <= kTypes && i < words && !unclosed; ++type) {
        unclosed = true;
        while (i < words) {
            const int t = spec[2 * i] | spec[2 * i + 1] << 8;
            ++i;
            if (t == 0) {
                unclosed = false;
                break;
            }
            if (t >= tileCount)
                ++beyond;
            else
                map.type[static_cast<std::size_t>(t)] = static_cast<std::uint8_t>(type);
        }
        if (unclosed)
            faults.push_back("the list of " + std::string(kTypeNames[static_cast<std::size_t>(type - 1)]) +
                             " has no closing 0");
    }
    if (!unclosed && words > 0 && type <= kTypes)
        faults.push_back("it ends after " + std::to_string(type - 2) + " of its 9 lists");
    if (i < words)
        faults.push_back("it goes on for " + std::to_string(2 * (words - i)) + " bytes after its ninth list");
    if (beyond > 0)
        faults.push_back(std::to_string(beyond) + " of its tile numbers are beyond the style's " +
                         std::to_string(std::max(0, tileCount)) + " tiles");
    if (faults.empty()) return map;
    map.problem = "The surface list (SPEC) is damaged: ";
    for (std::size_t k = 0; k < faults.size(); ++k) map.problem += (k ? "; " : "") + faults[k];
    map.problem += ". The types are shown as far as it is sound.";
    return map;
}

}  // namespace ombrevale::surfaces
