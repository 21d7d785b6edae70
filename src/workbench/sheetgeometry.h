#pragma once
// Where the tiles stand on the sheet: one cell a tile, left to right in rows
// as wide as whole cells fit, tile 0 at the top left.

#include <QPoint>
#include <QRect>
#include <optional>

#include "style/clssty.h"

namespace ombrevale::sheet {

inline constexpr int kCell = kTileSide;
// The editor's tile list holds 992 tiles: a tile past it cannot be selected.
inline constexpr int kLastSelectable = 991;

// Whole cells across a sheet `width` pixels wide.
constexpr int Columns(int width) { return width / kCell; }

// The tile whose cell holds sheet pixel (x, y); none left of or above the
// sheet, nor in the strip right of the last whole column.
inline std::optional<long> TileAt(int x, int y, int cols) {
    if (cols <= 0 || x < 0 || y < 0 || x / kCell >= cols) return std::nullopt;
    return static_cast<long>(y / kCell) * cols + x / kCell;
}

// Column and row of tile t's cell.
inline QPoint CellOf(long t, int cols) { return {static_cast<int>(t % cols), static_cast<int>(t / cols)}; }

// The pixels of tile t's cell.
inline QRect CellRect(long t, int cols) { return {CellOf(t, cols) * kCell, QSize(kCell, kCell)}; }

}  // namespace ombrevale::sheet
