#pragma once
// A small 8-bit drawing surface and a seeded random source. Everything here is
// integer arithmetic so that the generated style is the same byte for byte on
// every machine and compiler.

#include <cstdint>
#include <vector>

namespace ombrevale::sample {

// splitmix64: tiny, well mixed, and fully specified (unlike std:: distributions).
class Rng {
public:
    explicit Rng(std::uint64_t seed) : state_(seed) {}
    std::uint64_t Next();
    // 0 .. n-1; n must be positive.
    int Below(int n);
    // lo .. hi inclusive.
    int Range(int lo, int hi) { return lo + Below(hi - lo + 1); }
    bool Chance(int percent) { return Below(100) < percent; }

private:
    std::uint64_t state_;
};

// Colour numbers are laid out as 8 ramps of 32 shades: ramp r, shade s is r * 32 + s.
// Colour 0 (ramp 0, shade 0) is the transparent colour and never drawn on purpose.
inline constexpr int kRampCount = 8;
inline constexpr int kShades = 32;
std::uint8_t Shade(int ramp, int shade);

class Canvas {
public:
    Canvas(int width, int height, std::uint8_t fill = 0);

    int Width() const { return width_; }
    int Height() const { return height_; }
    bool Inside(int x, int y) const { return x >= 0 && y >= 0 && x < width_ && y < height_; }
    std::uint8_t At(int x, int y) const;
    void Set(int x, int y, std::uint8_t colour);
    const std::vector<std::uint8_t>& Pixels() const { return pixels_; }

    void FillRect(int x, int y, int w, int h, std::uint8_t colour);
    void Frame(int x, int y, int w, int h, std::uint8_t colour);
    void FillEllipse(int cx, int cy, int rx, int ry, std::uint8_t colour);
    void Line(int x0, int y0, int x1, int y1, std::uint8_t colour);
    // Rectangle with the four corners cut by `cut` pixels.
    void FillRounded(int x, int y, int w, int h, int cut, std::uint8_t colour);
    // Moves every pixel of `ramp` in the rectangle by `delta` shades, clamped.
    void ShiftShade(int x, int y, int w, int h, int delta);
    // Sprinkles shades of one ramp over a rectangle: a texture, not noise for its own sake.
    void Speckle(Rng& rng, int x, int y, int w, int h, int ramp, int lo, int hi, int percent);
    // A copy turned a quarter clockwise (width and height swap).
    Canvas RotatedQuarter() const;

private:
    int width_;
    int height_;
    std::vector<std::uint8_t> pixels_;
};

}  // namespace ombrevale::sample
