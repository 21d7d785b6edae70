#include "workbench/picturebox.h"

#include <QMouseEvent>
#include <QPainter>

PictureBox::PictureBox(QWidget* parent) : QWidget(parent), image_(1, 1, QImage::Format_RGB32) {
    image_.fill(backColor_);
}

void PictureBox::Cls() {
    EnsureImage();
    image_.fill(backColor_);
    update();
}

bool PictureBox::LoadPicture(const std::string& sPath) {
    EnsureImage();
    QImage pic(QString::fromStdString(sPath));
    if (pic.isNull()) return false;
    pic = pic.convertToFormat(QImage::Format_RGB32);
    QPainter p(&image_);
    p.fillRect(image_.rect(), backColor_);
    p.drawImage(0, 0, pic);
    p.end();
    update();
    return true;
}

void PictureBox::SetPixelV(int x, int y, std::int32_t colour) {
    EnsureImage();
    if (!image_.rect().contains(x, y)) return;
    const auto c = static_cast<std::uint32_t>(colour);
    image_.setPixel(
        x, y, qRgb(static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF), static_cast<int>((c >> 16) & 0xFF)));
    update(x, y, 1, 1);
}

void PictureBox::BitBlt(int dx, int dy, int w, int h, const PictureBox& src, int sx, int sy) {
    EnsureImage();
    QPainter p(&image_);
    p.setCompositionMode(QPainter::CompositionMode_Source);
    p.drawImage(QPoint(dx, dy), src.image(), QRect(sx, sy, w, h));
    p.end();
    if (isVisible()) update(dx, dy, w, h);
}

void PictureBox::InvertPixel(int x, int y) {
    if (!image_.rect().contains(x, y)) return;
    image_.setPixel(x, y, image_.pixel(x, y) ^ 0x00FFFFFFu);
}

void PictureBox::InvertBox(int x1, int y1, int x2, int y2) {
    EnsureImage();
    if (x1 > x2) std::swap(x1, x2);
    if (y1 > y2) std::swap(y1, y2);
    for (int x = x1; x <= x2; ++x) {
        InvertPixel(x, y1);
        if (y2 != y1) InvertPixel(x, y2);
    }
    for (int y = y1 + 1; y < y2; ++y) {
        InvertPixel(x1, y);
        if (x2 != x1) InvertPixel(x2, y);
    }
    update(QRect(QPoint(x1, y1), QPoint(x2, y2)));
}

void PictureBox::paintEvent(QPaintEvent* event) {
    EnsureImage();
    QPainter p(this);
    p.drawImage(event->rect().topLeft(), image_, event->rect());
}

void PictureBox::resizeEvent(QResizeEvent*) { EnsureImage(); }

void PictureBox::EnsureImage() const {
    // The stored picture follows the control's size and keeps what it holds.
    // Hidden widgets get no resize event, so every use checks.
    const QSize s(std::max(1, width()), std::max(1, height()));
    if (s == image_.size()) return;
    QImage grown(s, QImage::Format_RGB32);
    grown.fill(backColor_);
    QPainter p(&grown);
    p.drawImage(0, 0, image_);
    p.end();
    image_ = std::move(grown);
}

void PictureBox::mouseReleaseEvent(QMouseEvent* event) {
    emit MouseUp(event->button(), event->modifiers(), event->position().x(), event->position().y());
}
