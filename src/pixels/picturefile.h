#pragma once
// Pictures read back for import. Image editors save BMPs of many kinds, so
// besides the program's own 8-bit files this reads 1-, 4-, 8-, 24- and
// 32-bit pictures, bottom-up or top-down, with any of the usual heads.

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "style/bytes.h"
#include "style/problem.h"

namespace ombrevale::picturefile {

struct Rgba {
    std::uint8_t r = 0, g = 0, b = 0, a = 255;
    bool operator==(const Rgba&) const = default;
};

// A picture, row 0 at the top.
struct Picture {
    int width = 0;
    int height = 0;
    // Every pixel's colour, row by row.
    std::vector<Rgba> colours;
    // For a picture with a colour table: each pixel's entry and the table as
    // the file holds it. Both empty for a picture of plain colours.
    ByteString numbers;
    std::vector<Rgba> table;
};

// How close `shown` (one colour a pixel) comes to the picture over its
// opaque pixels: PSNR in dB over red, green and blue; infinity when equal.
double Psnr(const Picture& pic, const std::vector<Rgba>& shown);

// Larger than any picture of a tile or a sprite by far, small enough that a
// hostile head cannot make the reader allocate much.
inline constexpr int kMaxSide = 4096;
inline constexpr std::uintmax_t kMaxFileBytes = 64u << 20;

// A BMP's head, read and checked, and where its colour table and its rows
// lie in the file's bytes: an 8-bit picture can be drawn straight from them.
struct Layout {
    int width = 0;
    int height = 0;
    int bits = 0;  // 1, 4, 8, 24 or 32
    bool topDown = false;
    std::size_t stride = 0;               // bytes a stored row takes, padding included
    std::span<const std::uint8_t> table;  // blue, green, red and a spare byte a colour; empty above 8 bits
    std::span<const std::uint8_t> rows;   // all of them, as stored
    // Red, green, blue and alpha of a 32-bit pixel (alpha 0: opaque).
    std::array<std::uint32_t, 4> masks{0x00FF0000u, 0x0000FF00u, 0x000000FFu, 0};

    // Row y of the picture, counted from the top.
    std::span<const std::uint8_t> Row(int y) const {
        const auto stored = static_cast<std::size_t>(topDown ? y : height - 1 - y);
        return rows.subspan(stored * stride, stride);
    }
};

// Checks all that ReadBMP checks, decoding nothing; `out` views `bytes`.
ombrevale::Outcome ReadLayout(std::span<const std::uint8_t> bytes, Layout& out);

// Reads a BMP held in memory; never reads outside `bytes`. The problem's text
// says what is wrong without naming the file.
ombrevale::Outcome ReadBMP(std::span<const std::uint8_t> bytes, Picture& out);

// Reads the file whole, then as above.
ombrevale::Outcome ReadBMPFile(const std::string& path, Picture& out);

}  // namespace ombrevale::picturefile
