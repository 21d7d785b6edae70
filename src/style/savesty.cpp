#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "style/bytewriter.h"
#include "style/carrecord.h"
#include "style/clssty.h"
#include "style/fileio.h"
#include "style/hooks.h"
#include "style/sectionreaders.h"

namespace fs = std::filesystem;
using namespace modDeclares;

namespace {

constexpr std::uint16_t kWrittenVersion = 600;

template <typename T>
const T* At(const std::vector<T>& v, std::size_t i) {
    return i < v.size() ? &v[i] : nullptr;
}

void WriteTiles(const clsSTY& doc, ByteWriter& w) {
    const auto count = static_cast<std::size_t>(std::max<std::int16_t>(doc.iTileCount, 0));
    for (std::size_t t = 0; t < count; t += 4) {
        for (std::size_t r = 0; r < kTileSide; ++r) {
            for (std::size_t k = 0; k < 4; ++k) {
                if (const Tile* tile = At(doc.STYTileStore, t + k)) {
                    w.Bytes(std::span(tile->data() + r * kTileSide, kTileSide));
                } else {
                    w.Zeros(kTileSide);
                }
            }
        }
    }
}

void WritePalettes(const clsSTY& doc, ByteWriter& w) {
    const auto pages =
        static_cast<std::size_t>(ombrevale::styleload::RoundedQuotient(std::max<std::int16_t>(doc.iPalCount, 0), 64));
    for (std::size_t page = 0; page < pages; ++page) {
        const auto out = w.Grow(static_cast<std::size_t>(kPalettePageBytes));
        for (std::size_t p = 0; p < 64; ++p) {
            const Palette* pal = At(STYPalData, page * 64 + p);
            if (!pal) continue;  // a missing palette is written as zeros
            for (std::size_t c = 0; c < 256; ++c) std::memcpy(&out[(c * 64 + p) * 4], pal->data() + c * 4, 4);
        }
    }
}

void WriteFonts(ByteWriter& w) {
    const std::int16_t n = STYFontBase.count;
    w.I16(n);
    for (std::size_t i = 0; i < static_cast<std::size_t>(std::max<std::int16_t>(n, 0)); ++i) {
        const std::int16_t* v = At(STYFontBase.base, i);
        w.I16(v ? *v : 0);
    }
}

void WriteDeltaIndex(ByteWriter& w) {
    for (const auto& e : STYDeltaIndex) {
        w.I16(e.sprite);
        w.U8(e.deltaCount);
        w.U8(e.pad);
        for (std::size_t i = 0; i < e.deltaCount; ++i) {
            const std::int16_t* v = At(e.deltaSizes, i);
            w.I16(v ? *v : 0);
        }
    }
}

void WriteSpriteIndex(const clsSTY& doc, ByteWriter& w) {
    for (const auto& rec : doc.STYSpriteIndex) {
        w.I32(rec.offset);
        w.U8(rec.width);
        w.U8(rec.height);
        w.U16(rec.pad);
    }
}

void WriteCars(ByteWriter& w) {
    for (const auto& c : STYCarInfo) {
        for (const std::uint8_t v :
             {c.model, c.sprite, c.width, c.height, c.numRemaps, c.passengers, c.wreck, c.rating, c.frontWheelOffset,
              c.rearWheelOffset, c.frontWindowOffset, c.rearWindowOffset, c.infoFlags, c.infoFlags2}) {
            w.U8(v);
        }
        for (std::size_t i = 0; i < c.numRemaps; ++i) {
            const std::uint8_t* v = At(c.remaps, i);
            w.U8(v ? *v : 0);
        }
        w.U8(c.numDoors);
        for (std::size_t i = 0; i < c.numDoors; ++i) {
            const std::uint16_t* v = At(c.doors, i);
            w.U16(v ? *v : 0);
        }
    }
}

std::int32_t SizeOf(std::size_t bytes) { return static_cast<std::int32_t>(bytes); }

// The records as they stand: an edit may have added or dropped remaps and doors.
std::size_t CarBytes() {
    std::size_t n = 0;
    for (const auto& c : STYCarInfo) n += ombrevale::cars::RecordBytes(c);
    return n;
}

// The writer's own order of sections, with the figure each size field gets.
// Near the written length, so the buffer is made once rather than grown
// (and copied) a doubling at a time.
std::size_t Expected(const clsSTY& doc) {
    const auto n = [](std::int64_t v) { return static_cast<std::size_t>(std::max<std::int64_t>(v, 0)); };
    return 6 + 14 * 8 + n(doc.iTileCount) * kTileBytes + n(doc.iPalCount) * kPaletteBytes + STYDeltaStore.size() +
           2 * STYPalIndex.size() + doc.STYObjectInfo.size() + STYRecycle.size() + doc.STYSpriteData.size() +
           8 * doc.STYSpriteIndex.size() + doc.STYSurfaceSpec.size() + n(doc.lDelxBytes) + CarBytes() +
           2 * STYFontBase.base.size() + 64;
}

std::vector<std::uint8_t> Serialise(const clsSTY& doc, bool report) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(Expected(doc));
    ByteWriter w(bytes);
    w.Bytes(std::span(reinterpret_cast<const std::uint8_t*>("GBST"), 4));
    w.U16(kWrittenVersion);

