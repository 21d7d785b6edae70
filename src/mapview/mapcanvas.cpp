#include "mapview/mapcanvas.h"

#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "mapdraw/tilepyramid.h"

namespace ombrevale::mapview {
namespace {

constexpr double kZoomStep = 1.25;
constexpr int kDragSlop = 4;

}  // namespace

MapCanvas::MapCanvas(QWidget* parent) : QAbstractScrollArea(parent) {
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(QFrame::NoFrame);
}

void MapCanvas::SetMap(const map::Map* m, mapdraw::TilePyramid* tiles) {
    map_ = m;
    tiles_ = tiles;
    marked_.clear();
    if (m) frame_.Follow(*m, options_.levelCut);
    Fit();
}

void MapCanvas::SetTiles(mapdraw::TilePyramid* tiles) {
    tiles_ = tiles;
    viewport()->update();
}

void MapCanvas::SetLayers(const Layers& layers) {
    layers_ = layers;
    options_.shade = layers.shade;
    viewport()->update();
}

void MapCanvas::SetLevelCut(int cut) {
    options_.levelCut = std::clamp(cut, 0, map::kLevels - 1);
    if (map_) frame_.Follow(*map_, options_.levelCut);
    viewport()->update();
}

void MapCanvas::SetSurfaces(std::vector<std::uint8_t> types, std::function<QColor(int)> tint) {
    surfaceTypes_ = std::move(types);
    tint_ = std::move(tint);
    viewport()->update();
}

void MapCanvas::SetMarked(std::vector<std::uint8_t> marked) {
    marked_ = std::move(marked);
    options_.marked = marked_.empty() ? nullptr : &marked_;
    viewport()->update();
}

void MapCanvas::Redraw() { viewport()->update(); }

double MapCanvas::FitBlockPx() const {
    const QSize s = viewport()->size();
    return std::max(0.25, std::min(s.width(), s.height()) / static_cast<double>(map::kSide));
}

void MapCanvas::UpdateBars() {
    const double side = map::kSide * view_.blockPx;
    const QSize s = viewport()->size();
    for (auto [bar, room] : {std::pair{horizontalScrollBar(), s.width()}, std::pair{verticalScrollBar(), s.height()}}) {
        const QSignalBlocker quiet(bar);
        bar->setRange(0, std::max(0, static_cast<int>(std::lround(side)) - room));
        bar->setPageStep(room);
        bar->setSingleStep(std::max(8, static_cast<int>(view_.blockPx)));
    }
}

void MapCanvas::ZoomTo(double blockPx, QPointF about) {
    const double was = view_.blockPx;
    const double now = std::clamp(blockPx, std::min(FitBlockPx(), kMostBlockPx), kMostBlockPx);
    // The map point under `about` stays under it.
    const double mx = (horizontalScrollBar()->value() + about.x()) / was;
    const double my = (verticalScrollBar()->value() + about.y()) / was;
    view_.blockPx = now;
    fitted_ = now <= FitBlockPx();
    UpdateBars();
    horizontalScrollBar()->setValue(static_cast<int>(std::lround(mx * now - about.x())));
    verticalScrollBar()->setValue(static_cast<int>(std::lround(my * now - about.y())));
    viewport()->update();
    emit ZoomChanged(now);
}

void MapCanvas::ZoomBy(double factor) {
    ZoomTo(view_.blockPx * factor, QPointF(viewport()->width() / 2.0, viewport()->height() / 2.0));
}

void MapCanvas::Fit() {
    view_.blockPx = FitBlockPx();
    fitted_ = true;
    UpdateBars();
    horizontalScrollBar()->setValue(0);
    verticalScrollBar()->setValue(0);
    viewport()->update();
    emit ZoomChanged(view_.blockPx);
}

void MapCanvas::CentreOn(int x, int y) {
    horizontalScrollBar()->setValue(static_cast<int>((x + 0.5) * view_.blockPx - viewport()->width() / 2.0));
    verticalScrollBar()->setValue(static_cast<int>((y + 0.5) * view_.blockPx - viewport()->height() / 2.0));
    viewport()->update();
}

std::optional<QPoint> MapCanvas::BlockAt(QPointF at) const {
    const double side = map::kSide * view_.blockPx;
    // A map smaller than the view stands in its middle.
    const double offX = std::max(0.0, (viewport()->width() - side) / 2),
                 offY = std::max(0.0, (viewport()->height() - side) / 2);
    const int x = static_cast<int>(std::floor((at.x() - offX + horizontalScrollBar()->value()) / view_.blockPx));
    const int y = static_cast<int>(std::floor((at.y() - offY + verticalScrollBar()->value()) / view_.blockPx));
    if (!map_ || x < 0 || y < 0 || x >= map::kSide || y >= map::kSide) return std::nullopt;
    return QPoint(x, y);
}

QPoint MapCanvas::ViewportPointOf(int x, int y) const {
    const double side = map::kSide * view_.blockPx;
    const double offX = std::max(0.0, (viewport()->width() - side) / 2),
                 offY = std::max(0.0, (viewport()->height() - side) / 2);
    return QPoint(static_cast<int>((x + 0.5) * view_.blockPx - horizontalScrollBar()->value() + offX),
                  static_cast<int>((y + 0.5) * view_.blockPx - verticalScrollBar()->value() + offY));
}

void MapCanvas::Hold(bool on) {
    held_ = on;
    if (!on) viewport()->update();
}

void MapCanvas::paintEvent(QPaintEvent*) {
    QElapsedTimer took;
    took.start();
    QPainter out(viewport());
    const QSize s = viewport()->size();
    if (held_ || !map_ || !tiles_ || s.isEmpty()) {
        out.fillRect(viewport()->rect(), palette().window());
        if (held_) out.drawImage(QPointF(0, 0), lastFrame_);
        return;
    }
    const double dpr = devicePixelRatioF();
    const double side = map::kSide * view_.blockPx;
    const double offX = std::max(0.0, (s.width() - side) / 2), offY = std::max(0.0, (s.height() - side) / 2);
    // Logical view for what is drawn over the blocks, device pixels for the blocks themselves.
    const mapdraw::View logical{view_.blockPx, horizontalScrollBar()->value() - offX,
                                verticalScrollBar()->value() - offY};
    const mapdraw::View device{logical.blockPx * dpr, logical.left * dpr, logical.top * dpr};
    QImage frame(static_cast<int>(std::ceil(s.width() * dpr)), static_cast<int>(std::ceil(s.height() * dpr)),
                 QImage::Format_RGB32);
    frame_.Draw(*map_, *tiles_, device, options_, reinterpret_cast<std::uint32_t*>(frame.bits()), frame.width(),
                frame.height(), static_cast<int>(frame.bytesPerLine() / 4));
    frame.setDevicePixelRatio(dpr);
    {
        QPainter p(&frame);
        if (layers_.surfaces) DrawSurfaces(p, logical, s.width(), s.height());
        mapdraw::DrawOverlays(p, *map_, logical, {layers_.grid, layers_.zones, layers_.arrows}, s.width(), s.height());
        if (!marked_.empty()) DrawMarks(p, logical, s.width(), s.height());
    }
    out.drawImage(QPointF(0, 0), frame);
    lastFrame_ = frame;
    lastFrameMs_ = static_cast<double>(took.nsecsElapsed()) / 1e6;
}

void MapCanvas::DrawSurfaces(QPainter& p, const mapdraw::View& v, int w, int h) const {
    if (!tint_) return;
    for (int y = 0; y < map::kSide; ++y) {
        const QRectF row = mapdraw::BlockRect(0, y, v);
        if (row.bottom() < 0 || row.top() > h) continue;
        for (int x = 0; x < map::kSide; ++x) {
            const QRectF r = mapdraw::BlockRect(x, y, v);
            if (r.right() < 0 || r.left() > w) continue;
            const int top = frame_.StackAt(x, y).Top();
            if (top < 0) continue;
            const auto tile = static_cast<std::size_t>(map::TileOf(map_->At(x, y, top).lid));
            if (tile < surfaceTypes_.size() && surfaceTypes_[tile] > 1) p.fillRect(r, tint_(surfaceTypes_[tile]));
        }
    }
}

void MapCanvas::DrawMarks(QPainter& p, const mapdraw::View& v, int w, int h) const {
    if (v.blockPx < 3) return;
    p.setPen(QPen(QColor(255, 255, 0), 1));
    p.setBrush(Qt::NoBrush);
    for (int y = 0; y < map::kSide; ++y)
        for (int x = 0; x < map::kSide; ++x) {
            if (!marked_[static_cast<std::size_t>(y * map::kSide + x)]) continue;
            const QRectF r = mapdraw::BlockRect(x, y, v);
            if (r.right() >= 0 && r.left() <= w && r.bottom() >= 0 && r.top() <= h)
                p.drawRect(r.adjusted(0, 0, -1, -1));
        }
}

void MapCanvas::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    // A fitted map stays fitted as the window grows or shrinks.
    if (fitted_) return Fit();
    view_.blockPx = std::max(view_.blockPx, FitBlockPx());
    UpdateBars();
}

