#include "palettes.h"

#include <algorithm>

#include "canvas.h"

namespace ombrevale::sample {
namespace {

std::uint8_t Clamp8(int v) { return static_cast<std::uint8_t>(std::clamp(v, 0, 255)); }

// Shade 20 is the ramp's own colour; below it the colour darkens towards
// black, above it it brightens towards white.
Rgb RampShade(Rgb base, int s) {
    if (s <= 20) {
        const int f = s + 4;
        return {base.r * f / 24, base.g * f / 24, base.b * f / 24};
    }
    const int t = s - 20;
    return {base.r + (255 - base.r) * t / 16, base.g + (255 - base.g) * t / 16, base.b + (255 - base.b) * t / 16};
}

PaletteBytes Build(const std::array<Rgb, kRampCount>& ramps) {
    PaletteBytes p{};
    for (int ramp = 0; ramp < kRampCount; ++ramp)
        for (int s = 0; s < kShades; ++s) {
            const Rgb c = RampShade(ramps[static_cast<std::size_t>(ramp)], s);
            const auto at = static_cast<std::size_t>((ramp * kShades + s) * 4);
            p[at] = Clamp8(c.b);
            p[at + 1] = Clamp8(c.g);
            p[at + 2] = Clamp8(c.r);
            p[at + 3] = 0;
        }
    // Colour 0 is the game's transparent colour: plain black here.
    p[0] = p[1] = p[2] = 0;
    return p;
}

constexpr Rgb kNeutral{150, 150, 150};

// Material pairs of the tile palettes: roofs, walls, water, earth, wood, metal.
constexpr std::array<Rgb, kTilePalettes> kMaterialA = {{
    {110, 112, 118}, {150, 72, 52},   {40, 86, 150},  {122, 90, 56},   {160, 60, 50},   {92, 96, 104},  {176, 150, 112},
    {70, 110, 70},   {150, 120, 80},  {120, 60, 70},  {60, 70, 120},   {170, 168, 160}, {140, 100, 60}, {90, 90, 90},
    {180, 90, 60},   {50, 100, 110},  {130, 130, 70}, {100, 70, 50},   {160, 140, 130}, {80, 60, 90},   {150, 40, 40},
    {60, 120, 160},  {200, 180, 120}, {110, 80, 40},  {70, 70, 80},    {140, 150, 160}, {120, 140, 90}, {170, 110, 90},
    {90, 110, 130},  {60, 60, 60},    {190, 160, 60}, {100, 120, 100}, {130, 90, 110},  {80, 100, 70},  {155, 155, 145},
    {45, 75, 130},   {130, 110, 90},  {110, 50, 40},  {160, 120, 40},  {90, 130, 150},
}};
constexpr std::array<Rgb, kTilePalettes> kMaterialB = {{
    {60, 62, 70},  {200, 190, 170}, {194, 178, 128}, {90, 70, 50},    {80, 80, 84},    {150, 170, 190},
    {120, 90, 60}, {40, 40, 44},    {90, 110, 140},  {200, 200, 200}, {160, 150, 120}, {70, 90, 120},
    {60, 50, 40},  {170, 60, 40},   {120, 130, 140}, {200, 170, 120}, {60, 60, 50},    {150, 150, 150},
    {90, 80, 70},  {180, 170, 140}, {70, 70, 70},    {210, 200, 170}, {90, 90, 110},   {170, 150, 120},
    {150, 60, 40}, {80, 90, 60},    {60, 50, 60},    {100, 110, 120}, {190, 180, 150}, {150, 140, 40},
    {70, 80, 90},  {180, 160, 140}, {60, 80, 100},   {130, 110, 70},  {40, 60, 50},    {160, 190, 210},
    {80, 60, 50},  {150, 150, 120}, {60, 70, 80},    {200, 150, 100},
}};

constexpr std::array<Rgb, 16> kCarColours = {{
    {180, 30, 30},
    {30, 60, 170},
    {220, 200, 40},
    {40, 140, 60},
    {230, 230, 230},
    {40, 40, 45},
    {200, 110, 30},
    {120, 40, 140},
    {90, 170, 200},
    {150, 150, 160},
    {110, 60, 30},
    {230, 120, 160},
    {60, 90, 60},
    {170, 170, 100},
    {20, 120, 120},
    {140, 20, 50},
}};

constexpr std::array<Rgb, 12> kCloth = {{
    {60, 80, 150},
    {150, 40, 40},
    {50, 120, 60},
    {200, 190, 160},
    {40, 40, 40},
    {180, 120, 40},
    {110, 60, 140},
    {200, 200, 210},
    {90, 70, 50},
    {30, 130, 150},
    {220, 180, 60},
    {120, 120, 120},
}};
constexpr std::array<Rgb, 4> kSkins = {{{230, 190, 150}, {190, 140, 100}, {140, 95, 60}, {95, 60, 40}}};

}  // namespace

Rgb CarColour(int index) { return kCarColours[static_cast<std::size_t>(index % 16)]; }
int CarColourCount() { return static_cast<int>(kCarColours.size()); }

std::vector<PaletteBytes> BuildPalettes() {
    std::vector<PaletteBytes> out;
    out.reserve(kPaletteCount);
    for (int i = 0; i < kTilePalettes; ++i) {
        const int tint = (i % 5) * 4;
        out.push_back(Build({kNeutral,
                             {70 + tint, 72 + tint, 80},
                             {168, 162, 150 - tint},
                             {236, 236, 230},
                             {226, 184, 40},
                             {70 + tint, 128, 54},
                             kMaterialA[static_cast<std::size_t>(i)],
                             kMaterialB[static_cast<std::size_t>(i)]}));
    }
    // Code objects: fire, smoke, sparks, blood, metal; map objects: leaves, wood, stone.
    for (int i = 0; i < 24; ++i) {
        const int k = i % 6;
        out.push_back(Build({kNeutral,
                             {230, 120 + k * 10, 30},
                             {250, 220, 80},
                             {110 + k * 8, 110, 110},
                             {160, 20, 20},
                             {60 + k * 10, 130 - k * 5, 50},
                             {130, 90 + k * 6, 50},
                             {90 + k * 12, 140, 200 - k * 15}}));
    }
    for (int car = 0; car < 48; ++car) {
        const bool wreck = car >= 40;
        const Rgb body = wreck ? Rgb{70, 60, 55} : CarColour(car * 7 + 3);
        out.push_back(Build({kNeutral,
                             body,
                             {90, 130, 170},
                             {36, 36, 40},
                             {200, 200, 205},
                             {250, 240, 170},
                             {210, 30, 30},
                             {120, 85, 60}}));
    }
    for (int m = 0; m < kCarRemaps; ++m)
        out.push_back(Build({kNeutral,
                             CarColour(m),
                             {90, 130, 170},
                             {36, 36, 40},
                             {200, 200, 205},
                             {250, 240, 170},
                             {210, 30, 30},
                             {120, 85, 60}}));
    for (int set = 0; set < 3; ++set)
        out.push_back(Build({kNeutral,
                             kSkins[static_cast<std::size_t>(set)],
                             {60, 40, 25},
                             kCloth[static_cast<std::size_t>(set)],
                             kCloth[static_cast<std::size_t>(set + 4)],
                             {40, 30, 25},
                             {120, 120, 130},
                             {150, 10, 10}}));
    for (int m = 0; m < kPedRemaps; ++m)
        out.push_back(Build({kNeutral,
                             kSkins[static_cast<std::size_t>(m % 4)],
                             {40 + (m % 3) * 50, 30 + (m % 5) * 20, 20},
                             kCloth[static_cast<std::size_t>(m % 12)],
                             kCloth[static_cast<std::size_t>((m * 5 + 3) % 12)],
                             {40, 30, 25},
                             {120, 120, 130},
                             {150, 10, 10}}));
    for (int f = 0; f < 7; ++f) {
        const Rgb face = kCarColours[static_cast<std::size_t>((f * 3 + 2) % 16)];
        out.push_back(Build({kNeutral,
                             {245, 245, 240},
                             face,
                             {20, 20, 24},
                             {250, 210, 60},
                             {90, 200, 90},
                             {230, 60, 60},
                             {80, 140, 240}}));
    }
    while (static_cast<int>(out.size()) < kPaletteCount) {
        const int k = static_cast<int>(out.size());
        out.push_back(Build({kNeutral, CarColour(k), CarColour(k + 1), CarColour(k + 2), CarColour(k + 3),
                             CarColour(k + 4), CarColour(k + 5), CarColour(k + 6)}));
    }
    return out;
}

}  // namespace ombrevale::sample
