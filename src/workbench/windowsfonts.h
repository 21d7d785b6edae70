#pragma once
// The window is laid out for the Windows fonts "Microsoft Sans Serif" and
// "Tahoma". Where they are missing (Linux), free fonts drawn to the same
// metrics stand in for them, so every caption keeps the room it was given.

namespace ombrevale::workbench {

// Safe to call more than once; only the first call does anything.
void UseWindowsFontMetrics();
// The stretch (percent) that gives the window's font MS Sans Serif's widths: 100
// where its own bitmaps draw, narrower for the outline font at another scale.
int WindowsFontStretch();

}  // namespace ombrevale::workbench
