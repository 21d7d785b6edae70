#include "mapdraw/mapframe.h"

#include <algorithm>
#include <cmath>

#include "mapdraw/tilepyramid.h"

namespace ombrevale::mapdraw {
namespace {

constexpr std::uint32_t kGround = 0xFF000000u;

// The smallest copy at least span pixels a side.
int MipFor(int span) {
    int k = kMips - 1;
    while (k > 0 && (64 >> k) < span) --k;
    return k;
}

std::uint32_t Scaled(std::uint32_t p, int f) {
    if (f == 256) return p;
    const auto c = [&](int shift) { return ((((p >> shift) & 0xFFu) * static_cast<std::uint32_t>(f)) >> 8) << shift; };
    return 0xFF000000u | c(16) | c(8) | c(0);
}

}  // namespace

// Light level 0 is full light; each level darker.
int LightFactor(int level) { return 256 - 40 * level; }

TilePixel SourcePixel(std::uint16_t face, int u, int v, int side) {
    // Undo the clockwise turns one by one, then the mirror.
    for (int q = map::QuarterTurns(face); q > 0; --q) {
        const int was = u;
        u = v;
        v = side - 1 - was;
    }
    if (map::IsFlipped(face)) u = side - 1 - u;
    return {u, v};
}

Span BlockSpan(int b, double blockPx, double scrolled) {
    return {static_cast<int>(std::floor(b * blockPx - scrolled)),
            static_cast<int>(std::floor((b + 1) * blockPx - scrolled))};
}

void MapFrame::Follow(const map::Map& m, int levelCut) {
    stacks_.resize(static_cast<std::size_t>(map::kSide * map::kSide));
    for (int y = 0; y < map::kSide; ++y)
        for (int x = 0; x < map::kSide; ++x)
            stacks_[static_cast<std::size_t>(y * map::kSide + x)] = map::DrawnStack(m, x, y, levelCut);
    cut_ = levelCut;
}

void MapFrame::Draw(const map::Map& m, TilePyramid& tiles, const View& view, const DrawOptions& options,
                    std::uint32_t* argb, int w, int h, int stride) {
    if (cut_ != options.levelCut || stacks_.empty()) Follow(m, options.levelCut);
    for (int y = 0; y < h; ++y) std::fill_n(argb + static_cast<std::ptrdiff_t>(y) * stride, w, 0xFF202020u);
    const double s = view.blockPx;
    const int firstX = std::max(0, static_cast<int>(std::floor(view.left / s)));
    const int firstY = std::max(0, static_cast<int>(std::floor(view.top / s)));
    const int lastX = std::min(map::kSide - 1, static_cast<int>(std::floor((view.left + w) / s)));
    const int lastY = std::min(map::kSide - 1, static_cast<int>(std::floor((view.top + h) / s)));
    for (int by = firstY; by <= lastY; ++by) {
        const Span ys = BlockSpan(by, s, view.top);
        const int y0 = std::max(0, ys.first), y1 = std::min(h, ys.last);
        if (y1 <= y0) continue;
        for (int bx = firstX; bx <= lastX; ++bx) {
            const Span xs = BlockSpan(bx, s, view.left);
            const int x0 = std::max(0, xs.first), x1 = std::min(w, xs.last);
            if (x1 <= x0) continue;
            const int spanW = xs.last - xs.first, spanH = ys.last - ys.first;
            const int k = MipFor(std::max(spanW, spanH)), side = 64 >> k;
            const bool dim = options.marked && !(*options.marked)[static_cast<std::size_t>(by * map::kSide + bx)];
            for (int y = y0; y < y1; ++y)
                std::fill(argb + static_cast<std::ptrdiff_t>(y) * stride + x0,
                          argb + static_cast<std::ptrdiff_t>(y) * stride + x1, kGround);
            const map::Stack& stack = StackAt(bx, by);
            for (int i = stack.count - 1; i >= 0; --i) {
                const std::uint16_t lid = m.At(bx, by, stack.z[static_cast<std::size_t>(i)]).lid;
                const auto& pixels = tiles.Of(map::TileOf(lid)).level[static_cast<std::size_t>(k)];
                const bool keyed = map::IsFlat(lid);
                int f = options.shade ? LightFactor(map::LightOf(lid)) : 256;
                if (dim) f = f * 90 / 256;
                // The turn and the mirror are linear in (u, v): three corners give the whole map.
                const TilePixel o = SourcePixel(lid, 0, 0, side), du = SourcePixel(lid, 1, 0, side),
                                dv = SourcePixel(lid, 0, 1, side);
                const int uu = du.u - o.u, uv = du.v - o.v, vu = dv.u - o.u, vv = dv.v - o.v;
                for (int y = y0; y < y1; ++y) {
                    const int v = (y - ys.first) * side / spanH;
                    std::uint32_t* row = argb + static_cast<std::ptrdiff_t>(y) * stride;
                    const int rowU = o.u + vu * v, rowV = o.v + vv * v;
                    for (int x = x0; x < x1; ++x) {
                        const int u = (x - xs.first) * side / spanW;
                        const std::uint32_t p =
                            pixels[static_cast<std::size_t>((rowV + uv * u) * side + rowU + uu * u)];
                        if (keyed && !(p >> 24)) continue;
                        row[x] = Scaled(p | 0xFF000000u, f);
                    }
                }
            }
        }
    }
}

}  // namespace ombrevale::mapdraw
