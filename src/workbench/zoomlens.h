#pragma once
// A magnifier laid over a picture box: its picture at 2x to 8x, pixel for
// pixel (nearest neighbour), with a grid between the pixels from 4x. It only
// reads the picture, so whatever is drawn into the box (a delta over its
// sprite) shows at every zoom. Hidden at 1x, where the box shows itself.

#include <QList>
#include <QWidget>
#include <array>

class PictureBox;
class QAction;

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

    PictureBox* picture_;
    int zoom_ = 1;
    QPoint origin_;
    QPoint dragFrom_;
    QPoint dragOrigin_;
    QList<QAction*> more_;
};

}  // namespace ombrevale::workbench
