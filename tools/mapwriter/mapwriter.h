#pragma once
// Map files written byte by byte from the format's notes, apart from the
// program's reader: the tests' maps, the fuzz seeds and the sample map.

#include <cstdint>
#include <string>
#include <vector>

namespace ombrevale::mapwriter {

using Bytes = std::vector<std::uint8_t>;

inline constexpr int kSide = 256;
inline constexpr int kLevels = 8;

struct Block {
    std::uint16_t left = 0, right = 0, top = 0, bottom = 0, lid = 0;
    std::uint8_t arrows = 0, slope = 0;
    bool operator==(const Block&) const = default;
    bool operator<(const Block& o) const;
};

// A face word: tile, then the flags of a lid (light) or a side (wall, bullet wall).
std::uint16_t Lid(int tile, int light = 0, bool flat = false, bool flip = false, int turns = 0);
std::uint16_t Side(int tile, bool wall = true, bool bulletWall = false, bool flat = false, bool flip = false,
                   int turns = 0);
std::uint8_t Slope(int ground, int shape = 0);

// The whole grid, [z][y][x].
class Grid {
public:
    Grid() : cells_(static_cast<std::size_t>(kSide * kSide * kLevels)) {}
    Block& at(int x, int y, int z) { return cells_[Index(x, y, z)]; }
    const Block& at(int x, int y, int z) const { return cells_[Index(x, y, z)]; }

private:
    static std::size_t Index(int x, int y, int z) {
        return (static_cast<std::size_t>(z) * kSide + static_cast<std::size_t>(y)) * kSide +
               static_cast<std::size_t>(x);
    }
    std::vector<Block> cells_;
};

Bytes UmapPayload(const Grid& g);
// Columns and blocks shared as the game's maps share them; block 0 all zero.
Bytes DmapPayload(const Grid& g);
Bytes CmapPayload(const Grid& g);

struct Zone {
    int type, x, y, w, h;
    std::string name;
};
Bytes ZonePayload(const std::vector<Zone>& zones);
struct Light {
    std::uint32_t argb;
    int x, y, z, radius;  // in 128ths of a block
    int intensity, shape, on, off;
};
Bytes LightPayload(const std::vector<Light>& lights);
struct Animation {
    int base, rate, repeat;
    std::vector<int> tiles;
};
Bytes AnimPayload(const std::vector<Animation>& anims);
struct MapObject {
    int x, y, rotation, type;  // x, y in 128ths of a block
};
Bytes ObjectPayload(const std::vector<MapObject>& objects);

class MapBytes {
public:
    explicit MapBytes(const std::string& magic = "GBMP", std::uint16_t version = 500);
    MapBytes& Add(const std::string& type, const Bytes& payload);
    // A chunk whose size field says something else than the payload's length.
    MapBytes& AddWithSize(const std::string& type, std::int64_t size, const Bytes& payload);
    MapBytes& Raw(const Bytes& bytes);
    const Bytes& bytes() const { return bytes_; }

private:
    Bytes bytes_;
};

}  // namespace ombrevale::mapwriter
