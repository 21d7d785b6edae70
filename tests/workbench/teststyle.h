#pragma once
// A small style file written from bytes for the window's tests.

#include <filesystem>
#include <fstream>
#include <string>

#include "stylewriter/stylewriter.h"

namespace ombrevale::wbtest {

using namespace ombrevale::stylewriter;
inline constexpr int kPalettes = 64;

// The style with tileCount tiles, each in colours and a palette of its own, 3 cars, 2 peds,
// 1 map object and the recycling bytes 7, 123, 255. A palxCount below tileCount leaves the
// tiles from palxCount on without a palette.
inline void WriteStyle(const std::string& path, int tileCount, int palxCount = -1) {
    std::vector<TilePixels> tiles(static_cast<std::size_t>(tileCount));
    for (std::size_t t = 0; t < tiles.size(); ++t)
        for (std::size_t i = 0; i < 4096; ++i) tiles[t][i] = std::uint8_t(1 + (t * 7 + i / 8 % 8 + i / 1024) % 200);
    std::vector<PaletteBytes> pals(kPalettes);
    for (std::size_t p = 0; p < pals.size(); ++p)
        for (std::size_t i = 0; i < 1024; ++i) pals[p][i] = std::uint8_t(p * 3 + i);
    Bytes palx;
    for (int t = 0; t < (palxCount < 0 ? tileCount : palxCount); ++t) palx = Cat({palx, LE16(t * 3 % kPalettes)});
    WriteFile(path, StyleBytes()
                        .Add("TILE", TilePayload(tiles))
                        .Add("PPAL", PalettePayload(pals))
                        .Add("PALX", palx)
                        .Add("SPRB", Cat({LE16(3), LE16(2), LE16(0), LE16(1), LE16(0), LE16(0)}))
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
        << "WINE REGISTRY Version 2\n\n[Software\\\\DMA Design LTd\\\\Gta2 Editor\\\\App Defaults] 1700000000\n"
           "\"App Style File\"=\""
        << windows << "\"\n";
}

}  // namespace ombrevale::wbtest
