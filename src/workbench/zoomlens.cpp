#include "workbench/zoomlens.h"

#include <QActionGroup>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>

#include "workbench/picturebox.h"

namespace ombrevale::workbench {

ZoomLens::ZoomLens(PictureBox* picture)
    : QWidget(picture),
      picture_(picture),
      bars_{new QScrollBar(Qt::Horizontal, this), new QScrollBar(Qt::Vertical, this)} {
    setAttribute(Qt::WA_OpaquePaintEvent);
    resize(picture->size());
    hide();
    picture->installEventFilter(this);
    for (QScrollBar* bar : bars_) {
        bar->hide();
        connect(bar, &QScrollBar::valueChanged, this, [this] { PanTo({bars_[0]->value(), bars_[1]->value()}); });
    }
}

void ZoomLens::SetPictureSize(QSize size) {
    pictureSize_ = size;
    PanTo(origin_);
}

QSize ZoomLens::Picture() const {
    return pictureSize_.isEmpty() ? picture_->size() : pictureSize_.boundedTo(picture_->size());
}

QSize ZoomLens::View() const {
    return {width() - (bars_[1]->isHidden() ? 0 : bars_[1]->width()),
            height() - (bars_[0]->isHidden() ? 0 : bars_[0]->height())};
}

void ZoomLens::PlaceBars() {
    const QSize picture = Picture() * zoom_;
    const int across = bars_[1]->sizeHint().width(), down = bars_[0]->sizeHint().height();
    // A bar takes room from the other direction: the second test sees the first bar.
    bool h = picture.width() > width(), v = picture.height() > height();
    h = h || (v && picture.width() > width() - across);
    v = v || (h && picture.height() > height() - down);
    bars_[0]->setVisible(h);
    bars_[1]->setVisible(v);
    bars_[0]->setGeometry(0, height() - down, width() - (v ? across : 0), down);
    bars_[1]->setGeometry(width() - across, 0, across, height() - (h ? down : 0));
}

void ZoomLens::SetZoom(int zoom) {
    int step = kSteps.front();
    for (int s : kSteps)
        if (s <= zoom) step = s;
    // The corner stays put: sprites and text start at the top left.
    zoom_ = step;
    setVisible(zoom_ > 1);
    PanTo(origin_);
}

void ZoomLens::Step(int by) {
    const auto* at = std::find(kSteps.begin(), kSteps.end(), zoom_);
    const long i = std::clamp<long>((at - kSteps.begin()) + by, 0, static_cast<long>(kSteps.size()) - 1);
    SetZoom(kSteps[static_cast<std::size_t>(i)]);
}

void ZoomLens::PanTo(QPoint origin) {
    PlaceBars();
    const QSize picture = Picture(), view = View();
    const int maxX = std::max(0, picture.width() - view.width() / zoom_);
    const int maxY = std::max(0, picture.height() - view.height() / zoom_);
    origin_ = QPoint(std::clamp(origin.x(), 0, maxX), std::clamp(origin.y(), 0, maxY));
    const QSignalBlocker h(bars_[0]), v(bars_[1]);
    bars_[0]->setRange(0, maxX);
    bars_[0]->setPageStep(std::max(1, view.width() / zoom_));
    bars_[0]->setValue(origin_.x());
    bars_[1]->setRange(0, maxY);
    bars_[1]->setPageStep(std::max(1, view.height() / zoom_));
    bars_[1]->setValue(origin_.y());
    update();
}

void ZoomLens::ShowMenu(const QPoint& globalPos) {
    QMenu menu;
    auto* group = new QActionGroup(&menu);
    for (int s : kSteps) {
        QAction* a = menu.addAction(QStringLiteral("Zoom %1\u00D7").arg(s));
        a->setCheckable(true);
        a->setChecked(s == zoom_);
        group->addAction(a);
        connect(a, &QAction::triggered, this, [this, s] { SetZoom(s); });
    }
    if (!more_.isEmpty()) menu.addSeparator();
    menu.addActions(more_);
    menu.exec(globalPos);
}

bool ZoomLens::eventFilter(QObject* watched, QEvent* event) {
    if (watched != picture_) return false;
    switch (event->type()) {
        case QEvent::Resize:
            resize(picture_->size());
            PanTo(origin_);
            return false;
        case QEvent::Wheel: {
            auto* wheel = static_cast<QWheelEvent*>(event);
            if (!(wheel->modifiers() & Qt::ControlModifier)) return false;
            const int dy = wheel->angleDelta().y();
            if (dy != 0) Step(dy > 0 ? 1 : -1);
            return true;
        }
        case QEvent::ContextMenu:
            ShowMenu(static_cast<QContextMenuEvent*>(event)->globalPos());
            return true;
        default:
            return false;
    }
}

QString ZoomLens::TipAt(QPoint pos) const {
    const QPoint at = origin_ + QPoint(pos.x() / zoom_, pos.y() / zoom_);
    const QImage& image = picture_->image();
    if (!image.rect().contains(at) || !QRect(QPoint(0, 0), Picture()).contains(at)) return {};
    const QRgb c = image.pixel(at);
    return QStringLiteral("x %1 y %2 Red: %3 Green: %4 Blue: %5")
        .arg(at.x())
        .arg(at.y())
        .arg(qRed(c))
        .arg(qGreen(c))
        .arg(qBlue(c));
}

bool ZoomLens::event(QEvent* event) {
    // Pixels this large invite the question of their colour.
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    auto* help = static_cast<QHelpEvent*>(event);
    const QString tip = TipAt(help->pos());
    if (tip.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), tip, this);
    return true;
}

void ZoomLens::mousePressEvent(QMouseEvent* event) {
    dragFrom_ = event->position().toPoint();
    dragOrigin_ = origin_;
}

void ZoomLens::mouseMoveEvent(QMouseEvent* event) {
    // Dragging moves the picture under the lens.
    if (event->buttons() & Qt::LeftButton) PanTo(dragOrigin_ - (event->position().toPoint() - dragFrom_) / zoom_);
}

void ZoomLens::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), picture_->BackColor());
    const QImage& image = picture_->image();
    const QSize view = View();
    // Only the picture, as far as the view reaches.
    const QRect source = QRect(origin_, QSize((view.width() + zoom_ - 1) / zoom_, (view.height() + zoom_ - 1) / zoom_))
                             .intersected(QRect(QPoint(0, 0), Picture()));
    if (source.isEmpty()) return;
    const QRect target(QPoint(0, 0), source.size() * zoom_);
    p.setClipRect(QRect(QPoint(0, 0), view));
    // No smoothing: each picture pixel a square of zoom x zoom.
    p.drawImage(target, image, source);
    if (zoom_ < kGridFrom) return;
    p.setPen(QColor(0, 0, 0, 70));
    for (int x = 0; x < target.width(); x += zoom_) p.drawLine(x, 0, x, target.height() - 1);
    for (int y = 0; y < target.height(); y += zoom_) p.drawLine(0, y, target.width() - 1, y);
}

}  // namespace ombrevale::workbench
