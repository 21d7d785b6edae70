#include "stylefile.h"

#include <stdexcept>
#include <string>

#include "palettes.h"
#include "sprites.h"
#include "style/bytewriter.h"
#include "style/clssty.h"
#include "tiles.h"

namespace sample {
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

// One delta: the runs that turn `base` into `changed`, positions counted in rows of 256.
std::vector<std::uint8_t> EncodeDelta(const Canvas& base, const Canvas& changed) {
    std::vector<std::uint8_t> out;
    ByteWriter w(out);
    int end = 0;
    for (int y = 0; y < base.Height(); ++y) {
        int x = 0;
        while (x < base.Width()) {
            if (base.At(x, y) == changed.At(x, y)) {
                ++x;
                continue;
            }
            int run = 0;
            while (x + run < base.Width() && run < 255 && base.At(x + run, y) != changed.At(x + run, y)) ++run;
            const int start = y * 256 + x;
            w.U16(static_cast<std::uint16_t>(start - end));
            w.U8(static_cast<std::uint8_t>(run));
            for (int i = 0; i < run; ++i) w.U8(changed.At(x + i, y));
            end = start + run;
            x += run;
        }
    }
    return out;
}

void Section(ByteWriter& w, const char* tag, const std::vector<std::uint8_t>& payload) {
    w.Bytes(std::vector<std::uint8_t>(tag, tag + 4));
    w.I32(static_cast<std::int32_t>(payload.size()));
    w.Bytes(payload);
}

std::vector<std::uint8_t> TilePayload(const std::vector<TileArt>& tiles) {
    std::vector<std::uint8_t> out(tiles.size() * kTileBytes);
    for (std::size_t t = 0; t < tiles.size(); ++t)
        for (int r = 0; r < 64; ++r)
            for (int c = 0; c < 64; ++c)
                out[(t / 4) * kStripBytes + static_cast<std::size_t>(r * 256) + (t % 4) * 64 +
                    static_cast<std::size_t>(c)] = tiles[t].pixels.At(c, r);
    return out;
}

std::vector<std::uint8_t> PalettePayload(const std::vector<PaletteBytes>& pals) {
    std::vector<std::uint8_t> out(pals.size() * kPaletteBytes);
    for (std::size_t p = 0; p < pals.size(); ++p)
        for (std::size_t c = 0; c < 256; ++c)
            for (std::size_t b = 0; b < 4; ++b)
                out[(p / 64) * kPalettePageBytes + c * 256 + (p % 64) * 4 + b] = pals[p][c * 4 + b];
    return out;
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
            const auto delta = EncodeDelta(cars.sprites[car].pixels, image);
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

    std::vector<std::uint8_t> file;
    ByteWriter w(file);
    w.Bytes(std::vector<std::uint8_t>{'G', 'B', 'S', 'T'});
    w.U16(600);
    Section(w, "TILE", TilePayload(tiles));
    Section(w, "PPAL", PalettePayload(palettes));
    Section(w, "SPRB", sprb);
    Section(w, "FONB", fonb);
    Section(w, "DELX", delx);
    Section(w, "DELS", dels);
    Section(w, "PALX", palxBytes);
    Section(w, "OBJI", obji);
    Section(w, "RECY", recy);
    Section(w, "SPRG", sprg);
    Section(w, "SPRX", sprx);
    Section(w, "PALB", palb);
    Section(w, "CARI", cari);
    Section(w, "SPEC", SurfaceLists(tiles));
    return file;
}

}  // namespace sample
