#pragma once
// The sample's sprites in the order of their numbers, with the car records and
// deltas that belong to them.

#include <cstdint>
#include <vector>

#include "canvas.h"
#include "style/moddeclares.h"

namespace ombrevale::sample {

// Sprite counts per category, in the order of SPRB.
inline constexpr int kCarSprites = 48;  // 40 cars, then 8 wrecks
inline constexpr int kCarModels = 40;
inline constexpr int kPedSprites = 474;  // three sets of 158
inline constexpr int kPedFrames = 158;
inline constexpr int kCodeObjects = 300;
inline constexpr int kMapObjects = 500;
inline constexpr int kUserSprites = 44;
// Together the five groups above put the first font glyph at sprite 1366.
inline constexpr int kFontCount = 7;

struct SpriteArt {
    Canvas pixels{0, 0};
    int palette = 0;  // physical palette
};

struct CarSet {
    std::vector<SpriteArt> sprites;                // kCarSprites, cars first
    std::vector<modDeclares::CarRecord> records;   // one per car model
    std::vector<std::vector<Canvas>> deltaImages;  // per car sprite: the sprite with each delta applied
};

CarSet BuildCars();
std::vector<SpriteArt> BuildPeds();
std::vector<SpriteArt> BuildCodeObjects();
std::vector<SpriteArt> BuildMapObjects();
std::vector<SpriteArt> BuildUserSprites();

// Glyph counts per font (FONB) and the glyph sprites, font after font.
std::vector<int> FontGlyphCounts();
std::vector<SpriteArt> BuildFonts();

}  // namespace ombrevale::sample
