#pragma once
// A magnifier laid over a picture box: its picture at 2x to 8x, pixel for
// pixel (nearest neighbour), with a grid between the pixels from 4x. It only
// reads the picture, so whatever is drawn into the box (a delta over its
// sprite) shows at every zoom. Hidden at 1x, where the box shows itself.
// Scroll bars come when the zoomed picture is larger than the box.

#include <QList>
#include <QWidget>
#include <array>

class PictureBox;
class QAction;
class QScrollBar;

namespace ombrevale::workbench {

class ZoomLens : public QWidget {
public:
    static constexpr std::array<int, 6> kSteps = {1, 2, 3, 4, 6, 8};
    static constexpr int kGridFrom = 4;

    // Ctrl+wheel over the box steps the zoom; its context menu chooses one.
    explicit ZoomLens(PictureBox* picture);
    int Zoom() const { return zoom_; }
    // One of kSteps; any other value is taken as the next step below it.
    void SetZoom(int zoom);
    // The picture pixel at the lens's top-left corner.
    QPoint Origin() const { return origin_; }
    // Where the lens point pos lies in the picture and the colour there, as the palette pane words it.
    QString TipAt(QPoint pos) const;
    // The part of the box the picture fills, from its top left (a sprite, a
    // line of text); the grid and the scrolling stop at it. Empty: the whole box.
    void SetPictureSize(QSize size);
    QScrollBar* HorizontalBar() const { return bars_[0]; }
    QScrollBar* VerticalBar() const { return bars_[1]; }
    // Actions of the picture's own that its menu offers below the zoom steps.
    void SetMoreActions(QList<QAction*> actions) { more_ = std::move(actions); }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;

private:
    void Step(int by);
    void ShowMenu(const QPoint& globalPos);
    void PanTo(QPoint origin);
    // The picture's size in its own pixels, and the lens's room for it beside the bars.
    QSize Picture() const;
    QSize View() const;
    void PlaceBars();

    PictureBox* picture_;
    int zoom_ = 1;
    QPoint origin_;
    QPoint dragFrom_;
    QPoint dragOrigin_;
    QList<QAction*> more_;
    QSize pictureSize_;
    QScrollBar* bars_[2];
};

}  // namespace ombrevale::workbench
