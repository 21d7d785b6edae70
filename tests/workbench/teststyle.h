#pragma once
// A small style file written from bytes for the window's tests.

#include <QColor>
#include <filesystem>
#include <fstream>
#include <string>

#include "stylewriter/stylewriter.h"

namespace ombrevale::wbtest {

using namespace ombrevale::stylewriter;
inline constexpr int kPalettes = 64;

// Colour byte of pixel (x, y) in tile t; every fifth tile holds some colour 0.
inline int TileByte(int t, int x, int y) {
    if (t % 5 == 1 && (x + y) % 4 == 0) return 0;
    return 1 + (t * 7 + x / 8 + y / 16) % 200;
}

// Physical palette of tile t as written in PALX.
inline int TilePalette(int t) { return (t * 3) % kPalettes; }

// Colour c of palette p as written in PPAL.
inline QRgb PaletteColour(int p, int c) { return qRgb(255 - c, (p * 3) % 256, c); }

// The style with tileCount tiles, 3 cars, 2 peds, 1 map object and the recycling bytes 7, 123, 255.
inline void WriteStyle(const std::string& path, int tileCount) {
    std::vector<TilePixels> tiles(static_cast<std::size_t>(tileCount));
    for (std::size_t t = 0; t < tiles.size(); ++t)
        for (std::size_t i = 0; i < 4096; ++i) tiles[t][i] = std::uint8_t(TileByte(int(t), int(i % 64), int(i / 64)));
    std::vector<PaletteBytes> pals(kPalettes);
    for (std::size_t p = 0; p < pals.size(); ++p)
        for (std::size_t i = 0; i < 1024; ++i) {  // blue, green, red, a byte unused
            const QRgb rgb = PaletteColour(int(p), int(i / 4));
            pals[p][i] = std::uint8_t(i % 4 == 0 ? qBlue(rgb) : i % 4 == 1 ? qGreen(rgb) : i % 4 == 2 ? qRed(rgb) : 0);
        }
    Bytes palx;
    for (int t = 0; t < tileCount; ++t) palx = Cat({palx, LE16(TilePalette(t))});
    const Bytes sprb = Cat({LE16(3), LE16(2), LE16(0), LE16(1), LE16(0), LE16(0)});
    WriteFile(path, StyleBytes()
                        .Add("TILE", TilePayload(tiles))
                        .Add("PPAL", PalettePayload(pals))
                        .Add("PALX", palx)
                        .Add("SPRB", sprb)
                        .Add("RECY", Bytes{7, 123, 255})
                        .bytes());
}

// A Wine prefix whose user.reg names stylePath (a Windows path on drive Z:).
inline void WritePrefix(const std::string& prefixDir, const std::string& stylePath) {
    namespace fs = std::filesystem;
    fs::create_directories(fs::path(prefixDir) / "dosdevices");
    fs::create_directory_symlink("/", fs::path(prefixDir) / "dosdevices" / "z:");
    std::string windows = "Z:";
    for (char ch : stylePath) windows += ch == '/' ? std::string("\\\\") : std::string(1, ch);
    std::ofstream(fs::path(prefixDir) / "user.reg", std::ios::binary)
        << "WINE REGISTRY Version 2\n"
           ";; All keys relative to REGISTRY\\\\User\\\\S-1-5-21-0-0-0-1000\n\n#arch=win64\n\n"
           "[Software\\\\DMA Design LTd\\\\Gta2 Editor\\\\App Defaults] 1700000000\n"
           "#time=1da1747c66d0000\n\"App Style File\"=\""
        << windows << "\"\n";
}

}  // namespace ombrevale::wbtest
