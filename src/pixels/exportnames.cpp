#include "pixels/exportnames.h"

#include <charconv>
#include <cstdio>

namespace ombrevale::exportnames {
namespace {

std::string Numbered(const char* stem, std::int32_t n, int digits) {
    char buf[48];
    std::snprintf(buf, sizeof buf, "%s-%0*d", stem, digits, static_cast<int>(n));
    return buf;
}

// Takes `word` off the front of `s`.
bool Eat(std::string_view& s, std::string_view word) {
    if (s.substr(0, word.size()) != word) return false;
    s.remove_prefix(word.size());
    return true;
}

// Takes a number of exactly `digits` digits or more (as the export pads them) off the front.
std::optional<std::int32_t> EatNumber(std::string_view& s, std::size_t digits) {
    std::size_t n = 0;
    while (n < s.size() && s[n] >= '0' && s[n] <= '9') ++n;
    std::int32_t value = 0;
    if (n < digits || n > 5 || std::from_chars(s.data(), s.data() + n, value).ec != std::errc() || value > 32767)
        return std::nullopt;
    s.remove_prefix(n);
    return value;
}

}  // namespace

std::string Path(const Name& name) {
    const char* ext = name.png ? ".png" : ".bmp";
    switch (name.kind) {
        case Kind::Tile:
            return "tiles/" + Numbered("tile", name.number, 4) + ext;
        case Kind::Sprite:
            return "sprites/" + Numbered("sprite", name.number, 4) + ext;
        case Kind::Delta:
            return "deltas/" + Numbered("sprite", name.number, 4) + "-" + Numbered("delta", name.delta, 2) + ext;
        case Kind::Palette:
            return "palettes/" + Numbered("palette", name.number, 3) + ".pal";
    }
    return {};
}

std::optional<Name> Parse(std::string_view s) {
    Name name;
    std::optional<std::int32_t> number, delta;
    if (Eat(s, "tiles/tile-")) {
        name.kind = Kind::Tile;
        number = EatNumber(s, 4);
    } else if (Eat(s, "sprites/sprite-")) {
        name.kind = Kind::Sprite;
        number = EatNumber(s, 4);
    } else if (Eat(s, "deltas/sprite-")) {
        name.kind = Kind::Delta;
        number = EatNumber(s, 4);
        if (!number || !Eat(s, "-delta-") || !(delta = EatNumber(s, 2))) return std::nullopt;
        name.delta = *delta;
    } else if (Eat(s, "palettes/palette-")) {
        name.kind = Kind::Palette;
        number = EatNumber(s, 3);
        return number && s == ".pal" ? std::optional<Name>(Name{Kind::Palette, *number, 0, false}) : std::nullopt;
    }
    if (!number) return std::nullopt;
    name.number = *number;
    if (s == ".png")
        name.png = true;
    else if (s != ".bmp")
        return std::nullopt;
    return name;
}

std::string SpriteCaption(const std::array<std::int16_t, 6>& groups, std::int32_t sprite) {
    static const char* const kGroups[6] = {"Car: ", "Ped: ", "Code Object: ", "Map Object: ", "User: ", "Font: "};
    std::int32_t first = 0;
    for (std::size_t g = 0; g < groups.size(); ++g) {
        const std::int32_t count = groups[g] > 0 ? groups[g] : 0;
        if (sprite >= first && sprite < first + count) return kGroups[g] + std::to_string(sprite - first + 1);
        first += count;
    }
    return "Sprite: " + std::to_string(sprite);
}

}  // namespace ombrevale::exportnames
