// tile, sprite, delta and import-palette: one picture or one palette at a time.
#include "checks.h"
#include "clierror.h"
#include "commands.h"
#include "imagefiles.h"
#include "style/clssty.h"

namespace ombrevale::cli {
namespace {

void CheckPalOption(const clsSTY& doc, const std::string& file, const Args& args) {
    if (args.pal) CheckRange(file, "--pal", *args.pal, -1, doc.GetNumOfPals() - 1);
}

}  // namespace

int RunTile(const Args& args) {
    const std::string& style = args.words[0];
    const std::int64_t n = ParseNumber(args.words[1], "N");
    clsSTY doc;
    LoadStyle(doc, style);
    CheckedTilePalette(doc, style, n);
    WritePicture(args.words[2], false,
                 [&](const std::string& path) { return doc.SaveTile(path, static_cast<std::int32_t>(n)); });
    return 0;
}

int RunSprite(const Args& args) {
    const std::string& style = args.words[0];
    const std::int64_t n = ParseNumber(args.words[1], "N");
    clsSTY doc;
    LoadStyle(doc, style);
    CheckSprite(doc, style, n);
    CheckPalOption(doc, style, args);
    CheckedSpritePalette(doc, style, n, PalOption(args));
    WritePicture(args.words[2], false, [&](const std::string& path) {
        std::int16_t pal = PalOption(args);
        return doc.SaveSprite(path, static_cast<std::int32_t>(n), pal);
    });
    return 0;
}

int RunDelta(const Args& args) {
    const std::string& style = args.words[0];
    const std::int64_t sprite = ParseNumber(args.words[1], "SPRITE");
    const std::int64_t d = ParseNumber(args.words[2], "D");
    clsSTY doc;
    LoadStyle(doc, style);
    CheckDelta(doc, style, sprite, d);
    CheckPalOption(doc, style, args);
    CheckedSpritePalette(doc, style, sprite, PalOption(args));
    WritePicture(args.words[3], false, [&](const std::string& path) {
        std::int16_t pal = PalOption(args);
        return doc.SaveDelta(path, static_cast<std::int16_t>(d), static_cast<std::int16_t>(sprite), pal);
    });
    return 0;
}

int RunImportPalette(const Args& args) {
    const std::string& style = args.words[0];
    const std::int64_t p = ParseNumber(args.words[1], "P");
    const std::string& palFile = args.words[2];
    const std::string& out = args.words[3];
    clsSTY doc;
    LoadStyle(doc, style);
    CheckRange(style, "palette", p, 0, doc.GetNumOfPals() - 1);
    if (!HasJascMark(palFile)) throw Failure(palFile, "not a JASC-PAL file (its first line is not \"JASC-PAL\")");
    DocumentVoice voice;
    if (!doc.ImportPalette(palFile, static_cast<std::int32_t>(p)))
        throw Failure(palFile, voice.Take("is not a complete palette of 256 colours from 0 to 255"));
    SaveStyle(doc, out);
    return 0;
}

}  // namespace ombrevale::cli
