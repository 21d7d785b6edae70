#include "commandline.h"

#include <cstdio>
#include <string_view>

#if !defined(_WIN32)
#include "settings/linkhelper.h"
#endif

namespace {

void PrintHelp() {
    std::puts(
        "usage: ombrevale [STYLE]\n"
        "       ombrevale --map MAP [STYLE]\n"
        "Shows a GTA2 style file (GBST): its tiles, sprites, deltas, palettes and font.\n"
        "Without STYLE, the style the GTA2 editor's registry setting names is loaded.\n"
        "With --map, the GTA2 map MAP (.gmp) opens beside it, drawn with the style's tiles;\n"
        "a .gmp file given alone opens so beside the editor's style.\n"
        "\n"
        "  -h, --help   this text\n"
        "  --version    the version\n"
        "Qt's own options (-platform, -style, ...) are taken as well.\n"
        "\n"
        "Keys: Ctrl+T surface types and Ctrl+G go to a tile (Tiles page), Ctrl+F find\n"
        "a sprite and Ctrl+R all remaps of a car (Sprites page), Ctrl+U palette usage\n"
        "(Palettes page), Ctrl+wheel zoom of the sprite picture and the font text,\n"
        "Ctrl+M open a map, Ctrl+Shift+M grey the tiles the map does not use.\n");
#if !defined(_WIN32)
    // Where the helper is looked for depends on where this program lies, so say it.
    std::printf(
        "A click on a tile selects it in the GTA2 editor running under Wine, through\n"
        "%s\n"
        "(OMBREVALE_LINK_EXE names another; OMBREVALE_WINE another wine).\n",
        ombrevale::linkhelper::HelperPath().c_str());
#endif
}

}  // namespace

std::optional<int> AnswerWithoutWindow(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view a = argv[i];
        if (a == "--help" || a == "-h") {
            PrintHelp();
            return 0;
        }
        if (a == "--version") {
            std::puts("ombrevale " OMBREVALE_VERSION "\nLicence: GPL-3.0-or-later");
            return 0;
        }
    }
    return std::nullopt;
}
