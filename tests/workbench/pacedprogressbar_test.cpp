// The paced bar keeps QProgressBar's numbers through any sequence of calls and
// looks the same for the same numbers; the paced label measures and looks like
// a QLabel. Both draw a burst a frame at a time and end on its last value.
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QtTest>
#include <climits>

#include "workbench/pacedlabel.h"
#include "workbench/pacedprogressbar.h"
#include "workbench/panes_events.h"

namespace {

struct Op {
    char kind;  // m: setMinimum, M: setMaximum, r: setRange(a, b), v: setValue, x: reset
    int a;
    int b;
};

template <typename Bar>
void Apply(Bar& bar, const Op& op) {
    if (op.kind == 'm') bar.setMinimum(op.a);
    if (op.kind == 'M') bar.setMaximum(op.a);
    if (op.kind == 'r') bar.setRange(op.a, op.b);
    if (op.kind == 'v') bar.setValue(op.a);
    if (op.kind == 'x') bar.reset();
}

}  // namespace

Q_DECLARE_METATYPE(QList<Op>)

class PacedProgressBarTest : public QObject {
    Q_OBJECT
private slots:
    void numbersAsQProgressBar_data() {
        QTest::addColumn<QList<Op>>("ops");
        QTest::newRow("start values") << QList<Op>{};
        QTest::newRow("steps, the last equal to the maximum")
            << QList<Op>{{'M', 9, 0}, {'m', 0, 0}, {'v', 7, 0}, {'v', 8, 0}, {'v', 9, 0}};
        QTest::newRow("value outside the range is ignored")
            << QList<Op>{{'v', 50, 0}, {'v', 101, 0}, {'v', -2, 0}, {'v', -1, 0}};
        QTest::newRow("maximum below the minimum pulls the minimum down")
            << QList<Op>{{'v', 40, 0}, {'M', -5, 0}, {'v', -7, 0}};
        QTest::newRow("minimum above the maximum pushes the maximum up")
            << QList<Op>{{'v', 40, 0}, {'m', 300, 0}, {'v', 300, 0}};
        QTest::newRow("range that keeps the value") << QList<Op>{{'v', 40, 0}, {'r', 10, 50}};
        QTest::newRow("range that loses the value") << QList<Op>{{'v', 40, 0}, {'r', 41, 50}};
        QTest::newRow("value just below a new minimum")
            << QList<Op>{{'v', 9, 0}, {'r', 10, 20}, {'v', 12, 0}, {'x', 0, 0}};
        QTest::newRow("inverted range") << QList<Op>{{'r', 20, 10}, {'v', 20, 0}};
        QTest::newRow("file length as maximum")
            << QList<Op>{{'M', 5347349, 0}, {'m', 1, 0}, {'v', 12, 0}, {'v', 4063268, 0}, {'v', 5347349, 0}};
        QTest::newRow("extremes") << QList<Op>{
            {'m', -2147483647, 0}, {'M', 2147483647, 0}, {'v', INT_MIN, 0}, {'v', 2147483647, 0},
            {'x', 0, 0},           {'m', INT_MIN, 0},    {'x', 0, 0}};
    }
    void numbersAsQProgressBar() {
        QFETCH(QList<Op>, ops);
        QProgressBar qt;
        PacedProgressBar paced;
        ops.prepend({'?', 0, 0});
        for (const Op& op : ops) {
            Apply(qt, op);
            Apply(paced, op);
            const QByteArray at = QByteArray("after ") + op.kind + ' ' + QByteArray::number(op.a);
            QVERIFY2(paced.minimum() == qt.minimum() && paced.maximum() == qt.maximum(), at);
            QVERIFY2(paced.value() == qt.value(), at);
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
