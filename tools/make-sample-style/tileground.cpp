// Ground tiles: grass, earth, water, pavements, roads and rails.
#include "tileart.h"

namespace ombrevale::sample::tileart {

void Grass(Canvas& c, Rng& rng, int variant) {
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) c.Set(x, y, Shade(kGreen, rng.Range(13, 17)));
    const int blades = 140 + (variant % 5) * 40;
    for (int i = 0; i < blades; ++i) {
        const int x = rng.Below(64), y = rng.Below(64);
        c.Line(x, y, x + rng.Range(-1, 1), y + 3, Shade(kGreen, rng.Range(9, 11)));
        c.Set(x, y, Shade(kGreen, rng.Range(20, 23)));
    }
}

void Dirt(Canvas& c, Rng& rng, int variant) {
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) c.Set(x, y, Shade(kMatA, rng.Range(13, 17)));
    for (int i = 0; i < 30 + variant % 4 * 10; ++i)
        c.FillEllipse(rng.Below(64), rng.Below(64), rng.Range(0, 2), rng.Range(0, 1), Shade(kGrey, rng.Range(10, 20)));
    for (int i = 0; i < 4; ++i) {
        const int y = rng.Below(64);
        c.Line(0, y, 63, y + rng.Range(-6, 6), Shade(kMatA, 11));
    }
}

void Flowers(Canvas& c, Rng& rng, int variant) {
    Grass(c, rng, variant);
    if (variant % 2 == 0) {
        for (int i = 0; i < 3; ++i) {
            const int cx = rng.Range(12, 52), cy = rng.Range(12, 52), r = rng.Range(7, 12);
            c.FillEllipse(cx + 2, cy + 2, r, r, Shade(kGreen, 6));
            c.FillEllipse(cx, cy, r, r, Shade(kGreen, 11));
            c.Speckle(rng, cx - r, cy - r, r * 2, r * 2, kGreen, 12, 20, 30);
            c.FillEllipse(cx - r / 3, cy - r / 3, r / 3, r / 3, Shade(kGreen, 21));
        }
    } else {
        for (int i = 0; i < 40; ++i) {
            const int x = rng.Below(64), y = rng.Below(64);
            const int ramp = rng.Chance(50) ? kMatA : kYellowPaint;
            c.Set(x, y, Shade(ramp, 24));
            c.Set(x + 1, y, Shade(ramp, 20));
            c.Set(x, y + 1, Shade(ramp, 18));
        }
    }
}

void Water(Canvas& c, Rng& rng, int variant) {
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) c.Set(x, y, Shade(kMatA, 14 + ((x / 4 + y / 3 + variant) % 3)));
    for (int i = 0; i < 26; ++i) {
        const int x = rng.Below(64), y = rng.Below(64), len = rng.Range(3, 9);
        c.Line(x, y, x + len, y, Shade(kMatA, 23));
        c.Line(x + 1, y + 1, x + len - 1, y + 1, Shade(kMatA, 11));
    }
}

// Water on the right, land on the left: rotated for the other three sides.
void Shore(Canvas& c, Rng& rng, int variant) {
    Water(c, rng, variant);
    const int edge = 18 + (variant % 3) * 6;
    const bool grassy = variant % 2 == 1;
    for (int y = 0; y < 64; ++y) {
        const int wobble = (y % 16 < 8 ? y % 8 : 8 - y % 8) / 2;
        const int to = edge + wobble;
        for (int x = 0; x < to; ++x)
            c.Set(x, y, grassy && x < to - 6 ? Shade(kGreen, rng.Range(13, 17)) : Shade(kMatB, rng.Range(16, 20)));
        c.Set(to, y, Shade(kMatA, 24));
        c.Set(to + 1, y, Shade(kMatA, 22));
    }
}

void Slabs(Canvas& c, Rng& rng, int variant) {
    const int sw = variant % 3 == 0 ? 32 : 16, sh = 16;
    for (int by = 0; by < 64; by += sh)
        for (int bx = 0; bx < 64; bx += sw) {
            const int base = rng.Range(16, 19);
            for (int y = by; y < by + sh; ++y)
                for (int x = bx; x < bx + sw; ++x) c.Set(x, y, Shade(kPavement, base + (rng.Chance(12) ? -2 : 0)));
            c.Line(bx, by, bx + sw - 1, by, Shade(kPavement, 11));
            c.Line(bx, by, bx, by + sh - 1, Shade(kPavement, 11));
        }
    if (variant % 4 == 1) c.FillEllipse(rng.Range(10, 54), rng.Range(10, 54), 4, 3, Shade(kGrey, 9));
}

// Pavement at the top, a kerb, then road: rotated for the other three sides.
void Kerb(Canvas& c, Rng& rng, int variant) {
    Slabs(c, rng, variant);
    Asphalt(c, rng, variant, 44);
    c.FillRect(0, 40, 64, 4, Shade(kPavement, 24));
    c.Line(0, 43, 63, 43, Shade(kPavement, 12));
    for (int x = 0; x < 64; x += 16) c.Line(x, 40, x, 43, Shade(kPavement, 14));
}

