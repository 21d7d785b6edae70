// sheet: all tiles on one picture, drawn the way the window draws its sheet.
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QString>
#include <filesystem>

#include "checks.h"
#include "clierror.h"
#include "commands.h"
#include "pixels/picturecontrol.h"
#include "style/clssty.h"

namespace fs = std::filesystem;

namespace ombrevale::cli {
namespace {

// The hidden tile picture of the window: RenderTile fills it through temp.bmp.
class ImagePicture : public PictureControl {
public:
    void Cls() override { image_.fill(Qt::black); }
    bool LoadPicture(const std::string& sPath) override {
        QImage loaded;
        if (!loaded.load(QString::fromStdString(sPath), "BMP")) return false;
        image_ = loaded.convertToFormat(QImage::Format_RGB32);
        return true;
    }
    void SetPixelV(int x, int y, std::int32_t colour) override {
        if (!image_.valid(x, y)) return;
        image_.setPixel(x, y, qRgb(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF));
    }
    int Width() const override { return image_.width(); }
    int Height() const override { return image_.height(); }
    const QImage& image() const { return image_; }

private:
    QImage image_{64, 64, QImage::Format_RGB32};
};

// RenderTile writes temp.bmp into the current folder: the run's private one.
class InScratchFolder {
public:
    InScratchFolder() : previous_(QDir::currentPath()) {
        const std::string scratch = ScratchFolder();
        if (!QDir::setCurrent(QString::fromStdString(scratch))) throw Failure(scratch, "cannot be entered");
    }
    ~InScratchFolder() { QDir::setCurrent(previous_); }
    InScratchFolder(const InScratchFolder&) = delete;
    InScratchFolder& operator=(const InScratchFolder&) = delete;

private:
    QString previous_;
};

}  // namespace

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
