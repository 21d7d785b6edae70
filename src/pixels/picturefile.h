#pragma once
// Pictures read back for import. Image editors save BMPs of many kinds, so
// besides the program's own 8-bit files this reads 1-, 4-, 8-, 24- and
// 32-bit pictures, bottom-up or top-down, with any of the usual heads.

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

// Larger than any picture of a tile or a sprite by far, small enough that a
// hostile head cannot make the reader allocate much.
inline constexpr int kMaxSide = 4096;
inline constexpr std::uintmax_t kMaxFileBytes = 64u << 20;

// Reads a BMP held in memory; never reads outside `bytes`. The problem's text
// says what is wrong without naming the file.
ombrevale::Outcome ReadBMP(std::span<const std::uint8_t> bytes, Picture& out);

// Reads the file whole, then as above.
ombrevale::Outcome ReadBMPFile(const std::string& path, Picture& out);

}  // namespace ombrevale::picturefile
