// Which sprite draws a character: the fixed rule, and each of a style's own fonts.
#include <cmath>
#include <string>

#include "style/fonts.h"
#include "stylefiletest.h"

namespace {

using namespace ombrevale::fonts;
using ombrevale::testsupport::StyleFileTest;

constexpr std::u32string_view kLine = U"Kill Frenzy! 250 Points";
// Glyphs of each font of the game's font style, from sprite 44.
constexpr std::int32_t kCounts[] = {140, 1, 1, 140, 144, 144, 144, 144, 144, 144, 144, 144, 144, 144};

TEST_F(StyleFileTest, AStyleLaidOutAsTheGamesFontStyleSetsALineInEachOfItsFonts) {
    ASSERT_TRUE(Load(ombrevale::stylewriter::MakeFontStyle().bytes()));
    std::int32_t first = 44;  // two code objects and 42 user sprites come first
    for (int font = 0; font < 14; ++font) {
        SCOPED_TRACE(font);
        const Line line = SetLine(doc, font, kLine);
        std::u32string missing;
        for (std::size_t i = 0; i < kLine.size(); ++i) {
            const int offset = static_cast<int>(kLine[i]) - '!';
            const bool has = offset >= 0 && offset < kCounts[font];
            EXPECT_EQ(line.glyphs[i], has ? std::optional<std::int32_t>(first + offset) : std::nullopt);
            if (!has && kLine[i] != ' ' && missing.find(kLine[i]) == std::u32string::npos) missing += kLine[i];
        }
        EXPECT_EQ(line.missing, missing);
        first += kCounts[font];
    }
    // The fixed rule draws from sprite 1366 whatever the style, which here lands in a font of its own.
    EXPECT_EQ(SetLine(doc, kFixedRule, U"!A").glyphs, (std::vector<std::optional<std::int32_t>>{1366, 1398}));
    EXPECT_EQ(SetLine(doc, 14, U"A").missing, U"A") << "a font the style does not count";
}

// FONB counts more glyphs than the style has sprites: those past the end are missing.
TEST_F(StyleFileTest, GlyphsPastTheLastSpriteAreMissing) {
    using namespace ombrevale::stylewriter;
    Bytes sprx;
    for (int s = 0; s < 10; ++s) sprx = Cat({sprx, LE32(0), {2, 2}, LE16(0)});
    ASSERT_TRUE(Load(StyleBytes()
                         .Add("SPRB", Cat({LE16(0), LE16(0), LE16(0), LE16(0), LE16(4), LE16(6)}))
                         .Add("FONB", Cat({LE16(2), LE16(3), LE16(5)}))
                         .Add("SPRG", Bytes(256 * 2, 1))
                         .Add("SPRX", sprx)
                         .bytes()));
    EXPECT_EQ(GlyphsPastTheSprites(doc, 0), 0);
    EXPECT_EQ(GlyphsPastTheSprites(doc, 1), 2);
    EXPECT_EQ(SetLine(doc, 1, U"!\"#$%").glyphs,
              (std::vector<std::optional<std::int32_t>>{7, 8, 9, std::nullopt, std::nullopt}));
    EXPECT_EQ(SpaceWidth(doc, 1), 2);
}

// A space is a gap as wide as the font's narrowest glyph; a lacking glyph takes a letter's
// room and is named, a character past Latin-1 too, in the fixed rule as in a style's font.
TEST_F(StyleFileTest, ASpaceIsTheNarrowestGlyphAndWhatIsLackedIsNamed) {
    ASSERT_TRUE(Load(ombrevale::stylewriter::MakeFontStyle().bytes()));
    // Font 1: sprites 44 to 183, each 1 + its number mod 98 wide: 1 for sprite 98 is the narrowest.
    EXPECT_EQ(SpaceWidth(doc, 0), 1);
    // A lacked glyph is as wide as the font's glyphs are on average, to the nearest pixel.
    for (std::int32_t font = 0, first = 44; font < 14; first += kCounts[font++]) {
        double sum = 0;
        for (int s = first; s < first + kCounts[font]; ++s) sum += 1 + s % 98;
        EXPECT_EQ(MissingWidth(doc, font), std::lround(sum / kCounts[font])) << font;
    }
    for (const int font : {0, kFixedRule}) {
        SCOPED_TRACE(font);
        const Line line = SetLine(doc, font, U"A \u20ACB\u00FF\u20AC");
        EXPECT_EQ(line.glyphs[2], std::nullopt) << "not the glyph of \"?\"";
        // The fixed rule reaches a sprite for every Latin-1 code; font 1's 140 glyphs end before "\u00FF".
        EXPECT_EQ(line.lacks, (std::vector<bool>{false, false, true, false, font != kFixedRule, true}));
        EXPECT_EQ(line.missing, font == kFixedRule ? U"\u20AC" : U"\u20AC\u00FF");
    }
}

}  // namespace
