#include "stylewriter/stylewriter.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace ombrevale::stylewriter {

Bytes LE16(std::int32_t v) {
    const auto u = static_cast<std::uint32_t>(v);
    return {static_cast<std::uint8_t>(u & 0xFF), static_cast<std::uint8_t>((u >> 8) & 0xFF)};
}

Bytes LE32(std::int64_t v) {
    const auto u = static_cast<std::uint64_t>(v);
    Bytes out;
    for (int i = 0; i < 4; ++i) out.push_back(static_cast<std::uint8_t>((u >> (8 * i)) & 0xFF));
    return out;
}

Bytes Cat(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const auto& p : parts) out.insert(out.end(), p.begin(), p.end());
    return out;
}

Bytes Text(const std::string& s) { return Bytes(s.begin(), s.end()); }

Bytes TilePayload(const std::vector<TilePixels>& tiles) {
    const std::size_t strips = (tiles.size() + 3) / 4;
    Bytes out(strips * 16384, 0);
    for (std::size_t t = 0; t < tiles.size(); ++t)
        for (std::size_t r = 0; r < 64; ++r)
            for (std::size_t c = 0; c < 64; ++c)
                out[(t / 4) * 16384 + r * 256 + (t % 4) * 64 + c] = tiles[t][r * 64 + c];
    return out;
}

Bytes PalettePayload(const std::vector<PaletteBytes>& palettes) {
    const std::size_t pages = (palettes.size() + 63) / 64;
    Bytes out(pages * 65536, 0);
    for (std::size_t p = 0; p < palettes.size(); ++p)
        for (std::size_t c = 0; c < 256; ++c)
            for (std::size_t b = 0; b < 4; ++b)
                out[(p / 64) * 65536 + c * 256 + (p % 64) * 4 + b] = palettes[p][c * 4 + b];
    return out;
}

Bytes EncodeDelta(std::span<const std::uint8_t> base, std::span<const std::uint8_t> changed, int width) {
    Bytes out;
    const auto w = static_cast<std::size_t>(width);
    const std::size_t height = w ? base.size() / w : 0;
    std::size_t end = 0;
    for (std::size_t y = 0; y < height; ++y) {
        std::size_t x = 0;
        while (x < w) {
            const std::size_t at = y * w + x;
            if (base[at] == changed[at]) {
                ++x;
                continue;
            }
            std::size_t run = 0;
            while (x + run < w && run < 255 && base[at + run] != changed[at + run]) ++run;
            const std::size_t start = y * 256 + x;
            const Bytes head = Cat({LE16(static_cast<std::int32_t>(start - end)), {static_cast<std::uint8_t>(run)}});
            out.insert(out.end(), head.begin(), head.end());
            out.insert(out.end(), changed.begin() + static_cast<long>(at),
                       changed.begin() + static_cast<long>(at + run));
            end = start + run;
            x += run;
        }
    }
    return out;
}

StyleBytes::StyleBytes(const std::string& magic, std::uint16_t version) { bytes_ = Cat({Text(magic), LE16(version)}); }

StyleBytes& StyleBytes::Add(const std::string& tag, const Bytes& payload) {
    return AddWithSize(tag, static_cast<std::int64_t>(payload.size()), payload);
}

StyleBytes& StyleBytes::AddWithSize(const std::string& tag, std::int64_t size, const Bytes& payload) {
    if (tag.size() != 4) throw std::invalid_argument("a tag has four letters");
    boundaries_.push_back(bytes_.size());
    const Bytes head = Cat({Text(tag), LE32(size)});
    bytes_.insert(bytes_.end(), head.begin(), head.end());
    bytes_.insert(bytes_.end(), payload.begin(), payload.end());
    return *this;
}

StyleBytes& StyleBytes::Raw(const Bytes& bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return *this;
}

void WriteFile(const std::string& path, const Bytes& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!out) throw std::runtime_error("cannot write " + path);
}

Bytes ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path);
    return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace ombrevale::stylewriter
