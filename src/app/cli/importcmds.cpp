// import-tile, import-sprite and import-delta: a picture back into the style.
#include <cstdio>

#include "checks.h"
#include "clierror.h"
#include "commands.h"
#include "pictureio/picturereader.h"
#include "pixels/ownpalette.h"
#include "pixels/pictureimport.h"
#include "quantise/reduce.h"
#include "style/clssty.h"

namespace ombrevale::cli {
namespace {

using ombrevale::pictureimport::Fit;

picturefile::Picture Read(const std::string& picture, std::int32_t w, std::int32_t h, const std::string& target) {
    picturefile::Picture pic;
    if (auto problem = pictureio::ReadPicture(picture, pic)) throw Failure(picture, problem->text);
    if (auto problem = pictureimport::CheckSize(pic, w, h, target)) throw Failure(picture, problem->text);
    return pic;
}

// The picture's colour numbers in palette pal; without --nearest a picture
// whose colours the palette does not all hold is refused.
ByteString NumbersFor(const Args& args, const std::string& picture, std::int32_t w, std::int32_t h,
                      const std::string& target, std::int16_t pal, const ByteString& present) {
    const picturefile::Picture pic = Read(picture, w, h, target);
    const auto fitted = Fit(pic, pal, present);
    const std::string counted =
        std::to_string(fitted.changed) + " of " + std::to_string(pic.colours.size()) + " pixels";
    if (fitted.changed > 0 && !args.nearest)
        throw Failure(picture, counted + " have colours that palette " + std::to_string(pal) +
                                   " does not hold; give --nearest to take its nearest colours");
    if (fitted.changed > 0) std::printf("%s took the nearest colour of palette %d\n", counted.c_str(), pal);
    return fitted.numbers;
}

[[noreturn]] void Refused(const std::string& picture, std::string why) {
    while (!why.empty() && (why.back() == '.' || why.back() == ' ')) why.pop_back();
    throw Failure(picture, why);
}

// --new-palette: the picture in a palette of its own. False when the style
// has no room for one and --nearest lets the nearest colours stand in.
bool WithOwnPalette(const Args& args, clsSTY& doc, const ownpalette::Target& target, const std::string& picture,
                    std::int32_t w, std::int32_t h) {
    if (!args.newPalette) return false;
    const std::string name = ownpalette::Describe(target);
    const picturefile::Picture pic = Read(picture, w, h, name);
    const ownpalette::Plan plan = ownpalette::PlanFor(doc, target);
    if (!plan.place && args.nearest) {
        std::printf("%s Taking the nearest colours instead.\n", plan.refusal.c_str());
        return false;
    }
    if (!plan.place) throw Failure(picture, plan.refusal + " Give --nearest to take the nearest colours instead.");
    const std::int16_t count = doc.GetNumOfPals();
    const ownpalette::Plan done = quantise::ImportOwnPalette(doc, target, pic);
    if (!done.place) Refused(picture, done.refusal);
    const ownpalette::Place& place = *done.place;
    if (place.inPlace)
        std::printf("palette %d rewritten: %s is its only user\n", place.palette, name.c_str());
    else
        std::printf("%s has palette %d of its own%s\n", name.c_str(), place.palette,
                    doc.GetNumOfPals() > count ? ", on a page of 64 palettes added to the style" : "");
    return true;
}

}  // namespace

int RunImportTile(const Args& args) {
    const std::string& style = args.words[0];
    const std::int64_t n = ParseNumber(args.words[1], "N");
    const std::string& picture = args.words[2];
    clsSTY doc;
    LoadStyle(doc, style);
    const std::int16_t pal = CheckedTilePalette(doc, style, n);
    if (WithOwnPalette(args, doc, {ownpalette::TargetKind::Tile, static_cast<std::int32_t>(n)}, picture, kTileSide,
                       kTileSide)) {
        SaveStyle(doc, args.words[3]);
        return 0;
    }
    const auto numbers = NumbersFor(args, picture, kTileSide, kTileSide, "tile " + std::to_string(n), pal,
                                    pictureimport::TileNumbers(doc, static_cast<std::int32_t>(n)));
    if (auto problem = pictureimport::IntoTile(doc, static_cast<std::int32_t>(n), numbers))
        Refused(picture, problem->text);
    SaveStyle(doc, args.words[3]);
    return 0;
}

int RunImportSprite(const Args& args) {
    const std::string& style = args.words[0];
    const std::int64_t n = ParseNumber(args.words[1], "N");
    const std::string& picture = args.words[2];
    clsSTY doc;
    LoadStyle(doc, style);
    CheckSprite(doc, style, n);
    if (args.newPalette && args.pal) throw UsageError("--pal and --new-palette cannot go together");
    const std::int16_t pal = CheckedSpritePalette(doc, style, n, PalOption(args));
    const auto s = static_cast<std::int32_t>(n);
    if (WithOwnPalette(args, doc, {ownpalette::TargetKind::Sprite, s}, picture, doc.GetSpriteWidth(s),
                       doc.GetSpriteHeight(s))) {
        SaveStyle(doc, args.words[3]);
        return 0;
    }
    const auto numbers = NumbersFor(args, picture, doc.GetSpriteWidth(s), doc.GetSpriteHeight(s),
                                    "sprite " + std::to_string(n), pal, pictureimport::SpriteNumbers(doc, s, -1));
    if (auto problem = pictureimport::IntoSprite(doc, s, numbers)) Refused(picture, problem->text);
    SaveStyle(doc, args.words[3]);
    return 0;
}

int RunImportDelta(const Args& args) {
    const std::string& style = args.words[0];
    const std::int64_t sprite = ParseNumber(args.words[1], "SPRITE");
    const std::int64_t d = ParseNumber(args.words[2], "D");
    const std::string& picture = args.words[3];
    clsSTY doc;
    LoadStyle(doc, style);
    CheckDelta(doc, style, sprite, d);
    const std::int16_t pal = CheckedSpritePalette(doc, style, sprite, PalOption(args));
    const auto s = static_cast<std::int16_t>(sprite);
    const auto numbers =
        NumbersFor(args, picture, doc.GetSpriteWidth(s), doc.GetSpriteHeight(s), "sprite " + std::to_string(sprite),
                   pal, pictureimport::SpriteNumbers(doc, s, static_cast<std::int16_t>(d)));
    if (auto problem = pictureimport::IntoDelta(doc, s, static_cast<std::int16_t>(d), numbers))
        Refused(picture, problem->text);
    SaveStyle(doc, args.words[4]);
    return 0;
}

}  // namespace ombrevale::cli
