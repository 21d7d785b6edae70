#include <algorithm>

#include "pixels/checks.h"
#include "pixels/modbmp.h"
#include "pixels/picturecontrol.h"
#include "pixels/transparentkey.h"
#include "style/clssty.h"

namespace {

using modBMP::kWorkFile;

bool TellNotWritten(const std::string& file) {
    return ombrevale::pixelchecks::Refuse("The picture file " + file + " cannot be written.");
}

}  // namespace

bool clsSTY::RenderTile(std::int32_t idx, PictureControl& PicBox) {
    const auto pal = ombrevale::pixelchecks::TilePalette(*this, idx);
    if (!pal) return false;
    iLastPal = *pal;
    iLastWidth = kTileSide;
    iLastHeight = kTileSide;
    PicBox.Cls();
    {
        const TransparentKey key(bDrawTransparent, *pal);
        if (!SaveTile(kWorkFile, idx)) return false;
    }
    return PicBox.LoadPicture(kWorkFile);
}

bool clsSTY::SaveTile(const std::string& sFile, std::int32_t idx) const {
    const auto pal = ombrevale::pixelchecks::TilePalette(*this, idx);
    if (!pal) return false;
    // Bottom row first, as a BMP stores it; 64 needs no row padding.
    const Tile& tile = STYTileStore[static_cast<std::size_t>(idx)];
    PixelBlock block;
    for (std::size_t r = 0; r < kTileSide; ++r)
        std::copy_n(tile.begin() + (kTileSide - 1 - r) * kTileSide, kTileSide, block.begin() + r * kTileSide);
    if (!modBMP::WriteBMP(sFile, kTileSide, kTileSide, *pal, block)) return TellNotWritten(sFile);
    return true;
}

bool clsSTY::SetBitsTile(std::int32_t TileNum, const ByteString& bits) {
    if (!ombrevale::pixelchecks::TileExists(*this, TileNum))
        return ombrevale::pixelchecks::Refuse("There is no tile " + std::to_string(TileNum) + " to write into.");
    // Rows run top to bottom here; a short string leaves its rows filled with 32.
    PixelBlock block;
    for (std::size_t i = 0; i < block.size(); ++i) block[i] = i < bits.size() ? bits[i] : 32;
    STYTileStore[static_cast<std::size_t>(TileNum)] = Tile(block);
    return true;
}
