// sheet: all tiles on one picture, drawn the way the window draws its sheet.
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QString>
#include <filesystem>

#include "checks.h"
#include "clierror.h"
#include "commands.h"
#include "imagepicture.h"
#include "style/clssty.h"

namespace fs = std::filesystem;

namespace ombrevale::cli {

int RunSheet(const Args& args) {
    const std::string& style = args.words[0];
    const std::string out = fs::absolute(args.words[1]).string();
    const std::int64_t cols = args.columns.value_or(9);
    clsSTY doc;
    LoadStyle(doc, style);
    CheckRange(style, "--columns", cols, 1, 512);
    const int n = doc.GetNumOfTiles();
    for (int t = 0; t < n; ++t) CheckedTilePalette(doc, style, t);
    doc.DrawTransparent(args.transparent);

    // One row more than the rows the loop completes, as on screen.
    const int c = static_cast<int>(cols);
    QImage sheet(c * 64, (n / c + 1) * 64, QImage::Format_RGB32);
    sheet.fill(Qt::black);
    {
        InScratchFolder scratch;
        ImagePicture tile;
        QPainter painter(&sheet);
        for (int t = 0; t < n; ++t) {
            if (!doc.RenderTile(t, tile)) throw Failure(style, "tile " + std::to_string(t) + " cannot be drawn");
            painter.drawImage((t % c) * 64, (t / c) * 64, tile.image(), 0, 0, 64, 64);
        }
    }
    WriteThrough(out, [&](const std::string& temp) { return sheet.save(QString::fromStdString(temp), "PNG"); });
    return 0;
}

}  // namespace ombrevale::cli
