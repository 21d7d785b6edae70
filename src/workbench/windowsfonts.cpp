#include "workbench/windowsfonts.h"

#include <QFile>
#include <QFont>
#include <QFontDatabase>
#include <QString>

namespace ombrevale::workbench {

void UseWindowsFontMetrics() {
    static bool done = false;
    if (done) return;
    done = true;
    // Wine's own free Tahoma and MS Sans Serif (Debian: fonts-wine) are not in
    // fontconfig's folders; load them for this process only.
    for (const char* file : {"tahoma.ttf", "tahomabd.ttf", "ms_sans_serif.ttf"}) {
        const QString path = QStringLiteral("/usr/share/wine/fonts/") + QLatin1String(file);
        if (QFile::exists(path)) QFontDatabase::addApplicationFont(path);
    }
    // Liberation Sans has Arial's metrics, the nearest of the common free fonts.
    QFont::insertSubstitutions(QStringLiteral("Microsoft Sans Serif"),
                               {QStringLiteral("MS Sans Serif"), QStringLiteral("Liberation Sans")});
    QFont::insertSubstitutions(QStringLiteral("Tahoma"), {QStringLiteral("Liberation Sans")});
}

}  // namespace ombrevale::workbench
