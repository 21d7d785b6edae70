#include "workbench/topmost.h"

#include <QWidget>
#include <QWindow>

#include "editorlink/modcontrolwin.h"

namespace ombrevale::workbench {

void SetTopMost(QWidget* window, bool onTop) {
#ifdef _WIN32
    modControlWin::SetTopMost(static_cast<std::uintptr_t>(window->winId()), onTop);
#else
    Qt::WindowFlags flags = window->windowFlags();
    if (flags.testFlag(Qt::WindowStaysOnTopHint) == onTop) return;
    flags.setFlag(Qt::WindowStaysOnTopHint, onTop);
    // QWidget::setWindowFlags would destroy the native window and make a new one
    // (a new id, unmapped and mapped again). The platform window instead asks the
    // window manager for the "above" state in place (_NET_WM_STATE on X11).
    window->overrideWindowFlags(flags);
    if (QWindow* handle = window->windowHandle()) handle->setFlags(flags);
#endif
}

}  // namespace ombrevale::workbench
