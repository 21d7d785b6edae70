#pragma once
// The window's keys reach it while it is the active window, as on a desktop.

#include <QTest>
#include <QWidget>

namespace ombrevale::wbtest {

inline bool ShowActive(QWidget& window) {
    window.show();
    window.activateWindow();
    return QTest::qWaitForWindowActive(&window);
}

}  // namespace ombrevale::wbtest
