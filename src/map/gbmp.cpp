#include "map/gbmp.h"

#include <fstream>
#include <functional>
#include <unordered_map>

#include "style/bytecursor.h"

namespace ombrevale::map {
namespace {

// A refusal travels up as an exception inside the reader only.
struct Refusal {
    std::string text;
};

class ChunkReader {
public:
    ChunkReader(std::span<const std::uint8_t> data, std::string where) : cur_(data), where_(std::move(where)) {}

    [[noreturn]] void Refuse(const std::string& what) const { throw Refusal{where_ + ": " + what}; }
    // count records of size bytes each must fit in what is left.
    void Need(std::uint64_t count, std::uint64_t size, const std::string& what) {
        if (count * size > cur_.Remaining())
            Refuse(what + " needs " + std::to_string(count * size) + " bytes but only " +
                   std::to_string(cur_.Remaining()) + " remain");
    }
    ByteCursor& cur() { return cur_; }
    std::uint32_t U32() { return static_cast<std::uint32_t>(cur_.I32()); }

private:
    ByteCursor cur_;
    std::string where_;
};

BlockInfo ReadBlock(ByteCursor& c) {
    BlockInfo b;
    b.left = c.U16();
    b.right = c.U16();
    b.top = c.U16();
    b.bottom = c.U16();
    b.lid = c.U16();
    b.arrows = c.U8();
    b.slope = c.U8();
    return b;
}

// DMAP and CMAP differ only in the width of their numbers.
void ReadCompressed(ChunkReader& r, Map& m, int width) {
    auto& c = r.cur();
    const auto word = [&]() -> std::uint32_t { return width == 4 ? r.U32() : c.U16(); };
    r.Need(kSide * kSide, static_cast<std::uint64_t>(width), "the base table");
    std::vector<std::uint32_t> base(kSide * kSide);
    for (auto& b : base) b = word();
    r.Need(1, static_cast<std::uint64_t>(width), "the column count");
    const std::uint32_t columnWords = word();
    r.Need(columnWords, static_cast<std::uint64_t>(width), std::to_string(columnWords) + " column words");
    std::vector<std::uint32_t> column(columnWords);
    for (auto& w : column) w = word();
    r.Need(1, static_cast<std::uint64_t>(width), "the block count");
    const std::uint32_t blockCount = word();
    r.Need(blockCount, kBlockBytes, std::to_string(blockCount) + " blocks");
    m.blocks.reserve(std::size_t{blockCount} + 1);
    for (std::uint32_t i = 0; i < blockCount; ++i) m.blocks.push_back(ReadBlock(c));

    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            const std::uint32_t at = base[static_cast<std::size_t>(y * kSide + x)];
            const std::string cell = "the column of (" + std::to_string(x) + ", " + std::to_string(y) + ")";
            if (at >= columnWords)
                r.Refuse(cell + " starts at word " + std::to_string(at) + ", past the " + std::to_string(columnWords) +
                         " column words");
            const std::uint32_t head = column[at];
            const int height = static_cast<int>(head & 0xFF), offset = static_cast<int>((head >> 8) & 0xFF);
            if (height > kLevels || offset > height)
                r.Refuse(cell + " has height " + std::to_string(height) + " and offset " + std::to_string(offset) +
                         "; a column holds at most " + std::to_string(kLevels) + " levels");
            if (std::uint64_t{at} + 1 + static_cast<std::uint64_t>(height - offset) > columnWords)
                r.Refuse(cell + " runs past the column words");
            for (int z = offset; z < height; ++z) {
                const std::uint32_t block = column[at + 1 + static_cast<std::uint32_t>(z - offset)];
                if (block >= blockCount)
                    r.Refuse(cell + " names block " + std::to_string(block) + " at level " + std::to_string(z) +
                             ", but there are " + std::to_string(blockCount) + " blocks");
                m.cells[Map::CellIndex(x, y, z)] = block + 1;
            }
        }
}

void ReadUncompressed(ChunkReader& r, Map& m) {
    r.Need(kCells, kBlockBytes, "the uncompressed grid");
    // Equal blocks are held once, as the compressed maps hold them.
    struct Key {
        std::uint64_t a;
        std::uint32_t b;
        bool operator==(const Key&) const = default;
    };
    struct Hash {
        std::size_t operator()(const Key& k) const { return std::hash<std::uint64_t>()(k.a * 31 + k.b); }
    };
    std::unordered_map<Key, std::uint32_t, Hash> seen;
    for (std::size_t i = 0; i < static_cast<std::size_t>(kCells); ++i) {
        const BlockInfo b = ReadBlock(r.cur());
        if (b.Empty()) continue;
        const Key k{std::uint64_t{b.left} | std::uint64_t{b.right} << 16 | std::uint64_t{b.top} << 32 |
                        std::uint64_t{b.bottom} << 48,
                    std::uint32_t{b.lid} | std::uint32_t{b.arrows} << 16 | std::uint32_t{b.slope} << 24};
        auto [it, added] = seen.try_emplace(k, static_cast<std::uint32_t>(m.blocks.size()));
        if (added) m.blocks.push_back(b);
        m.cells[i] = it->second;
    }
}

void ReadZones(ChunkReader& r, Map& m) {
    auto& c = r.cur();
    while (!c.AtEnd()) {
        r.Need(1, 6, "zone " + std::to_string(m.zones.size()));
        Zone z;
        z.type = c.U8();
        z.x = c.U8();
        z.y = c.U8();
        z.w = c.U8();
        z.h = c.U8();
        const std::uint8_t length = c.U8();
        r.Need(1, length, "the name of zone " + std::to_string(m.zones.size()));
        const auto name = c.Take(length);
        z.name.assign(name.begin(), name.end());
        m.zones.push_back(std::move(z));
    }
}

void ReadLights(ChunkReader& r, Map& m) {
    auto& c = r.cur();
    while (!c.AtEnd()) {
        r.Need(1, 16, "light " + std::to_string(m.lights.size()));
        Light l;
        l.argb = r.U32();
        l.x = c.U16();
        l.y = c.U16();
        l.z = c.U16();
        l.radius = c.U16();
        l.intensity = c.U8();
        l.shape = c.U8();
        l.onTime = c.U8();
        l.offTime = c.U8();
        m.lights.push_back(l);
    }
}

void ReadAnimations(ChunkReader& r, Map& m) {
    auto& c = r.cur();
    while (!c.AtEnd()) {
        const std::string what = "animation " + std::to_string(m.animations.size());
        r.Need(1, 6, what);
        Animation a;
        a.baseTile = c.U16();
        a.frameRate = c.U8();
        a.repeat = c.U8();
        const std::uint8_t length = c.U8();
        a.unused = c.U8();
        r.Need(length, 2, "the frames of " + what);
        for (int i = 0; i < length; ++i) a.tiles.push_back(c.U16());
        m.animations.push_back(std::move(a));
    }
}

void ReadObjects(ChunkReader& r, Map& m) {
    auto& c = r.cur();
    while (!c.AtEnd()) {
        r.Need(1, 6, "map object " + std::to_string(m.objects.size()));
        MapObject o;
        o.x = c.U16();
        o.y = c.U16();
        o.rotation = c.U8();
        o.type = c.U8();
        m.objects.push_back(o);
    }
}

struct Found {
    std::string type;
    std::size_t at = 0;  // where the chunk's data starts
    std::span<const std::uint8_t> data;
};

std::vector<Found> SplitChunks(std::span<const std::uint8_t> bytes, const std::string& name) {
    if (bytes.size() < 6 || std::string(bytes.begin(), bytes.begin() + 4) != "GBMP")
        throw Refusal{name + " is no GTA2 map: it does not begin with \"GBMP\""};
    const int version = bytes[4] | bytes[5] << 8;
    if (version != kVersion)
        throw Refusal{name + " is a map of version " + std::to_string(version) + "; only version 500 is known"};
    std::vector<Found> found;
    std::size_t at = 6;
    while (at < bytes.size()) {
        if (bytes.size() - at < 8)
            throw Refusal{name + ": the chunk head at byte " + std::to_string(at) +
                          " is cut short by the end of the file"};
        const std::string type(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                               bytes.begin() + static_cast<std::ptrdiff_t>(at) + 4);
        std::size_t size = 0;
        for (int i = 3; i >= 0; --i) size = size << 8 | bytes[at + 4 + static_cast<std::size_t>(i)];
        at += 8;
        if (size > bytes.size() - at)
            throw Refusal{name + ": the " + type + " chunk at byte " + std::to_string(at - 8) + " claims " +
                          std::to_string(size) + " bytes, past the end of the file (" +
                          std::to_string(bytes.size() - at) + " remain)"};
        found.push_back({type, at, bytes.subspan(at, size)});
        at += size;
    }
    return found;
}

const Found* GridChunk(const std::vector<Found>& found) {
    for (const char* kind : {"DMAP", "UMAP", "CMAP"})
        for (const Found& f : found)
            if (f.type == kind) return &f;
    return nullptr;
}

}  // namespace

