#pragma once
// The sample's physical palettes. Every palette holds 8 ramps of 32 shades;
// what each ramp means depends on the family (tiles, cars, peds, objects, fonts).

#include <array>
#include <cstdint>
#include <vector>

namespace ombrevale::sample {

struct Rgb {
    int r, g, b;
};

using PaletteBytes = std::array<std::uint8_t, 1024>;

// Physical palette numbers. Three pages of 64, so palettes on the second and
// third page are in real use (cars, peds and fonts live there).
inline constexpr int kPaletteCount = 192;
inline constexpr int kTilePalettes = 40;   // 0..39
inline constexpr int kCodeObjectPal = 40;  // 40..47
inline constexpr int kMapObjectPal = 48;   // 48..59
inline constexpr int kUserPal = 60;        // 60..63
inline constexpr int kCarPal = 64;         // 64..111, one per car sprite
inline constexpr int kCarRemapPal = 112;   // 112..127
inline constexpr int kCarRemaps = 16;
inline constexpr int kPedPal = 128;       // 128..130, one per ped set
inline constexpr int kPedRemapPal = 131;  // 131..162
inline constexpr int kPedRemaps = 32;
inline constexpr int kFontPal = 163;   // 163..169
inline constexpr int kSparePal = 170;  // 170..191, plain ramps

// Ramp roles of tile palettes.
enum TileRamp {
    kGrey = 0,
    kAsphalt = 1,
    kPavement = 2,
    kWhitePaint = 3,
    kYellowPaint = 4,
    kGreen = 5,
    kMatA = 6,
    kMatB = 7
};
// Ramp roles of car palettes.
enum CarRamp {
    kCarGrey = 0,
    kBody = 1,
    kGlass = 2,
    kTyre = 3,
    kChrome = 4,
    kHeadlight = 5,
    kTailLight = 6,
    kInterior = 7
};
// Ramp roles of ped palettes.
enum PedRamp { kPedGrey = 0, kSkin = 1, kHair = 2, kShirt = 3, kTrousers = 4, kShoes = 5, kMetal = 6, kBlood = 7 };

// Body colours of the car remaps and of the cars themselves.
Rgb CarColour(int index);
int CarColourCount();

std::vector<PaletteBytes> BuildPalettes();

}  // namespace ombrevale::sample
