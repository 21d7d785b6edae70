// Writes the starting inputs of the fuzz targets into OUT/loadsty,
// OUT/importpalette and OUT/regfile: small generated styles holding every
// section, JASC-PAL files in each line ending, and a Wine user.reg followed by
// the bytes that pick a key and a value to write into it.

#include <cstdint>
#include <filesystem>
#include <iostream>
#include <string>

#include "mapwriter/mapwriter.h"
#include "stylewriter/stylewriter.h"

namespace fs = std::filesystem;
using ombrevale::stylewriter::Bytes;

namespace {

Bytes AsBytes(const std::string& s) { return Bytes(s.begin(), s.end()); }

std::string Jasc(const char* eol, int colours) {
    std::string t = std::string("JASC-PAL") + eol + "0100" + eol + "256" + eol;
    for (int i = 0; i < colours; ++i)
        t += std::to_string(i) + " " + std::to_string(255 - i) + " " + std::to_string((i * 7) % 256) + eol;
    return t;
}

const char* kUserReg =
    "WINE REGISTRY Version 2\n"
    ";; All keys relative to REGISTRY\\\\User\\\\S-1-5-21-0-0-0-1000\n"
    "\n"
    "#arch=win64\n"
    "\n"
    "[Environment] 1795402101\n"
    "#time=1dd7af51a054466\n"
    "\"TEMP\"=str(2):\"%USERPROFILE%\\\\AppData\\\\Local\\\\Temp\"\n"
    "\n"
    "[Software\\\\DMA Design LTd\\\\Gta2 Editor\\\\App Defaults] 1795402116\n"
    "#time=1dd7af523e54cf6\n"
    "\"App Style File\"=\"C:\\\\GTA2\\\\data\\\\wil.sty\"\n"
    "\"Bin\"=hex:f5,ff,ff,ff,00,00,00,00,00,00,00,00,00,00,00,00,bc,02,00,00,\\\n"
    "  00,00,00,00,00,00,00,22,4d,00\n"
    "\"Multi\"=hex(7):61,00,00,00,62,00,00,00,00,00\n"
    "\"Big\"=hex(5):00,00,00,2a\n"
    "\"Count\"=dword:0000002a\n"
    "@=\"default\"\n";

// One strip of tiles and one page of palettes, the smallest style that still
// draws; the other sections as the full style has them.
ombrevale::stylewriter::StyleBytes Compact(const ombrevale::stylewriter::FullStyle& full, bool deltasOnASprite) {
    const Bytes& f = full.file.bytes();
    const auto& b = full.file.boundaries();
    std::vector<ombrevale::stylewriter::TilePixels> tiles(full.tiles.begin(), full.tiles.begin() + 4);
    std::vector<ombrevale::stylewriter::PaletteBytes> pals(full.palettes.begin(), full.palettes.begin() + 64);
    ombrevale::stylewriter::StyleBytes s;
    s.Add("TILE", ombrevale::stylewriter::TilePayload(tiles)).Add("PPAL", ombrevale::stylewriter::PalettePayload(pals));
    for (std::size_t i = 2; i < b.size(); ++i) {
        if (deltasOnASprite && i == 4) {
            // Sprite 1 (30 by 3) with two deltas of runs: distance, length, pixels.
            using ombrevale::stylewriter::Cat;
            using ombrevale::stylewriter::LE16;
            s.Add("DELX", Cat({LE16(1), {2, 0}, LE16(9), LE16(6)}));
            s.Add("DELS", {3, 0, 2, 9, 9, 0, 1, 1, 7, 0, 0, 3, 1, 2, 3});
            ++i;
            continue;
        }
        if (deltasOnASprite && i == 6) {  // an entry for every virtual palette the sprites name
            Bytes palx;
            for (int v = 0; v < 64; ++v) palx.insert(palx.end(), {static_cast<std::uint8_t>(v), 0});
            s.Add("PALX", palx);
            continue;
        }
        const std::size_t end = i + 1 < b.size() ? b[i + 1] : f.size();
        s.Raw(Bytes(f.begin() + static_cast<long>(b[i]), f.begin() + static_cast<long>(end)));
    }
    return s;
}

// A few columns in each compressed grid, with every other chunk beside them.
void WriteMaps(const fs::path& dir) {
    using namespace ombrevale::mapwriter;
    fs::create_directories(dir);
    Grid g;
    for (int z = 0; z < 4; ++z)
        g.at(1, 2, z) = {
            Side(10 + z),        Side(20), 0, Side(30, true, true), Lid(40 + z, z % 4, z == 3, z == 2, z), 0x21,
            Slope(z % 4, z * 15)};
    g.at(255, 255, 0).lid = Lid(1023);
    const auto others = [](MapBytes& m) {
        m.Add("ZONE", ZonePayload({{2, 1, 2, 3, 4, "lights1"}, {0, 0, 0, 255, 255, "everywhere"}}))
            .Add("LGHT", LightPayload({{0xFF808080u, 128, 256, 384, 512, 1, 2, 3, 4}}))
            .Add("ANIM", AnimPayload({{40, 2, 0, {40, 41, 42}}}))
            .Add("MOBJ", ObjectPayload({{100, 200, 3, 4}}))
            .Add("EDIT", Bytes(16, 7));
    };
    MapBytes dmap, cmap;
    dmap.Add("DMAP", DmapPayload(g));
    others(dmap);
    cmap.Add("CMAP", CmapPayload(g));
    others(cmap);
    ombrevale::stylewriter::WriteFile((dir / "dmap.gmp").string(), dmap.bytes());
    ombrevale::stylewriter::WriteFile((dir / "cmap.gmp").string(), cmap.bytes());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: make-fuzz-seeds OUT\n";
        return 2;
    }
    const fs::path out = argv[1];
    for (const char* d : {"loadsty", "importpalette", "regfile", "picture", "exportnames", "mapread"})
        fs::create_directories(out / d);

