// The paced bar keeps QProgressBar's numbers through any sequence of calls and
// looks the same for the same numbers; the paced label measures and looks like
// a QLabel. Both draw a burst a frame at a time and end on its last value.
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QtTest>

#include "workbench/pacedlabel.h"
#include "workbench/pacedprogressbar.h"
#include "workbench/panes_events.h"

namespace {

// One call per word: m setMinimum, M setMaximum, r setRange(a,b), v setValue, x reset.
template <typename Bar>
void Apply(Bar& bar, const QString& op) {
    const QStringList n = op.mid(1).split(',');
    if (op[0] == 'm') bar.setMinimum(n[0].toInt());
    if (op[0] == 'M') bar.setMaximum(n[0].toInt());
    if (op[0] == 'r') bar.setRange(n[0].toInt(), n[1].toInt());
    if (op[0] == 'v') bar.setValue(n[0].toInt());
    if (op[0] == 'x') bar.reset();
}

}  // namespace

class PacedProgressBarTest : public QObject {
    Q_OBJECT
private slots:
    void numbersAsQProgressBar_data() {
        QTest::addColumn<QString>("ops");
        QTest::newRow("start values") << "";
        QTest::newRow("steps, the last equal to the maximum") << "M9 m0 v7 v8 v9";
        QTest::newRow("value outside the range is ignored") << "v50 v101 v-2 v-1";
        QTest::newRow("maximum below the minimum pulls the minimum down") << "v40 M-5 v-7";
        QTest::newRow("minimum above the maximum pushes the maximum up") << "v40 m300 v300";
        QTest::newRow("range that keeps the value") << "v40 r10,50";
        QTest::newRow("range that loses the value") << "v40 r41,50";
        QTest::newRow("value just below a new minimum") << "v9 r10,20 v12 x";
        QTest::newRow("inverted range") << "r20,10 v20";
        QTest::newRow("file length as maximum") << "M5347349 m1 v12 v4063268 v5347349";
        QTest::newRow("extremes") << "m-2147483647 M2147483647 v-2147483648 v2147483647 x m-2147483648 x";
    }
    void numbersAsQProgressBar() {
        QFETCH(QString, ops);
        QProgressBar qt;
        PacedProgressBar paced;
        for (const QString& op : (QStringList{"?"} + ops.split(' ', Qt::SkipEmptyParts))) {
            Apply(qt, op);
            Apply(paced, op);
            QVERIFY2(paced.minimum() == qt.minimum() && paced.maximum() == qt.maximum(), qPrintable(op));
            QVERIFY2(paced.value() == qt.value(), qPrintable(op));
        }
    }

    void looksLikeQt_data() {
        QTest::addColumn<int>("value");  // -2: the label instead
        QTest::newRow("bar, nothing yet") << -1;
        QTest::newRow("bar, empty") << 0;
        QTest::newRow("bar, a third") << 33;
        QTest::newRow("bar, full") << 100;
        QTest::newRow("label") << -2;
    }
    void looksLikeQt() {
        QFETCH(int, value);
        if (value == -2) {
            const QString text = QStringLiteral("Loading Section tile...\tPPAL");
            QLabel qt(text);
            PacedLabel paced(QStringLiteral("something else"));
            paced.setText(text);
            qt.adjustSize();
            paced.adjustSize();
            QCOMPARE(paced.size(), qt.size());
            QCOMPARE(paced.grab().toImage(), qt.grab().toImage());
            return;
        }
        QProgressBar qt;
        qt.setTextVisible(false);
        PacedProgressBar paced;
        qt.resize(395, 19);
        paced.resize(395, 19);
        qt.setValue(value);
        paced.setValue(value);
        QCOMPARE(paced.grab().toImage(), qt.grab().toImage());
    }

    void burstIsDrawnOnceAFrame_data() {
        QTest::addColumn<bool>("label");
        QTest::newRow("bar") << false;
        QTest::newRow("label") << true;
    }
    void burstIsDrawnOnceAFrame() {
        QFETCH(bool, label);
        QWidget window;
        auto* bar = label ? nullptr : new PacedProgressBar(&window);
        auto* text = label ? new PacedLabel(QStringLiteral("Loading..."), &window) : nullptr;
        QWidget* paced = label ? static_cast<QWidget*>(text) : bar;
        const auto Shown = [&] { return label ? text->text() : QString::number(bar->value()); };
        paced->setGeometry(10, 10, 395, 19);
        window.resize(420, 40);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        if (bar) bar->setRange(0, 999);
        QTest::qWait(40);
        QStringList drawn;
        new PanesEventTap(paced, QEvent::Paint, [&](QEvent*) { drawn << Shown(); });
        QElapsedTimer clock;
        clock.start();
        for (int v = 0; v < 1000; ++v) {
            if (bar) bar->setValue(v);
            if (text) text->setText(QString::number(v));
            QCoreApplication::processEvents();
        }
        const qint64 burstMs = clock.elapsed();
        QTRY_VERIFY_WITH_TIMEOUT(!drawn.isEmpty() && drawn.last() == "999", 1000);
        QVERIFY2(drawn.size() <= burstMs / 16 + 3,
                 qPrintable(QStringLiteral("%1 paints in %2 ms").arg(drawn.size()).arg(burstMs)));
    }
};

QTEST_MAIN(PacedProgressBarTest)
#include "pacedprogressbar_test.moc"
