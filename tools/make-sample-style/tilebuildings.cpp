// Building tiles: roofs seen from above and the walls of the buildings' sides.
#include "tileart.h"

namespace ombrevale::sample::tileart {

void FlatRoof(Canvas& c, Rng& rng, int variant) {
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) c.Set(x, y, Shade(kMatA, rng.Range(16, 18)));
    for (int k = 0; k < 64; k += 32) {
        c.Line(k, 0, k, 63, Shade(kMatA, 13));
        c.Line(0, k, 63, k, Shade(kMatA, 13));
    }
    const int things = variant % 4;
    for (int i = 0; i < things; ++i) {
        const int x = rng.Range(6, 40), y = rng.Range(6, 40);
        if (rng.Chance(50)) {  // air-conditioning box with its fan
            c.FillRect(x + 2, y + 2, 18, 18, Shade(kGrey, 7));
            c.FillRect(x, y, 18, 18, Shade(kGrey, 21));
            c.FillEllipse(x + 9, y + 9, 6, 6, Shade(kGrey, 12));
            c.Line(x + 4, y + 9, x + 14, y + 9, Shade(kGrey, 24));
            c.Line(x + 9, y + 4, x + 9, y + 14, Shade(kGrey, 24));
        } else {  // vent stack
            c.FillEllipse(x + 5, y + 5, 4, 4, Shade(kGrey, 8));
            c.FillEllipse(x + 4, y + 4, 4, 4, Shade(kGrey, 20));
            c.FillEllipse(x + 4, y + 4, 2, 2, Shade(kGrey, 4));
        }
    }
}

void TarRoof(Canvas& c, Rng& rng, int variant) {
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) c.Set(x, y, Shade(kMatB, rng.Range(7, 12)));
    c.Speckle(rng, 0, 0, 64, 64, kMatB, 14, 18, 6);
    if (variant % 3 == 0) {  // patched repair
        const int x = rng.Range(4, 30), y = rng.Range(4, 30);
        c.FillRect(x, y, rng.Range(14, 28), rng.Range(10, 24), Shade(kMatB, 6));
    }
}

// Rows of overlapping roof tiles running across, a ridge along the top.
void PitchedRoof(Canvas& c, Rng& rng, int variant) {
    const int band = variant % 2 == 0 ? 8 : 6;
    for (int y = 0; y < 64; ++y) {
        const int inBand = y % band;
        for (int x = 0; x < 64; ++x) {
            const int joint = ((y / band) % 2) * (band / 2 + 2);
            int s = 20 - inBand * 8 / band;
            if ((x + joint) % 10 == 0) s -= 4;
            c.Set(x, y, Shade(kMatA, s + (rng.Chance(8) ? -1 : 0)));
        }
    }
    if (variant % 3 != 2) {
        c.FillRect(0, 0, 64, 3, Shade(kMatA, 24));
        c.Line(0, 3, 63, 3, Shade(kMatA, 9));
    }
    if (variant % 5 == 4) {  // chimney
        c.FillRect(40, 20, 12, 12, Shade(kMatB, 8));
        c.FillRect(38, 18, 12, 12, Shade(kMatB, 16));
        c.FillRect(41, 21, 6, 6, Shade(kGrey, 3));
    }
}

// A roof edge along the top (and the left, for a corner).
void Parapet(Canvas& c, Rng& rng, int variant, bool corner) {
    if (variant % 2 == 0)
        FlatRoof(c, rng, variant * 4);  // a multiple of 4: no boxes on an edge
    else
        TarRoof(c, rng, variant * 3 + 1);
    c.FillRect(0, 0, 64, 6, Shade(kMatB, 21));
    c.Line(0, 6, 63, 6, Shade(kMatB, 6));
    c.Line(0, 7, 63, 7, Shade(kGrey, 9));
    if (corner) {
        c.FillRect(0, 0, 6, 64, Shade(kMatB, 21));
        c.Line(6, 6, 6, 63, Shade(kMatB, 6));
        c.Line(7, 7, 7, 63, Shade(kGrey, 9));
    }
}

void Skylight(Canvas& c, Rng& rng, int variant) {
    FlatRoof(c, rng, 0);
    const int n = 1 + variant % 3;
    const int w = 52 / n;
    for (int i = 0; i < n; ++i) {
        const int x = 6 + i * w;
        c.FillRect(x, 10, w - 4, 44, Shade(kGrey, 22));
        c.FillRect(x + 2, 12, w - 8, 40, Shade(kMatB, 12));
        for (int y = 12; y < 52; y += 8) c.Line(x + 2, y, x + w - 7, y, Shade(kGrey, 22));
        c.Line(x + 3, 14, x + w - 8, 30, Shade(kMatB, 24));
    }
}

void Helipad(Canvas& c, Rng& rng, int variant) {
    TarRoof(c, rng, 1);
    c.FillEllipse(32, 32, 28, 28, Shade(kYellowPaint, 20));
    c.FillEllipse(32, 32, 25, 25, Shade(kGrey, 6));
    const std::uint8_t w = Shade(kWhitePaint, 20);
    c.FillRect(20, 18, 5, 28, w);
    c.FillRect(39, 18, 5, 28, w);
    c.FillRect(20, 30, 24, 4, w);
    if (variant % 2 == 1) c.Frame(14, 12, 36, 40, Shade(kWhitePaint, 16));
}

void Brick(Canvas& c, Rng& rng, int variant) {
    const std::uint8_t mortar = Shade(kPavement, variant % 2 == 0 ? 22 : 14);
    for (int row = 0; row < 8; ++row) {
        const int shift = row % 2 == 0 ? 0 : 8;
        for (int bx = -8; bx < 64; bx += 16) {
            const int s = rng.Range(14, 19);
            c.FillRect(bx + shift, row * 8, 16, 8, Shade(kMatA, s));
            c.Line(bx + shift, row * 8, bx + shift, row * 8 + 7, mortar);
        }
        c.Line(0, row * 8, 63, row * 8, mortar);
    }
    c.Speckle(rng, 0, 0, 64, 64, kMatA, 10, 12, 3);
}

