#include "mapdraw/tilepyramid.h"

#include <algorithm>

#include "style/clssty.h"
#include "style/moddeclares.h"
#include "style/palettebases.h"

namespace ombrevale::mapdraw {
namespace {

constexpr int kSide = 64;

std::uint32_t Average(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
    // Colour from all four, colour 0's too, for lids drawn opaque; see-through
    // where most of the four are colour 0.
    std::uint32_t r = 0, g = 0, bl = 0, opaque = 0;
    for (const std::uint32_t p : {a, b, c, d}) {
        r += (p >> 16) & 0xFF;
        g += (p >> 8) & 0xFF;
        bl += p & 0xFF;
        opaque += p >> 31;
    }
    return (opaque >= 2 ? 0xFF000000u : 0u) | (r / 4) << 16 | (g / 4) << 8 | bl / 4;
}

void MakeSmaller(TileMips& m) {
    for (int k = 1; k < kMips; ++k) {
        const int side = kSide >> k, big = side * 2;
        const auto& from = m.level[static_cast<std::size_t>(k - 1)];
        auto& to = m.level[static_cast<std::size_t>(k)];
        to.resize(static_cast<std::size_t>(side * side));
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) {
                const auto at = [&](int dx, int dy) {
                    return from[static_cast<std::size_t>((2 * y + dy) * big + 2 * x + dx)];
                };
                to[static_cast<std::size_t>(y * side + x)] = Average(at(0, 0), at(1, 0), at(0, 1), at(1, 1));
            }
    }
}

}  // namespace

std::uint32_t HatchAt(int u, int v, int side) {
    const int stripe = std::max(1, side / 8);
    return ((u + v) / stripe) % 2 ? 0xFFFF00FFu : 0xFF200020u;
}

const TileMips& TilePyramid::Of(int tile) {
    if (tile < 0 || tile > 1023) tile = 1023;
    if (made_.size() < 1024) made_.resize(1024);
    auto& slot = made_[static_cast<std::size_t>(tile)];
    if (slot) return *slot;
    slot = std::make_unique<TileMips>();
    auto& top = slot->level[0];
    top.resize(kSide * kSide);
    const auto pal = palettebases::TilePalette(tile);
    const bool has = tile < doc_.GetNumOfTiles() && static_cast<std::size_t>(tile) < doc_.STYTileStore.size() && pal &&
                     *pal >= 0 && static_cast<std::size_t>(*pal) < modDeclares::STYPalData.size();
    slot->missing = !has;
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            auto& px = top[static_cast<std::size_t>(y * kSide + x)];
            if (!has) {
                px = HatchAt(x, y, kSide);
                continue;
            }
            const std::uint8_t c =
                doc_.STYTileStore[static_cast<std::size_t>(tile)][static_cast<std::size_t>(y * kSide + x)];
            const auto& p = modDeclares::STYPalData[static_cast<std::size_t>(*pal)];
            const auto at = static_cast<std::size_t>(c) * 4;
            // Stored blue, green, red.
            px = (c == 0 ? 0u : 0xFF000000u) | std::uint32_t{p[at + 2]} << 16 | std::uint32_t{p[at + 1]} << 8 | p[at];
        }
    MakeSmaller(*slot);
    return *slot;
}

void TilePyramid::Forget(int tile) {
    if (tile >= 0 && static_cast<std::size_t>(tile) < made_.size()) made_[static_cast<std::size_t>(tile)].reset();
}

std::vector<int> TilePyramid::Missing() const {
    std::vector<int> out;
    for (std::size_t t = 0; t < made_.size(); ++t)
        if (made_[t] && made_[t]->missing) out.push_back(static_cast<int>(t));
    return out;
}

std::size_t TilePyramid::Bytes() const {
    std::size_t n = 0;
    for (const auto& m : made_)
        if (m)
            for (const auto& level : m->level) n += level.size() * sizeof(std::uint32_t);
    return n;
}

}  // namespace ombrevale::mapdraw
