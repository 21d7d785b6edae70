#include "style/sectionreaders.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "style/carrecord.h"
#include "style/messages.h"

namespace ombrevale::styleload {
namespace {

using modDeclares::CarRecord;
using modDeclares::DeltaEntry;

constexpr std::int64_t kMaxCount = std::numeric_limits<std::int16_t>::max();
// The FONB size is worked out in 16 bits on save: 2 + 2n must fit.
constexpr std::int64_t kMaxFonts = 16382;

SectionResult Fail(std::string problem) {
    return ombrevale::Problem{ombrevale::Problem::Kind::Damaged, std::move(problem)};
}
SectionResult Ok() { return std::nullopt; }

std::string Tag(Section s) { return std::string(kSectionTags[static_cast<std::size_t>(s)]); }

SectionResult ClaimsMore(Section s, std::int64_t wanted, std::size_t remaining) {
    return Fail("the " + Tag(s) + " section needs " + GroupedNumber(wanted) + " bytes but only " +
                GroupedNumber(static_cast<std::int64_t>(remaining)) + " remain");
}

SectionResult ReadFailed(Section s) { return Fail("reading the " + Tag(s) + " section failed"); }

SectionResult NegativeSize(Section s, std::int32_t size) {
    return Fail("the " + Tag(s) + " section has a negative size (" + GroupedNumber(size) + ")");
}

SectionResult TooMany(Section s, std::int64_t count, const char* what) {
    return Fail("the " + Tag(s) + " section holds " + GroupedNumber(count) + " " + what + "; at most " +
                GroupedNumber(kMaxCount) + " fit");
}

// Byte sections: the payload is exactly size bytes.
SectionResult ReadBytes(Section s, std::int32_t size, ByteCursor& in, ByteString& store) {
    if (size < 0) return NegativeSize(s, size);
    if (static_cast<std::size_t>(size) > in.Remaining()) return ClaimsMore(s, size, in.Remaining());
    store.resize(static_cast<std::size_t>(size));
    in.CopyTo(store.data(), store.size());
    return Ok();
}

SectionResult ReadTiles(clsSTY& doc, std::int32_t size, ByteCursor& in) {
    if (size < 0) return NegativeSize(Section::TILE, size);
    if (size % kStripBytes != 0)
        return Fail("the TILE section holds " + GroupedNumber(size) +
                    " bytes, which is not a whole number of 16,384-byte strips of four tiles");
    const std::int64_t count = size / kTileBytes;
    if (count > kMaxCount) return TooMany(Section::TILE, count, "tiles");
    if (static_cast<std::size_t>(size) > in.Remaining()) return ClaimsMore(Section::TILE, size, in.Remaining());

    std::vector<Tile> tiles;
    tiles.reserve(static_cast<std::size_t>(count));
    // A strip row holds one row of each of four tiles side by side.
    std::array<PixelBlock, 4> strip;
    for (std::size_t t = 0; t < static_cast<std::size_t>(count); t += 4) {
        const auto bytes = in.Take(kStripBytes);
        if (bytes.size() != kStripBytes) return ReadFailed(Section::TILE);  // the stream gave out
        for (std::size_t r = 0; r < kTileSide; ++r)
            for (std::size_t k = 0; k < 4; ++k)
                std::memcpy(&strip[k][r * kTileSide], &bytes[(r * 4 + k) * kTileSide], kTileSide);
        for (const PixelBlock& tile : strip) tiles.emplace_back(tile);
    }
    doc.iTileCount = static_cast<std::int16_t>(count);
    doc.STYTileStore = std::move(tiles);
    return Ok();
}

SectionResult ReadPalettes(clsSTY& doc, std::int32_t size, ByteCursor& in) {
    if (size < 0) return NegativeSize(Section::PPAL, size);
    if (size % kPalettePageBytes != 0)
        return Fail("the PPAL section holds " + GroupedNumber(size) +
                    " bytes, which is not a whole number of 65,536-byte pages of 64 palettes");
    const std::int64_t count = size / kPaletteBytes;
    if (count > kMaxCount) return TooMany(Section::PPAL, count, "palettes");
    if (static_cast<std::size_t>(size) > in.Remaining()) return ClaimsMore(Section::PPAL, size, in.Remaining());

    doc.iPalCount = static_cast<std::int16_t>(count);
    auto& pals = modDeclares::STYPalData;
    pals.assign(static_cast<std::size_t>(count), modDeclares::Palette{});
    // Pages are colour-major: the 64 palettes' colour 0, then their colour 1, ...
    for (std::size_t page = 0; page < static_cast<std::size_t>(count) / 64; ++page) {
        const auto bytes = in.Take(static_cast<std::size_t>(kPalettePageBytes));
        if (bytes.size() != kPalettePageBytes) return ReadFailed(Section::PPAL);
        for (std::size_t p = 0; p < 64; ++p) {
            auto* pal = pals[page * 64 + p].data();
            for (std::size_t c = 0; c < 256; ++c) std::memcpy(pal + c * 4, &bytes[(c * 64 + p) * 4], 4);
        }
    }
    return Ok();
}

// PALX and SPRX: the count is the rounded quotient and exactly count records
// are read, whatever that leaves of the size.
SectionResult CheckRecords(Section s, std::int32_t size, std::int64_t unit, const ByteCursor& in, const char* what,
                           std::int64_t& count) {
    if (size < 0) return NegativeSize(s, size);
    count = RoundedQuotient(size, unit);
    if (count > kMaxCount) return TooMany(s, count, what);
    if (static_cast<std::size_t>(count * unit) > in.Remaining()) return ClaimsMore(s, count * unit, in.Remaining());
    return Ok();
}

SectionResult ReadPaletteIndex(clsSTY& doc, std::int32_t size, ByteCursor& in) {
    std::int64_t count = 0;
    if (auto r = CheckRecords(Section::PALX, size, 2, in, "entries", count); r) return r;
    doc.iPalxCount = static_cast<std::int16_t>(count);
    auto& index = modDeclares::STYPalIndex;
    index.resize(static_cast<std::size_t>(count));
    for (auto& entry : index) entry = in.I16();
    return Ok();
}

SectionResult ReadSpriteIndex(clsSTY& doc, std::int32_t size, ByteCursor& in) {
    std::int64_t count = 0;
    if (auto r = CheckRecords(Section::SPRX, size, 8, in, "sprite records", count); r) return r;
    doc.iSprxCount = static_cast<std::int16_t>(count);
    doc.STYSpriteIndex.resize(static_cast<std::size_t>(count));
    for (auto& rec : doc.STYSpriteIndex) {
        rec.offset = in.I32();
        rec.width = in.U8();
        rec.height = in.U8();
        rec.pad = in.U16();
    }
    return Ok();
}

template <std::size_t N>
SectionResult ReadFixedCounts(Section s, ByteCursor& in, std::array<std::int16_t, N>& store) {
    if (in.Remaining() < 2 * N) return ClaimsMore(s, 2 * N, in.Remaining());
    for (auto& v : store) v = in.I16();
    return Ok();
}

SectionResult ReadFontBase(ByteCursor& in) {
    if (in.Remaining() < 2) return ClaimsMore(Section::FONB, 2, in.Remaining());
    const std::int16_t n = in.I16();
    if (n < 0) return Fail("the FONB section gives a negative font count (" + GroupedNumber(n) + ")");
    if (n > kMaxFonts)
        return Fail("the FONB section gives " + GroupedNumber(n) + " fonts; at most " + GroupedNumber(kMaxFonts) +
                    " fit");
    if (in.Remaining() < 2u * static_cast<std::size_t>(n)) return ClaimsMore(Section::FONB, 2 * n, in.Remaining());
    auto& fonts = modDeclares::STYFontBase;
    fonts.count = n;
    fonts.base.resize(static_cast<std::size_t>(n));
    for (auto& v : fonts.base) v = in.I16();
    return Ok();
}

SectionResult RecordCutShort(Section s, std::size_t record) {
    return Fail("the " + Tag(s) + " section ends inside its record " +
                GroupedNumber(static_cast<std::int64_t>(record)));
}

SectionResult ReadDeltaIndex(clsSTY& doc, std::int32_t size, ByteCursor& in) {
    if (size < 0) return NegativeSize(Section::DELX, size);
    std::vector<DeltaEntry> entries;
    std::int64_t total = 0;
    // Records are read until their lengths reach the size; the last one is read whole.
    while (total < size) {
        if (in.Remaining() < 4) return RecordCutShort(Section::DELX, entries.size());
        DeltaEntry e;
        e.sprite = in.I16();
        e.deltaCount = in.U8();
        e.pad = in.U8();
        if (in.Remaining() < 2u * e.deltaCount) return RecordCutShort(Section::DELX, entries.size());
        e.deltaSizes.resize(e.deltaCount);
        for (auto& d : e.deltaSizes) d = in.I16();
        total += 4 + 2 * e.deltaCount;
        entries.push_back(std::move(e));
    }
    doc.lDelxBytes = size;
    modDeclares::STYDeltaIndex = std::move(entries);
    return Ok();
}

bool ReadCarRecord(ByteCursor& in, CarRecord& c) {
    if (in.Remaining() < 14) return false;
    c.model = in.U8();
    c.sprite = in.U8();
    c.width = in.U8();
    c.height = in.U8();
    c.numRemaps = in.U8();
    c.passengers = in.U8();
    c.wreck = in.U8();
    c.rating = in.U8();
    c.frontWheelOffset = in.U8();
    c.rearWheelOffset = in.U8();
    c.frontWindowOffset = in.U8();
    c.rearWindowOffset = in.U8();
    c.infoFlags = in.U8();
    c.infoFlags2 = in.U8();
    if (in.Remaining() < c.numRemaps + 1u) return false;
    const auto remaps = in.Take(c.numRemaps);
    c.remaps.assign(remaps.begin(), remaps.end());
    c.numDoors = in.U8();
    if (in.Remaining() < 2u * c.numDoors) return false;
    c.doors.resize(c.numDoors);
    for (auto& d : c.doors) d = in.U16();
    return true;
}

SectionResult ReadCarInfo(clsSTY& doc, std::int32_t size, ByteCursor& in) {
    if (size < 0) return NegativeSize(Section::CARI, size);
    std::vector<CarRecord> cars;
    std::int64_t total = 0;
    while (total < size) {
        CarRecord c;
        if (!ReadCarRecord(in, c)) return RecordCutShort(Section::CARI, cars.size());
        // Saving writes the records as they stand, so one may not reach into the next section.
        const auto bytes = static_cast<std::int64_t>(ombrevale::cars::RecordBytes(c));
        if (total + bytes > size)
            return Fail("the CARI section's record " + GroupedNumber(static_cast<std::int64_t>(cars.size())) +
                        " (model " + std::to_string(c.model) + ") needs " + GroupedNumber(bytes) + " bytes but only " +
                        GroupedNumber(size - total) + " of the section remain");
        total += bytes;
        cars.push_back(std::move(c));
    }
    doc.lCariBytes = size;
    modDeclares::STYCarInfo = std::move(cars);
    return Ok();
}

SectionResult ReadRecycling(std::int32_t size, ByteCursor& in) {
    return ReadBytes(Section::RECY, size, in, modDeclares::STYRecycle);
}

SectionResult ReadDeltaStore(clsSTY& doc, std::int32_t size, ByteCursor& in) {
    auto r = ReadBytes(Section::DELS, size, in, modDeclares::STYDeltaStore);
    if (!r) doc.lDelsBytes = size;
    return r;
}

}  // namespace

std::int64_t RoundedQuotient(std::int64_t size, std::int64_t unit) {
    const std::int64_t q = size / unit;
    const std::int64_t twiceRest = 2 * (size % unit);
    if (twiceRest > unit || (twiceRest == unit && q % 2 != 0)) return q + 1;
    return q;
}

SectionResult ReadSection(clsSTY& doc, Section section, std::int32_t size, ByteCursor& in) {
    switch (section) {
        case Section::TILE:
            return ReadTiles(doc, size, in);
        case Section::PPAL:
            return ReadPalettes(doc, size, in);
        case Section::PALX:
            return ReadPaletteIndex(doc, size, in);
        case Section::PALB:
            return ReadFixedCounts(section, in, modDeclares::STYPalBase);
        case Section::SPRG:
            return ReadBytes(section, size, in, doc.STYSpriteData);
        case Section::SPRX:
            return ReadSpriteIndex(doc, size, in);
        case Section::SPRB:
            return ReadFixedCounts(section, in, modDeclares::STYSpriteBase);
        case Section::DELS:
            return ReadDeltaStore(doc, size, in);
        case Section::DELX:
            return ReadDeltaIndex(doc, size, in);
        case Section::FONB:
            return ReadFontBase(in);
        case Section::CARI:
            return ReadCarInfo(doc, size, in);
        case Section::OBJI:
            return ReadBytes(section, size, in, doc.STYObjectInfo);
        case Section::RECY:
            return ReadRecycling(size, in);
        case Section::SPEC:
            return ReadBytes(section, size, in, doc.STYSurfaceSpec);
    }
    return Fail("unknown section");
}

}  // namespace ombrevale::styleload