void Panels(Canvas& c, Rng& rng, int variant) {
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) c.Set(x, y, Shade(kGrey, rng.Range(16, 18)));
    const int ph = variant % 2 == 0 ? 32 : 16;
    for (int y = 0; y < 64; y += ph) c.Line(0, y, 63, y, Shade(kGrey, 10));
    c.Line(0, 0, 0, 63, Shade(kGrey, 10));
    c.Line(32, 0, 32, 63, Shade(kGrey, 10));
    for (int i = 0; i < 3; ++i) {  // rain streaks
        const int x = rng.Below(64);
        c.Line(x, rng.Below(20), x, rng.Range(30, 63), Shade(kGrey, 13));
    }
}

void Windows(Canvas& c, Rng& rng, int variant) {
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) c.Set(x, y, Shade(kMatA, rng.Range(15, 17)));
    const int cols = 2 + variant % 3, rows = 2 + (variant / 3) % 2;
    const int cw = 64 / cols, rh = 64 / rows;
    for (int r = 0; r < rows; ++r)
        for (int k = 0; k < cols; ++k) {
            const int x = k * cw + 3, y = r * rh + 4, w = cw - 6, h = rh - 9;
            c.FillRect(x - 1, y - 1, w + 2, h + 2, Shade(kGrey, 24));
            const bool lit = rng.Chance(25);
            c.FillRect(x, y, w, h, lit ? Shade(kYellowPaint, 22) : Shade(kMatB, 9));
            if (!lit) c.Line(x + 1, y + h - 2, x + w - 2, y + 1, Shade(kMatB, 20));
            c.FillRect(x - 1, y + h + 1, w + 2, 2, Shade(kMatA, 21));
        }
}

void ShopFront(Canvas& c, Rng& rng, int variant) {
    Brick(c, rng, variant);
    for (int x = 0; x < 64; ++x) {
        const bool stripe = (x / 8) % 2 == 0;
        for (int y = 6; y < 18; ++y) c.Set(x, y, stripe ? Shade(kMatB, 18) : Shade(kWhitePaint, 20));
        c.Set(x, 18, Shade(kGrey, 6));
    }
    c.FillRect(2, 22, 60, 38, Shade(kGrey, 22));
    c.FillRect(4, 24, variant % 2 == 0 ? 36 : 56, 34, Shade(kMatB, 10));
    c.Line(6, 56, 22, 26, Shade(kMatB, 22));
    if (variant % 2 == 0) {  // the door
        c.FillRect(44, 24, 16, 36, Shade(kMatA, 9));
        c.Set(46, 42, Shade(kYellowPaint, 22));
    }
}

void Corrugated(Canvas& c, Rng& rng, int variant) {
    const int shades[4] = {14, 20, 24, 18};
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) c.Set(x, y, Shade(kGrey, shades[(x / 2) % 4] - (rng.Chance(5) ? 3 : 0)));
    if (variant % 3 == 0) {  // rust
        const int x = rng.Range(0, 40), y = rng.Range(20, 50);
        c.Speckle(rng, x, y, 24, 14, kMatA, 10, 16, 55);
    }
    c.Line(0, 31, 63, 31, Shade(kGrey, 8));
}

void WoodFloor(Canvas& c, Rng& rng, int variant) {
    for (int row = 0; row < 8; ++row) {
        const int end = (row * 23 + variant * 7) % 64;
        const int base = rng.Range(14, 18);
        for (int y = row * 8; y < row * 8 + 8; ++y)
            for (int x = 0; x < 64; ++x) c.Set(x, y, Shade(kMatA, base + ((x + y * 3 + row) % 11 == 0 ? -3 : 0)));
        c.Line(0, row * 8, 63, row * 8, Shade(kMatA, 8));
        c.Line(end, row * 8, end, row * 8 + 7, Shade(kMatA, 8));
    }
}

void MetalFloor(Canvas& c, Rng& rng, int variant) {
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) c.Set(x, y, Shade(kGrey, rng.Range(17, 18)));
    for (int y = 0; y < 64; y += 8)
        for (int x = (y / 8 % 2) * 4; x < 64; x += 8) {
            const bool up = ((x + y) / 8 + variant) % 2 == 0;
            c.Line(x, y + (up ? 3 : 0), x + 3, y + (up ? 0 : 3), Shade(kGrey, 25));
        }
    c.Frame(0, 0, 64, 64, Shade(kGrey, 10));
}

void Hedge(Canvas& c, Rng& rng, int variant) {
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) c.Set(x, y, Shade(kGreen, rng.Range(6, 10)));
    for (int i = 0; i < 120 + variant % 3 * 20; ++i)
        c.FillEllipse(rng.Below(64), rng.Below(64), rng.Range(1, 3), rng.Range(1, 2), Shade(kGreen, rng.Range(11, 19)));
}

void Fence(Canvas& c, Rng& rng, int variant) {
    Grass(c, rng, variant);
    for (int x = 0; x < 64; x += 8) {
        c.FillRect(x, 0, 6, 64, Shade(kMatA, rng.Range(15, 18)));
        c.Line(x + 6, 0, x + 6, 63, Shade(kMatA, 7));
    }
    c.FillRect(0, 12, 64, 3, Shade(kMatA, 11));
    c.FillRect(0, 48, 64, 3, Shade(kMatA, 11));
}

}  // namespace ombrevale::sample::tileart
