// The paced bar must keep QProgressBar's numbers through any sequence of calls,
// look the same for the same numbers, and still end up showing the last value;
// the paced label must measure and look like a QLabel and end on its last text.
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QtTest>
#include <climits>

#include "workbench/pacedlabel.h"
#include "workbench/pacedprogressbar.h"

namespace {

struct Op {
    char kind;  // m: setMinimum, M: setMaximum, r: setRange(a, b), v: setValue, x: reset
    int a;
    int b;
};

template <typename Bar>
void Apply(Bar& bar, const Op& op) {
    switch (op.kind) {
        case 'm':
            bar.setMinimum(op.a);
            break;
        case 'M':
            bar.setMaximum(op.a);
            break;
        case 'r':
            bar.setRange(op.a, op.b);
            break;
        case 'v':
            bar.setValue(op.a);
            break;
        case 'x':
            bar.reset();
            break;
    }
}

}  // namespace

Q_DECLARE_METATYPE(QList<Op>)

class PacedProgressBarTest : public QObject {
    Q_OBJECT
private slots:
    void numbersAsQProgressBar_data() {
        QTest::addColumn<QList<Op>>("ops");
        QTest::newRow("design values") << QList<Op>{};
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
        QTest::newRow("value just below a new minimum survives")
            << QList<Op>{{'v', 9, 0}, {'r', 10, 20}, {'v', 12, 0}, {'x', 0, 0}};
        QTest::newRow("inverted range") << QList<Op>{{'r', 20, 10}, {'v', 20, 0}};
        QTest::newRow("file length as maximum, sections as steps")
            << QList<Op>{{'M', 5347349, 0}, {'m', 1, 0}, {'v', 12, 0}, {'v', 4063268, 0}, {'v', 5347349, 0}};
        QTest::newRow("extremes") << QList<Op>{
            {'m', -2147483647, 0}, {'M', 2147483647, 0}, {'v', INT_MIN, 0}, {'v', 2147483647, 0},
            {'x', 0, 0},           {'m', INT_MIN, 0},    {'x', 0, 0}};
    }
    void numbersAsQProgressBar() {
        QFETCH(QList<Op>, ops);
        QProgressBar qt;
        PacedProgressBar paced;
        QCOMPARE(paced.minimum(), qt.minimum());
        QCOMPARE(paced.maximum(), qt.maximum());
        QCOMPARE(paced.value(), qt.value());
        for (const Op& op : ops) {
            Apply(qt, op);
            Apply(paced, op);
            const QByteArray at = QByteArray("after ") + op.kind + ' ' + QByteArray::number(op.a);
            QVERIFY2(paced.minimum() == qt.minimum(), at);
            QVERIFY2(paced.maximum() == qt.maximum(), at);
            QVERIFY2(paced.value() == qt.value(), at);
        }
    }

    void looksLikeQProgressBar_data() {
        QTest::addColumn<int>("value");
        QTest::newRow("nothing yet") << -1;
        QTest::newRow("empty") << 0;
        QTest::newRow("a third") << 33;
        QTest::newRow("full") << 100;
    }
    void looksLikeQProgressBar() {
        QFETCH(int, value);
        QProgressBar qt;
        qt.setTextVisible(false);
        PacedProgressBar paced;
        qt.resize(395, 19);
        paced.resize(395, 19);
        qt.setValue(value);
        paced.setValue(value);
        QCOMPARE(paced.grab().toImage(), qt.grab().toImage());
    }

    // A burst of values faster than frames is drawn a frame at a time and
    // still ends with the last value on screen.
    void burstIsDrawnOnceAFrame() {
        QWidget window;
        auto* paced = new PacedProgressBar(&window);
        paced->setGeometry(10, 10, 395, 19);
        window.resize(420, 40);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        paced->setRange(0, 999);
        QTest::qWait(40);
        QList<int> drawn;
        struct Recorder : QObject {
            QList<int>* values;
            explicit Recorder(QList<int>* v) : values(v) {}
            bool eventFilter(QObject* o, QEvent* e) override {
                if (e->type() == QEvent::Paint) values->append(static_cast<PacedProgressBar*>(o)->value());
                return false;
            }
        } recorder(&drawn);
        paced->installEventFilter(&recorder);
        QElapsedTimer clock;
        clock.start();
        for (int v = 0; v < 1000; ++v) {
            paced->setValue(v);
            QCoreApplication::processEvents();
        }
        const qint64 burstMs = clock.elapsed();
        QTRY_VERIFY_WITH_TIMEOUT(!drawn.isEmpty() && drawn.last() == 999, 1000);
        const qint64 frames = burstMs / 16 + 2;
        QVERIFY2(drawn.size() <= frames + 1,
                 qPrintable(QStringLiteral("%1 paints in %2 ms").arg(drawn.size()).arg(burstMs)));
    }

    void labelLooksLikeQLabel_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("start") << QStringLiteral("Loading...");
        QTest::newRow("a section") << QStringLiteral("Loading Section TILE...");
        QTest::newRow("lower-case tag") << QStringLiteral("Loading Section tile...");
        QTest::newRow("tab") << QStringLiteral("Saving\tPPAL...");
    }
    void labelLooksLikeQLabel() {
        QFETCH(QString, text);
        QLabel qt(text);
        PacedLabel paced(QStringLiteral("something else"));
        paced.setText(text);
        qt.adjustSize();
        paced.adjustSize();
        QCOMPARE(paced.size(), qt.size());
        QCOMPARE(paced.grab().toImage(), qt.grab().toImage());
    }

    // A section a step: the label is drawn a frame at a time and ends on the last text.
    void labelBurstEndsOnItsLastText() {
        QWidget window;
        auto* paced = new PacedLabel(QStringLiteral("Loading..."), &window);
        paced->setGeometry(10, 10, 300, 20);
        window.resize(320, 40);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTest::qWait(40);
        int paints = 0;
        QString lastDrawn;
        struct Recorder : QObject {
            int* paints;
            QString* last;
            Recorder(int* p, QString* l) : paints(p), last(l) {}
            bool eventFilter(QObject* o, QEvent* e) override {
                if (e->type() == QEvent::Paint) {
                    ++*paints;
                    *last = static_cast<PacedLabel*>(o)->text();
                }
                return false;
            }
        } recorder(&paints, &lastDrawn);
        paced->installEventFilter(&recorder);
        QElapsedTimer clock;
        clock.start();
        for (int s = 0; s < 200; ++s) {
            paced->setText(QStringLiteral("Loading Section %1...").arg(s));
            QCoreApplication::processEvents();
        }
        const qint64 burstMs = clock.elapsed();
        QTRY_COMPARE_WITH_TIMEOUT(lastDrawn, QStringLiteral("Loading Section 199..."), 1000);
        QVERIFY2(paints <= burstMs / 16 + 3, qPrintable(QStringLiteral("%1 paints in %2 ms").arg(paints).arg(burstMs)));
    }
};

QTEST_MAIN(PacedProgressBarTest)
#include "pacedprogressbar_test.moc"
