#pragma once
// The colours of the map's layers that are on, named: zone types present in
// the map, the arrows, the surface types, the light levels.

#include <QLabel>
#include <functional>

#include "map/gbmp.h"
#include "mapview/mapcanvas.h"

namespace ombrevale::mapview {

class MapLegend : public QLabel {
public:
    explicit MapLegend(QWidget* parent);
    // False, and nothing to show, when no layer with colours is on.
    bool Show(const map::Map* m, const Layers& layers, const std::function<QColor(int)>& surfaceTint);
};

}  // namespace ombrevale::mapview
