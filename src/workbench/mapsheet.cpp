#include "workbench/mapsheet.h"

#include "mapview/mapcanvas.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QHelpEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QToolTip>

#include "mapview/mapwindow.h"
#include "style/clssty.h"
#include "workbench/sheetgeometry.h"
#include "workbench/styledocument.h"
#include "workbench/surfaceoverlay.h"
#include "workbench/toolwindow.h"
#include "workbench/topmost.h"

namespace ombrevale::workbench {

// Greys, over the sheet and never into it, the tiles the open map never uses.
class UsageOverlay : public QWidget {
public:
    explicit UsageOverlay(QWidget* sheet) : QWidget(sheet) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_NoSystemBackground);
        resize(sheet->size());
        sheet->installEventFilter(this);
        hide();
    }
    void Set(std::vector<bool> unused, int cols) {
        unused_ = std::move(unused);
        cols_ = cols;
        update();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == parent() && event->type() == QEvent::Resize) resize(parentWidget()->size());
        return false;
    }
    void paintEvent(QPaintEvent* event) override {
        if (cols_ <= 0) return;
        QPainter p(this);
        const QRect r = event->rect();
        const int firstRow = std::max(0, r.top() / sheet::kCell), lastRow = r.bottom() / sheet::kCell;
        for (int row = firstRow; row <= lastRow; ++row)
            for (int col = 0; col < cols_; ++col) {
                const auto t =
                    static_cast<std::size_t>(row) * static_cast<std::size_t>(cols_) + static_cast<std::size_t>(col);
                if (t >= unused_.size()) return;
                if (unused_[t])
                    p.fillRect(col * sheet::kCell, row * sheet::kCell, sheet::kCell, sheet::kCell,
                               QColor(96, 96, 96, 200));
            }
    }

private:
    std::vector<bool> unused_;
    int cols_ = 0;
};

namespace {

// A map narrower than this shows too little of the city to find one's way in.
constexpr QSize kSmallestMap(320, 240);

// As wide as the wider side of the screen beside the main window leaves, when
// that is wide enough for a map; else the usual size, over the main window.
QSize RoomBeside(const QWidget* owner) {
    constexpr QSize kUsual(900, 760);
    constexpr int kGap = 8;
    const QScreen* screen = owner->screen();
    if (!screen) return kUsual;
    const QRect free = screen->availableGeometry(), main = owner->frameGeometry();
    const int frame = main.width() - owner->width();
    const int room = std::max(free.right() - main.right(), main.left() - free.left()) - kGap - frame;
    return QSize(room >= kSmallestMap.width() ? std::min(room, kUsual.width()) : kUsual.width(), kUsual.height());
}

}  // namespace

MapSheet::MapSheet(Host host, StyleDocument& doc, QWidget* window, QWidget* sheet)
    : QObject(window), host_(std::move(host)), doc_(doc), sheet_(sheet), overlay_(new UsageOverlay(sheet)) {
    mapview::MapWindow::Host mh;
    mh.style = [this]() -> const clsSTY& { return doc_.Sty(); };
    mh.chooseTile = host_.goToTile;
    mh.surfaceTypes = host_.surfaceTypes;
    mh.surfaceTint = SurfaceTint;
    mh.tell = host_.tell;
    mh.present = [this, window] {
        // Beside the main window, as the other views open, the first time it shows; on top
        // as the main window is, so that it is never lost under it.
        if (!window_->isVisible()) {
            PlaceBeside(window_, window, RoomBeside(window), kSmallestMap);
            SetTopMost(window_, true);
        }
        window_->show();
        window_->raise();
        window_->activateWindow();
    };
    window_ = new mapview::MapWindow(std::move(mh), window);
    connect(window_, &mapview::MapWindow::MapOpened, this, [this] {
        usage_->setEnabled(true);
        copyUnused_->setEnabled(true);
        if (usage_->isChecked()) ShowUsage(true);
    });

    open_ = new QAction(QStringLiteral("Open map..."), window);
    open_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_M));
    open_->setShortcutContext(Qt::WindowShortcut);
    open_->setToolTip(QStringLiteral("Open map (%1)").arg(open_->shortcut().toString(QKeySequence::NativeText)));
    connect(open_, &QAction::triggered, this, &MapSheet::AskOpen);
    window->addAction(open_);
    window_->AddMapAction(open_);

    usage_ = new QAction(QStringLiteral("Grey tiles the map does not use"), window);
    usage_->setCheckable(true);
    usage_->setEnabled(false);
    usage_->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_M));
    usage_->setShortcutContext(Qt::WindowShortcut);
    connect(usage_, &QAction::toggled, this, &MapSheet::ShowUsage);
    window->addAction(usage_);

    copyUnused_ = new QAction(QStringLiteral("Copy unused tile numbers"), window);
    copyUnused_->setEnabled(false);
    connect(copyUnused_, &QAction::triggered, this, [this] { QApplication::clipboard()->setText(UnusedList()); });
    showOnMap_ = new QAction(window);
    connect(showOnMap_, &QAction::triggered, this, [this] { window_->ShowTile(showTile_); });
    sheet->installEventFilter(this);
    connect(&doc_, &StyleDocument::Loaded, this, &MapSheet::StyleLoaded);
    connect(&doc_, &StyleDocument::PartChanged, this, &MapSheet::Edited);
    // A job may change the stores from another thread: the map shows what it showed until the job ends.
    connect(&doc_, &StyleDocument::BusyChanged, window_->Canvas(), &mapview::MapCanvas::Hold);
}

