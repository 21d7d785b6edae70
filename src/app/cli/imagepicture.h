#pragma once
// Pictures the document renders into without a window: a QImage as the
// picture control, and the run's scratch folder as the current one, where
// the renders write temp.bmp.

#include <QDir>
#include <QImage>
#include <QString>
#include <string>

#include "clierror.h"
#include "commands.h"
#include "pixels/picturecontrol.h"

namespace ombrevale::cli {

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

}  // namespace ombrevale::cli
