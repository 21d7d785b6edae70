// The Font page: a line of text set in the font sprites, glyph after glyph,
// by the fixed rule or in one of the style's own fonts.
#include <QLineEdit>
#include <algorithm>
#include <vector>

#include "style/fonts.h"
#include "style/hooks.h"
#include "workbench/fontchoice.h"
#include "workbench/frmsty2.h"
#include "workbench/picturebox.h"
#include "workbench/zoomlens.h"

namespace fonts = ombrevale::fonts;

void frmSTY2::cmdCreateText_Click() {
    picFont->Cls();
    const int font = views_->fontChoice->Chosen();
    const std::u32string text = txtText->text().toStdU32String();
    const fonts::Line line = fonts::SetLine(Sty(), font, text);
    const bool own = font != fonts::kFixedRule;
    // The fixed rule leaves out what it cannot draw; a style's font leaves a space's gap and boxes what it lacks.
    const int gap = own ? fonts::SpaceWidth(Sty(), font) : 0;
    const int box = own ? std::max(3, fonts::MissingWidth(Sty(), font)) : 0;
    int x = 0, height = 0;
    std::vector<int> boxes;
    for (std::size_t i = 0; i < line.glyphs.size(); ++i) {
        const auto& glyph = line.glyphs[i];
        if (!glyph) {
            if (own && line.lacks[i]) boxes.push_back(x);
            x += own && line.lacks[i] ? box : gap;
            continue;
        }
        // picTemp sizes itself to its picture.
        picTemp->resize(Sty().GetSpriteWidth(*glyph), Sty().GetSpriteHeight(*glyph));
        std::int16_t pal = -1;
        if (!Sty().RenderSprite(*glyph, *picTemp, pal)) continue;
        picFont->BitBlt(x, 0, picTemp->width(), picTemp->height(), *picTemp, 0, 0);
        x += picTemp->width();
        height = std::max(height, picTemp->height());
    }
    if (!boxes.empty() && height == 0) height = box * 2;
    // An outline one pixel in from each side, so boxes side by side stay apart.
    for (const int left : boxes) {
        for (int bx = left + 1; bx < left + box - 1; ++bx) {
            picFont->SetPixelV(bx, 0, 0);
            picFont->SetPixelV(bx, height - 1, 0);
        }
        for (int by = 0; by < height; ++by) {
            picFont->SetPixelV(left + 1, by, 0);
            picFont->SetPixelV(left + box - 2, by, 0);
        }
    }
    views_->fontZoom->SetPictureSize(QSize(x, height));
    const QString missing = QString::fromStdU32String(line.missing);
    if (!own) {
        views_->fontChoice->Note({});
        if (!missing.isEmpty())
            MsgBox("This style has no font sprite for \"" + missing.toStdString() + "\": left out of the line.",
                   "Ombrevale", MsgIcon::Information);
        return;
    }
    QStringList note;
    if (!missing.isEmpty())
        note << QStringLiteral("Font %1 has no glyph for \"%2\": an empty box stands in their place.")
                    .arg(font + 1)
                    .arg(missing);
    if (const auto past = fonts::GlyphsPastTheSprites(Sty(), font))
        note
            << QStringLiteral("FONB counts %1 glyphs of font %2 past the style's last sprite.").arg(past).arg(font + 1);
    views_->fontChoice->Note(note.join(QLatin1Char(' ')));
}
