#include "workbench/topmost.h"

#include <QWidget>

#include "editorlink/modcontrolwin.h"

namespace workbench {

void SetTopMost(QWidget* window, bool onTop) {
#ifdef _WIN32
    modControlWin::SetTopMost(static_cast<std::uintptr_t>(window->winId()), onTop);
#else
    if (window->windowFlags().testFlag(Qt::WindowStaysOnTopHint) == onTop) return;
    // Changing a flag hides the window here; show it again where it was.
    const bool wasVisible = window->isVisible();
    window->setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
    if (wasVisible) window->show();
#endif
}

}  // namespace workbench
