#include "stylewriter/stylewriter.h"

namespace ombrevale::stylewriter {
namespace {

std::vector<TilePixels> MakeTiles() {
    std::vector<TilePixels> tiles(8);
    for (std::size_t t = 0; t < tiles.size(); ++t)
        for (std::size_t i = 0; i < 4096; ++i) tiles[t][i] = static_cast<std::uint8_t>(t * 31 + i * 7 + i / 64);
    return tiles;
}

std::vector<PaletteBytes> MakePalettes() {
    std::vector<PaletteBytes> pals(128);
    for (std::size_t p = 0; p < pals.size(); ++p)
        for (std::size_t i = 0; i < 1024; ++i) pals[p][i] = static_cast<std::uint8_t>(p * 3 + i * 5 + 1);
    return pals;
}

// DELX: sprite 2 with two deltas (3 and 0 bytes), sprite 5 with none, sprite 7 with one.
Bytes DeltaIndex() { return Cat({LE16(2), {2, 0xA5}, LE16(3), LE16(0), LE16(5), {0, 0x11}, LE16(7), {1, 0}, LE16(4)}); }

// CARI: a car with remaps and doors, one with neither, one sharing a sprite.
Bytes Cars() {
    return Cat({{10, 1, 30, 50, 3, 4, 20, 2, 8, 9, 10, 11, 0x80, 0x81},
                {40, 41, 42},
                {2},
                LE16(0x1234),
                LE16(0xFFFF),
                {11, 0, 28, 48, 0, 2, 21, 3, 200, 201, 202, 203, 0, 1},
                {0},
                {12, 1, 32, 64, 1, 1, 22, 4, 5, 6, 7, 8, 9, 10},
                {43},
                {0}});
}

}  // namespace

FullStyle MakeFullStyle() {
    FullStyle s;
    s.tiles = MakeTiles();
    s.palettes = MakePalettes();
    Bytes sprg(256 * 4);
    for (std::size_t i = 0; i < sprg.size(); ++i) sprg[i] = static_cast<std::uint8_t>(i ^ 0x5A);
    const Bytes delx = DeltaIndex();
    const Bytes cari = Cars();
    s.file.Add("TILE", TilePayload(s.tiles))
        .Add("PPAL", PalettePayload(s.palettes))
        .Add("SPRB", Cat({LE16(3), LE16(2), LE16(1), LE16(1), LE16(0), LE16(-2)}))
        .Add("FONB", Cat({LE16(3), LE16(10), LE16(20), LE16(-1)}))
        .Add("DELX", delx)
        .Add("DELS", {1, 0, 5, 9, 9, 0, 0, 0, 0xAA})
        .Add("PALX", Cat({LE16(0), LE16(1), LE16(127), LE16(-1), LE16(64)}))
        .Add("OBJI", {1, 2, 3, 4})
        .Add("RECY", {7, 123, 255})
        .Add("SPRG", sprg)
        .Add("SPRX", Cat({LE32(0), {4, 2}, LE16(0xBEEF), LE32(256 + 10), {30, 3}, LE16(1)}))
        .Add("PALB", Cat({LE16(8), LE16(5), LE16(3), LE16(4), LE16(5), LE16(6), LE16(7), LE16(-8)}))
        .Add("CARI", cari)
        .Add("SPEC", Cat({LE16(1), LE16(0), LE16(2), LE16(0)}));
    return s;
}

StyleBytes MakeScrambledStyle(const FullStyle& full) {
    const Bytes& f = full.file.bytes();
    const auto& b = full.file.boundaries();
    // Payload of section i as written in the full file.
    auto payload = [&](std::size_t i) {
        const std::size_t end = i + 1 < b.size() ? b[i + 1] : f.size();
        return Bytes(f.begin() + static_cast<long>(b[i] + 8), f.begin() + static_cast<long>(end));
    };
    StyleBytes s("GBST", 700);
    s.Add("spec", payload(13))
        .Add("Cari", payload(12))
        .AddWithSize("palb", 100, payload(11))
        .Add("ZZZZ", Bytes(10, 0xEE))
        .Add("sprx", payload(10))
        .Add("sprg", payload(9))
        .Add("recy", payload(8))
        .Add("obji", payload(7))
        .Add("palx", payload(6))
        .Add("dels", payload(5))
        .Add("delx", payload(4))
        .AddWithSize("fonb", -5, payload(3))
        .AddWithSize("sprb", 100, payload(2))
        .Add("ppal", payload(1))
        .Add("tile", payload(0));
    return s;
}

}  // namespace ombrevale::stylewriter
