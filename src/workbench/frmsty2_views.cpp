// Wiring of the views a user asks for: their keys and context menus. None of
// them shows until asked, so the window starts as it always has.
#include <QListWidget>
#include <QMenu>
#include <QTabWidget>

#include "workbench/frmsty2.h"
#include "workbench/picturebox.h"
#include "workbench/zoomlens.h"

namespace {
enum Page { kTiles, kSprites, kPalettes, kFont };
}  // namespace

void frmSTY2::WireViews() {
    picSpriteZoom = new ombrevale::workbench::ZoomLens(picSprite);
    picFontZoom = new ombrevale::workbench::ZoomLens(picFont);
    lstPalettes->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(lstPalettes, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        QMenu menu;
        menu.addAction(QStringLiteral("Palette usage...\tCtrl+U"), this, [this] { ShowPaletteUsage(); });
        menu.exec(lstPalettes->viewport()->mapToGlobal(at));
    });
    lstRemaps->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(lstRemaps, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        QMenu menu;
        menu.addAction(QStringLiteral("All remaps...\tCtrl+R"), this, [this] { ShowAllRemaps(); });
        menu.exec(lstRemaps->viewport()->mapToGlobal(at));
    });
}

bool frmSTY2::ViewKey(int key) {
    const int page = MainTab->currentIndex();
    if (page == kTiles && key == Qt::Key_G)
        AskGoToTile();
    else if (page == kTiles && key == Qt::Key_T)
        ShowSurfaces(!surfacesShown_);
    else if (page == kSprites && key == Qt::Key_F)
        AskFindSprite();
    else if (page == kSprites && key == Qt::Key_R)
        ShowAllRemaps();
    else if (page == kPalettes && key == Qt::Key_U)
        ShowPaletteUsage();
    else
        return false;
    return true;
}
