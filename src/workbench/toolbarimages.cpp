#include "workbench/toolbarimages.h"

#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <algorithm>

namespace imgToolBar {
namespace {

const QColor kInk(0x30, 0x30, 0x30);

void Page(QPainter& p, const QRectF& r) {
    p.setPen(QPen(kInk, 1));
    p.setBrush(Qt::white);
    p.drawRect(r);
    p.setPen(QPen(QColor(0x90, 0x90, 0x90), 1));
    for (qreal y = r.top() + 3; y < r.bottom() - 1; y += 2)
        p.drawLine(QPointF(r.left() + 2, y), QPointF(r.right() - 2, y));
}

void Arrow(QPainter& p, qreal x0, qreal x1, qreal y, const QColor& c) {
    p.setPen(QPen(c, 2, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    p.drawLine(QPointF(x0, y), QPointF(x1, y));
    const qreal dir = x1 > x0 ? -1 : 1;
    p.setBrush(c);
    p.setPen(Qt::NoPen);
    p.drawPolygon(
        QPolygonF({QPointF(x1 - dir, y), QPointF(x1 + 3.5 * dir, y - 3.5), QPointF(x1 + 3.5 * dir, y + 3.5)}));
}

void Open(QPainter& p) {
    p.setPen(QPen(QColor(0x8A, 0x62, 0x00), 1));
    p.setBrush(QColor(0xE8, 0xB8, 0x30));
    p.drawPolygon(QPolygonF({QPointF(1.5, 3.5), QPointF(6.5, 3.5), QPointF(7.5, 5.5), QPointF(13.5, 5.5),
                             QPointF(13.5, 13.5), QPointF(1.5, 13.5)}));
    p.setBrush(QColor(0xF8, 0xD8, 0x68));
    p.drawPolygon(QPolygonF({QPointF(3.5, 7.5), QPointF(15.5, 7.5), QPointF(13.5, 13.5), QPointF(1.5, 13.5)}));
}

void Save(QPainter& p) {
    p.setPen(QPen(QColor(0x10, 0x20, 0x50), 1));
    p.setBrush(QColor(0x38, 0x60, 0xB8));
    p.drawRect(QRectF(1.5, 1.5, 13, 13));
    p.setBrush(Qt::white);
    p.drawRect(QRectF(3.5, 1.5, 9, 6));
    p.setBrush(QColor(0x20, 0x20, 0x20));
    p.drawRect(QRectF(4.5, 10.5, 7, 4));
    p.fillRect(QRectF(9, 11, 2, 3), QColor(0xC0, 0xC0, 0xC0));
}

void Trans(QPainter& p) {
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            p.fillRect(2 + 3 * x, 2 + 3 * y, 3, 3, (x + y) % 2 ? QColor(0xA0, 0xA0, 0xA0) : Qt::white);
    p.setPen(QPen(kInk, 1));
    p.setBrush(Qt::NoBrush);
    p.drawRect(QRectF(1.5, 1.5, 12, 12));
    p.setBrush(QColor(0xD0, 0x30, 0x30));
    p.drawEllipse(QRectF(8.5, 8.5, 6, 6));
}

void Export(QPainter& p) {
    Page(p, QRectF(1.5, 1.5, 8, 13));
    Arrow(p, 6, 14, 8, QColor(0x20, 0x90, 0x30));
}

void Import(QPainter& p) {
    Page(p, QRectF(6.5, 1.5, 8, 13));
    Arrow(p, 15, 2, 8, QColor(0x20, 0x60, 0xC0));
}

void Copy(QPainter& p) {
    Page(p, QRectF(1.5, 1.5, 8, 10));
    Page(p, QRectF(6.5, 4.5, 8, 10));
}

void Paste(QPainter& p) {
    p.setPen(QPen(QColor(0x60, 0x40, 0x10), 1));
    p.setBrush(QColor(0xB0, 0x80, 0x40));
    p.drawRect(QRectF(1.5, 2.5, 11, 12));
    Page(p, QRectF(6.5, 5.5, 8, 10));
    p.setPen(QPen(kInk, 1));
    p.setBrush(QColor(0xC0, 0xC0, 0xC8));
    p.drawRect(QRectF(4.5, 0.5, 5, 3));
}

void Cut(QPainter& p) {
    p.setPen(QPen(kInk, 1.5));
    p.drawLine(QPointF(4, 1), QPointF(10, 10));
    p.drawLine(QPointF(12, 1), QPointF(6, 10));
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(QColor(0xC0, 0x20, 0x20), 1.5));
    p.drawEllipse(QRectF(2, 10, 4.5, 4.5));
    p.drawEllipse(QRectF(9.5, 10, 4.5, 4.5));
}

// A half turn ending in an arrow head: back (left) for undo, forward for redo.
void Turn(QPainter& p, bool back) {
    if (!back) {
        p.translate(kSide, 0);
        p.scale(-1, 1);
    }
    const QColor c(0x20, 0x60, 0xC0);
    p.setPen(QPen(c, 2, Qt::SolidLine, Qt::FlatCap));
    p.setBrush(Qt::NoBrush);
    p.drawArc(QRectF(4, 3, 9, 9), 180 * 16, -200 * 16);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPolygon(QPolygonF({QPointF(0.5, 7), QPointF(7.5, 7), QPointF(4, 11.5)}));
}

void Undo(QPainter& p) { Turn(p, true); }
void Redo(QPainter& p) { Turn(p, false); }

}  // namespace

QPixmap Picture(const QString& key) {
    using Draw = void (*)(QPainter&);
    static const struct {
        const char* key;
        Draw draw;
    } kPictures[] = {{"open", Open}, {"save", Save},   {"trans", Trans}, {"export", Export}, {"import", Import},
                     {"copy", Copy}, {"paste", Paste}, {"cut", Cut},     {"undo", Undo},     {"redo", Redo}};
    for (const auto& picture : kPictures) {
        if (key != QLatin1String(picture.key)) continue;
        QPixmap pm(kSide, kSide);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing);
        picture.draw(p);
        return pm;
    }
    return {};
}

QImage WindowIconImage(int side) {
    static const QColor kTiles[4] = {QColor(0x5A, 0x8C, 0x3C), QColor(0x70, 0x70, 0x78), QColor(0xB8, 0x90, 0x58),
                                     QColor(0x40, 0x68, 0xA8)};
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    const int half = side / 2;
    // One pixel of gap and frame up to 32 pixels, wider above, so large sizes keep the look.
    const int line = std::max(1, side / 32);
    for (int i = 0; i < 4; ++i) p.fillRect((i % 2) * half, (i / 2) * half, half - line, half - line, kTiles[i]);
    const QColor frame(0xFF, 0xFF, 0x60);
    p.fillRect(0, 0, half, line, frame);
    p.fillRect(0, half - line, half, line, frame);
    p.fillRect(0, 0, line, half, frame);
    p.fillRect(half - line, 0, line, half, frame);
    return image;
}

QIcon WindowIcon() {
    QIcon icon;
    for (const int side : {16, 32}) icon.addPixmap(QPixmap::fromImage(WindowIconImage(side)));
    return icon;
}

}  // namespace imgToolBar
