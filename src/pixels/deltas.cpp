#include <algorithm>
#include <array>
#include <filesystem>
#include <span>
#include <system_error>

#include "pixels/checks.h"
#include "pixels/deltaruns.h"
#include "pixels/modbmp.h"
#include "pixels/picturecontrol.h"
#include "pixels/spriteblock.h"
#include "style/clssty.h"

using modDeclares::STYDeltaIndex;
using modDeclares::STYDeltaStore;

namespace ombrevale::deltaruns {

namespace {
// Sizes below zero name no bytes.
std::size_t SizeOf(std::int16_t size) { return size > 0 ? static_cast<std::size_t>(size) : 0; }
}  // namespace

bool Find(std::int16_t deltaNumber, std::int16_t spriteIdx, Place& out) {
    std::size_t place = 0;
    for (std::size_t e = 0; e < STYDeltaIndex.size(); ++e) {
        const auto& entry = STYDeltaIndex[e];
        if (entry.sprite != spriteIdx) {
            for (const auto size : entry.deltaSizes) place += SizeOf(size);
            continue;
        }
        if (deltaNumber < 0 || deltaNumber > entry.deltaCount - 1) return false;
        const auto d = static_cast<std::size_t>(deltaNumber);
        if (d >= entry.deltaSizes.size()) return false;
        for (std::size_t i = 0; i < d; ++i) place += SizeOf(entry.deltaSizes[i]);
        out = {e, place, SizeOf(entry.deltaSizes[d])};
        return true;
    }
    return false;
}

}  // namespace ombrevale::deltaruns

namespace {

// The delta's bytes where they lie in the store; a delta whose bytes run past
// the store gives what is there.
std::span<const std::uint8_t> DeltaBytes(std::int16_t deltaNumber, std::int16_t spriteIdx) {
    ombrevale::deltaruns::Place place;
    if (!ombrevale::deltaruns::Find(deltaNumber, spriteIdx, place)) return {};
    const std::size_t start = std::min(place.start, STYDeltaStore.size());
    const std::size_t end = std::min(start + place.length, STYDeltaStore.size());
    return std::span<const std::uint8_t>(STYDeltaStore).subspan(start, end - start);
}

}  // namespace

namespace ombrevale::spriteblock {

ByteString RowsWithDelta(const clsSTY& doc, const Geometry& g, std::int16_t sprite, std::int16_t delta) {
    ByteString block = RowsTopFirst(doc, g);
    // One column right of where RenderDelta draws.
    ombrevale::deltaruns::ForEachRun(DeltaBytes(delta, sprite), [&](std::int64_t P, auto pixels) {
        if (P < 0) return;
        const std::int64_t first = (P / kSpriteRowStride) * g.padded + P % kSpriteRowStride + 1;
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            const auto at = static_cast<std::size_t>(first) + i;
            if (at < block.size()) block[at] = pixels[i];
        }
    });
    return block;
}

}  // namespace ombrevale::spriteblock

ByteString clsSTY::GetDeltaString(std::int16_t deltaNumber, std::int16_t spriteIdx) const {
    const auto bytes = DeltaBytes(deltaNumber, spriteIdx);
    return ByteString(bytes.begin(), bytes.end());
}

void clsSTY::RenderDelta(std::int16_t deltaNumber, std::int16_t spriteIdx, PictureControl& PicBox,
                         std::int16_t PalIdx) const {
    if (!ombrevale::pixelchecks::PaletteExists(PalIdx)) {
        ombrevale::pixelchecks::Refuse("There is no palette " + std::to_string(PalIdx) + " to draw the delta in.");
        return;
    }
    // The palette is known good: its 256 colours once, not a checked lookup a pixel.
    std::array<std::int32_t, 256> colour{};
    for (std::size_t c = 0; c < colour.size(); ++c) colour[c] = GetCol(PalIdx, static_cast<std::int32_t>(c));
    std::array<std::int32_t, 255> run{};
    ombrevale::deltaruns::ForEachRun(DeltaBytes(deltaNumber, spriteIdx), [&](std::int64_t P, auto pixels) {
        if (P < 0) return;
        const auto x = static_cast<int>(P % kSpriteRowStride), y = static_cast<int>(P / kSpriteRowStride);
        for (std::size_t i = 0; i < pixels.size(); ++i) run[i] = colour[pixels[i]];
        PicBox.SetPixelRunV(x, y, run.data(), pixels.size());
    });
}

bool clsSTY::SaveDelta(const std::string& sFile, std::int16_t deltaNumber, std::int16_t spriteIdx,
                       std::int16_t& Pal) const {
    const auto pal = ombrevale::pixelchecks::SpritePalette(*this, spriteIdx, Pal);
    if (!pal) return false;
    const auto g = ombrevale::spriteblock::Of(*this, spriteIdx);
    const ByteString block = ombrevale::spriteblock::RowsWithDelta(*this, g, spriteIdx, deltaNumber);
    std::error_code ec;
    std::filesystem::remove(sFile, ec);
    Pal = *pal;
    if (!modBMP::WriteBMP(sFile, g.width, g.height, *pal, ombrevale::spriteblock::FlipRows(block, g.padded)))
        return ombrevale::pixelchecks::Refuse("The picture file " + sFile + " cannot be written.");
    return true;
}
