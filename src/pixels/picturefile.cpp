#include "pixels/picturefile.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <optional>

namespace ombrevale::picturefile {
namespace {

using ombrevale::Problem;

constexpr std::size_t kFileHead = 14;
constexpr std::uint32_t kRgb = 0, kBitFields = 3, kAlphaBitFields = 6;

ombrevale::Outcome Bad(std::string text, Problem::Kind kind = Problem::Kind::Damaged) {
    return Problem{kind, std::move(text)};
}

struct Reader {
    std::span<const std::uint8_t> b;
    bool Has(std::size_t at, std::size_t n) const { return at <= b.size() && n <= b.size() - at; }
    std::uint32_t U16(std::size_t at) const { return static_cast<std::uint32_t>(b[at] | (b[at + 1] << 8)); }
    std::uint32_t U32(std::size_t at) const { return U16(at) | (U16(at + 2) << 16); }
};

struct Head {
    std::int64_t width = 0, height = 0;
    bool topDown = false;
    std::uint32_t bits = 0, compression = 0, colourCount = 0;
    std::size_t pixelsAt = 0, tableAt = 0;
    std::array<std::uint32_t, 4> masks = Layout{}.masks;
};

// One field of a 32-bit pixel: where its 8 bits sit.
std::optional<int> ByteShift(std::uint32_t mask) {
    for (int s = 0; s <= 24; s += 8)
        if (mask == (0xFFu << s)) return s;
    return std::nullopt;
}

ombrevale::Outcome ReadHead(const Reader& in, Head& h) {
    if (!in.Has(0, kFileHead + 4) || in.b[0] != 'B' || in.b[1] != 'M')
        return Bad("is not a BMP picture (it does not begin with BM)");
    const std::uint32_t infoSize = in.U32(kFileHead);
    if (infoSize < 40 || infoSize > 1024)
        return Bad("has a BMP head of an unknown kind (" + std::to_string(infoSize) + " bytes)");
    if (!in.Has(kFileHead, infoSize)) return Bad("ends inside its head");
    h.pixelsAt = in.U32(10);
    h.width = static_cast<std::int32_t>(in.U32(18));
    const auto height = static_cast<std::int32_t>(in.U32(22));
    h.topDown = height < 0;
    h.height = height < 0 ? -static_cast<std::int64_t>(height) : height;
    h.bits = in.U16(28);
    h.compression = in.U32(30);
    h.colourCount = in.U32(46);
    h.tableAt = kFileHead + infoSize;
    if (h.compression == kBitFields || h.compression == kAlphaBitFields) {
        // A 40-byte head keeps its masks just behind it; the later heads hold them
        // inside, alpha's too (GIMP's 32-bit pictures say BITFIELDS with one).
        const std::size_t n = h.compression == kAlphaBitFields || infoSize >= 56 ? 4 : 3;
        if (!in.Has(kFileHead + 40, 4 * n)) return Bad("ends inside its colour masks");
        for (std::size_t i = 0; i < n; ++i) h.masks[i] = in.U32(kFileHead + 40 + 4 * i);
        if (infoSize == 40) h.tableAt += 4 * n;
    }
    return std::nullopt;
}

ombrevale::Outcome CheckHead(const Head& h) {
    if (h.width <= 0 || h.height <= 0)
        return Bad("has no pixels (" + std::to_string(h.width) + " x " + std::to_string(h.height) + ")");
    if (h.width > kMaxSide || h.height > kMaxSide)
        return Bad("is " + std::to_string(h.width) + " x " + std::to_string(h.height) +
                   " pixels, larger than any tile or sprite");
    if (h.bits == 16) return Bad("is a 16-bit BMP, which cannot be read; save it with 8, 24 or 32 bits a pixel");
    if (h.bits != 1 && h.bits != 4 && h.bits != 8 && h.bits != 24 && h.bits != 32)
        return Bad("has " + std::to_string(h.bits) + " bits a pixel, which no BMP picture has");
    const bool fields = h.compression == kBitFields || h.compression == kAlphaBitFields;
    if (h.compression != kRgb && !(fields && h.bits == 32))
        return Bad("is compressed (method " + std::to_string(h.compression) + "); save it uncompressed");
    if (fields) {
        for (std::size_t i = 0; i < 3; ++i)
            if (!ByteShift(h.masks[i]))
                return Bad("keeps its colours in an unusual bit layout; save it as a plain 24- or 32-bit BMP");
        if (h.masks[3] != 0 && !ByteShift(h.masks[3])) return Bad("keeps its transparency in an unusual bit layout");
    }
    return std::nullopt;
}

// The colour table's bytes, empty above 8 bits.
ombrevale::Outcome FindTable(const Reader& in, const Head& h, std::span<const std::uint8_t>& table) {
    if (h.bits > 8) return std::nullopt;
    const std::uint32_t most = 1u << h.bits;
    const std::uint32_t count = h.colourCount == 0 ? most : h.colourCount;
    if (count > most)
        return Bad("says it has " + std::to_string(count) + " colours, more than " + std::to_string(h.bits) +
                   " bits can number");
    if (!in.Has(h.tableAt, 4 * std::size_t{count})) return Bad("ends inside its colour table");
    table = in.b.subspan(h.tableAt, 4 * std::size_t{count});
    return std::nullopt;
}

Rgba FromWord(std::uint32_t v, const Layout& l) {
    const auto field = [&](std::size_t i) { return static_cast<std::uint8_t>(v >> *ByteShift(l.masks[i])); };
    return {field(0), field(1), field(2), l.masks[3] ? field(3) : std::uint8_t{255}};
}

void ReadRow(std::span<const std::uint8_t> row, const Layout& l, Picture& out) {
    const auto bits = static_cast<unsigned>(l.bits);
    for (int x = 0; x < l.width; ++x) {
        const auto i = static_cast<std::size_t>(x);
        if (bits <= 8) {
            const std::size_t bit = i * bits;
            const unsigned shift = 8 - bits - static_cast<unsigned>(bit % 8);
            const auto n =
                static_cast<std::uint8_t>((static_cast<unsigned>(row[bit / 8]) >> shift) & ((1u << bits) - 1));
            out.numbers.push_back(n);
            out.colours.push_back(n < out.table.size() ? out.table[n] : Rgba{0, 0, 0, 255});
        } else if (bits == 24) {
            out.colours.push_back({row[3 * i + 2], row[3 * i + 1], row[3 * i], 255});
        } else {
            const std::uint32_t v =
                static_cast<std::uint32_t>(row[4 * i] | (row[4 * i + 1] << 8) | (row[4 * i + 2] << 16)) |
                (static_cast<std::uint32_t>(row[4 * i + 3]) << 24);
            out.colours.push_back(FromWord(v, l));
        }
    }
}

}  // namespace

ombrevale::Outcome ReadLayout(std::span<const std::uint8_t> bytes, Layout& out) {
    out = Layout{};
    const Reader in{bytes};
    Head h;
    if (auto problem = ReadHead(in, h)) return problem;
    if (auto problem = CheckHead(h)) return problem;
    Layout l;
    if (auto problem = FindTable(in, h, l.table)) return problem;
    l.stride = ((static_cast<std::size_t>(h.width) * h.bits + 31) / 32) * 4;
    const auto height = static_cast<std::size_t>(h.height);
    if (!in.Has(h.pixelsAt, l.stride * height))
        return Bad("ends before its last row of pixels", Problem::Kind::CutShort);
    l.rows = bytes.subspan(h.pixelsAt, l.stride * height);
    l.width = static_cast<int>(h.width);
    l.height = static_cast<int>(h.height);
    l.bits = static_cast<int>(h.bits);
    l.topDown = h.topDown;
    l.masks = h.masks;
    out = l;
    return std::nullopt;
}

ombrevale::Outcome ReadBMP(std::span<const std::uint8_t> bytes, Picture& out) {
    out = Picture{};
    Layout l;
    if (auto problem = ReadLayout(bytes, l)) return problem;
    Picture pic;
    for (std::size_t at = 0; at < l.table.size(); at += 4)
        pic.table.push_back({l.table[at + 2], l.table[at + 1], l.table[at], 255});
    pic.width = l.width;
    pic.height = l.height;
    pic.colours.reserve(static_cast<std::size_t>(l.width) * static_cast<std::size_t>(l.height));
    for (int y = 0; y < l.height; ++y) ReadRow(l.Row(y), l, pic);
    out = std::move(pic);
    return std::nullopt;
}

ombrevale::Outcome ReadBMPFile(const std::string& path, Picture& out) {
    std::error_code ec;
    const auto status = std::filesystem::status(path, ec);
    if (ec || !std::filesystem::exists(status)) return Bad("does not exist", Problem::Kind::Unreadable);
    if (!std::filesystem::is_regular_file(status)) return Bad("is not a file", Problem::Kind::Unreadable);
    const auto size = std::filesystem::file_size(path, ec);
    if (ec) return Bad("cannot be read", Problem::Kind::Unreadable);
    if (size > kMaxFileBytes) return Bad("is too large to be a picture of a tile or a sprite");
    std::ifstream in(path, std::ios::binary);
    ByteString bytes(static_cast<std::size_t>(size));
    if (!in || !in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size())))
        return Bad("cannot be read", Problem::Kind::Unreadable);
    return ReadBMP(bytes, out);
}

double Psnr(const Picture& pic, const std::vector<Rgba>& shown) {
    double sum = 0;
    std::size_t n = 0;
    for (std::size_t i = 0; i < pic.colours.size() && i < shown.size(); ++i) {
        const Rgba& want = pic.colours[i];
        if (want.a == 0) continue;
        const double dr = want.r - shown[i].r, dg = want.g - shown[i].g, db = want.b - shown[i].b;
        sum += dr * dr + dg * dg + db * db;
        n += 3;
    }
    if (sum == 0) return std::numeric_limits<double>::infinity();
    return 10 * std::log10(255.0 * 255.0 * static_cast<double>(n) / sum);
}

}  // namespace ombrevale::picturefile
