// text: a line set in the font sprites, as the Font page sets it.
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "clierror.h"
#include "commands.h"
#include "imagepicture.h"
#include "style/clssty.h"
#include "style/fonts.h"

namespace ombrevale::cli {

int RunText(const Args& args) {
    const std::string& style = args.words[0];
    const std::string out = std::filesystem::absolute(args.words[2]).string();
    clsSTY doc;
    LoadStyle(doc, style);
    int font = fonts::kFixedRule;
    if (args.font) {
        const auto count = static_cast<std::int64_t>(fonts::StyleFonts().size());
        CheckRange(style, "--font", *args.font, 1, count);
        font = static_cast<int>(*args.font - 1);
    }
    const std::u32string text = QString::fromLocal8Bit(args.words[1].c_str()).toStdU32String();
    const fonts::Line line = fonts::SetLine(doc, font, text);
    const bool own = font != fonts::kFixedRule;
    // As the Font page sets it: a space a gap, a glyph the font lacks an empty box.
    const int gap = own ? fonts::SpaceWidth(doc, font) : 0;
    const int box = own ? std::max(3, fonts::MissingWidth(doc, font)) : 0;
    int width = 0, height = 0;
    for (std::size_t i = 0; i < line.glyphs.size(); ++i) {
        const auto& g = line.glyphs[i];
        width += g ? doc.GetSpriteWidth(*g) : line.lacks[i] ? box : gap;
        if (g) height = std::max(height, static_cast<int>(doc.GetSpriteHeight(*g)));
    }
    if (height == 0 && width > 0 && own) height = box * 2;
    if (width == 0 || height == 0) throw Failure(style, "has no glyph for any character of \"" + args.words[1] + "\"");
    // As the window starts: colour 0 of each glyph in the key colour.
    doc.DrawTransparent(true);
    QImage picture(width, height, QImage::Format_RGB32);
    picture.fill(Qt::black);
    {
        InScratchFolder scratch;
        ImagePicture glyph;
        QPainter painter(&picture);
        int x = 0;
        for (std::size_t i = 0; i < line.glyphs.size(); ++i) {
            const auto& g = line.glyphs[i];
            std::int16_t pal = -1;
            if (g && !doc.RenderSprite(*g, glyph, pal))
                throw Failure(style, "sprite " + std::to_string(*g) + " cannot be drawn");
            if (g) {
                painter.drawImage(x, 0, glyph.image());
                x += glyph.Width();
            } else if (line.lacks[i] && own) {
                // White here, the picture's ground being black.
                painter.setPen(Qt::white);
                painter.drawRect(x + 1, 0, box - 3, height - 1);
                x += box;
            } else {
                x += gap;
            }
        }
    }
    WriteThrough(out, [&](const std::string& temp) { return picture.save(QString::fromStdString(temp), "PNG"); });
    if (!line.missing.empty())
        std::fprintf(stderr, "ombrevale-cli: %s: %s has no glyph for \"%s\": %s\n", style.c_str(),
                     own ? ("font " + std::to_string(font + 1)).c_str() : "the style",
                     QString::fromStdU32String(line.missing).toLocal8Bit().constData(),
                     own ? "an empty box stands in their place" : "left out of the line");
    return kExitOk;
}

}  // namespace ombrevale::cli
