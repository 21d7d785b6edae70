#pragma once
// The style's tiles as a map draws them: each tile's colours at 64, 32, ...,
// 1 pixels a side, made on first use, so that a block smaller on screen than
// its tile is drawn from a copy scaled down once. Colour 0 carries alpha 0,
// for flat lids that let the block below show through.

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

class clsSTY;

namespace ombrevale::mapdraw {

inline constexpr int kMips = 7;  // 64 .. 1

struct TileMips {
    // Level k is (64 >> k) pixels a side, row 0 at the top, ARGB.
    std::array<std::vector<std::uint32_t>, kMips> level;
    bool missing = false;
};

class TilePyramid {
public:
    explicit TilePyramid(const clsSTY& doc) : doc_(doc) {}
    // The tile's pictures; a number the style lacks draws hatched.
    const TileMips& Of(int tile);
    // After an edit of a tile, a palette or the whole style.
    void Forget(int tile);
    void ForgetAll() { made_.clear(); }
    // Tiles asked for that the style lacks, since the last ForgetAll.
    std::vector<int> Missing() const;
    // The bytes the copies made so far hold.
    std::size_t Bytes() const;

private:
    const clsSTY& doc_;
    std::vector<std::unique_ptr<TileMips>> made_;
};

// The hatching a missing tile draws with, at one pixel.
std::uint32_t HatchAt(int u, int v, int side);

}  // namespace ombrevale::mapdraw
