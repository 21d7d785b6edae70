#pragma once
// A small style file written from bytes for the window's tests.

#include <QColor>
#include <filesystem>
#include <fstream>
#include <string>

#include "stylewriter/stylewriter.h"

namespace wbtest {

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
    for (int t = 0; t < tileCount; ++t)
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x)
                tiles[static_cast<std::size_t>(t)][static_cast<std::size_t>(y * 64 + x)] =
                    static_cast<std::uint8_t>(TileByte(t, x, y));
    std::vector<PaletteBytes> pals(kPalettes);
    for (int p = 0; p < kPalettes; ++p)
        for (int c = 0; c < 256; ++c) {
            const QRgb rgb = PaletteColour(p, c);
            auto& b = pals[static_cast<std::size_t>(p)];
            b[static_cast<std::size_t>(c * 4)] = static_cast<std::uint8_t>(qBlue(rgb));
            b[static_cast<std::size_t>(c * 4 + 1)] = static_cast<std::uint8_t>(qGreen(rgb));
            b[static_cast<std::size_t>(c * 4 + 2)] = static_cast<std::uint8_t>(qRed(rgb));
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
           "#time=1da1747c66d0000\n"
           "\"App Style File\"=\""
        << windows << "\"\n";
}

}  // namespace wbtest
