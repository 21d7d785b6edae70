#pragma once
// A tool button's menu on press and hold, as a browser's Back button lists
// its pages, without the arrow Qt draws on a button with a menu: the tool bar
// looks as it always has, and a click still runs the button's own command.

class QMenu;
class QToolButton;

namespace ombrevale::workbench {

void MenuOnHold(QToolButton* button, QMenu* menu);

}  // namespace ombrevale::workbench
