#include "workbench/paletteusagewindow.h"

#include <QScrollBar>
#include <algorithm>

#include "pixels/paletteusage.h"
#include "workbench/toolwindow.h"

namespace ombrevale::workbench {

PaletteUsageWindow::PaletteUsageWindow(Source source, StyleDocument& doc, QWidget* owner)
    : ToolListWindow(owner, doc), source_(std::move(source)) {
    // A palette may colour every tile of the largest style: rows of one height lay out at once.
    setUniformItemSizes(true);
    connect(this, &QListWidget::itemClicked, this, &PaletteUsageWindow::Choose);
    connect(this, &QListWidget::itemActivated, this, &PaletteUsageWindow::Choose);
}

QSize PaletteUsageWindow::Wanted() const {
    // Wide enough for the title with its counts and for the longest row.
    const int rowsWidth = sizeHintForColumn(0) + verticalScrollBar()->sizeHint().width() + 2 * frameWidth() + 8;
    return {std::max({260, fontMetrics().horizontalAdvance(windowTitle()) + kTitleButtons, rowsWidth}), 360};
}

void PaletteUsageWindow::Fill() {
    clear();
    rows_.clear();
    const int p = source_.palette();
    if (p < 0) {
        setWindowTitle(QStringLiteral("Palette usage: choose a palette"));
        return;
    }
    const auto use = paletteusage::UsesOfPalette(p, source_.tiles(), source_.sprites());
    setWindowTitle(QStringLiteral("Palette: %1 - %2 tiles, %3 sprites, %4 remaps")
                       .arg(p + 1)
                       .arg(use.tiles.size())
                       .arg(use.sprites.size())
                       .arg(use.remaps.size()));
    QStringList rows;
    rows.reserve(static_cast<qsizetype>(use.tiles.size() + use.sprites.size() + use.remaps.size()));
    for (int t : use.tiles) {
        rows << QStringLiteral("Tile %1").arg(t);
        rows_.push_back({Row::Tile, t, 0});
    }
    for (int s : use.sprites) {
        rows << source_.spriteCaption(s);
        rows_.push_back({Row::Sprite, s, 0});
    }
    for (const auto& r : use.remaps) {
        rows << QStringLiteral("%1, remap %2").arg(source_.spriteCaption(r.sprite)).arg(r.remap);
        rows_.push_back({Row::Remap, r.sprite, r.position});
    }
    // One insertion, as the panes fill their lists.
    addItems(rows);
}

void PaletteUsageWindow::Choose(QListWidgetItem* item) {
    const int i = row(item);
    if (i < 0 || static_cast<std::size_t>(i) >= rows_.size()) return;
    const Row& r = rows_[static_cast<std::size_t>(i)];
    if (r.kind == Row::Tile)
        emit TileChosen(r.number);
    else
        emit SpriteChosen(r.number, r.kind == Row::Remap ? r.position : -1);
}

}  // namespace ombrevale::workbench