void MapCanvas::scrollContentsBy(int, int) { viewport()->update(); }

void MapCanvas::wheelEvent(QWheelEvent* event) {
    if (event->modifiers() & Qt::ControlModifier) {
        const int steps = event->angleDelta().y() / 120;
        if (steps != 0) ZoomTo(view_.blockPx * std::pow(kZoomStep, steps), event->position());
        event->accept();
        return;
    }
    QAbstractScrollArea::wheelEvent(event);
}

void MapCanvas::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton || event->button() == Qt::LeftButton) {
        dragFrom_ = event->position().toPoint();
        dragged_ = false;
        if (event->button() == Qt::MiddleButton) viewport()->setCursor(Qt::ClosedHandCursor);
    }
}

void MapCanvas::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    if (dragFrom_ && (event->buttons() & Qt::MiddleButton)) {
        const QPoint d = at - *dragFrom_;
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - d.x());
        verticalScrollBar()->setValue(verticalScrollBar()->value() - d.y());
        dragFrom_ = at;
        dragged_ = true;
    } else if (dragFrom_ && (at - *dragFrom_).manhattanLength() > kDragSlop) {
        dragged_ = true;
    }
    const auto block = BlockAt(event->position());
    emit Hovered(block ? block->x() : -1, block ? block->y() : -1);
}

void MapCanvas::mouseReleaseEvent(QMouseEvent* event) {
    viewport()->unsetCursor();
    const bool click = dragFrom_ && !dragged_ && event->button() == Qt::LeftButton;
    dragFrom_.reset();
    if (!click) return;
    if (const auto block = BlockAt(event->position())) emit BlockClicked(block->x(), block->y());
}

void MapCanvas::contextMenuEvent(QContextMenuEvent* event) {
    if (const auto block = BlockAt(event->pos())) emit BlockMenu(block->x(), block->y(), event->globalPos());
}

void MapCanvas::keyPressEvent(QKeyEvent* event) {
    const bool ctrl = event->modifiers() & Qt::ControlModifier;
    if (event->key() == Qt::Key_Plus || event->key() == Qt::Key_Equal) return ZoomBy(kZoomStep);
    if (event->key() == Qt::Key_Minus) return ZoomBy(1 / kZoomStep);
    if (ctrl && event->key() == Qt::Key_0) return Fit();
    QAbstractScrollArea::keyPressEvent(event);
}

void MapCanvas::leaveEvent(QEvent*) { emit Hovered(-1, -1); }

}  // namespace ombrevale::mapview
