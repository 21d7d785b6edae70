#pragma once
// Which sprite draws a character. The window's first rule is a fixed one,
// the same for every style: "!" is sprite 1366. A style also counts its own
// fonts in FONB, their glyphs following each other from the font sprite base
// (the sprites of the five other groups come first), each font from "!" on.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class clsSTY;

namespace ombrevale::fonts {

inline constexpr std::int32_t kFixedFirstGlyph = 1366;
// The font number that stands for the fixed rule.
inline constexpr int kFixedRule = -1;

struct Font {
    std::int32_t first = 0;  // the sprite of its "!"
    std::int32_t count = 0;  // glyphs FONB gives it
};
// The style's fonts, in FONB's order.
std::vector<Font> StyleFonts();

// The sprite for a character code in a font (kFixedRule, or 0 for the first
// font); nothing when the font has no glyph for it or the style no such sprite.
std::optional<std::int32_t> Glyph(const clsSTY& doc, int font, unsigned char code);

// How many of a font's glyphs FONB places past the style's last sprite.
std::int32_t GlyphsPastTheSprites(const clsSTY& doc, int font);

struct Line {
    // One a character: its sprite, or nothing.
    std::vector<std::optional<std::int32_t>> glyphs;
    // One a character: the font has no glyph for it. A space in a style's
    // font is a gap, not a lack.
    std::vector<bool> lacks;
    // The characters lacked, each once, in the order met.
    std::u32string missing;
};
// text in Unicode code points: one past Latin-1 has no glyph in any font.
Line SetLine(const clsSTY& doc, int font, std::u32string_view text);

// A space in a style's font: as wide as its narrowest glyph.
std::int32_t SpaceWidth(const clsSTY& doc, int font);

// The room of a glyph the font lacks: its glyphs' mean width, one letter's room.
std::int32_t MissingWidth(const clsSTY& doc, int font);

}  // namespace ombrevale::fonts
