#include "workbench/windowsfonts.h"

#include <QFile>
#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QString>
#include <algorithm>
#include <cmath>

namespace ombrevale::workbench {

void UseWindowsFontMetrics() {
    static bool done = false;
    if (done) return;
    done = true;
    // Wine's own free Tahoma and MS Sans Serif (Debian: fonts-wine) are not in
    // fontconfig's folders; load them for this process only. Wine's MS Sans
    // Serif holds bitmaps of the sizes a screen of 96 dpi uses and no
    // outlines: at any other scale it would draw a small bitmap spaced out to
    // the text's width, so there the outline font of the same metrics stands in.
    const bool scaled = qGuiApp && qGuiApp->devicePixelRatio() != 1.0;
    for (const char* file : {"tahoma.ttf", "tahomabd.ttf", "ms_sans_serif.ttf"}) {
        const QString path = QStringLiteral("/usr/share/wine/fonts/") + QLatin1String(file);
        if (QFile::exists(path)) QFontDatabase::addApplicationFont(path);
    }
    // Liberation Sans has Arial's metrics, the nearest of the common free fonts.
    QFont::insertSubstitutions(QStringLiteral("Microsoft Sans Serif"),
                               scaled
                                   ? QStringList{QStringLiteral("Liberation Sans")}
                                   : QStringList{QStringLiteral("MS Sans Serif"), QStringLiteral("Liberation Sans")});
    QFont::insertSubstitutions(QStringLiteral("Tahoma"), {QStringLiteral("Liberation Sans")});
}

int WindowsFontStretch() {
    UseWindowsFontMetrics();
    if (!qGuiApp || qGuiApp->devicePixelRatio() == 1.0) return 100;
    // MS Sans Serif's widths still hold where its bitmaps do not: the outline
    // font drawn in its place is narrowed to them.
    const QString sample = QStringLiteral("Palette: 123 Index: 45 Sprites Recycling Rendering...");
    QFont bitmap(QStringLiteral("MS Sans Serif")), outline(QStringLiteral("Liberation Sans"));
    bitmap.setPointSizeF(8.25);
    outline.setPointSizeF(8.25);
    if (QFontInfo(bitmap).family() != QLatin1String("MS Sans Serif")) return 100;
    const double ratio =
        QFontMetricsF(bitmap).horizontalAdvance(sample) / QFontMetricsF(outline).horizontalAdvance(sample);
    return std::clamp(static_cast<int>(std::lround(ratio * 100)), 50, 150);
}

}  // namespace ombrevale::workbench
