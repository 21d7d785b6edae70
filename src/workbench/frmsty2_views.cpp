// Wiring of the views a user asks for: their keys and context menus. None of
// them shows until asked, so the window starts as it always has.
#include <QListWidget>
#include <QMenu>
#include <QTabWidget>

#include "pixels/paletteusage.h"
#include "style/carrecord.h"
#include "workbench/carrecordpanel.h"
#include "workbench/frmsty2.h"
#include "workbench/picturebox.h"
#include "workbench/zoomlens.h"

namespace {
enum Page { kTiles, kSprites, kPalettes, kFont };
}  // namespace

void frmSTY2::WireViews() {
    picSpriteZoom = new ombrevale::workbench::ZoomLens(picSprite);
    picFontZoom = new ombrevale::workbench::ZoomLens(picFont);
    // The car record's view reaches the window through these three calls.
    ombrevale::workbench::CarRecordHost host;
    host.record = [this] {
        const int s = lstSprites->currentRow();
        return s >= 0 && s < modDeclares::STYSpriteBase[0] ? ombrevale::paletteusage::CarRecordOfSprite(s) : -1;
    };
    host.sprite = [this] {
        const int s = lstSprites->currentRow();
        return QSize(Sty().GetSpriteWidth(s), Sty().GetSpriteHeight(s));
    };
    host.edit = [this](int r, const modDeclares::CarRecord& edited) {
        const auto model = modDeclares::STYCarInfo.at(static_cast<std::size_t>(r)).model;
        return RecordEdit(ombrevale::editparts::Kind::Car, r, QStringLiteral("car record of model %1").arg(model), [&] {
            ombrevale::cars::Replace(static_cast<std::size_t>(r), edited);
            return true;
        });
    };
    carPanel_ = new ombrevale::workbench::CarRecordPanel(std::move(host), picSprite, picSpriteZoom, lstInfo,
                                                         SprTab->widget(0), this);
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
    else if (page == kSprites && key == Qt::Key_K)
        carPanel_->ToggleOverlay();
    else if (page == kSprites && key == Qt::Key_E)
        carPanel_->Edit();
    else if (page == kPalettes && key == Qt::Key_U)
        ShowPaletteUsage();
    else
        return false;
    return true;
}