    const auto full = ombrevale::stylewriter::MakeFullStyle();
    ombrevale::stylewriter::WriteFile((out / "loadsty/full.sty").string(), full.file.bytes());
    WriteMaps(out / "mapread");
    ombrevale::stylewriter::WriteFile((out / "loadsty/scrambled.sty").string(),
                                      ombrevale::stylewriter::MakeScrambledStyle(full).bytes());
    ombrevale::stylewriter::WriteFile((out / "loadsty/compact.sty").string(), Compact(full, false).bytes());
    ombrevale::stylewriter::WriteFile((out / "loadsty/deltas.sty").string(), Compact(full, true).bytes());

    ombrevale::stylewriter::WriteFile((out / "importpalette/crlf.pal").string(), AsBytes("\x01" + Jasc("\r\n", 256)));
    ombrevale::stylewriter::WriteFile((out / "importpalette/lf.pal").string(), AsBytes("\x02" + Jasc("\n", 256)));
    ombrevale::stylewriter::WriteFile((out / "importpalette/cr.pal").string(), AsBytes("\x03" + Jasc("\r", 256)));
    ombrevale::stylewriter::WriteFile((out / "importpalette/short.pal").string(), AsBytes("\x01" + Jasc("\r\n", 17)));

    const Bytes change = {5, 'G', 'T', 'A', '2', 0xC3, 0x21, 4, 'N', 'a', 'm', 'e', 1, 6, 'a', 0, 'b', 0, 0, 0};
    Bytes reg = AsBytes(kUserReg);
    reg.push_back(0);
    reg.insert(reg.end(), change.begin(), change.end());
    ombrevale::stylewriter::WriteFile((out / "regfile/user.reg").string(), reg);
    Bytes bare = AsBytes("WINE REGISTRY Version 2\n");
    bare.push_back(0);
    bare.insert(bare.end(), change.begin(), change.end());
    ombrevale::stylewriter::WriteFile((out / "regfile/empty.reg").string(), bare);
    return 0;
}
