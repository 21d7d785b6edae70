#include "canvas.h"

#include <algorithm>
#include <cstdlib>

namespace ombrevale::sample {

std::uint64_t Rng::Next() {
    state_ += 0x9E3779B97F4A7C15ULL;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

int Rng::Below(int n) { return n <= 1 ? 0 : static_cast<int>(Next() % static_cast<std::uint64_t>(n)); }

std::uint8_t Shade(int ramp, int shade) {
    ramp = std::clamp(ramp, 0, kRampCount - 1);
    shade = std::clamp(shade, ramp == 0 ? 1 : 0, kShades - 1);
    return static_cast<std::uint8_t>(ramp * kShades + shade);
}

Canvas::Canvas(int width, int height, std::uint8_t fill)
    : width_(width), height_(height), pixels_(static_cast<std::size_t>(width * height), fill) {}

std::uint8_t Canvas::At(int x, int y) const {
    return Inside(x, y) ? pixels_[static_cast<std::size_t>(y * width_ + x)] : 0;
}

void Canvas::Set(int x, int y, std::uint8_t colour) {
    if (Inside(x, y)) pixels_[static_cast<std::size_t>(y * width_ + x)] = colour;
}

void Canvas::FillRect(int x, int y, int w, int h, std::uint8_t colour) {
    for (int yy = y; yy < y + h; ++yy)
        for (int xx = x; xx < x + w; ++xx) Set(xx, yy, colour);
}

void Canvas::Frame(int x, int y, int w, int h, std::uint8_t colour) {
    for (int xx = x; xx < x + w; ++xx) {
        Set(xx, y, colour);
        Set(xx, y + h - 1, colour);
    }
    for (int yy = y; yy < y + h; ++yy) {
        Set(x, yy, colour);
        Set(x + w - 1, yy, colour);
    }
}

void Canvas::FillEllipse(int cx, int cy, int rx, int ry, std::uint8_t colour) {
    if (rx <= 0 || ry <= 0) {
        Set(cx, cy, colour);
        return;
    }
    const long long limit = static_cast<long long>(rx) * rx * ry * ry;
    for (int dy = -ry; dy <= ry; ++dy)
        for (int dx = -rx; dx <= rx; ++dx) {
            const long long d = static_cast<long long>(dx) * dx * ry * ry + static_cast<long long>(dy) * dy * rx * rx;
            if (d <= limit) Set(cx + dx, cy + dy, colour);
        }
}

void Canvas::Line(int x0, int y0, int x1, int y1, std::uint8_t colour) {
    const int dx = std::abs(x1 - x0), sx = x0 < x1 ? 1 : -1;
    const int dy = -std::abs(y1 - y0), sy = y0 < y1 ? 1 : -1;
    int err = dx + dy;
    for (;;) {
        Set(x0, y0, colour);
        if (x0 == x1 && y0 == y1) break;
        const int e2 = 2 * err;
        if (e2 >= dy) {
            err += dy;
            x0 += sx;
        }
        if (e2 <= dx) {
            err += dx;
            y0 += sy;
        }
    }
}

void Canvas::FillRounded(int x, int y, int w, int h, int cut, std::uint8_t colour) {
    for (int yy = 0; yy < h; ++yy) {
        const int fromEdge = std::min(yy, h - 1 - yy);
        const int inset = std::max(0, cut - fromEdge);
        for (int xx = inset; xx < w - inset; ++xx) Set(x + xx, y + yy, colour);
    }
}

void Canvas::ShiftShade(int x, int y, int w, int h, int delta) {
    for (int yy = y; yy < y + h; ++yy)
        for (int xx = x; xx < x + w; ++xx) {
            if (!Inside(xx, yy)) continue;
            const int c = At(xx, yy);
            if (c == 0) continue;
            Set(xx, yy, Shade(c / kShades, c % kShades + delta));
        }
}

void Canvas::Speckle(Rng& rng, int x, int y, int w, int h, int ramp, int lo, int hi, int percent) {
    for (int yy = y; yy < y + h; ++yy)
        for (int xx = x; xx < x + w; ++xx)
            if (rng.Chance(percent)) Set(xx, yy, Shade(ramp, rng.Range(lo, hi)));
}

Canvas Canvas::RotatedQuarter() const {
    Canvas out(height_, width_);
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) out.Set(height_ - 1 - y, x, At(x, y));
    return out;
}

}  // namespace ombrevale::sample
