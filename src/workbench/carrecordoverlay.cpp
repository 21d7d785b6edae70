#include "workbench/carrecordoverlay.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

#include "style/carrecord.h"
#include "workbench/picturebox.h"
#include "workbench/zoomlens.h"

namespace ombrevale::workbench {
namespace {

constexpr int kLabelPx = 9;
constexpr int kLine = 14;
constexpr int kSwatch = 10;

QFont LabelFont() {
    QFont f;
    f.setPixelSize(kLabelPx);
    return f;
}

struct LegendRow {
    CarMark mark;
    QString text;
};

std::vector<LegendRow> LegendRows(const modDeclares::CarRecord& r) {
    using cars::Field;
    const auto get = [&](Field f) { return cars::Get(r, f); };
    const std::size_t doors = std::min<std::size_t>(r.numDoors, r.doors.size());
    return {{CarMark::HitBox, QStringLiteral("Hit box %1 \u00D7 %2").arg(r.width).arg(r.height)},
            {CarMark::Axle,
             QStringLiteral("Axles: front %1, rear %2").arg(get(Field::FrontWheel)).arg(get(Field::RearWheel))},
            {CarMark::Window,
             QStringLiteral("Windows: front %1, rear %2").arg(get(Field::FrontWindow)).arg(get(Field::RearWindow))},
            {CarMark::Door, QStringLiteral("Doors: %1 (hollow: walk-in)").arg(doors)}};
}

}  // namespace

QColor CarMarkColour(CarMark mark) {
    switch (mark) {
        case CarMark::HitBox:
            return {255, 230, 0};
        case CarMark::Axle:
            return {255, 40, 40};
        case CarMark::Window:
            return {0, 200, 255};
        case CarMark::Door:
            break;
    }
    return {0, 230, 60};
}

CarRecordOverlay::CarRecordOverlay(PictureBox* picture, const ZoomLens* lens) : QWidget(picture), lens_(lens) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    resize(picture->size());
    raise();
    picture->installEventFilter(this);
}

void CarRecordOverlay::SetRecord(std::optional<modDeclares::CarRecord> record, QSize sprite) {
    record_ = std::move(record);
    sprite_ = sprite;
    update();
}

bool CarRecordOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize) resize(parentWidget()->size());
    return false;
}

