#include "stylefile.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "palettes.h"
#include "sprites.h"
#include "style/bytewriter.h"
#include "style/clssty.h"
#include "stylewriter/stylewriter.h"
#include "tiles.h"

namespace ombrevale::sample {
namespace {

struct PackedSprite {
    std::int32_t offset;
    int width, height;
};

// Shelf packing into rows of 256 bytes; no sprite crosses a 64 KB page, as in the game's files.
class SpritePacker {
public:
    PackedSprite Place(const Canvas& c, std::vector<std::uint8_t>& store) {
        const int w = c.Width(), h = c.Height();
        if (x_ + w > 256) NewShelf();
        if ((y_ % 256) + h > 256) {
            y_ = (y_ / 256 + 1) * 256;
            x_ = 0;
            shelf_ = 0;
        }
        const std::int32_t offset = y_ * 256 + x_;
        const auto need = static_cast<std::size_t>((y_ + h) * 256);
        if (store.size() < need) store.resize(need, 0);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) store[static_cast<std::size_t>(offset + y * 256 + x)] = c.At(x, y);
        // A column of gap keeps each sprite's padding bytes its own.
        x_ += w + (4 - w % 4) % 4;
        shelf_ = shelf_ > h ? shelf_ : h;
        return {offset, w, h};
    }
    void Finish(std::vector<std::uint8_t>& store) { store.resize((store.size() + 65535) / 65536 * 65536, 0); }

private:
    void NewShelf() {
        y_ += shelf_;
        x_ = 0;
        shelf_ = 0;
    }
    int x_ = 0, y_ = 0, shelf_ = 0;
};

std::vector<std::uint8_t> TilePayload(const std::vector<TileArt>& tiles) {
    std::vector<stylewriter::TilePixels> pixels(tiles.size());
    for (std::size_t t = 0; t < tiles.size(); ++t)
        std::copy(tiles[t].pixels.Pixels().begin(), tiles[t].pixels.Pixels().end(), pixels[t].begin());
    return stylewriter::TilePayload(pixels);
}

std::vector<std::uint8_t> SurfaceLists(const std::vector<TileArt>& tiles) {
    std::vector<std::uint8_t> out;
    ByteWriter w(out);
    for (int type = kGrassDirt; type <= kGrassWall; ++type) {
        for (std::size_t t = 1; t < tiles.size(); ++t)
            if (tiles[t].surface == type) w.U16(static_cast<std::uint16_t>(t));
        w.U16(0);
    }
    return out;
}

}  // namespace