// The rounded corner where two kerbs meet: road in the bottom right, slabs around it.
void KerbCorner(Canvas& c, Rng& rng, int variant) {
    Slabs(c, rng, variant);
    const int r = variant % 2 == 0 ? 44 : 24;
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) {
            const int dx = 64 - x, dy = 64 - y;
            const int d = dx * dx + dy * dy;
            if (d < (r - 4) * (r - 4))
                c.Set(x, y, Shade(kAsphalt, rng.Range(13, 16)));
            else if (d < r * r)
                c.Set(x, y, Shade(kPavement, d < (r - 1) * (r - 1) ? 24 : 12));
        }
}

void Asphalt(Canvas& c, Rng& rng, int variant, int fromRow) {
    for (int y = fromRow; y < 64; ++y)
        for (int x = 0; x < 64; ++x) c.Set(x, y, Shade(kAsphalt, rng.Range(13, 16)));
    if (variant % 3 == 0) {
        int x = rng.Below(64), y = fromRow + rng.Below(64 - fromRow);
        for (int i = 0; i < 14; ++i) {
            const int nx = x + rng.Range(-2, 2), ny = y + rng.Range(1, 3);
            c.Line(x, y, nx, ny, Shade(kAsphalt, 9));
            x = nx;
            y = ny;
        }
    }
    if (variant % 5 == 2 && fromRow < 40)
        c.FillEllipse(rng.Range(16, 48), rng.Range(fromRow + 8, 56), 6, 4, Shade(kAsphalt, 10));
}

void RoadMarking(Canvas& c, Rng& rng, int variant, int kind) {
    Asphalt(c, rng, variant, 0);
    const std::uint8_t white = Shade(kWhitePaint, 20), yellow = Shade(kYellowPaint, 20);
    switch (kind) {
        case 0:  // centre dash
            c.FillRect(30, 8, 4, 32, white);
            break;
        case 1:  // double yellow
            c.FillRect(26, 0, 3, 64, yellow);
            c.FillRect(35, 0, 3, 64, yellow);
            break;
        case 2:  // edge line by the kerb
            c.FillRect(0, 0, 4, 64, Shade(kPavement, 22));
            c.FillRect(8, 0, 3, 64, white);
            break;
        case 3:  // zebra crossing
            for (int y = 2; y < 64; y += 12) c.FillRect(6, y, 52, 7, white);
            break;
        case 4: {  // arrow pointing up
            c.FillRect(29, 24, 6, 34, white);
            for (int i = 0; i < 14; ++i) c.Line(32 - i, 10 + i, 32 + i, 10 + i, white);
            break;
        }
        case 5:  // yellow box junction
            c.Frame(2, 2, 60, 60, yellow);
            c.Frame(3, 3, 58, 58, yellow);
            for (int k = -64; k < 64; k += 16) {
                c.Line(k, 0, k + 63, 63, yellow);
                c.Line(k + 63, 0, k, 63, yellow);
            }
            break;
        case 6:  // parking bays
            c.FillRect(0, 60, 64, 2, white);
            for (int x = 0; x < 64; x += 21) c.FillRect(x, 20, 2, 42, white);
            break;
        default:  // drain cover
            c.FillEllipse(32, 32, 11, 11, Shade(kGrey, 10));
            c.FillEllipse(32, 32, 9, 9, Shade(kGrey, 16));
            for (int k = -8; k <= 8; k += 4) c.Line(32 + k, 24, 32 + k, 40, Shade(kGrey, 8));
            break;
    }
    // Paint wears: a few flecks of road show through.
    for (int i = 0; i < 60; ++i) {
        const int x = rng.Below(64), y = rng.Below(64);
        if (c.At(x, y) == white || c.At(x, y) == yellow) c.Set(x, y, Shade(kAsphalt, 15));
    }
}

void Rails(Canvas& c, Rng& rng, int variant, int kind) {
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) c.Set(x, y, Shade(kGrey, rng.Range(9, 17)));
    for (int y = 2; y < 64; y += 8) c.FillRect(8, y, 48, 4, Shade(kMatA, 12 + variant % 3));
    c.FillRect(16, 0, 3, 64, Shade(kGrey, 26));
    c.FillRect(45, 0, 3, 64, Shade(kGrey, 26));
    if (kind == 1) {  // the live rail, with its warning hatch
        c.FillRect(56, 0, 3, 64, Shade(kGrey, 28));
        for (int y = 0; y < 64; y += 8) {
            c.FillRect(60, y, 4, 4, Shade(kYellowPaint, 20));
            c.FillRect(60, y + 4, 4, 4, Shade(kGrey, 5));
        }
    } else if (kind == 2) {  // platform edge beside the live rail
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x) c.Set(x, y, Shade(kPavement, rng.Range(17, 19)));
        for (int y = 0; y < 64; y += 8)
            for (int i = 0; i < 8; ++i)
                c.Line(i + (y / 8 % 2) * 4, y, i + (y / 8 % 2) * 4, y + 7, Shade(kYellowPaint, 20));
        c.FillRect(0, 0, 3, 64, Shade(kGrey, 6));
        for (int y = 0; y < 64; y += 4) c.Line(12, y, 63, y, Shade(kPavement, 14));
    }
}

}  // namespace ombrevale::sample::tileart