const char* SourceName(GridSource s) {
    switch (s) {
        case GridSource::DMAP:
            return "DMAP";
        case GridSource::CMAP:
            return "CMAP";
        case GridSource::UMAP:
            return "UMAP";
    }
    return "";
}

Map::Map() : blocks(1), cells(kCells, 0) {}

int Map::CountBlocks() const {
    int n = 0;
    for (const std::uint32_t b : cells) n += blocks[b].Empty() ? 0 : 1;
    return n;
}

ReadResult ReadMap(std::span<const std::uint8_t> bytes, const std::string& name) {
    try {
        const auto found = SplitChunks(bytes, name);
        const Found* grid = GridChunk(found);
        if (!grid) throw Refusal{name + " holds no map: it has no DMAP, UMAP or CMAP chunk"};
        Map m;
        for (const Found& f : found) {
            m.chunks.push_back({f.type, static_cast<std::uint32_t>(f.data.size())});
            ChunkReader r(f.data, name + ": the " + f.type + " chunk at byte " + std::to_string(f.at - 8));
            if (&f == grid) {
                m.source = f.type == "DMAP" ? GridSource::DMAP : f.type == "CMAP" ? GridSource::CMAP : GridSource::UMAP;
                if (m.source == GridSource::UMAP)
                    ReadUncompressed(r, m);
                else
                    ReadCompressed(r, m, m.source == GridSource::DMAP ? 4 : 2);
            } else if (f.type == "ZONE") {
                ReadZones(r, m);
            } else if (f.type == "LGHT") {
                ReadLights(r, m);
            } else if (f.type == "ANIM") {
                ReadAnimations(r, m);
            } else if (f.type == "MOBJ") {
                ReadObjects(r, m);
            } else {
                m.kept.push_back({f.type, {f.data.begin(), f.data.end()}});
            }
        }
        return {std::move(m), {}};
    } catch (const Refusal& r) {
        return {std::nullopt, r.text + "."};
    } catch (const std::bad_alloc&) {
        return {std::nullopt, name + " is too large to read."};
    }
}

ReadResult LoadMap(const std::string& path) {
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    if (!in) return {std::nullopt, path + " cannot be opened."};
    const std::streamoff size = in.tellg();
    if (size < 0) return {std::nullopt, path + " cannot be read."};
    if (static_cast<std::size_t>(size) > kLargestMap)
        return {std::nullopt, path + " is " + std::to_string(size) + " bytes, larger than any map (" +
                                  std::to_string(kLargestMap) + " at most)."};
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    in.seekg(0);
    if (!in.read(reinterpret_cast<char*>(bytes.data()), size)) return {std::nullopt, path + " cannot be read."};
    return ReadMap(bytes, path);
}

}  // namespace ombrevale::map
