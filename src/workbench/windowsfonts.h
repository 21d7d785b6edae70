#pragma once
// The window is laid out for the Windows fonts "Microsoft Sans Serif" and
// "Tahoma". Where they are missing (Linux), free fonts drawn to the same
// metrics stand in for them, so every caption keeps the room it was given.

namespace ombrevale::workbench {

// Safe to call more than once; only the first call does anything.
void UseWindowsFontMetrics();

}  // namespace ombrevale::workbench
