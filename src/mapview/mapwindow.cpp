#include "mapview/mapwindow.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QSpinBox>
#include <QStatusBar>
#include <QToolBar>
#include <algorithm>

#include "map/describe.h"
#include "mapdraw/tilepyramid.h"
#include "mapview/maplegend.h"

namespace ombrevale::mapview {

MapWindow::MapWindow(Host host, QWidget* owner)
    : QMainWindow(owner, Qt::Window), host_(std::move(host)), canvas_(new MapCanvas(this)) {
    setWindowTitle(QStringLiteral("Map"));
    setCentralWidget(canvas_);
    status_ = new QLabel(this);
    status_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    found_ = new QLabel(this);
    statusBar()->addWidget(status_, 1);
    statusBar()->addPermanentWidget(found_);
    legend_ = new MapLegend(this);
    auto* dock = new QDockWidget(QStringLiteral("Legend"), this);
    dock->setObjectName(QStringLiteral("legend"));
    dock->setWidget(legend_);
    dock->setFeatures(QDockWidget::NoDockWidgetFeatures);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    dock->hide();
    BuildMenus();
    connect(canvas_, &MapCanvas::Hovered, this, &MapWindow::Hover);
    connect(canvas_, &MapCanvas::BlockClicked, this, &MapWindow::Click);
    connect(canvas_, &MapCanvas::BlockMenu, this, &MapWindow::Menu);
    resize(900, 760);
}

MapWindow::~MapWindow() = default;

void MapWindow::BuildMenus() {
    QMenu* file = mapMenu_ = menuBar()->addMenu(QStringLiteral("&Map"));
    QAction* close = file->addAction(QStringLiteral("&Close"), this, &QWidget::close);
    close->setShortcuts(QKeySequence::Close);
    QMenu* view = menuBar()->addMenu(QStringLiteral("&View"));
    const auto layer = [&](const QString& text, Qt::Key key) {
        QAction* a = view->addAction(text);
        a->setCheckable(true);
        a->setShortcut(QKeySequence(key));
        connect(a, &QAction::toggled, this, &MapWindow::ApplyLayers);
        return a;
    };
    layers_.shade = layer(QStringLiteral("&Light shading"), Qt::Key_L);
    layers_.zones = layer(QStringLiteral("&Zones"), Qt::Key_Z);
    layers_.arrows = layer(QStringLiteral("&Arrows"), Qt::Key_A);
    layers_.grid = layer(QStringLiteral("&Grid"), Qt::Key_G);
    layers_.surfaces = layer(QStringLiteral("&Surface types"), Qt::Key_T);
    view->addSeparator();
    view->addAction(QStringLiteral("Zoom &in"), QKeySequence(Qt::Key_Plus), canvas_, [this] { canvas_->ZoomBy(1.25); });
    view->addAction(QStringLiteral("Zoom &out"), QKeySequence(Qt::Key_Minus), canvas_,
                    [this] { canvas_->ZoomBy(0.8); });
    view->addAction(QStringLiteral("&Fit the map"), QKeySequence(Qt::CTRL | Qt::Key_0), canvas_,
                    [this] { canvas_->Fit(); });
    view->addSeparator();
    view->addAction(QStringLiteral("Level &up"), QKeySequence(Qt::Key_PageUp), this, [this] { level_->stepUp(); });
    view->addAction(QStringLiteral("Level &down"), QKeySequence(Qt::Key_PageDown), this,
                    [this] { level_->stepDown(); });
    view->addSeparator();
    view->addAction(QStringLiteral("&Next found"), QKeySequence(Qt::Key_F3), this, [this] { StepShown(1); });
    view->addAction(QStringLiteral("&Previous found"), QKeySequence(Qt::SHIFT | Qt::Key_F3), this,
                    [this] { StepShown(-1); });

    QToolBar* bar = addToolBar(QStringLiteral("Levels"));
    bar->setMovable(false);
    bar->addWidget(new QLabel(QStringLiteral(" Levels up to "), bar));
    level_ = new QSpinBox(bar);
    level_->setRange(0, map::kLevels - 1);
    level_->setValue(map::kLevels - 1);
    level_->setToolTip(QStringLiteral("Blocks above this level are left out (Page Up, Page Down)"));
    bar->addWidget(level_);
    connect(level_, &QSpinBox::valueChanged, canvas_, &MapCanvas::SetLevelCut);
}

bool MapWindow::Open(const QString& path) {
    auto read = map::LoadMap(path.toStdString());
    if (!read.map) {
        host_.tell(QString::fromStdString(read.error));
        return false;
    }
    map_ = std::make_unique<map::Map>(std::move(*read.map));
    usage_ = map::CountTiles(*map_);
    path_ = path;
    shown_.clear();
    shownTile_ = -1;
    found_->clear();
    tiles_ = std::make_unique<mapdraw::TilePyramid>(host_.style());
    missingTold_.clear();
    setWindowTitle(QStringLiteral("Map: %1 (%2)")
                       .arg(QFileInfo(path).fileName(), QString::fromLatin1(map::SourceName(map_->source))));
    canvas_->SetMap(map_.get(), tiles_.get());
    ApplyLayers();
    host_.present();
    emit MapOpened();
    // The first frame names the tiles the style lacks.
    QMetaObject::invokeMethod(
        this, [this] { TellMissingOnce(); }, Qt::QueuedConnection);
    return true;
}

void MapWindow::ApplyLayers() {
    Layers l;
    l.shade = layers_.shade->isChecked();
    l.zones = layers_.zones->isChecked();
    l.arrows = layers_.arrows->isChecked();
    l.grid = layers_.grid->isChecked();
    l.surfaces = layers_.surfaces->isChecked();
    if (l.surfaces && host_.surfaceTypes) canvas_->SetSurfaces(host_.surfaceTypes(), host_.surfaceTint);
    canvas_->SetLayers(l);
    const bool coloured = legend_->Show(map_.get(), l, host_.surfaceTint);
    if (auto* dock = findChild<QDockWidget*>(QStringLiteral("legend"))) dock->setVisible(coloured);
}

void MapWindow::StyleLoaded() {
    if (!map_) return;
    auto fresh = std::make_unique<mapdraw::TilePyramid>(host_.style());
    canvas_->SetTiles(fresh.get());
    tiles_ = std::move(fresh);
    missingTold_.clear();
    ApplyLayers();
    if (isVisible())
        QMetaObject::invokeMethod(
            this, [this] { TellMissingOnce(); }, Qt::QueuedConnection);
}

void MapWindow::TileChanged(int tile) {
    if (!tiles_) return;
    tiles_->Forget(tile);
    canvas_->Redraw();
}

void MapWindow::PalettesChanged() {
    if (!tiles_) return;
    tiles_->ForgetAll();
    if (layers_.surfaces->isChecked()) ApplyLayers();
    canvas_->Redraw();
}

void MapWindow::TellMissingOnce() {
    if (!tiles_ || !isVisible()) return;
    canvas_->viewport()->repaint();
    const std::vector<int> missing = tiles_->Missing();
    std::vector<int> fresh;
    std::set_difference(missing.begin(), missing.end(), missingTold_.begin(), missingTold_.end(),
                        std::back_inserter(fresh));
    if (fresh.empty()) return;
    missingTold_ = missing;
    host_.tell(
        QStringLiteral("%1 tile number(s) of the map are not in the style, the first %2; they are drawn hatched.")
            .arg(fresh.size())
            .arg(fresh.front()));
}

QString MapWindow::StatusText() const { return status_->text(); }

void MapWindow::AddMapAction(QAction* action) {
    mapMenu_->insertAction(mapMenu_->actions().value(0), action);
    // Its key works here too.
    addAction(action);
}

void MapWindow::Hover(int x, int y) {
    if (!map_ || x < 0) return status_->clear();
    status_->setText(QString::fromStdString(map::DescribeColumn(*map_, x, y, canvas_->LevelCut())));
    // A narrow window cuts the line: the tip holds it whole.
    status_->setToolTip(status_->text());
}

void MapWindow::Click(int x, int y) {
    const int top = canvas_->Frame().StackAt(x, y).Top();
    if (!map_ || top < 0) return;
    host_.chooseTile(map::TileOf(map_->At(x, y, top).lid));
}

void MapWindow::Menu(int x, int y, const QPoint& global) {
    const int top = canvas_->Frame().StackAt(x, y).Top();
    if (!map_ || top < 0) return;
    const map::BlockInfo& b = map_->At(x, y, top);
    QMenu menu;
    menu.addAction(QStringLiteral("Select lid tile %1").arg(map::TileOf(b.lid)), this,
                   [this, t = map::TileOf(b.lid)] { host_.chooseTile(t); });
    static const char* const kSides[] = {"left", "right", "top", "bottom"};
    const auto sides = b.Sides();
    for (std::size_t i = 0; i < sides.size(); ++i)
        if (const int t = map::TileOf(sides[i]); t != 0)
            menu.addAction(QStringLiteral("Select %1 side tile %2").arg(QString::fromLatin1(kSides[i])).arg(t), this,
                           [this, t] { host_.chooseTile(t); });
    menu.exec(global);
}

void MapWindow::ShowTile(int tile) {
    if (!map_) return;
    shown_ = map::ColumnsUsing(*map_, tile);
    shownTile_ = tile;
    shownAt_ = -1;
    std::vector<std::uint8_t> marked(static_cast<std::size_t>(map::kSide * map::kSide), 0);
    for (const map::Column& c : shown_) marked[static_cast<std::size_t>(c.y * map::kSide + c.x)] = 1;
    canvas_->SetMarked(shown_.empty() ? std::vector<std::uint8_t>{} : std::move(marked));
    found_->setText(shown_.empty()
                        ? QStringLiteral("Tile %1 is not on the map").arg(tile)
                        : QStringLiteral("Tile %1: %2 column(s) (F3, Shift+F3)").arg(tile).arg(shown_.size()));
    host_.present();
    if (!shown_.empty()) StepShown(1);
}

void MapWindow::StepShown(int step) {
    if (shown_.empty()) return;
    const int n = static_cast<int>(shown_.size());
    shownAt_ = ((shownAt_ + step) % n + n) % n;
    const map::Column& c = shown_[static_cast<std::size_t>(shownAt_)];
    canvas_->CentreOn(c.x, c.y);
    found_->setText(
        QStringLiteral("Tile %1: %2 of %3 column(s) (F3, Shift+F3)").arg(shownTile_).arg(shownAt_ + 1).arg(n));
}

void MapWindow::closeEvent(QCloseEvent* event) {
    // Closing hides: the map stays open for the sheet's usage and the next Open map.
    hide();
    event->ignore();
}

}  // namespace ombrevale::mapview
