#pragma once
// A car's record drawn over its sprite: the hit box of width x height around
// the sprite's centre, the axles and windows at their offsets, each door at
// its place, labelled; and the legend that names them. Drawn over the
// picture, never into it, at the zoom and corner of the picture's lens.
//
// Front is the top of a car sprite. The offsets are read as distances from
// the centre towards their own end (a negative one lies past the centre),
// and a door's rx, ry in the sprite's own directions, x right and y down.

#include <QColor>
#include <QSize>
#include <QWidget>
#include <optional>

#include "style/moddeclares.h"

class PictureBox;

namespace ombrevale::workbench {

class ZoomLens;

enum class CarMark { HitBox, Axle, Window, Door };
QColor CarMarkColour(CarMark mark);

class CarRecordOverlay : public QWidget {
public:
    // Covers picture, above its lens, and lets the mouse through to them.
    CarRecordOverlay(PictureBox* picture, const ZoomLens* lens);
    // The record of the car shown and the size of its sprite; none draws nothing.
    void SetRecord(std::optional<modDeclares::CarRecord> record, QSize sprite);
    const std::optional<modDeclares::CarRecord>& Record() const { return record_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    const ZoomLens* lens_;
    std::optional<modDeclares::CarRecord> record_;
    QSize sprite_;
};

class CarRecordLegend : public QWidget {
public:
    explicit CarRecordLegend(QWidget* parent);
    void SetRecord(std::optional<modDeclares::CarRecord> record);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::optional<modDeclares::CarRecord> record_;
};

}  // namespace ombrevale::workbench
