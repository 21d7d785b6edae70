#include "workbench/holdmenu.h"

#include <QMenu>
#include <QMouseEvent>
#include <QStyle>
#include <QTimer>
#include <QToolButton>

#include "workbench/panes_events.h"

namespace ombrevale::workbench {

void MenuOnHold(QToolButton* button, QMenu* menu) {
    auto* hold = new QTimer(button);
    hold->setSingleShot(true);
    hold->setInterval(button->style()->styleHint(QStyle::SH_ToolButton_PopupDelay, nullptr, button));
    QObject::connect(hold, &QTimer::timeout, button, [button, menu] {
        if (!button->isDown()) return;
        // Up first: the release then ends in the menu and the button's command does not run.
        button->setDown(false);
        menu->exec(button->mapToGlobal(QPoint(0, button->height())));
    });
    new PanesEventTap(button, QEvent::MouseButtonPress, [hold](QEvent* e) {
        if (static_cast<QMouseEvent*>(e)->button() == Qt::LeftButton) hold->start();
    });
    new PanesEventTap(button, QEvent::MouseButtonRelease, [hold](QEvent*) { hold->stop(); });
}

}  // namespace ombrevale::workbench
