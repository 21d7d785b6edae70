#pragma once
// A GTA2 map file (GBMP, version 500): a grid of 256 x 256 columns of 8
// levels, each cell a block of five faces, arrows and a slope, and the
// chunks beside it. The grid is held unpacked, whichever of UMAP, CMAP and
// DMAP it came from; blocks are shared between cells as the file shares them.

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ombrevale::map {

inline constexpr int kSide = 256;
inline constexpr int kLevels = 8;
inline constexpr int kCells = kSide * kSide * kLevels;
inline constexpr int kBlockBytes = 12;
inline constexpr std::uint16_t kVersion = 500;
// Not a picture: the lid of a diagonal slope that has none.
inline constexpr int kNoLid = 1023;

// A face word: tile number, then flags and a quarter turn.
inline int TileOf(std::uint16_t face) { return face & 0x3FF; }
inline int LightOf(std::uint16_t lid) { return (lid >> 10) & 3; }
inline bool IsFlat(std::uint16_t face) { return (face & 0x1000) != 0; }
inline bool IsFlipped(std::uint16_t face) { return (face & 0x2000) != 0; }
inline int QuarterTurns(std::uint16_t face) { return face >> 14; }
inline bool IsWall(std::uint16_t side) { return (side & 0x400) != 0; }
inline bool IsBulletWall(std::uint16_t side) { return (side & 0x800) != 0; }

struct BlockInfo {
    std::uint16_t left = 0, right = 0, top = 0, bottom = 0, lid = 0;
    std::uint8_t arrows = 0, slope = 0;

    bool Empty() const {
        return left == 0 && right == 0 && top == 0 && bottom == 0 && lid == 0 && arrows == 0 && slope == 0;
    }
    // 0 air, 1 road, 2 pavement, 3 field.
    int GroundType() const { return slope & 3; }
    int SlopeShape() const { return slope >> 2; }
    // Left, right, top, bottom.
    std::array<std::uint16_t, 4> Sides() const { return {left, right, top, bottom}; }
    // Whether the lid is a picture a view draws.
    bool HasDrawnLid() const { return TileOf(lid) != 0 && TileOf(lid) != kNoLid; }
    friend bool operator==(const BlockInfo&, const BlockInfo&) = default;
};

struct Zone {
    std::uint8_t type = 0, x = 0, y = 0, w = 0, h = 0;
    std::string name;
};

struct Light {
    std::uint32_t argb = 0;
    // Fixed point: value / 128 blocks.
    std::uint16_t x = 0, y = 0, z = 0, radius = 0;
    std::uint8_t intensity = 0, shape = 0, onTime = 0, offTime = 0;
};

struct Animation {
    std::uint16_t baseTile = 0;
    std::uint8_t frameRate = 0, repeat = 0, unused = 0;
    std::vector<std::uint16_t> tiles;
};

struct MapObject {
    std::uint16_t x = 0, y = 0;  // fixed point: value / 128 blocks
    std::uint8_t rotation = 0, type = 0;
};

struct ChunkHead {
    std::string type;
    std::uint32_t size = 0;
};

struct RawChunk {
    std::string type;
    std::vector<std::uint8_t> bytes;
};

enum class GridSource { DMAP, CMAP, UMAP };
const char* SourceName(GridSource s);

class Map {
public:
    Map();
    GridSource source = GridSource::DMAP;
    // Block 0 is the empty block that cells without one point at.
    std::vector<BlockInfo> blocks;
    // Per cell, a block number; [z][y][x].
    std::vector<std::uint32_t> cells;
    std::vector<Zone> zones;
    std::vector<Light> lights;
    std::vector<Animation> animations;
    std::vector<MapObject> objects;
    // Every chunk of the file, in file order.
    std::vector<ChunkHead> chunks;
    // PSXM, RGEN and chunks no note describes (the editor's EDIT), as read.
    std::vector<RawChunk> kept;

    static std::size_t CellIndex(int x, int y, int z) {
        return (static_cast<std::size_t>(z) * kSide + static_cast<std::size_t>(y)) * kSide +
               static_cast<std::size_t>(x);
    }
    const BlockInfo& At(int x, int y, int z) const { return blocks[cells[CellIndex(x, y, z)]]; }
    // Cells whose block is not all zero bytes.
    int CountBlocks() const;
};

struct ReadResult {
    std::optional<Map> map;
    // Why the file was refused, in one sentence that says what and where.
    std::string error;
};

// name is how the message calls the file.
ReadResult ReadMap(std::span<const std::uint8_t> bytes, const std::string& name);
// Files larger than this are no map.
inline constexpr std::size_t kLargestMap = 64u << 20;
ReadResult LoadMap(const std::string& path);

}  // namespace ombrevale::map