    int step = 0;
    auto section = [&](Section s, std::int32_t size, auto&& payload) {
        ++step;
        if (!doc.IsPresent(s)) return;
        const auto tag = kSectionTags[static_cast<std::size_t>(s)];
        w.Bytes(std::span(reinterpret_cast<const std::uint8_t*>(tag.data()), 4));
        w.I32(size);
        if (report) ProgressStep(step, "Saving " + std::string(tag) + "...");
        payload();
    };
    const auto fontSize = static_cast<std::int16_t>(2 + 2 * STYFontBase.count);
    section(Section::TILE, doc.iTileCount * kTileBytes, [&] { WriteTiles(doc, w); });
    section(Section::PPAL, doc.iPalCount * kPaletteBytes, [&] { WritePalettes(doc, w); });
    section(Section::SPRB, 12, [&] {
        for (auto v : STYSpriteBase) w.I16(v);
    });
    section(Section::FONB, fontSize, [&] { WriteFonts(w); });
    section(Section::DELX, doc.lDelxBytes, [&] { WriteDeltaIndex(w); });
    section(Section::DELS, SizeOf(STYDeltaStore.size()), [&] { w.Bytes(STYDeltaStore); });
    section(Section::PALX, SizeOf(2 * STYPalIndex.size()), [&] {
        for (auto v : STYPalIndex) w.I16(v);
    });
    section(Section::OBJI, SizeOf(doc.STYObjectInfo.size()), [&] { w.Bytes(doc.STYObjectInfo); });
    section(Section::RECY, SizeOf(STYRecycle.size()), [&] { w.Bytes(STYRecycle); });
    section(Section::SPRG, SizeOf(doc.STYSpriteData.size()), [&] { w.Bytes(doc.STYSpriteData); });
    section(Section::SPRX, SizeOf(8 * doc.STYSpriteIndex.size()), [&] { WriteSpriteIndex(doc, w); });
    section(Section::PALB, 16, [&] {
        for (auto v : STYPalBase) w.I16(v);
    });
    section(Section::CARI, SizeOf(CarBytes()), [&] { WriteCars(w); });
    section(Section::SPEC, SizeOf(doc.STYSurfaceSpec.size()), [&] { w.Bytes(doc.STYSurfaceSpec); });
    return bytes;
}

}  // namespace

ombrevale::Outcome clsSTY::TrySaveSTY(const std::string& path) const {
    ProgressStart(1, kSectionCount, "Please wait...");

    // The backup holds the file as it stood before this save. Without a
    // backup an existing file is not touched at all.
    const std::string backup = path + ".bak";
    std::error_code ec;
    fs::remove(backup, ec);
    if (fs::exists(path, ec)) {
        if (auto problem = ombrevale::styleio::CopyWholeFile(path, backup)) {
            // A half-made copy would pass for the previous file.
            fs::remove(backup, ec);
            ProgressEnd();
            problem->text = "its backup " + backup + " could not be made (" + problem->text + ")";
            return problem;
        }
    }

    auto problem = ombrevale::styleio::ReplaceFileWith(path, Serialise(*this, true));
    ProgressEnd();
    return problem;
}

std::vector<std::uint8_t> clsSTY::SavedBytes() const { return Serialise(*this, false); }

bool clsSTY::SaveSTY(const std::string& sFile) const {
    const auto problem = TrySaveSTY(sFile);
    if (problem)
        MsgBox(
            "The style file " + sFile + " was not saved: " + problem->text + ". The file on disk is as it was before.",
            "ERROR", MsgIcon::Exclamation);
    return !problem;
}
