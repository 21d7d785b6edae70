// The paced bar keeps QProgressBar's numbers through any sequence of calls;
// it and the paced label draw a burst a frame at a time and end on its last value.
#include <QtTest>
#include <QtWidgets>

#include "workbench/pacedlabel.h"
#include "workbench/pacedprogressbar.h"
#include "workbench/panes_events.h"

// One call per word: m setMinimum, M setMaximum, r setRange(a,b), v setValue, x reset.
template <typename Bar>
static void Apply(Bar& bar, const QString& op) {
    const QStringList n = op.mid(1).split(',');
    if (op[0] == 'm') bar.setMinimum(n[0].toInt());
    if (op[0] == 'M') bar.setMaximum(n[0].toInt());
    if (op[0] == 'r') bar.setRange(n[0].toInt(), n[1].toInt());
    if (op[0] == 'v') bar.setValue(n[0].toInt());
    if (op[0] == 'x') bar.reset();
}

class PacedProgressBarTest : public QObject {
    Q_OBJECT
private slots:
    void numbersAsQProgressBar_data() {
        QTest::addColumn<QString>("ops");
        QTest::newRow("steps to the maximum") << "M9 m0 v7 v8 v9";
        QTest::newRow("value outside the range is ignored") << "v50 v101 v-2 v-1";
        QTest::newRow("maximum below the minimum pulls the minimum down") << "v40 M-5 v-7";
        QTest::newRow("minimum above the maximum pushes the maximum up") << "v40 m300 v300";
        QTest::newRow("a range that keeps the value, then one that loses it") << "v40 r10,50 r41,50";
        QTest::newRow("reset") << "v9 r10,20 v12 x";
        QTest::newRow("inverted range") << "r20,10 v20";
        QTest::newRow("extremes") << "m-2147483647 M2147483647 v-2147483648 v2147483647 x m-2147483648 x";
    }
    void numbersAsQProgressBar() {
        QFETCH(QString, ops);
        QProgressBar qt;
        PacedProgressBar paced;
        for (const QString& op : (QStringList{"?"} + ops.split(' ', Qt::SkipEmptyParts))) {
            Apply(qt, op);
            Apply(paced, op);
            QVERIFY2(paced.minimum() == qt.minimum() && paced.maximum() == qt.maximum() && paced.value() == qt.value(),
                     qPrintable(op));
        }
    }

    // Both side by side, each painted at most once a frame and ending on the last value.
    void burstIsDrawnOnceAFrame() {
        QWidget window;
        auto* bar = new PacedProgressBar(&window);
        auto* text = new PacedLabel(QStringLiteral("Loading..."), &window);
        bar->setGeometry(10, 10, 395, 19);
        text->setGeometry(10, 40, 395, 19);
        window.resize(420, 70);
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
