#pragma once
// A small document set up straight in the stores: three palettes with a
// fourth byte that is not 0, four tiles, sprites of awkward widths packed
// against each other on one 256-wide page, and two sprites with deltas.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "style/clssty.h"
#include "stylewriter/stylewriter.h"
#include "support/hookrecorder.h"
#include "support/tempdir.h"
#include "testpicture.h"

namespace ombrevale::pixeltest {

using ombrevale::stylewriter::Bytes;

struct SpriteSpec {
    std::int32_t offset;
    std::uint8_t width;
    std::uint8_t height;
};

// Sprites: 0 is 30x10 with sprite 1 to its right; 2 starts in column 254;
// then widths 1, 29, 31, 32, 255 and an empty one.
inline constexpr SpriteSpec kSprites[] = {{0, 30, 10},
                                          {30, 4, 3},
                                          {254, 2, 2},
                                          {20 * 256, 1, 5},
                                          {30 * 256, 29, 2},
                                          {30 * 256 + 40, 31, 2},
                                          {30 * 256 + 80, 32, 2},
                                          {40 * 256, 255, 3},
                                          {0, 0, 0}};
inline constexpr std::int16_t kTileCount = 4;
inline constexpr std::int16_t kPaletteCount = 3;

// Stored colour c of palette p: blue, green, red, fourth byte.
std::array<std::uint8_t, 4> StoredColour(std::size_t p, std::size_t c);
// What GetCol should give for it, worked out from the bytes above.
std::int32_t ExpectedColour(std::size_t p, std::size_t c);
std::uint8_t TilePixel(std::size_t t, std::size_t r, std::size_t c);
std::uint8_t SpriteByte(std::size_t i);
// Tile t uses palette (t + 1) % 3; sprite s uses palette s % 3.
std::int16_t TilePalette(std::size_t t);
std::int16_t SpriteOwnPalette(std::size_t s);

class Scene : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    std::string File(const std::string& name) const { return dir.File(name); }

    ombrevale::testsupport::TempDir dir;
    ombrevale::testsupport::ScopedCurrentDir cwd{dir.path()};
    ombrevale::testsupport::HookRecorder hooks;
    clsSTY doc;
};

}  // namespace ombrevale::pixeltest
