#include "workbench/toolwindow.h"

#include <QScreen>
#include <QWidget>
#include <algorithm>

namespace ombrevale::workbench {

ToolListWindow::ToolListWindow(QWidget* owner) : QListWidget(owner), owner_(owner) { setWindowFlags(Qt::Tool); }

void ToolListWindow::Open() {
    Fill();
    PlaceBeside(this, owner_, Wanted());
    show();
    raise();
}

void ToolListWindow::Follow() {
    if (isVisible()) Fill();
}

void PlaceBeside(QWidget* window, const QWidget* owner, QSize wanted) {
    constexpr int kGap = 8;
    const QScreen* screen = owner->screen();
    const QRect free = screen ? screen->availableGeometry() : QRect(0, 0, 1 << 14, 1 << 14);
    const QSize size = wanted.boundedTo(free.size());
    window->resize(size);
    const QRect main = owner->frameGeometry();
    // The window's frame is the system's: leave the same again as the owner's has.
    const int frame = main.width() - owner->width();
    int x = main.right() + 1 + kGap;
    if (x + size.width() + frame > free.right() + 1) x = main.left() - kGap - size.width() - frame;
    x = std::clamp(x, free.left(), std::max(free.left(), free.right() + 1 - size.width() - frame));
    const int y = std::clamp(main.top(), free.top(), std::max(free.top(), free.bottom() + 1 - size.height()));
    window->move(x, y);
}

}  // namespace ombrevale::workbench
