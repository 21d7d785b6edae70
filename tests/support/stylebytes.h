#pragma once
// Builds style files byte by byte for tests, straight from the file format's
// offsets, so that tests of the loader and the saver do not lean on them.

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace testsupport {

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

void WriteFile(const std::string& path, const Bytes& bytes);
Bytes ReadFile(const std::string& path);

}  // namespace testsupport
