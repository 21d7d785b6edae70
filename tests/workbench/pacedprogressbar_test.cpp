// The paced bar and label draw a burst a frame at a time and end on its last
// value (the numbers the bar shows are checked in the progress window's test).
#include <QtTest>
#include <QtWidgets>

#include "workbench/pacedlabel.h"
#include "workbench/pacedprogressbar.h"
#include "workbench/panes_events.h"

class PacedProgressBarTest : public QObject {
    Q_OBJECT
private slots:
    // Both side by side, each painted at most once a frame and ending on the last value.
    void burstIsDrawnOnceAFrame() {
        QWidget window;
        auto* bar = new PacedProgressBar(&window);
        auto* text = new PacedLabel(QStringLiteral("Loading..."), &window);
        bar->setGeometry(10, 10, 395, 19);
        text->setGeometry(10, 40, 395, 19);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        bar->setRange(0, 999);
        QTest::qWait(40);
        QStringList bars, texts;  // what each paint showed
        new PanesEventTap(bar, QEvent::Paint, [&](QEvent*) { bars << QString::number(bar->value()); });
        new PanesEventTap(text, QEvent::Paint, [&](QEvent*) { texts << text->text(); });
        QElapsedTimer clock;
        clock.start();
        for (int v = 0; v < 1000; ++v) {
            bar->setValue(v);
            text->setText(QString::number(v));
            QCoreApplication::processEvents();
        }
        const qint64 burstMs = clock.elapsed();
        QTRY_VERIFY_WITH_TIMEOUT(bars.value(bars.size() - 1) == "999" && texts.value(texts.size() - 1) == "999", 1000);
        for (const QStringList& drawn : {bars, texts})
            QVERIFY2(drawn.size() <= burstMs / 16 + 3,
                     qPrintable(QStringLiteral("%1 paints in %2 ms").arg(drawn.size()).arg(burstMs)));
    }
};

QTEST_MAIN(PacedProgressBarTest)
#include "pacedprogressbar_test.moc"
