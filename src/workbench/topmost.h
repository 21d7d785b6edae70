#pragma once
// The window's top-most state: SetWindowPos on Windows, the window flag elsewhere.

class QWidget;

namespace ombrevale::workbench {
void SetTopMost(QWidget* window, bool onTop);
}
