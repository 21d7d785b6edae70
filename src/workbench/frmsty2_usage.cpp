// Palette usage: the tiles, sprites and car remaps a physical palette colours,
// in a small window beside the Palettes page; a click goes to one.
#include <QListWidget>
#include <QTabWidget>

#include "pixels/paletteusage.h"
#include "workbench/frmsty2.h"

void frmSTY2::ShowPaletteUsage() {
    if (!lstUsage) {
        lstUsage = new QListWidget(this);
        lstUsage->setWindowFlags(Qt::Tool);
        // A palette may colour every tile of the largest style: rows of one height lay out at once.
        lstUsage->setUniformItemSizes(true);
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
    usageRows_.clear();
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
    QStringList rows;
    rows.reserve(static_cast<qsizetype>(use.tiles.size() + use.sprites.size() + use.remaps.size()));
    for (int t : use.tiles) {
        rows << QStringLiteral("Tile %1").arg(t);
        usageRows_.push_back({UsageRow::Tile, t, 0});
    }
    for (int s : use.sprites) {
        rows << lstSprites->item(s)->text();
        usageRows_.push_back({UsageRow::Sprite, s, 0});
    }
    for (const auto& r : use.remaps) {
        rows << QStringLiteral("%1, remap %2").arg(lstSprites->item(r.sprite)->text()).arg(r.remap);
        usageRows_.push_back({UsageRow::Remap, r.sprite, r.position});
    }
    // One insertion, as the panes fill their lists.
    lstUsage->addItems(rows);
}

void frmSTY2::UsageGoTo(QListWidgetItem* item) {
    const int row = lstUsage->row(item);
    if (row < 0 || static_cast<std::size_t>(row) >= usageRows_.size()) return;
    const UsageRow& u = usageRows_[static_cast<std::size_t>(row)];
    if (u.kind == UsageRow::Tile) {
        GoToTile(u.number);
        return;
    }
    MainTab->setCurrentIndex(1);
    lstSprites->setCurrentRow(u.number);
    lstSprites->scrollToItem(lstSprites->item(u.number));
    // Row 0 of the remaps is the sprite's own palette.
    if (u.kind == UsageRow::Remap) lstRemaps->setCurrentRow(u.position + 1);
}
