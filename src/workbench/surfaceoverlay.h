#pragma once
// The surface types over the tile sheet: a see-through tint a cell, and the
// legend that names the tints. Drawn over the sheet, never into it, so the
// sheet's picture stays what the renders made.

#include <QColor>
#include <QObject>
#include <QWidget>
#include <cstdint>
#include <vector>

namespace ombrevale::workbench {

// The tint of surface type 1 to 10; type 1 (normal) is left clear.
QColor SurfaceTint(int type);

class SurfaceOverlay : public QWidget {
public:
    // Covers sheet and follows its size; mouse events go through to it.
    explicit SurfaceOverlay(QWidget* sheet);
    // One type a tile, tiles laid out in rows of cols cells of cell pixels.
    void SetTypes(std::vector<std::uint8_t> types, int cols, int cell);
    const std::vector<std::uint8_t>& Types() const { return types_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::vector<std::uint8_t> types_;
    int cols_ = 0;
    int cell_ = 64;
};

class SurfaceLegend : public QWidget {
public:
    // Stands at the top, just left of leftOf (the sheet's scroll bar), and follows it.
    SurfaceLegend(QWidget* parent, QWidget* leftOf);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Place();
    QWidget* leftOf_;
};

// The surface view of the Tiles page: the tint over the sheet, its legend,
// and a tip a cell naming the tile, its palette and its surface type.
class SurfaceView : public QObject {
public:
    // sheet: the tile sheet; page and scrollBar: where the legend stands.
    SurfaceView(QWidget* sheet, QWidget* page, QWidget* scrollBar);
    bool Shown() const { return shown_; }
    // Tints the tiles, one type a tile, in rows of cols cells.
    void Show(std::vector<std::uint8_t> types, int cols);
    void Hide();
    // Tile number, palette and surface type of the cell at sheet pixel (x, y); empty off the tiles.
    QString CellTip(int x, int y) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* sheet_;
    SurfaceOverlay* overlay_;
    SurfaceLegend* legend_;
    int cols_ = 0;
    bool shown_ = false;
};

}  // namespace ombrevale::workbench
