#pragma once
// The window names a palette as its Palettes list does, counted from 1, and
// adds the physical number the tile caption gives: "palette 6 (physical 5)".

#include <QString>

namespace ombrevale::workbench {

inline QString PaletteName(int physical) {
    return QStringLiteral("palette %1 (physical %2)").arg(physical + 1).arg(physical);
}

}  // namespace ombrevale::workbench
