#pragma once
// The window names a palette as its Palettes list does: counted from 1, so
// physical palette 5 is "palette 6".

#include <QString>

namespace ombrevale::workbench {

inline QString PaletteName(int physical) { return QStringLiteral("palette %1").arg(physical + 1); }

}  // namespace ombrevale::workbench
