#include "mapdraw/overlays.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "map/describe.h"

namespace ombrevale::mapdraw {
namespace {

struct Visible {
    int x0, y0, x1, y1;
};

Visible VisibleBlocks(const View& v, int w, int h) {
    const auto clampB = [](double b) { return std::clamp(static_cast<int>(std::floor(b)), 0, map::kSide - 1); };
    return {clampB(v.left / v.blockPx), clampB(v.top / v.blockPx), clampB((v.left + w) / v.blockPx),
            clampB((v.top + h) / v.blockPx)};
}

void DrawGrid(QPainter& p, const View& v, const Visible& b) {
    p.setPen(QPen(QColor(255, 255, 255, 70), 0));
    for (int x = b.x0; x <= b.x1 + 1; ++x) {
        const double sx = x * v.blockPx - v.left;
        p.drawLine(QPointF(sx, b.y0 * v.blockPx - v.top), QPointF(sx, (b.y1 + 1) * v.blockPx - v.top));
    }
    for (int y = b.y0; y <= b.y1 + 1; ++y) {
        const double sy = y * v.blockPx - v.top;
        p.drawLine(QPointF(b.x0 * v.blockPx - v.left, sy), QPointF((b.x1 + 1) * v.blockPx - v.left, sy));
    }
}

void DrawZones(QPainter& p, const map::Map& m, const View& v) {
    QFont font = p.font();
    font.setPixelSize(11);
    p.setFont(font);
    // The file lists the smallest zones first: draw the largest first so the small stay on top.
    for (auto it = m.zones.rbegin(); it != m.zones.rend(); ++it) {
        const QRectF r(it->x * v.blockPx - v.left, it->y * v.blockPx - v.top, it->w * v.blockPx, it->h * v.blockPx);
        const QColor c = ZoneColour(it->type);
        p.setPen(QPen(c, 2));
        p.setBrush(Qt::NoBrush);
        p.drawRect(r.adjusted(1, 1, -1, -1));
        if (r.width() < 24 || r.height() < 12) continue;
        const QString name = QString::fromLatin1(it->name.data(), static_cast<qsizetype>(it->name.size()));
        const QRectF label = p.fontMetrics().boundingRect(name).adjusted(-2, 0, 2, 0);
        const QRectF at(r.left() + 3, r.top() + 3, std::min(label.width(), r.width() - 6), label.height());
        p.fillRect(at, QColor(0, 0, 0, 160));
        p.setPen(c);
        p.drawText(at, Qt::AlignLeft | Qt::AlignVCenter, name);
    }
}

// One arrow from the block's middle towards its edge: bits left, right, up, down.
void DrawArrowsOf(QPainter& p, const QRectF& r, int bits, const QColor& c, double inset) {
    const QPointF mid = r.center();
    const double reach = r.width() / 2 - inset, head = std::max(2.0, r.width() / 8);
    const QPointF dirs[4] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}};
    p.setPen(QPen(c, std::max(1.0, r.width() / 24)));
    for (int d = 0; d < 4; ++d) {
        if (!(bits & (1 << d))) continue;
        const QPointF tip = mid + dirs[d] * reach, back = mid + dirs[d] * (reach - head);
        const QPointF across(dirs[d].y() * head, dirs[d].x() * head);
        p.drawLine(mid, tip);
        p.drawLine(tip, back + across);
        p.drawLine(tip, back - across);
    }
}

void DrawArrows(QPainter& p, const map::Map& m, const View& v, const Visible& b) {
    if (v.blockPx < 8) return;
    for (int y = b.y0; y <= b.y1; ++y)
        for (int x = b.x0; x <= b.x1; ++x) {
            int bits = 0;
            for (int z = 0; z < map::kLevels; ++z) bits |= m.At(x, y, z).arrows;
            if (!bits) continue;
            const QRectF r = BlockRect(x, y, v);
            DrawArrowsOf(p, r, bits & 0x0F, kGreenArrow, r.width() / 8);
            DrawArrowsOf(p, r, bits >> 4, kRedArrow, r.width() / 4);
        }
}

}  // namespace

QColor ZoneColour(int type) {
    static const QColor kColours[] = {{255, 255, 255}, {80, 160, 255},  {255, 200, 0},  {0, 0, 0},       {0, 0, 0},
                                      {255, 90, 90},   {200, 120, 255}, {0, 220, 220},  {255, 140, 0},   {0, 0, 0},
                                      {140, 255, 140}, {255, 120, 200}, {200, 80, 160}, {160, 160, 255}, {255, 60, 60},
                                      {120, 200, 255}, {60, 255, 120},  {0, 0, 0},      {0, 0, 0},       {0, 0, 0},
                                      {255, 255, 120}};
    return type >= 0 && type < static_cast<int>(std::size(kColours)) ? kColours[type] : QColor(190, 190, 190);
}

QRectF BlockRect(int x, int y, const View& view) {
    const Span xs = BlockSpan(x, view.blockPx, view.left), ys = BlockSpan(y, view.blockPx, view.top);
    return QRectF(xs.first, ys.first, xs.last - xs.first, ys.last - ys.first);
}

void DrawOverlays(QPainter& p, const map::Map& m, const View& view, const Overlays& which, int w, int h) {
    const Visible b = VisibleBlocks(view, w, h);
    p.save();
    p.setRenderHint(QPainter::Antialiasing, true);
    if (which.grid && view.blockPx >= 4) DrawGrid(p, view, b);
    if (which.arrows) DrawArrows(p, m, view, b);
    if (which.zones) DrawZones(p, m, view);
    p.restore();
}

}  // namespace ombrevale::mapdraw
