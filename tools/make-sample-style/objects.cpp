// Code objects (shots, blasts, pick-ups), map objects (street furniture, trees)
// and the user group (arrows and markers).
#include <array>

#include "palettes.h"
#include "sprites.h"

namespace ombrevale::sample {
namespace {

// Ramp roles of object palettes.
enum ObjRamp { kOGrey = 0, kFire = 1, kFlash = 2, kSmoke = 3, kRed = 4, kLeaf = 5, kWood = 6, kCool = 7 };

SpriteArt Blank(int w, int h, int palette) { return SpriteArt{Canvas(w, h), palette}; }

SpriteArt CodeObject(int i, Rng& rng) {
    const int kind = i / 25, step = i % 25;
    const int pal = kCodeObjectPal + kind % 8;
    switch (kind) {
        case 0: {  // bullet streaks
            SpriteArt a = Blank(3, 6 + step % 5, pal);
            a.pixels.Line(1, 0, 1, a.pixels.Height() - 1, Shade(kFlash, 26));
            a.pixels.Set(1, 0, Shade(kFlash, 31));
            return a;
        }
        case 1:
        case 2: {  // explosion, growing then fading
            const int r = 3 + step;
            SpriteArt a = Blank(2 * r + 4, 2 * r + 4, pal);
            const int cx = r + 2;
            a.pixels.FillEllipse(cx, cx, r, r, Shade(kFire, kind == 1 ? 16 : 10));
            a.pixels.Speckle(rng, 2, 2, 2 * r, 2 * r, kSmoke, 8, 14, kind == 1 ? 10 : 45);
            a.pixels.FillEllipse(cx, cx, r * 2 / 3, r * 2 / 3, Shade(kFlash, 24 - step / 3));
            for (int y = 0; y < a.pixels.Height(); ++y)
                for (int x = 0; x < a.pixels.Width(); ++x) {
                    const int dx = x - cx, dy = y - cx;
                    if (dx * dx + dy * dy > r * r) a.pixels.Set(x, y, 0);
                }
            return a;
        }
        case 3: {  // smoke puffs
            const int r = 2 + step / 3;
            SpriteArt a = Blank(2 * r + 3, 2 * r + 3, pal);
            a.pixels.FillEllipse(r + 1, r + 1, r, r, Shade(kSmoke, 16 - step / 4));
            a.pixels.FillEllipse(r, r, r / 2, r / 2, Shade(kSmoke, 22));
            return a;
        }
        case 4: {  // blood splats
            SpriteArt a = Blank(16, 16, pal);
            for (int k = 0; k < 5 + step % 4; ++k)
                a.pixels.FillEllipse(rng.Range(4, 11), rng.Range(4, 11), rng.Range(1, 3), rng.Range(1, 3),
                                     Shade(kRed, rng.Range(8, 14)));
            return a;
        }
        case 5: {  // muzzle flashes, turning with the step
            SpriteArt a = Blank(12, 12, pal);
            a.pixels.FillEllipse(6, 6, 2, 2, Shade(kFlash, 30));
            const int dx = (step % 4) - 2, dy = (step / 4 % 4) - 2;
            a.pixels.Line(6, 6, 6 + dx * 2, 6 - 5, Shade(kFire, 24));
            a.pixels.Line(6, 6, 6 + 5, 6 + dy * 2, Shade(kFire, 22));
            return a;
        }
        case 6:
        case 7: {  // weapon and power-up boxes
            SpriteArt a = Blank(16, 16, pal);
            a.pixels.FillRect(1, 1, 14, 14, Shade(kCool, 12));
            a.pixels.Frame(1, 1, 14, 14, Shade(kCool, 24));
            a.pixels.FillRect(4, 6, 8, 3, Shade(kOGrey, 24));
            a.pixels.FillRect(4 + step % 5, 9, 2, 3, Shade(kOGrey, 20));
            return a;
        }
        case 8: {  // sparks
            SpriteArt a = Blank(8, 8, pal);
            for (int k = 0; k < 4 + step % 4; ++k)
                a.pixels.Set(rng.Below(8), rng.Below(8), Shade(kFlash, rng.Range(24, 31)));
            return a;
        }
        case 9:
        case 10: {  // rockets and grenades
            SpriteArt a = Blank(6, 14, pal);
            a.pixels.FillRect(1, 2, 4, 9, Shade(kOGrey, 18));
            a.pixels.FillRect(2, 0, 2, 2, Shade(kRed, 16));
            if (kind == 9) a.pixels.FillRect(1, 11, 4, 3, Shade(kFire, 24 - step % 6));
            return a;
        }
        default: {  // tyre marks and debris
            SpriteArt a = Blank(8, 16, pal);
            for (int y = 0; y < 16; ++y)
                if (rng.Chance(70)) a.pixels.Set(2 + rng.Below(4), y, Shade(kOGrey, rng.Range(3, 7)));
            return a;
        }
    }
}

SpriteArt MapObject(int i, Rng& rng) {
    const int kind = i / 25, step = i % 25;
    const int pal = kMapObjectPal + kind % 12;
    switch (kind % 10) {
        case 0:
        case 1: {  // trees: a round canopy with light on its top-left
            const int r = 9 + step / 2;
            SpriteArt a = Blank(2 * r + 4, 2 * r + 4, pal);
            a.pixels.FillEllipse(r + 3, r + 3, r, r, Shade(kLeaf, 6));
            a.pixels.FillEllipse(r + 1, r + 1, r, r, Shade(kLeaf, 13));
            for (int k = 0; k < r * 3; ++k)
                a.pixels.FillEllipse(rng.Range(3, 2 * r - 1), rng.Range(3, 2 * r - 1), 2, 2,
                                     Shade(kLeaf, rng.Range(11, 19)));
            a.pixels.FillEllipse(r - r / 3, r - r / 3, r / 3, r / 3, Shade(kLeaf, 22));
            return a;
        }
        case 2: {  // bins
            SpriteArt a = Blank(12, 12, pal);
            a.pixels.FillEllipse(6, 6, 5, 5, Shade(kOGrey, 10 + step % 6));
            a.pixels.FillEllipse(6, 6, 3, 3, Shade(kOGrey, 5));
            return a;
        }
        case 3: {  // benches
            SpriteArt a = Blank(28, 10, pal);
            for (int y = 1; y < 9; y += 3) a.pixels.FillRect(1, y, 26, 2, Shade(kWood, 14 + step % 5));
            a.pixels.FillRect(3, 0, 2, 10, Shade(kOGrey, 8));
            a.pixels.FillRect(23, 0, 2, 10, Shade(kOGrey, 8));
            return a;
        }
        case 4: {  // traffic cones
            SpriteArt a = Blank(10, 10, pal);
            a.pixels.FillRect(1, 1, 8, 8, Shade(kFire, 12));
            a.pixels.FillEllipse(5, 5, 3, 3, Shade(kFire, 20));
            a.pixels.FillEllipse(5, 5, 1, 1, Shade(kOGrey, 28));
            return a;
        }
        case 5: {  // crates
            SpriteArt a = Blank(16 + step % 3 * 4, 16 + step % 3 * 4, pal);
            const int s = a.pixels.Width();
            a.pixels.FillRect(0, 0, s, s, Shade(kWood, 16));
            a.pixels.Frame(0, 0, s, s, Shade(kWood, 9));
            a.pixels.Line(0, 0, s - 1, s - 1, Shade(kWood, 10));
            a.pixels.Line(s - 1, 0, 0, s - 1, Shade(kWood, 10));
            return a;
        }
        case 6: {  // oil drums
            SpriteArt a = Blank(14, 14, pal);
            a.pixels.FillEllipse(7, 7, 6, 6, Shade(kCool, 12 + step % 5));
            a.pixels.FillEllipse(7, 7, 4, 4, Shade(kCool, 16));
            a.pixels.FillEllipse(5, 9, 1, 1, Shade(kOGrey, 4));
            return a;
        }
        case 7: {  // street lamps from above
            SpriteArt a = Blank(8, 24, pal);
            a.pixels.FillRect(3, 4, 2, 20, Shade(kOGrey, 12));
            a.pixels.FillEllipse(4, 3, 3, 3, Shade(kFlash, 22 + step % 6));
            return a;
        }
        case 8: {  // fences and railings
            SpriteArt a = Blank(32, 6, pal);
            a.pixels.FillRect(0, 2, 32, 2, Shade(kOGrey, 18 + step % 4));
            for (int x = 0; x < 32; x += 8) a.pixels.FillRect(x, 0, 2, 6, Shade(kOGrey, 10));
            return a;
        }
        default: {  // phone boxes, post boxes, hydrants
            SpriteArt a = Blank(14, 14, pal);
            const int which = step % 3;
            if (which == 0) {
                a.pixels.FillRect(1, 1, 12, 12, Shade(kRed, 14));
                a.pixels.FillRect(3, 3, 8, 8, Shade(kRed, 18));
                a.pixels.FillRect(5, 5, 4, 4, Shade(kCool, 20));
            } else if (which == 1) {
                a.pixels.FillEllipse(7, 7, 5, 5, Shade(kRed, 15));
                a.pixels.Line(4, 7, 10, 7, Shade(kOGrey, 4));
            } else {
                a.pixels.FillEllipse(7, 7, 4, 4, Shade(kFlash, 18));
                a.pixels.FillEllipse(7, 7, 2, 2, Shade(kRed, 16));
            }
            return a;
        }
    }
}

SpriteArt UserSprite(int i) {
    SpriteArt a = Blank(24, 24, kUserPal + i % 4);
    if (i < 16) {  // arrows in 16 directions, drawn as a shaft and a head
        static constexpr std::array<std::array<int, 2>, 16> kDir = {{{0, -10},
                                                                     {4, -9},
                                                                     {7, -7},
                                                                     {9, -4},
                                                                     {10, 0},
                                                                     {9, 4},
                                                                     {7, 7},
                                                                     {4, 9},
                                                                     {0, 10},
                                                                     {-4, 9},
                                                                     {-7, 7},
                                                                     {-9, 4},
                                                                     {-10, 0},
                                                                     {-9, -4},
                                                                     {-7, -7},
                                                                     {-4, -9}}};
        const auto d = kDir[static_cast<std::size_t>(i)];
        a.pixels.Line(12 - d[0], 12 - d[1], 12 + d[0], 12 + d[1], Shade(kFlash, 24));
        a.pixels.FillEllipse(12 + d[0], 12 + d[1], 2, 2, Shade(kRed, 20));
    } else {  // mission markers: rings and crosses
        a.pixels.FillEllipse(12, 12, 10, 10, Shade(kCool, 12 + i % 8));
        a.pixels.FillEllipse(12, 12, 7, 7, 0);
        if (i % 2 == 0) {
            a.pixels.Line(6, 6, 18, 18, Shade(kRed, 22));
            a.pixels.Line(18, 6, 6, 18, Shade(kRed, 22));
        }
    }
    return a;
}

}  // namespace

std::vector<SpriteArt> BuildCodeObjects() {
    Rng rng(0xC0DE);
    std::vector<SpriteArt> out;
    for (int i = 0; i < kCodeObjects; ++i) out.push_back(CodeObject(i, rng));
    return out;
}

std::vector<SpriteArt> BuildMapObjects() {
    Rng rng(0x3A9);
    std::vector<SpriteArt> out;
    for (int i = 0; i < kMapObjects; ++i) out.push_back(MapObject(i, rng));
    return out;
}

std::vector<SpriteArt> BuildUserSprites() {
    std::vector<SpriteArt> out;
    for (int i = 0; i + 1 < kUserSprites; ++i) out.push_back(UserSprite(i));
    // The last user sprite stands right before the glyph of '!', where the text
    // pane looks for a space: make it the blank glyph a font has for one.
    out.push_back(Blank(8, 16, kUserPal));
    return out;
}

}  // namespace ombrevale::sample