void MapSheet::AskOpen() {
    const QString start = window_->Path().isEmpty() ? QString() : QFileInfo(window_->Path()).absolutePath();
    const QString file = QFileDialog::getOpenFileName(window_->parentWidget(), QStringLiteral("Open Map"), start,
                                                      QStringLiteral("GTA2 maps (*.gmp);;All files (*)"));
    if (!file.isEmpty()) Open(file);
}

bool MapSheet::Open(const QString& path) { return window_->Open(path); }

QList<QAction*> MapSheet::SheetActions(int tile) {
    QList<QAction*> actions{open_};
    if (window_->Current() && tile >= 0) {
        showTile_ = tile;
        showOnMap_->setText(QStringLiteral("Show tile %1 on map").arg(tile));
        actions << showOnMap_;
    }
    actions << usage_ << copyUnused_;
    return actions;
}

void MapSheet::StyleLoaded() {
    window_->StyleLoaded();
    if (usage_->isChecked()) ShowUsage(true);
}

void MapSheet::Edited(editparts::Kind kind, std::int32_t number) {
    using editparts::Kind;
    if (kind == Kind::Tile) window_->TileChanged(number);
    if (kind == Kind::Palette || kind == Kind::PaletteEntry || kind == Kind::PaletteCount) window_->PalettesChanged();
}

void MapSheet::SheetDrawn() {
    if (usage_->isChecked()) ShowUsage(true);
}

void MapSheet::ShowUsage(bool on) {
    if (!on || !window_->Current()) return overlay_->hide();
    const int n = doc_.Sty().GetNumOfTiles();
    std::vector<bool> unused(static_cast<std::size_t>(std::max(0, n)));
    for (int t = 0; t < n; ++t)
        unused[static_cast<std::size_t>(t)] = t >= map::kTileNumbers || !window_->Usage().Used(t);
    overlay_->Set(std::move(unused), host_.cols());
    overlay_->show();
    overlay_->raise();
}

QString MapSheet::UnusedList() const {
    QStringList numbers;
    const int n = doc_.Sty().GetNumOfTiles();
    for (int t = 0; t < std::min(n, map::kTileNumbers); ++t)
        if (!window_->Usage().Used(t)) numbers << QString::number(t);
    return numbers.join(QLatin1Char(' '));
}

QString MapSheet::CellTip(int x, int y) const {
    const auto t = sheet::TileAt(x, y, host_.cols());
    if (!t || *t >= doc_.Sty().GetNumOfTiles() || *t >= map::kTileNumbers) return {};
    const auto& u = window_->Usage();
    const auto i = static_cast<std::size_t>(*t);
    QString tip =
        QStringLiteral("Tile %1 on the map: lid of %2 block(s), %3 side(s)").arg(*t).arg(u.lids[i]).arg(u.sides[i]);
    if (u.animated[i]) tip += QStringLiteral(", animated");
    return tip;
}

bool MapSheet::eventFilter(QObject* watched, QEvent* event) {
    if (watched != sheet_ || event->type() != QEvent::ToolTip || !usage_->isChecked() || !window_->Current())
        return false;
    auto* help = static_cast<QHelpEvent*>(event);
    QString tip = CellTip(help->pos().x(), help->pos().y());
    if (host_.surfaceTip) {
        const QString surface = host_.surfaceTip(help->pos().x(), help->pos().y());
        if (!surface.isEmpty()) tip = surface + QLatin1Char('\n') + tip;
    }
    if (tip.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), tip, sheet_);
    return true;
}

}  // namespace ombrevale::workbench
