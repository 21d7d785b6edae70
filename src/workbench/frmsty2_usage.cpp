// Palette usage: the tiles, sprites and car remaps a physical palette colours,
// in a small window beside the Palettes page; a click goes to one.
#include <QListWidget>
#include <QTabWidget>

#include "pixels/paletteusage.h"
#include "workbench/frmsty2.h"

namespace {
enum UsageRole { kKind = Qt::UserRole, kNumber, kPosition };
enum UsageKind { kTile, kSprite, kRemap };
}  // namespace

void frmSTY2::ShowPaletteUsage() {
    if (!lstUsage) {
        lstUsage = new QListWidget(this);
        lstUsage->setWindowFlags(Qt::Tool);
        lstUsage->resize(260, 360);
        connect(lstUsage, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) { UsageGoTo(item); });
        connect(lstUsage, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) { UsageGoTo(item); });
    }
    FillPaletteUsage();
    lstUsage->show();
    lstUsage->raise();
}

void frmSTY2::FillPaletteUsage() {
    if (!lstUsage) return;
    lstUsage->clear();
    const int p = lstPalettes->currentRow();
    if (p < 0) {
        lstUsage->setWindowTitle(QStringLiteral("Palette usage: choose a palette"));
        return;
    }
    const auto use = ombrevale::paletteusage::UsesOfPalette(p, Sty().GetNumOfTiles(), lstSprites->count());
    lstUsage->setWindowTitle(QStringLiteral("Palette: %1 - %2 tiles, %3 sprites, %4 remaps")
                                 .arg(p + 1)
                                 .arg(use.tiles.size())
                                 .arg(use.sprites.size())
                                 .arg(use.remaps.size()));
    const auto add = [this](const QString& text, int kind, int number, int position) {
        auto* item = new QListWidgetItem(text, lstUsage);
        item->setData(kKind, kind);
        item->setData(kNumber, number);
        item->setData(kPosition, position);
    };
    // One insertion for the largest lists, as the panes fill theirs.
    lstUsage->setUpdatesEnabled(false);
    for (int t : use.tiles) add(QStringLiteral("Tile %1").arg(t), kTile, t, 0);
    for (int s : use.sprites) add(lstSprites->item(s)->text(), kSprite, s, 0);
    for (const auto& r : use.remaps)
        add(QStringLiteral("%1, remap %2").arg(lstSprites->item(r.sprite)->text()).arg(r.remap), kRemap, r.sprite,
            r.position);
    lstUsage->setUpdatesEnabled(true);
}

void frmSTY2::UsageGoTo(QListWidgetItem* item) {
    const int number = item->data(kNumber).toInt();
    switch (item->data(kKind).toInt()) {
        case kTile:
            GoToTile(number);
            return;
        case kSprite:
        case kRemap:
            MainTab->setCurrentIndex(1);
            lstSprites->setCurrentRow(number);
            lstSprites->scrollToItem(lstSprites->item(number));
            // Row 0 of the remaps is the sprite's own palette.
            if (item->data(kKind).toInt() == kRemap) lstRemaps->setCurrentRow(item->data(kPosition).toInt() + 1);
            return;
        default:
            return;
    }
}
