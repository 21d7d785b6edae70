// The Font page: a line of text set in the font sprites, glyph after glyph.
#include <QLineEdit>

#include "style/hooks.h"
#include "workbench/frmsty2.h"
#include "workbench/picturebox.h"

namespace {
// Sprite of "!"; a character c is sprite kFirstGlyph + code(c) - code('!').
constexpr int kFirstGlyph = 1366;
}  // namespace

void frmSTY2::cmdCreateText_Click() {
    picFont->Cls();
    const QByteArray text = txtText->text().toLatin1();
    const auto sprites = static_cast<int>(Sty().STYSpriteIndex.size());
    int x = 0;
    QString missing;
    for (const char ch : text) {
        const int code = static_cast<unsigned char>(ch);
        const int s = kFirstGlyph + code - '!';
        if (s < 0 || s >= sprites) {
            // No glyph: the character is left out rather than drawn with another sprite.
            if (!missing.contains(QChar(ch))) missing += QChar(ch);
            continue;
        }
        // picTemp sizes itself to its picture.
        picTemp->resize(Sty().GetSpriteWidth(s), Sty().GetSpriteHeight(s));
        std::int16_t own = -1;
        if (!Sty().RenderSprite(s, *picTemp, own)) continue;
        picFont->BitBlt(x, 0, picTemp->width(), picTemp->height(), *picTemp, 0, 0);
        x += picTemp->width();
    }
    if (!missing.isEmpty())
        MsgBox("This style has no font sprite for \"" + missing.toStdString() + "\": left out of the line.",
               "Ombrevale", MsgIcon::Information);
}
