#include "pixels/paletteusage.h"

#include <algorithm>

#include "style/moddeclares.h"
#include "style/palettebases.h"

using modDeclares::STYCarInfo;

namespace ombrevale::paletteusage {

int CarRecordOfSprite(int s) {
    if (STYCarInfo.empty() || s < 0) return -1;
    long n = 0;
    for (std::size_t r = 0; r < STYCarInfo.size(); ++r) {
        if (r > 0) n += STYCarInfo[r].sprite;
        if (n == s) return static_cast<int>(r);
        if (n > s) return -1;
    }
    return -1;
}

Usage UsesOfPalette(int physical, int tileCount, int spriteCount) {
    Usage u;
    for (int t = 0; t < tileCount; ++t)
        if (palettebases::TilePalette(t) == physical) u.tiles.push_back(t);
    for (int s = 0; s < spriteCount; ++s)
        if (palettebases::SpritePalette(s) == physical) u.sprites.push_back(s);
    long n = 0;
    long lastSprite = -1;
    const long cars = std::min<long>(modDeclares::STYSpriteBase[0], spriteCount);
    for (std::size_t r = 0; r < STYCarInfo.size(); ++r) {
        if (r > 0) n += STYCarInfo[r].sprite;
        // Records sharing a sprite: the sprite pane lists the first one's remaps.
        if (n == lastSprite || n >= cars) continue;
        lastSprite = n;
        const auto& remaps = STYCarInfo[r].remaps;
        for (std::size_t k = 0; k < remaps.size(); ++k)
            if (palettebases::RemapPalette(remaps[k]) == physical)
                u.remaps.push_back({static_cast<int>(n), static_cast<int>(k), remaps[k]});
    }
    return u;
}

}  // namespace ombrevale::paletteusage
