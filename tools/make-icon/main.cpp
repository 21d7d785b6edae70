// make-icon DIR: the window icon as DIR/hicolor/NxN/apps/ombrevale.png for
// the sizes desktops look for, drawn by the same code as the window's own.
#include <QDir>
#include <QString>
#include <cstdio>

#include "workbench/toolbarimages.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make-icon DIR\n");
        return 2;
    }
    for (const int side : {16, 32, 48, 64, 128, 256}) {
        const QString size = QString::number(side);
        const QString dir = QString::fromLocal8Bit(argv[1]) + "/hicolor/" + size + "x" + size + "/apps";
        const QString file = dir + "/ombrevale.png";
        if (!QDir().mkpath(dir) || !imgToolBar::WindowIconImage(side).save(file, "PNG")) {
            std::fprintf(stderr, "make-icon: %s cannot be written\n", qPrintable(file));
            return 1;
        }
    }
    return 0;
}
