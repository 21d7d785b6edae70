#include "workbench/toolwindow.h"

#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <utility>
#include <vector>

#include "workbench/styledocument.h"

namespace ombrevale::workbench {

ToolListWindow::ToolListWindow(QWidget* owner, StyleDocument& doc) : QListWidget(owner), owner_(owner) {
    setWindowFlags(Qt::Tool);
    connect(&doc, &StyleDocument::Loaded, this, &ToolListWindow::Follow);
    // An import of a folder changes hundreds of parts: one refill after the last.
    connect(&doc, &StyleDocument::PartChanged, this, [this] {
        if (std::exchange(followSoon_, true)) return;
        QTimer::singleShot(0, this, [this] {
            followSoon_ = false;
            Follow();
        });
    });
}

void ToolListWindow::Open() {
    Fill();
    PlaceBeside(this, owner_, Wanted());
    show();
    raise();
}

void ToolListWindow::Follow() {
    if (isVisible()) Fill();
}

namespace {

// The owner's other windows that show: a new one must not cover them.
std::vector<QRect> Shown(const QWidget* owner, const QWidget* except) {
    std::vector<QRect> taken{owner->frameGeometry()};
    for (const QWidget* w : owner->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        if (w != except && w->isWindow() && w->isVisible()) taken.push_back(w->frameGeometry());
    return taken;
}

bool Free(const QRect& r, const QRect& screen, const std::vector<QRect>& taken) {
    return screen.contains(r) &&
           std::none_of(taken.begin(), taken.end(), [&](const QRect& t) { return t.intersects(r); });
}

}  // namespace

void PlaceBeside(QWidget* window, const QWidget* owner, QSize wanted, QSize smallest) {
    constexpr int kGap = 8;
    const QScreen* screen = owner->screen();
    const QRect free = screen ? screen->availableGeometry() : QRect(0, 0, 1 << 14, 1 << 14);
    const QRect main = owner->frameGeometry();
    // The window's frame is the system's: leave the same again as the owner's has.
    const QSize frame(main.width() - owner->width(), main.height() - owner->height());
    const std::vector<QRect> taken = Shown(owner, window);
    // Right of the main window, else left of it, else below or right of
    // another of its windows: the first room that holds the window, narrowed
    // to it when that still leaves the smallest size.
    struct Room {
        QRect area;
        bool alignRight;
    };
    std::vector<Room> rooms;
    const auto rightOf = [&](const QRect& t) {
        rooms.push_back(
            {QRect(QPoint(t.right() + 1 + kGap, std::max(t.top(), free.top())), free.bottomRight()), false});
    };
    rightOf(main);
    rooms.push_back(
        {QRect(QPoint(free.left(), std::max(main.top(), free.top())), QPoint(main.left() - 1 - kGap, free.bottom())),
         true});
    // In a column beside the main window first, then a column further out.
    for (std::size_t i = 1; i < taken.size(); ++i)
        rooms.push_back({QRect(QPoint(taken[i].left(), taken[i].bottom() + 1 + kGap), free.bottomRight()), false});
    for (std::size_t i = 1; i < taken.size(); ++i) rightOf(taken[i]);
    for (const Room& room : rooms) {
        const QSize outer = (wanted + frame).boundedTo(room.area.size());
        if (outer.width() - frame.width() < smallest.width() || outer.height() - frame.height() < smallest.height())
            continue;
        const QRect at(
            QPoint(room.alignRight ? room.area.right() + 1 - outer.width() : room.area.left(), room.area.top()), outer);
        if (!Free(at, free, taken)) continue;
        window->resize(outer - frame);
        window->move(at.topLeft());
        return;
    }
    // No free room: the side of the main window with more room, over what is there.
    const QSize size = wanted.boundedTo(free.size() - frame);
    window->resize(size);
    const bool right = free.right() - main.right() >= main.left() - free.left();
    int x = right ? main.right() + 1 + kGap : main.left() - kGap - size.width() - frame.width();
    x = std::clamp(x, free.left(), std::max(free.left(), free.right() + 1 - size.width() - frame.width()));
    window->move(x, std::clamp(main.top(), free.top(),
                               std::max(free.top(), free.bottom() + 1 - size.height() - frame.height())));
}

}  // namespace ombrevale::workbench
