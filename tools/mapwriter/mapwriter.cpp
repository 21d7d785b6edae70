#include "mapwriter.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace ombrevale::mapwriter {
namespace {

void Put(Bytes& out, std::uint64_t v, int width) {
    for (int i = 0; i < width; ++i) out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

void PutBlock(Bytes& out, const Block& b) {
    for (const std::uint16_t w : {b.left, b.right, b.top, b.bottom, b.lid}) Put(out, w, 2);
    out.push_back(b.arrows);
    out.push_back(b.slope);
}

// width 4 for DMAP, 2 for CMAP.
Bytes Compressed(const Grid& g, int width) {
    std::map<Block, std::uint32_t> blockNumbers{{Block{}, 0}};
    std::vector<Block> blocks{Block{}};
    std::map<std::vector<std::uint32_t>, std::uint32_t> columnAt;
    std::vector<std::uint32_t> words, base;
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            int height = 0, offset = kLevels;
            for (int z = 0; z < kLevels; ++z)
                if (!(g.at(x, y, z) == Block{})) {
                    height = z + 1;
                    offset = std::min(offset, z);
                }
            if (height == 0) offset = 0;
            std::vector<std::uint32_t> column{static_cast<std::uint32_t>(height | offset << 8)};
            for (int z = offset; z < height; ++z) {
                auto [it, added] = blockNumbers.try_emplace(g.at(x, y, z), static_cast<std::uint32_t>(blocks.size()));
                if (added) blocks.push_back(g.at(x, y, z));
                column.push_back(it->second);
            }
            auto [it, added] = columnAt.try_emplace(column, static_cast<std::uint32_t>(words.size()));
            if (added) words.insert(words.end(), column.begin(), column.end());
            base.push_back(it->second);
        }
    Bytes out;
    for (const std::uint32_t b : base) Put(out, b, width);   // base[256][256]
    Put(out, words.size(), width);                           // column_words
    for (const std::uint32_t w : words) Put(out, w, width);  // column[]
    Put(out, blocks.size(), width);                          // num_blocks
    for (const Block& b : blocks) PutBlock(out, b);          // block[]
    return out;
}

}  // namespace

bool Block::operator<(const Block& o) const {
    return std::tie(left, right, top, bottom, lid, arrows, slope) <
           std::tie(o.left, o.right, o.top, o.bottom, o.lid, o.arrows, o.slope);
}

std::uint16_t Lid(int tile, int light, bool flat, bool flip, int turns) {
    return static_cast<std::uint16_t>((tile & 0x3FF) | (light & 3) << 10 | (flat ? 0x1000 : 0) | (flip ? 0x2000 : 0) |
                                      (turns & 3) << 14);
}

std::uint16_t Side(int tile, bool wall, bool bulletWall, bool flat, bool flip, int turns) {
    return static_cast<std::uint16_t>((tile & 0x3FF) | (wall ? 0x400 : 0) | (bulletWall ? 0x800 : 0) |
                                      (flat ? 0x1000 : 0) | (flip ? 0x2000 : 0) | (turns & 3) << 14);
}

std::uint8_t Slope(int ground, int shape) { return static_cast<std::uint8_t>((ground & 3) | (shape & 63) << 2); }

Bytes UmapPayload(const Grid& g) {
    Bytes out;
    out.reserve(static_cast<std::size_t>(kSide * kSide * kLevels * 12));
    for (int z = 0; z < kLevels; ++z)
        for (int y = 0; y < kSide; ++y)
            for (int x = 0; x < kSide; ++x) PutBlock(out, g.at(x, y, z));
    return out;
}

Bytes DmapPayload(const Grid& g) { return Compressed(g, 4); }
Bytes CmapPayload(const Grid& g) { return Compressed(g, 2); }

Bytes ZonePayload(const std::vector<Zone>& zones) {
    Bytes out;
    for (const Zone& z : zones) {
        for (const int v : {z.type, z.x, z.y, z.w, z.h}) Put(out, static_cast<std::uint64_t>(v), 1);
        Put(out, z.name.size(), 1);  // name_length
        out.insert(out.end(), z.name.begin(), z.name.end());
    }
    return out;
}

Bytes LightPayload(const std::vector<Light>& lights) {
    Bytes out;
    for (const Light& l : lights) {
        Put(out, l.argb, 4);
        for (const int v : {l.x, l.y, l.z, l.radius}) Put(out, static_cast<std::uint64_t>(v), 2);
        for (const int v : {l.intensity, l.shape, l.on, l.off}) Put(out, static_cast<std::uint64_t>(v), 1);
    }
    return out;
}

Bytes AnimPayload(const std::vector<Animation>& anims) {
    Bytes out;
    for (const Animation& a : anims) {
        Put(out, static_cast<std::uint64_t>(a.base), 2);
        Put(out, static_cast<std::uint64_t>(a.rate), 1);
        Put(out, static_cast<std::uint64_t>(a.repeat), 1);
        Put(out, a.tiles.size(), 1);  // length
        Put(out, 0, 1);               // unused
        for (const int t : a.tiles) Put(out, static_cast<std::uint64_t>(t), 2);
    }
    return out;
}

Bytes ObjectPayload(const std::vector<MapObject>& objects) {
    Bytes out;
    for (const MapObject& o : objects) {
        Put(out, static_cast<std::uint64_t>(o.x), 2);
        Put(out, static_cast<std::uint64_t>(o.y), 2);
        Put(out, static_cast<std::uint64_t>(o.rotation), 1);
        Put(out, static_cast<std::uint64_t>(o.type), 1);
    }
    return out;
}

MapBytes::MapBytes(const std::string& magic, std::uint16_t version) {
    bytes_.assign(magic.begin(), magic.end());
    Put(bytes_, version, 2);
}

MapBytes& MapBytes::Add(const std::string& type, const Bytes& payload) {
    return AddWithSize(type, static_cast<std::int64_t>(payload.size()), payload);
}

MapBytes& MapBytes::AddWithSize(const std::string& type, std::int64_t size, const Bytes& payload) {
    bytes_.insert(bytes_.end(), type.begin(), type.end());
    Put(bytes_, static_cast<std::uint64_t>(size), 4);
    bytes_.insert(bytes_.end(), payload.begin(), payload.end());
    return *this;
}

MapBytes& MapBytes::Raw(const Bytes& bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return *this;
}

}  // namespace ombrevale::mapwriter
