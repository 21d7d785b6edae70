#include <algorithm>
#include <filesystem>
#include <system_error>

#include "pixels/checks.h"
#include "pixels/modbmp.h"
#include "pixels/picturecontrol.h"
#include "pixels/spriteblock.h"
#include "pixels/transparentkey.h"
#include "style/clssty.h"

namespace ombrevale::spriteblock {

Geometry Of(const clsSTY& doc, std::int32_t idx) {
    const SpriteRecord& rec = doc.STYSpriteIndex[static_cast<std::size_t>(idx)];
    Geometry g{rec.offset, rec.width, rec.height, rec.width};
    clsSTY::Fixwidth(g.padded);
    return g;
}

ByteString RowsTopFirst(const clsSTY& doc, const Geometry& g) {
    const auto& data = doc.STYSpriteData;
    const auto size = static_cast<std::int64_t>(data.size());
    ByteString block;
    block.reserve(static_cast<std::size_t>(g.padded) * static_cast<std::size_t>(g.height));
    for (std::int64_t y = 0; y < g.height; ++y) {
        const std::int64_t start = g.offset + y * kSpriteRowStride;
        const std::int64_t end = std::min(start + g.padded, size);
        if (start < 0 || start >= end) continue;
        block.insert(block.end(), data.begin() + start, data.begin() + end);
    }
    return block;
}

ByteString FlipRows(const ByteString& block, std::int32_t W) {
    ByteString out;
    out.reserve(block.size());
    if (W <= 0) return out;
    const auto w = static_cast<std::size_t>(W);
    for (std::size_t end = block.size(); end > 0;) {
        const std::size_t start = end > w ? ((end - 1) / w) * w : 0;
        out.insert(out.end(), block.begin() + static_cast<long>(start), block.begin() + static_cast<long>(end));
        end = start;
    }
    return out;
}

}  // namespace ombrevale::spriteblock

namespace {

using modBMP::kWorkFile;

void RemoveQuietly(const std::string& file) {
    std::error_code ec;
    std::filesystem::remove(file, ec);
}

}  // namespace

void clsSTY::Fixwidth(std::int32_t& iWidth) {
    static constexpr std::int32_t kAdded[4] = {0, 3, 2, 1};
    iWidth += kAdded[((iWidth % 4) + 4) % 4];
}

std::int32_t clsSTY::GetSpriteHeight(std::int32_t idx) const {
    return ombrevale::pixelchecks::SpriteExists(*this, idx) ? STYSpriteIndex[static_cast<std::size_t>(idx)].height : 0;
}

std::int32_t clsSTY::GetSpriteWidth(std::int32_t idx) const {
    return ombrevale::pixelchecks::SpriteExists(*this, idx) ? STYSpriteIndex[static_cast<std::size_t>(idx)].width : 0;
}

std::int32_t clsSTY::GetSpriteOffset(std::int32_t idx) const {
    return ombrevale::pixelchecks::SpriteExists(*this, idx) ? STYSpriteIndex[static_cast<std::size_t>(idx)].offset : 0;
}

ByteString clsSTY::GetBits(std::int32_t SprNum) const {
    if (!ombrevale::pixelchecks::SpriteExists(*this, SprNum)) return {};
    const auto g = ombrevale::spriteblock::Of(*this, SprNum);
    return ombrevale::spriteblock::FlipRows(ombrevale::spriteblock::RowsTopFirst(*this, g), g.padded);
}

bool clsSTY::SetBits(std::int16_t SprNum, const ByteString& bits) {
    if (!ombrevale::pixelchecks::SpriteExists(*this, SprNum))
        return ombrevale::pixelchecks::Refuse("There is no sprite " + std::to_string(SprNum) + " to write into.");
    const auto g = ombrevale::spriteblock::Of(*this, SprNum);
    const auto size = static_cast<std::int64_t>(STYSpriteData.size());
    // Row r of the block is sprite row height - 1 - r; the store never grows.
    for (std::int64_t r = 0; r < g.height; ++r) {
        const auto from = static_cast<std::size_t>(r * g.padded);
        if (from >= bits.size()) break;
        const std::size_t taken = std::min(bits.size() - from, static_cast<std::size_t>(g.padded));
        const std::int64_t at = g.offset + (g.height - 1 - r) * kSpriteRowStride;
        for (std::size_t i = 0; i < taken; ++i) {
            const std::int64_t p = at + static_cast<std::int64_t>(i);
            if (p >= 0 && p < size) STYSpriteData[static_cast<std::size_t>(p)] = bits[from + i];
        }
    }
    return true;
}

bool clsSTY::SaveSprite(const std::string& sFile, std::int32_t idx, std::int16_t& Pal) const {
    const auto pal = ombrevale::pixelchecks::SpritePalette(*this, idx, Pal);
    if (!pal) return false;
    const auto g = ombrevale::spriteblock::Of(*this, idx);
    const ByteString block = ombrevale::spriteblock::FlipRows(ombrevale::spriteblock::RowsTopFirst(*this, g), g.padded);
    RemoveQuietly(sFile);
    Pal = *pal;
    if (!modBMP::WriteBMP(sFile, g.width, g.height, *pal, block))
        return ombrevale::pixelchecks::Refuse("The picture file " + sFile + " cannot be written.");
    return true;
}

bool clsSTY::RenderSprite(std::int32_t idx, PictureControl& PicBox, std::int16_t& Pal) {
    const auto pal = ombrevale::pixelchecks::SpritePalette(*this, idx, Pal);
    if (!pal) return false;
    iLastPal = *pal;
    const auto g = ombrevale::spriteblock::Of(*this, idx);
    iLastWidth = g.width;
    iLastHeight = g.height;
    {
        const TransparentKey key(bDrawTransparent, *pal);
        if (!SaveSprite(kWorkFile, idx, Pal)) return false;
    }
    // A picture that does not load leaves the control as it was.
    return PicBox.LoadPicture(kWorkFile);
}
