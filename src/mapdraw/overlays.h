#pragma once
// What a map view draws over the blocks: a grid, the zones and the traffic
// arrows. The window and the command line draw them the same way.

#include <QColor>
#include <QRectF>

#include "mapdraw/mapframe.h"

class QPainter;

namespace ombrevale::mapdraw {

struct Overlays {
    bool grid = false, zones = false, arrows = false;
};

// A zone type's colour, one a type, for the outline and the legend.
QColor ZoneColour(int type);
inline const QColor kGreenArrow{40, 230, 60};
inline const QColor kRedArrow{240, 50, 40};

// Over a frame of size w x h drawn with view.
void DrawOverlays(QPainter& p, const map::Map& m, const View& view, const Overlays& which, int w, int h);

// Where block (x, y) lies on screen.
QRectF BlockRect(int x, int y, const View& view);

}  // namespace ombrevale::mapdraw
