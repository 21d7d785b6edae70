#pragma once
// Style files written byte by byte straight from the file format's offsets,
// apart from the program's own saver: the tests' second opinion, the fuzzers'
// starting inputs and the sample generator all build their files with it.

#include <array>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

namespace ombrevale::stylewriter {

using Bytes = std::vector<std::uint8_t>;

Bytes LE16(std::int32_t v);
Bytes LE32(std::int64_t v);
Bytes Cat(std::initializer_list<Bytes> parts);
Bytes Text(const std::string& s);

// Tile pixels as 64 rows of 64, row 0 first; laid out in strips of four.
using TilePixels = std::array<std::uint8_t, 4096>;
Bytes TilePayload(const std::vector<TilePixels>& tiles);

// Palettes as 256 colours of blue, green, red, fourth byte; laid out in pages of 64.
using PaletteBytes = std::array<std::uint8_t, 1024>;
Bytes PalettePayload(const std::vector<PaletteBytes>& palettes);

// The runs of one delta that turn `base` into `changed`, both `width` pixels a
// row, row 0 first: distance from the end of the last run (positions count in
// rows of 256), length, pixels.
Bytes EncodeDelta(std::span<const std::uint8_t> base, std::span<const std::uint8_t> changed, int width);

class StyleBytes {
public:
    explicit StyleBytes(const std::string& magic = "GBST", std::uint16_t version = 600);
    // A section whose size field is the payload's length.
    StyleBytes& Add(const std::string& tag, const Bytes& payload);
    // A section whose size field says something else than the payload's length.
    StyleBytes& AddWithSize(const std::string& tag, std::int64_t size, const Bytes& payload);
    StyleBytes& Raw(const Bytes& bytes);
    const Bytes& bytes() const { return bytes_; }
    // Where each section head starts, in the order added.
    const std::vector<std::size_t>& boundaries() const { return boundaries_; }

private:
    Bytes bytes_;
    std::vector<std::size_t> boundaries_;
};

// A small style holding all fourteen sections, in the program's writing order
// and with its size figures, so that saving it gives back its bytes.
struct FullStyle {
    StyleBytes file;
    std::vector<TilePixels> tiles;       // 8 tiles: two strips
    std::vector<PaletteBytes> palettes;  // 128 palettes: two pages
};
FullStyle MakeFullStyle();

// The same sections in another order, with lower-case tags, odd sizes for the
// fixed-length sections and an unknown section.
StyleBytes MakeScrambledStyle(const FullStyle& full);

// A style laid out as the game's font style (fstyle.sty): fourteen fonts
// from sprite 44, counted 140, 1, 1, 140 and ten of 144.
StyleBytes MakeFontStyle();

void WriteFile(const std::string& path, const Bytes& bytes);
Bytes ReadFile(const std::string& path);

}  // namespace ombrevale::stylewriter
