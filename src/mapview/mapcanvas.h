#pragma once
// The map drawn from above in a scrolling, zooming view: only the part on
// screen is drawn, at the screen's own pixels, from the tiles' scaled copies.
// Zoom about the mouse with Ctrl+wheel, + and -, Ctrl+0 to fit; scroll with
// the wheel, the bars, the arrow keys and a middle-button drag.

#include <QAbstractScrollArea>
#include <QColor>
#include <QImage>
#include <functional>
#include <optional>
#include <vector>

#include "map/gbmp.h"
#include "mapdraw/mapframe.h"
#include "mapdraw/overlays.h"

namespace ombrevale::mapdraw {
class TilePyramid;
}

namespace ombrevale::mapview {

struct Layers {
    bool shade = false, zones = false, arrows = false, grid = false, surfaces = false;
};

class MapCanvas : public QAbstractScrollArea {
    Q_OBJECT
public:
    // The largest zoom: 4 screen pixels a tile pixel.
    static constexpr double kMostBlockPx = 64.0 * 4;

    explicit MapCanvas(QWidget* parent = nullptr);
    // Nothing shown: a null map.
    void SetMap(const map::Map* m, mapdraw::TilePyramid* tiles);
    // Another style's pictures for the same map: the view stays where it is.
    void SetTiles(mapdraw::TilePyramid* tiles);
    void SetLayers(const Layers& layers);
    const Layers& CurrentLayers() const { return layers_; }
    void SetLevelCut(int cut);
    int LevelCut() const { return options_.levelCut; }
    // One type a tile, and each type's tint, for the surface layer.
    void SetSurfaces(std::vector<std::uint8_t> types, std::function<QColor(int)> tint);
    // Columns to show as found, [y][x]; empty: none.
    void SetMarked(std::vector<std::uint8_t> marked);
    // The style's pictures changed: draw again.
    void Redraw();

    double BlockPx() const { return view_.blockPx; }
    double FitBlockPx() const;
    void ZoomTo(double blockPx, QPointF about);
    void ZoomBy(double factor);
    void Fit();
    // Scrolls so block (x, y) is in the middle.
    void CentreOn(int x, int y);
    // The block under a point of the viewport, none off the map.
    std::optional<QPoint> BlockAt(QPointF at) const;
    QPoint ViewportPointOf(int x, int y) const;
    // Milliseconds the last frame took to draw.
    double LastFrameMs() const { return lastFrameMs_; }
    // While the style is in other hands (a job runs), the last frame is shown again and no tile is read.
    void Hold(bool on);
    const mapdraw::MapFrame& Frame() const { return frame_; }

signals:
    void Hovered(int x, int y);  // -1, -1 off the map
    void BlockClicked(int x, int y);
    void BlockMenu(int x, int y, const QPoint& global);
    void ZoomChanged(double blockPx);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void UpdateBars();
    void DrawSurfaces(QPainter& p, const mapdraw::View& v, int w, int h) const;
    void DrawMarks(QPainter& p, const mapdraw::View& v, int w, int h) const;

    const map::Map* map_ = nullptr;
    mapdraw::TilePyramid* tiles_ = nullptr;
    mapdraw::MapFrame frame_;
    mapdraw::View view_;
    mapdraw::DrawOptions options_;
    Layers layers_;
    std::vector<std::uint8_t> surfaceTypes_;
    std::function<QColor(int)> tint_;
    std::vector<std::uint8_t> marked_;
    bool fitted_ = true;
    std::optional<QPoint> dragFrom_;
    bool dragged_ = false;
    double lastFrameMs_ = 0;
    bool held_ = false;
    QImage lastFrame_;
};

}  // namespace ombrevale::mapview
