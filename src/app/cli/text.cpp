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
    const QByteArray text = QString::fromLocal8Bit(args.words[1].c_str()).toLatin1();
    const fonts::Line line = fonts::SetLine(doc, font, std::string_view(text.constData(), std::size_t(text.size())));
    const int gap = font == fonts::kFixedRule ? 0 : fonts::SpaceWidth(doc, font);
    int width = 0, height = 0;
    for (const auto& g : line.glyphs) {
        width += g ? doc.GetSpriteWidth(*g) : gap;
        if (g) height = std::max(height, static_cast<int>(doc.GetSpriteHeight(*g)));
    }
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
        for (const auto& g : line.glyphs) {
            std::int16_t own = -1;
            if (g && !doc.RenderSprite(*g, glyph, own))
                throw Failure(style, "sprite " + std::to_string(*g) + " cannot be drawn");
            if (g) painter.drawImage(x, 0, glyph.image());
            x += g ? glyph.Width() : gap;
        }
    }
    WriteThrough(out, [&](const std::string& temp) { return picture.save(QString::fromStdString(temp), "PNG"); });
    if (!line.missing.empty())
        std::fprintf(stderr, "ombrevale-cli: %s: %s has no glyph for \"%s\": %s\n", style.c_str(),
                     font == fonts::kFixedRule ? "the style" : ("font " + std::to_string(font + 1)).c_str(),
                     QString::fromLatin1(line.missing.data(), qsizetype(line.missing.size())).toLocal8Bit().constData(),
                     font == fonts::kFixedRule ? "left out of the line" : "a gap stands in their place");
    return kExitOk;
}

}  // namespace ombrevale::cli
