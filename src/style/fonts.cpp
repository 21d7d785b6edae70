#include "style/fonts.h"

#include "style/clssty.h"
#include "style/moddeclares.h"

namespace ombrevale::fonts {

std::vector<Font> StyleFonts() {
    std::int32_t first = 0;
    for (std::size_t g = 0; g < 5; ++g) first += modDeclares::STYSpriteBase[g];
    std::vector<Font> fonts;
    for (const std::int16_t count : modDeclares::STYFontBase.base) {
        const std::int32_t n = count > 0 ? count : 0;
        fonts.push_back({first, n});
        first += n;
    }
    return fonts;
}

std::optional<std::int32_t> Glyph(const clsSTY& doc, int font, unsigned char code) {
    const std::int32_t offset = static_cast<std::int32_t>(code) - '!';
    std::int32_t sprite = kFixedFirstGlyph + offset;
    if (font != kFixedRule) {
        const auto fonts = StyleFonts();
        if (font < 0 || static_cast<std::size_t>(font) >= fonts.size()) return std::nullopt;
        const Font& f = fonts[static_cast<std::size_t>(font)];
        if (offset < 0 || offset >= f.count) return std::nullopt;
        sprite = f.first + offset;
    }
    if (sprite < 0 || static_cast<std::size_t>(sprite) >= doc.STYSpriteIndex.size()) return std::nullopt;
    return sprite;
}

std::int32_t GlyphsPastTheSprites(const clsSTY& doc, int font) {
    const auto fonts = StyleFonts();
    if (font < 0 || static_cast<std::size_t>(font) >= fonts.size()) return 0;
    const Font& f = fonts[static_cast<std::size_t>(font)];
    const auto sprites = static_cast<std::int32_t>(doc.STYSpriteIndex.size());
    const std::int32_t end = f.first + f.count;
    return end <= sprites ? 0 : std::min(f.count, end - sprites);
}

Line SetLine(const clsSTY& doc, int font, std::u32string_view text) {
    Line line;
    for (const char32_t ch : text) {
        const auto glyph = ch <= 0xFF ? Glyph(doc, font, static_cast<unsigned char>(ch)) : std::nullopt;
        const bool lacks = !glyph && !(font != kFixedRule && ch == U' ');
        line.glyphs.push_back(glyph);
        line.lacks.push_back(lacks);
        if (lacks && line.missing.find(ch) == std::u32string::npos) line.missing += ch;
    }
    return line;
}

std::int32_t SpaceWidth(const clsSTY& doc, int font) {
    std::int32_t narrowest = 0;
    for (int code = '!'; code < 256; ++code)
        if (const auto g = Glyph(doc, font, static_cast<unsigned char>(code))) {
            const std::int32_t w = doc.STYSpriteIndex[static_cast<std::size_t>(*g)].width;
            if (narrowest == 0 || (w > 0 && w < narrowest)) narrowest = w;
        }
    return narrowest;
}

std::int32_t MissingWidth(const clsSTY& doc, int font) {
    std::int64_t sum = 0, n = 0;
    for (int code = '!'; code < 256; ++code)
        if (const auto g = Glyph(doc, font, static_cast<unsigned char>(code))) {
            sum += doc.STYSpriteIndex[static_cast<std::size_t>(*g)].width;
            ++n;
        }
    return n == 0 ? 0 : static_cast<std::int32_t>((sum + n / 2) / n);
}

}  // namespace ombrevale::fonts
