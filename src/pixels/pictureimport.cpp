#include "pixels/pictureimport.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <unordered_map>

#include "pixels/checks.h"
#include "pixels/spriteblock.h"
#include "style/moddeclares.h"

namespace ombrevale::pictureimport {
namespace {

using picturefile::Picture;
using picturefile::Rgba;

constexpr int kColours = 256;
constexpr Rgba kKey{255, 0, 255, 255};

Rgba PaletteColour(std::int16_t pal, int c) {
    const auto& p = modDeclares::STYPalData[static_cast<std::size_t>(pal)];
    const auto at = static_cast<std::size_t>(c) * 4;
    return {p[at + 2], p[at + 1], p[at], 255};
}

bool SameRgb(Rgba a, Rgba b) { return a.r == b.r && a.g == b.g && a.b == b.b; }

bool TableIsPalette(const Picture& pic, std::int16_t pal) {
    if (pic.table.empty() || pic.table.size() > kColours) return false;
    for (std::size_t c = 0; c < pic.table.size(); ++c) {
        const Rgba want = PaletteColour(pal, static_cast<int>(c));
        if (!SameRgb(pic.table[c], want) && !(c == 0 && SameRgb(pic.table[c], kKey))) return false;
    }
    return true;
}

int Nearest(Rgba want, std::int16_t pal) {
    int best = 1;
    long bestDistance = -1;
    for (int c = 1; c < kColours; ++c) {
        const Rgba have = PaletteColour(pal, c);
        const long dr = have.r - want.r, dg = have.g - want.g, db = have.b - want.b;
        const long d = dr * dr + dg * dg + db * db;
        if (bestDistance < 0 || d < bestDistance) {
            best = c;
            bestDistance = d;
        }
    }
    return best;
}

ombrevale::Outcome Refusal(std::string text) {
    return ombrevale::Problem{ombrevale::Problem::Kind::Damaged, std::move(text)};
}

// The sprite's rows of W bytes, top row first, with the picture in its own columns.
ombrevale::Outcome SpriteWith(const clsSTY& doc, const spriteblock::Geometry& g, const ByteString& numbers,
                              std::int32_t sprite, ByteString& block) {
    block = spriteblock::RowsTopFirst(doc, g);
    const auto W = static_cast<std::size_t>(g.padded), w = static_cast<std::size_t>(g.width);
    if (block.size() != W * static_cast<std::size_t>(g.height))
        return Refusal("Sprite " + std::to_string(sprite) + " runs past the end of the sprite data.");
    if (numbers.size() != w * static_cast<std::size_t>(g.height))
        return Refusal("The picture for sprite " + std::to_string(sprite) + " is not " + std::to_string(g.width) +
                       " x " + std::to_string(g.height) + " pixels.");
    for (std::size_t y = 0; y < static_cast<std::size_t>(g.height); ++y)
        std::copy_n(numbers.begin() + static_cast<long>(y * w), w, block.begin() + static_cast<long>(y * W));
    return std::nullopt;
}

}  // namespace

Fitted Fit(const Picture& pic, std::int16_t pal, const ByteString& present) {
    Fitted out;
    if (TableIsPalette(pic, pal)) {
        out.numbers = pic.numbers;
        out.asStored = true;
        return out;
    }
    std::unordered_map<std::uint32_t, std::uint8_t> seen;
    out.numbers.reserve(pic.colours.size());
    for (std::size_t i = 0; i < pic.colours.size(); ++i) {
        const Rgba& px = pic.colours[i];
        if (i < present.size() && px.a != 0 && SameRgb(PaletteColour(pal, present[i]), px)) {
            out.numbers.push_back(present[i]);
            continue;
        }
        if (px.a == 0 || SameRgb(px, kKey)) {
            out.numbers.push_back(0);
            continue;
        }
        const std::uint32_t key = static_cast<std::uint32_t>(px.r << 16 | px.g << 8 | px.b);
        auto found = seen.find(key);
        if (found == seen.end()) found = seen.emplace(key, static_cast<std::uint8_t>(Nearest(px, pal))).first;
        out.numbers.push_back(found->second);
        if (!SameRgb(PaletteColour(pal, found->second), px)) ++out.changed;
    }
    return out;
}

ombrevale::Outcome CheckSize(const Picture& pic, std::int32_t w, std::int32_t h, const std::string& target) {
    if (pic.width == w && pic.height == h) return std::nullopt;
    return ombrevale::Problem{ombrevale::Problem::Kind::Damaged,
                              "is " + std::to_string(pic.width) + " x " + std::to_string(pic.height) + " pixels, but " +
                                  target + " is " + std::to_string(w) + " x " + std::to_string(h)};
}

ByteString TileNumbers(const clsSTY& doc, std::int32_t tile) {
    if (!pixelchecks::TileExists(doc, tile)) return {};
    const Tile& t = doc.STYTileStore[static_cast<std::size_t>(tile)];
    return ByteString(t.begin(), t.end());
}

ByteString SpriteNumbers(const clsSTY& doc, std::int32_t sprite, std::int16_t delta) {
    if (!pixelchecks::SpriteExists(doc, sprite) || sprite > INT16_MAX) return {};
    const auto g = spriteblock::Of(doc, sprite);
    const ByteString block = delta < 0 ? spriteblock::RowsTopFirst(doc, g)
                                       : spriteblock::RowsWithDelta(doc, g, static_cast<std::int16_t>(sprite), delta);
    const auto W = static_cast<std::size_t>(g.padded), w = static_cast<std::size_t>(g.width);
    if (block.size() != W * static_cast<std::size_t>(g.height)) return {};
    ByteString out;
    out.reserve(w * static_cast<std::size_t>(g.height));
    for (std::size_t y = 0; y < static_cast<std::size_t>(g.height); ++y)
        out.insert(out.end(), block.begin() + static_cast<long>(y * W), block.begin() + static_cast<long>(y * W + w));
    return out;
}

ombrevale::Outcome IntoTile(clsSTY& doc, std::int32_t tile, const ByteString& numbers) {
    if (numbers.size() != static_cast<std::size_t>(kTileBytes))
        return Refusal("The picture for tile " + std::to_string(tile) + " is not 64 x 64 pixels.");
    if (!pixelchecks::TileExists(doc, tile))
        return Refusal("There is no tile " + std::to_string(tile) + " to write into.");
    doc.SetBitsTile(tile, numbers);
    return std::nullopt;
}

ombrevale::Outcome IntoSprite(clsSTY& doc, std::int32_t sprite, const ByteString& numbers) {
    if (!pixelchecks::SpriteExists(doc, sprite) || sprite > INT16_MAX)
        return Refusal("There is no sprite " + std::to_string(sprite) + " to write into.");
    const auto g = spriteblock::Of(doc, sprite);
    ByteString block;
    if (auto problem = SpriteWith(doc, g, numbers, sprite, block)) return problem;
    doc.SetBits(static_cast<std::int16_t>(sprite), spriteblock::FlipRows(block, g.padded));
    return std::nullopt;
}

ombrevale::Outcome IntoDelta(clsSTY& doc, std::int16_t sprite, std::int16_t delta, const ByteString& numbers) {
    if (!pixelchecks::SpriteExists(doc, sprite)) return Refusal("There is no sprite " + std::to_string(sprite) + ".");
    const auto g = spriteblock::Of(doc, sprite);
    ByteString block;
    if (auto problem = SpriteWith(doc, g, numbers, sprite, block)) return problem;
    // A delta counts its positions from one pixel before the change, so the
    // top left pixel, and the first column of a sprite narrower than 256, are
    // out of its reach.
    const ByteString old = spriteblock::RowsTopFirst(doc, g);
    const auto W = static_cast<std::size_t>(g.padded);
    for (std::size_t y = 0; y < static_cast<std::size_t>(g.height); ++y)
        if ((y == 0 || W < 256) && block[y * W] != old[y * W])
            return Refusal("Delta " + std::to_string(delta) + " of sprite " + std::to_string(sprite) +
                           " cannot be made from this picture: it changes the pixel at column 0, row " +
                           std::to_string(y) + ", and a delta cannot hold a change in the sprite's first column.");
    ByteString bits = spriteblock::FlipRows(block, g.padded);
    return doc.TrySetDeltaBits(delta, sprite, bits);
}

}  // namespace ombrevale::pictureimport
