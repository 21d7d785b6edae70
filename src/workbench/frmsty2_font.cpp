// The Font page: a line of text set in the font sprites, glyph after glyph,
// by the fixed rule or in one of the style's own fonts.
#include <QLineEdit>
#include <algorithm>

#include "style/fonts.h"
#include "style/hooks.h"
#include "workbench/fontchoice.h"
#include "workbench/frmsty2.h"
#include "workbench/picturebox.h"
#include "workbench/zoomlens.h"

namespace fonts = ombrevale::fonts;

void frmSTY2::cmdCreateText_Click() {
    picFont->Cls();
    const int font = fontChoice_->Chosen();
    const QByteArray text = txtText->text().toLatin1();
    const fonts::Line line = fonts::SetLine(Sty(), font, std::string_view(text.constData(), std::size_t(text.size())));
    // The fixed rule leaves out what it cannot draw; a style's font leaves a word's gap.
    const int gap = font == fonts::kFixedRule ? 0 : fonts::SpaceWidth(Sty(), font);
    int x = 0, height = 0;
    for (const auto& glyph : line.glyphs) {
        if (!glyph) {
            x += gap;
            continue;
        }
        // picTemp sizes itself to its picture.
        picTemp->resize(Sty().GetSpriteWidth(*glyph), Sty().GetSpriteHeight(*glyph));
        std::int16_t own = -1;
        if (!Sty().RenderSprite(*glyph, *picTemp, own)) continue;
        picFont->BitBlt(x, 0, picTemp->width(), picTemp->height(), *picTemp, 0, 0);
        x += picTemp->width();
        height = std::max(height, picTemp->height());
    }
    picFontZoom->SetPictureSize(QSize(x, height));
    const QString missing = QString::fromLatin1(line.missing.data(), qsizetype(line.missing.size()));
    if (font == fonts::kFixedRule) {
        fontChoice_->Note({});
        if (!missing.isEmpty())
            MsgBox("This style has no font sprite for \"" + missing.toStdString() + "\": left out of the line.",
                   "Ombrevale", MsgIcon::Information);
        return;
    }
    QStringList note;
    if (!missing.isEmpty())
        note << QStringLiteral("Font %1 has no glyph for \"%2\": a gap stands in their place.")
                    .arg(font + 1)
                    .arg(missing);
    if (const auto past = fonts::GlyphsPastTheSprites(Sty(), font))
        note
            << QStringLiteral("FONB counts %1 glyphs of font %2 past the style's last sprite.").arg(past).arg(font + 1);
    fontChoice_->Note(note.join(QLatin1Char(' ')));
}
