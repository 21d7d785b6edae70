#include "workbench/picturebox.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

PictureBox::PictureBox(QWidget* parent) : QWidget(parent), image_(1, 1, QImage::Format_RGB32) {
    image_.fill(backColor_);
}

void PictureBox::Cls() {
    // A picture made for a new size starts as background: one pass over the sheet's 16 MB, not two.
    if (!EnsureImage(false)) image_.fill(backColor_);
    update();
}

namespace {

std::uint32_t Le32(const unsigned char* p) {
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}
std::uint16_t Le16(const unsigned char* p) { return static_cast<std::uint16_t>(p[0] | p[1] << 8); }

// The pictures the pixel engine writes: 8 bits, uncompressed, bottom-up, all
// 256 colours, pixels right behind the table and all there. Qt's reader would
// give the same picture; it costs a plugin search, a file object and a format
// conversion for every tile of the sheet. Anything else is left to it.
bool DrawEngineBmp(const std::string& path, QImage& target, QRgb back) {
    constexpr std::size_t kHead = 54, kTable = 1024, kPixels = kHead + kTable;
    thread_local std::vector<unsigned char> file;
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return false;
    // Bigger than any picture of the engine: leave it to Qt.
    constexpr std::size_t kMost = kPixels + 256 * 256;
    file.resize(kMost + 1);
    const std::size_t got = std::fread(file.data(), 1, file.size(), f);
    std::fclose(f);
    if (got < kPixels || got > kMost) return false;
    const unsigned char* b = file.data();
    if (b[0] != 'B' || b[1] != 'M' || Le32(b + 10) != kPixels || Le32(b + 14) != 40) return false;
    const auto w = static_cast<std::int32_t>(Le32(b + 18)), h = static_cast<std::int32_t>(Le32(b + 22));
    const std::uint32_t used = Le32(b + 46);
    if (w <= 0 || h <= 0 || Le16(b + 26) != 1 || Le16(b + 28) != 8 || Le32(b + 30) != 0 || (used != 0 && used != 256))
        return false;
    const std::size_t stride = (static_cast<std::size_t>(w) + 3) & ~std::size_t{3};
    if (stride * static_cast<std::size_t>(h) > got - kPixels) return false;
    QRgb colour[256];
    for (std::size_t c = 0; c < 256; ++c) {
        const unsigned char* e = b + kHead + c * 4;
        colour[c] = qRgb(e[2], e[1], e[0]);
    }
    const int rows = std::min(h, target.height()), cols = std::min(w, target.width());
    // A tile covers its 64 x 64 box whole: no background to lay first.
    if (rows < target.height() || cols < target.width()) target.fill(back);
    for (int y = 0; y < rows; ++y) {
        const unsigned char* src = b + kPixels + stride * static_cast<std::size_t>(h - 1 - y);
        auto* line = reinterpret_cast<QRgb*>(target.scanLine(y));
        for (int x = 0; x < cols; ++x) line[x] = colour[src[x]];
    }
    return true;
}

}  // namespace

bool PictureBox::LoadPicture(const std::string& sPath) {
    EnsureImage();
    if (!DrawEngineBmp(sPath, image_, backColor_)) {
        QImage pic(QString::fromStdString(sPath));
        if (pic.isNull()) return false;
        pic = pic.convertToFormat(QImage::Format_RGB32);
        QPainter p(&image_);
        p.fillRect(image_.rect(), backColor_);
        p.drawImage(0, 0, pic);
        p.end();
    }
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

void PictureBox::SetPixelRunV(int x, int y, const std::int32_t* colours, std::size_t n) {
    EnsureImage();
    // Only the part inside the picture is drawn, and one update covers it.
    if (y < 0 || y >= image_.height() || n == 0) return;
    const long first = std::max(0L, static_cast<long>(x));
    const long end = std::min(static_cast<long>(image_.width()), static_cast<long>(x) + static_cast<long>(n));
    if (first >= end) return;
    auto* line = reinterpret_cast<QRgb*>(image_.scanLine(y));
    for (long px = first; px < end; ++px) {
        const auto c = static_cast<std::uint32_t>(colours[px - x]);
        line[px] = qRgb(static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF), static_cast<int>((c >> 16) & 0xFF));
    }
    update(static_cast<int>(first), y, static_cast<int>(end - first), 1);
}

void PictureBox::BitBlt(int dx, int dy, int w, int h, const PictureBox& src, int sx, int sy) {
    EnsureImage();
    const QImage& from = src.image();
    if (w > 0 && h > 0 && from.format() == image_.format()) {
        // Clip the block to both pictures, then copy rows.
        QRect source = QRect(sx, sy, w, h).intersected(from.rect());
        QRect dest = source.translated(dx - sx, dy - sy).intersected(image_.rect());
        source = dest.translated(sx - dx, sy - dy);
        if (!dest.isEmpty()) {
            const auto bytes = static_cast<std::size_t>(dest.width()) * sizeof(QRgb);
            for (int r = 0; r < dest.height(); ++r)
                std::memcpy(reinterpret_cast<QRgb*>(image_.scanLine(dest.y() + r)) + dest.x(),
                            reinterpret_cast<const QRgb*>(from.constScanLine(source.y() + r)) + source.x(), bytes);
        }
        if (isVisible()) update(dx, dy, w, h);
        return;
    }
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

bool PictureBox::EnsureImage(bool keep) const {
    // The stored picture follows the control's size and keeps what it holds.
    // Hidden widgets get no resize event, so every use checks.
    const QSize s(std::max(1, width()), std::max(1, height()));
    if (s == image_.size()) return false;
    QImage grown(s, QImage::Format_RGB32);
    grown.fill(backColor_);
    const int rows = std::min(s.height(), image_.height());
    const auto bytes = static_cast<std::size_t>(std::min(s.width(), image_.width())) * sizeof(QRgb);
    for (int y = 0; keep && y < rows; ++y) std::memcpy(grown.scanLine(y), image_.constScanLine(y), bytes);
    image_ = std::move(grown);
    return true;
}

void PictureBox::mouseReleaseEvent(QMouseEvent* event) {
    emit MouseUp(event->button(), event->modifiers(), event->position().x(), event->position().y());
}
