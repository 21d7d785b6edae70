#include "workbench/surfaceoverlay.h"

#include <QEvent>
#include <QHelpEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <array>

#include "style/palettebases.h"
#include "style/surfaces.h"
#include "workbench/palettename.h"
#include "workbench/sheetgeometry.h"

namespace ombrevale::workbench {
namespace {

// Strong enough to tell apart over busy tiles, weak enough to still see the tile.
constexpr int kAlpha = 120;
constexpr std::array<QRgb, surfaces::kTypes> kTints = {0x000000, 0x3CB43C, 0x808080, 0x2060FF, 0xFFE000,
                                                       0xFF8000, 0xA0522D, 0x60C0C0, 0x4040A0, 0x006400};
constexpr int kSwatch = 12;
constexpr int kLine = 15;
constexpr int kMargin = 6;

}  // namespace

QColor SurfaceTint(int type) {
    if (type <= 1 || type > surfaces::kTypes) return QColor(0, 0, 0, 0);
    QColor c(kTints[static_cast<std::size_t>(type - 1)]);
    c.setAlpha(kAlpha);
    return c;
}

SurfaceOverlay::SurfaceOverlay(QWidget* sheet) : QWidget(sheet) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    resize(sheet->size());
    sheet->installEventFilter(this);
}

void SurfaceOverlay::SetTypes(std::vector<std::uint8_t> types, int cols, int cell) {
    types_ = std::move(types);
    cols_ = cols;
    cell_ = cell;
    update();
}

bool SurfaceOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize) resize(parentWidget()->size());
    return false;
}

void SurfaceOverlay::paintEvent(QPaintEvent* event) {
    if (cols_ <= 0 || types_.empty()) return;
    QPainter p(this);
    // Only the cells in the repainted part: the largest sheet has 32,767.
    const QRect r = event->rect();
    const int firstRow = std::max(0, r.top() / cell_), lastRow = r.bottom() / cell_;
    const int lastCol = std::min(cols_ - 1, r.right() / cell_);
    for (int row = firstRow; row <= lastRow; ++row)
        for (int col = std::max(0, r.left() / cell_); col <= lastCol; ++col) {
            const auto t =
                static_cast<std::size_t>(row) * static_cast<std::size_t>(cols_) + static_cast<std::size_t>(col);
            if (t >= types_.size()) return;
            if (types_[t] > 1) p.fillRect(col * cell_, row * cell_, cell_, cell_, SurfaceTint(types_[t]));
        }
}

SurfaceLegend::SurfaceLegend(QWidget* parent, QWidget* leftOf) : QWidget(parent), leftOf_(leftOf) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    resize(sizeHint());
    Place();
    leftOf->installEventFilter(this);
}

void SurfaceLegend::Place() { move(leftOf_->x() - width() - kMargin, kMargin); }

bool SurfaceLegend::eventFilter(QObject* watched, QEvent* event) {
    if (watched == leftOf_ && event->type() == QEvent::Move) Place();
    return false;
}

QSize SurfaceLegend::sizeHint() const {
    int w = 0;
    for (auto name : surfaces::kTypeNames)
        w = std::max(
            w, fontMetrics().horizontalAdvance(QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()))));
    return {w + kSwatch + 14, kLine * surfaces::kTypes + 8};
}

void SurfaceLegend::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), QColor(255, 255, 255, 225));
    p.setPen(Qt::black);
    p.drawRect(rect().adjusted(0, 0, -1, -1));
    for (int k = 0; k < surfaces::kTypes; ++k) {
        const int y = 4 + k * kLine;
        QColor swatch = SurfaceTint(k + 1);
        swatch.setAlpha(255);
        p.fillRect(4, y + 1, kSwatch, kSwatch, k == 0 ? QColor(Qt::white) : swatch);
        p.drawRect(4, y + 1, kSwatch - 1, kSwatch - 1);
        const auto name = surfaces::kTypeNames[static_cast<std::size_t>(k)];
        p.drawText(QRect(kSwatch + 9, y, width(), kLine), Qt::AlignLeft | Qt::AlignVCenter,
                   QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
    }
}

SurfaceView::SurfaceView(QWidget* sheet, QWidget* page, QWidget* scrollBar)
    : QObject(sheet), sheet_(sheet), overlay_(new SurfaceOverlay(sheet)), legend_(new SurfaceLegend(page, scrollBar)) {
    overlay_->hide();
    legend_->hide();
    sheet->installEventFilter(this);
}

void SurfaceView::Show(std::vector<std::uint8_t> types, int cols) {
    shown_ = true;
    cols_ = cols;
    overlay_->SetTypes(std::move(types), cols, sheet::kCell);
    overlay_->show();
    legend_->show();
    overlay_->raise();
    legend_->raise();
}

void SurfaceView::Hide() {
    shown_ = false;
    overlay_->hide();
    legend_->hide();
}

QString SurfaceView::CellTip(int x, int y) const {
    const auto t = sheet::TileAt(x, y, cols_);
    const auto& types = overlay_->Types();
    if (!t || static_cast<std::size_t>(*t) >= types.size()) return {};
    const auto i = static_cast<std::size_t>(*t);
    // Not "Palette: N" as the caption has it: there N is the physical number.
    const auto own = palettebases::TilePalette(*t);
    const QString pal = own ? QStringLiteral("In %1").arg(PaletteName(*own)) : QStringLiteral("No palette");
    const auto name =
        surfaces::kTypeNames[static_cast<std::size_t>(std::clamp<int>(types[i], 1, surfaces::kTypes) - 1)];
    return QStringLiteral("Tile %1\n%2\nSurface: %3")
        .arg(*t)
        .arg(pal)
        .arg(QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
}

bool SurfaceView::eventFilter(QObject* watched, QEvent* event) {
    if (watched != sheet_ || event->type() != QEvent::ToolTip || !shown_) return false;
    auto* help = static_cast<QHelpEvent*>(event);
    const QString tip = CellTip(help->pos().x(), help->pos().y());
    if (tip.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), tip, sheet_);
    return true;
}

}  // namespace ombrevale::workbench
