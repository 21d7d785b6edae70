#include "stylewriter/stylewriter.h"

namespace ombrevale::stylewriter {

// Laid out as the game's own font style: no tiles, five groups of sprites
// before 1,722 font sprites in fourteen fonts, and the sections in its order.
StyleBytes MakeFontStyle() {
    const std::vector<std::int32_t> fonts = {140, 1, 1, 140, 144, 144, 144, 144, 144, 144, 144, 144, 144, 144};
    Bytes fonb = LE16(static_cast<std::int32_t>(fonts.size()));
    for (const std::int32_t n : fonts) fonb = Cat({fonb, LE16(n)});
    // Every sprite its own width (1 to 98), so that a glyph drawn shows which one it was.
    const std::int32_t sprites = 1766;
    Bytes sprx, sprg(256 * 256, 0);
    for (std::int32_t s = 0; s < sprites; ++s) {
        const std::int32_t width = 1 + s % 98;
        sprx = Cat({sprx, LE32(0), {static_cast<std::uint8_t>(width), static_cast<std::uint8_t>(14 + s % 7)}, LE16(0)});
    }
    for (std::size_t i = 0; i < sprg.size(); ++i) sprg[i] = static_cast<std::uint8_t>(1 + i % 255);
    Bytes palx;
    for (std::int32_t v = 0; v < 16384; ++v) palx = Cat({palx, LE16(v < 1788 ? v % 35 : 0)});
    std::vector<PaletteBytes> pals(64);
    for (std::size_t p = 0; p < 35; ++p)
        for (std::size_t i = 0; i < 1024; ++i) pals[p][i] = static_cast<std::uint8_t>(p * 7 + i);
    StyleBytes file("GBST", 700);
    file.Add("PPAL", PalettePayload(pals))
        .Add("SPRB", Cat({LE16(0), LE16(0), LE16(2), LE16(0), LE16(42), LE16(1722)}))
        .Add("FONB", fonb)
        .Add("PALX", palx)
        .Add("SPRG", sprg)
        .Add("SPRX", sprx)
        .Add("PALB", Cat({LE16(0), LE16(1766), LE16(0), LE16(0), LE16(3), LE16(0), LE16(3), LE16(16)}));
    return file;
}

}  // namespace ombrevale::stylewriter
