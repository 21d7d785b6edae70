#include "scene.h"

namespace ombrevale::pixeltest {

std::array<std::uint8_t, 4> StoredColour(std::size_t p, std::size_t c) {
    return {static_cast<std::uint8_t>(c), static_cast<std::uint8_t>(p * 40 + 1), static_cast<std::uint8_t>(255 - c),
            static_cast<std::uint8_t>(0x40 + p)};
}

std::int32_t ExpectedColour(std::size_t p, std::size_t c) {
    const auto b = StoredColour(p, c);
    return b[2] + b[1] * 256 + b[0] * 65536;
}

std::uint8_t TilePixel(std::size_t t, std::size_t r, std::size_t c) {
    return static_cast<std::uint8_t>(t * 17 + r * 3 + c);
}

std::uint8_t SpriteByte(std::size_t i) { return static_cast<std::uint8_t>((i * 7 + 3) ^ (i >> 8)); }

std::int16_t TilePalette(std::size_t t) { return static_cast<std::int16_t>((t + 1) % 3); }
std::int16_t SpriteOwnPalette(std::size_t s) { return static_cast<std::int16_t>(s % 3); }

void Scene::SetUp() {
    using namespace modDeclares;
    ResetSharedStores();
    STYPalData.assign(kPaletteCount, Palette{});
    for (std::size_t p = 0; p < kPaletteCount; ++p)
        for (std::size_t c = 0; c < 256; ++c) {
            const auto b = StoredColour(p, c);
            std::copy(b.begin(), b.end(), STYPalData[p].begin() + static_cast<long>(c * 4));
        }
    doc.iPalCount = kPaletteCount;
    doc.iTileCount = kTileCount;
    doc.STYTileStore.clear();
    for (std::size_t t = 0; t < kTileCount; ++t) {
        STYPalIndex.push_back(TilePalette(t));
        PixelBlock pixels;
        for (std::size_t i = 0; i < kTileBytes; ++i) pixels[i] = TilePixel(t, i / 64, i % 64);
        doc.STYTileStore.emplace_back(pixels);
    }
    STYPalBase[0] = kTileCount;
    STYPalBase[1] = static_cast<std::int16_t>(std::size(kSprites));
    doc.STYSpriteData.resize(48 * 256);
    for (std::size_t i = 0; i < doc.STYSpriteData.size(); ++i) doc.STYSpriteData[i] = SpriteByte(i);
    for (std::size_t s = 0; s < std::size(kSprites); ++s) {
        doc.STYSpriteIndex.push_back({kSprites[s].offset, kSprites[s].width, kSprites[s].height, 0});
        STYPalIndex.push_back(SpriteOwnPalette(s));
    }
    doc.iSprxCount = static_cast<std::int16_t>(doc.STYSpriteIndex.size());
    doc.iPalxCount = static_cast<std::int16_t>(STYPalIndex.size());
}

void Scene::TearDown() { modDeclares::ResetSharedStores(); }

}  // namespace ombrevale::pixeltest