std::vector<std::uint8_t> BuildStyleFile() {
    const auto tiles = BuildTiles();
    const auto palettes = BuildPalettes();
    const CarSet cars = BuildCars();
    const auto fonts = BuildFonts();

    std::vector<SpriteArt> sprites = cars.sprites;
    for (auto group : {BuildPeds(), BuildCodeObjects(), BuildMapObjects(), BuildUserSprites()})
        sprites.insert(sprites.end(), group.begin(), group.end());
    if (sprites.size() != 1366) throw std::logic_error("the first font glyph must be sprite 1366");
    sprites.insert(sprites.end(), fonts.begin(), fonts.end());

    std::vector<std::uint8_t> sprg, sprx, delx, dels;
    SpritePacker packer;
    ByteWriter sx(sprx), dx(delx);
    for (const auto& s : sprites) {
        const PackedSprite p = packer.Place(s.pixels, sprg);
        sx.I32(p.offset);
        sx.U8(static_cast<std::uint8_t>(p.width));
        sx.U8(static_cast<std::uint8_t>(p.height));
        sx.U16(0);
    }
    packer.Finish(sprg);
    for (std::size_t car = 0; car < cars.deltaImages.size(); ++car) {
        const auto& images = cars.deltaImages[car];
        if (images.empty()) continue;
        dx.U16(static_cast<std::uint16_t>(car));
        dx.U8(static_cast<std::uint8_t>(images.size()));
        dx.U8(0);
        for (const auto& image : images) {
            const auto delta =
                stylewriter::EncodeDelta(cars.sprites[car].pixels.Pixels(), image.Pixels(), image.Width());
            dx.I16(static_cast<std::int16_t>(delta.size()));
            dels.insert(dels.end(), delta.begin(), delta.end());
        }
    }

    const std::array<int, 6> spriteBase = {kCarSprites, kPedSprites,  kCodeObjects,
                                           kMapObjects, kUserSprites, static_cast<int>(fonts.size())};
    const std::array<int, 8> palBase = {kTileCount, static_cast<int>(sprites.size()), kCarRemaps, kPedRemaps, 0, 0, 0,
                                        0};
    std::vector<std::int16_t> palx(16384, 0);
    for (int t = 0; t < kTileCount; ++t)
        palx[static_cast<std::size_t>(t)] = static_cast<std::int16_t>(tiles[static_cast<std::size_t>(t)].palette);
    for (std::size_t s = 0; s < sprites.size(); ++s)
        palx[static_cast<std::size_t>(kTileCount) + s] = static_cast<std::int16_t>(sprites[s].palette);
    const std::size_t remapBase = static_cast<std::size_t>(kTileCount) + sprites.size();
    for (int m = 0; m < kCarRemaps; ++m)
        palx[remapBase + static_cast<std::size_t>(m)] = static_cast<std::int16_t>(kCarRemapPal + m);
    for (int m = 0; m < kPedRemaps; ++m)
        palx[remapBase + static_cast<std::size_t>(kCarRemaps + m)] = static_cast<std::int16_t>(kPedRemapPal + m);

    std::vector<std::uint8_t> sprb, fonb, palxBytes, obji, recy, palb, cari;
    for (int v : spriteBase) ByteWriter(sprb).I16(static_cast<std::int16_t>(v));
    const auto counts = FontGlyphCounts();
    ByteWriter(fonb).I16(static_cast<std::int16_t>(counts.size()));
    for (int v : counts) ByteWriter(fonb).I16(static_cast<std::int16_t>(v));
    for (auto v : palx) ByteWriter(palxBytes).I16(v);
    // Object information: sprite count and a flag byte for each kind of object.
    for (int kind = 0; kind < (kCodeObjects + kMapObjects) / 25; ++kind) {
        obji.push_back(25);
        obji.push_back(static_cast<std::uint8_t>(kind < kCodeObjects / 25 ? 0x80 | kind : kind % 3));
    }
    for (const auto& r : cars.records)
        if (r.numRemaps >= 6 && r.model % 3 != 0) recy.push_back(r.model);
    recy.push_back(52);  // models without a car record may be listed
    recy.push_back(53);
    recy.push_back(255);
    for (int v : palBase) ByteWriter(palb).I16(static_cast<std::int16_t>(v));
    ByteWriter cw(cari);
    for (const auto& r : cars.records) {
        for (auto b :
             {r.model, r.sprite, r.width, r.height, r.numRemaps, r.passengers, r.wreck, r.rating, r.frontWheelOffset,
              r.rearWheelOffset, r.frontWindowOffset, r.rearWindowOffset, r.infoFlags, r.infoFlags2})
            cw.U8(b);
        cw.Bytes(r.remaps);
        cw.U8(r.numDoors);
        for (auto d : r.doors) cw.U16(d);
    }

    stylewriter::StyleBytes file;
    file.Add("TILE", TilePayload(tiles))
        .Add("PPAL", stylewriter::PalettePayload(palettes))
        .Add("SPRB", sprb)
        .Add("FONB", fonb)
        .Add("DELX", delx)
        .Add("DELS", dels)
        .Add("PALX", palxBytes)
        .Add("OBJI", obji)
        .Add("RECY", recy)
        .Add("SPRG", sprg)
        .Add("SPRX", sprx)
        .Add("PALB", palb)
        .Add("CARI", cari)
        .Add("SPEC", SurfaceLists(tiles));
    return file.bytes();
}

}  // namespace ombrevale::sample
