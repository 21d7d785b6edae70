#pragma once
// The small windows the views open (palette usage, all remaps) stand beside
// the main window, sized to what they hold, never at the screen's edge.

class QWidget;
class QSize;

namespace ombrevale::workbench {

// Makes window a tool window of owner's.
void MakeToolWindow(QWidget* window);
// Sizes window to wanted (at most the screen's free area) and puts it right
// of owner, or left of it where the right has no room; top edges level.
void PlaceBeside(QWidget* window, const QWidget* owner, QSize wanted);

}  // namespace ombrevale::workbench
