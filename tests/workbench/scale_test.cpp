// At a scale of 2 the window's text keeps its point size and is drawn at the
// device's resolution: a label's ink is twice as wide as at scale 1, not the
// tiny, widely spaced letters of a bitmap font that has no glyphs that size.
#include <QtTest>
#include <QtWidgets>

#include "workbench/frmsty2.h"

namespace {

constexpr char kText[] = "Palette: 123  Index: 456  Rendering...";

// The width and height in device pixels of what the window's font draws of kText.
QSize Ink() {
    const frmSTY2 window(std::string(OMBREVALE_SAMPLE));
    QLabel label(QString::fromLatin1(kText));
    label.setFont(window.font());
    label.adjustSize();
    const QImage shot = label.grab().toImage();
    const QRgb back = shot.pixel(0, 0);
    QRect ink;
    for (int y = 0; y < shot.height(); ++y)
        for (int x = 0; x < shot.width(); ++x)
            if (shot.pixel(x, y) != back) ink |= QRect(x, y, 1, 1);
    return ink.size();
}

QSize InkAtScale(const char* scale) {
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::fromLatin1(scale));
    p.setProcessEnvironment(env);
    p.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--ink")});
    p.waitForFinished(30000);
    const auto words = p.readAllStandardOutput().trimmed().split(' ');
    return words.size() == 2 ? QSize(words[0].toInt(), words[1].toInt()) : QSize();
}

}  // namespace

class ScaleTest : public QObject {
    Q_OBJECT
private slots:
    void textKeepsItsSizeAtScaleTwo() {
        const QSize one = InkAtScale("1"), two = InkAtScale("2");
        const QString seen = QStringLiteral("ink %1 x %2 at scale 1, %3 x %4 at 2")
                                 .arg(one.width())
                                 .arg(one.height())
                                 .arg(two.width())
                                 .arg(two.height());
        QVERIFY2(one.width() > 50 && one.height() > 5, qPrintable(seen));
        // Letters as tall as twice theirs, not the bitmap's small strike spaced out to the width.
        QVERIFY2(std::abs(two.width() - 2 * one.width()) <= 8, qPrintable(seen));
        QVERIFY2(std::abs(two.height() - 2 * one.height()) <= 3, qPrintable(seen));
    }
};

int main(int argc, char** argv) {
    if (argc == 2 && QByteArray(argv[1]) == "--ink") {
        QApplication app(argc, argv);
        const QSize ink = Ink();
        std::printf("%d %d\n", ink.width(), ink.height());
        return 0;
    }
    QApplication app(argc, argv);
    ScaleTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "scale_test.moc"