void CarRecordOverlay::paintEvent(QPaintEvent*) {
    if (!record_) return;
    const modDeclares::CarRecord& r = *record_;
    using cars::Field;
    const int z = lens_->Zoom();
    const QPoint o = lens_->Origin();
    // Picture coordinates, pixel edges on whole numbers, to the widget's.
    const auto X = [&](double x) { return static_cast<int>(std::floor((x - o.x()) * z)); };
    const auto Y = [&](double y) { return static_cast<int>(std::floor((y - o.y()) * z)); };
    const double cx = sprite_.width() / 2.0, cy = sprite_.height() / 2.0;
    const double left = cx - r.width / 2.0, top = cy - r.height / 2.0;
    const QRect box(QPoint(X(left), Y(top)), QPoint(X(left + r.width) - 1, Y(top + r.height) - 1));

    QPainter p(this);
    p.setFont(LabelFont());
    // Every mark first; a label goes only where it covers none of them nor another label.
    std::vector<QRect> taken = {box.adjusted(0, 0, 0, -box.height() + 1), box.adjusted(0, box.height() - 1, 0, 0)};
    struct Label {
        CarMark mark;
        QPoint at;  // baseline start
        QString text;
    };
    std::vector<Label> labels;
    const int ascent = p.fontMetrics().ascent(), descent = p.fontMetrics().descent();

    p.setPen(CarMarkColour(CarMark::HitBox));
    p.drawRect(box.adjusted(0, 0, -1, -1));
    // The centre, from where every offset is measured.
    p.drawLine(X(cx) - 2, Y(cy), X(cx) + 2, Y(cy));
    p.drawLine(X(cx), Y(cy) - 2, X(cx), Y(cy) + 2);
    taken.emplace_back(X(cx) - 2, Y(cy) - 2, 5, 5);

    const std::tuple<CarMark, Field, const char*> lines[] = {
        {CarMark::Axle, Field::FrontWheel, "F axle"},
        {CarMark::Axle, Field::RearWheel, "R axle"},
        {CarMark::Window, Field::FrontWindow, "F window"},
        {CarMark::Window, Field::RearWindow, "R window"},
    };
    for (const auto& [mark, field, name] : lines) {
        const bool front = field == Field::FrontWheel || field == Field::FrontWindow;
        const int y = Y(cy + (front ? -1 : 1) * cars::Get(r, field));
        p.setPen(CarMarkColour(mark));
        p.drawLine(box.left(), y, box.right(), y);
        taken.emplace_back(box.left(), y, box.width(), 1);
        // Inside the box, on the centre's side of its line.
        labels.push_back({mark, {box.left() + 2, front ? y + 1 + ascent : y - 1 - descent}, QString::fromLatin1(name)});
    }

    // A record whose count and list disagree draws only the doors it holds.
    const std::size_t doors = std::min<std::size_t>(r.numDoors, r.doors.size());
    for (std::size_t i = 0; i < doors; ++i) {
        const cars::Door d = cars::DoorAt(r.doors[i]);
        const QRect dot(X(cx + d.x) - 2, Y(cy + d.y) - 2, 5, 5);
        if (d.walkIn) {
            p.setPen(CarMarkColour(CarMark::Door));
            p.drawRect(dot.adjusted(0, 0, -1, -1));
        } else {
            p.fillRect(dot, CarMarkColour(CarMark::Door));
        }
        taken.push_back(dot);
        const QString n = QString::number(i + 1);
        const int w = p.fontMetrics().horizontalAdvance(n);
        labels.push_back(
            {CarMark::Door, {d.x < 0 ? dot.right() + 2 : dot.left() - 2 - w, dot.center().y() + ascent / 2}, n});
    }

    for (const Label& l : labels) {
        // On a dark patch, so that it reads over any car.
        const QRect at(l.at.x() - 1, l.at.y() - ascent, p.fontMetrics().horizontalAdvance(l.text) + 2,
                       ascent + descent);
        if (std::any_of(taken.begin(), taken.end(), [&](const QRect& t) { return t.intersects(at); })) continue;
        taken.push_back(at);
        p.fillRect(at, QColor(0, 0, 0, 150));
        p.setPen(CarMarkColour(l.mark));
        p.drawText(l.at, l.text);
    }
}

CarRecordLegend::CarRecordLegend(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void CarRecordLegend::SetRecord(std::optional<modDeclares::CarRecord> record) {
    record_ = std::move(record);
    resize(sizeHint());
    update();
}

QSize CarRecordLegend::sizeHint() const { return {168, kLine * 6 + 4}; }

void CarRecordLegend::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), QColor(40, 40, 40));
    p.setFont(LabelFont());
    int y = 2;
    if (!record_) {
        p.setPen(Qt::white);
        p.drawText(QRect(4, y, width() - 8, kLine), Qt::AlignVCenter, QStringLiteral("No car record for this sprite"));
        return;
    }
    for (const LegendRow& row : LegendRows(*record_)) {
        p.fillRect(4, y + (kLine - kSwatch) / 2, kSwatch, kSwatch, CarMarkColour(row.mark));
        p.setPen(Qt::white);
        p.drawText(QRect(8 + kSwatch, y, width() - 12 - kSwatch, kLine), Qt::AlignVCenter, row.text);
        y += kLine;
    }
    p.setPen(QColor(200, 200, 200));
    p.drawText(QRect(4, y, width() - 8, 2 * kLine), Qt::AlignVCenter | Qt::TextWordWrap,
               QStringLiteral("Pixels from the centre (+), front up; an offset points to its own end"));
}

}  // namespace ombrevale::workbench
