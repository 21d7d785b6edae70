// The Palettes page: the strip of 256 bands, the read-out under the pointer,
// taking a colour and writing it back into the store.
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTabWidget>
#include <QtTest>

#include "panes_fixture.h"
#include "support/hookrecorder.h"
#include "workbench/picturebox.h"

using modDeclares::STYPalData;
using panestest::Pixel;
using panestest::StoreColour;

namespace {

// Every byte of the palette store, to count what a write changed.
std::vector<std::uint8_t> AllPaletteBytes() {
    std::vector<std::uint8_t> out;
    for (const auto& p : STYPalData) out.insert(out.end(), p.begin(), p.end());
    return out;
}

int ChangedBytes(const std::vector<std::uint8_t>& a, const std::vector<std::uint8_t>& b) {
    int n = 0;
    for (std::size_t i = 0; i < a.size(); ++i) n += a[i] != b[i];
    return n;
}

void SetColour(int p, int c, int red, int green, int blue) {
    auto& pal = STYPalData.at(static_cast<std::size_t>(p));
    pal[static_cast<std::size_t>(c * 4)] = static_cast<std::uint8_t>(blue);
    pal[static_cast<std::size_t>(c * 4 + 1)] = static_cast<std::uint8_t>(green);
    pal[static_cast<std::size_t>(c * 4 + 2)] = static_cast<std::uint8_t>(red);
}

}  // namespace

class PanesPalettesTest : public QObject {
    Q_OBJECT
    std::unique_ptr<panestest::SampleWindow> s_;
    frmSTY2& W() { return *s_->w; }

private slots:
    void init() { s_ = std::make_unique<panestest::SampleWindow>(); }
    void cleanup() { s_.reset(); }

    void strip_data() {
        QTest::addColumn<int>("palette");
        QTest::newRow("first item is palette 0") << 0;
        QTest::newRow("second page of palettes") << 70;
    }
    void strip() {
        QFETCH(int, palette);
        QVERIFY(static_cast<int>(STYPalData.size()) > palette);
        W().lstPalettes->setCurrentRow(palette);
        QCOMPARE(static_cast<int>(W().iSelNum), palette);
        QCOMPARE(QString::fromStdString(W().sSelKind), QStringLiteral("p"));
        const QImage img = W().picPalette->image();
        const int h = img.height();
        for (int c = 0; c < 256; ++c) {
            // The first pixel row of band c, top to bottom, across the whole width.
            const int y = (c * h + 255) / 256;
            QCOMPARE(Pixel(img, 0, y), StoreColour(palette, c));
            QCOMPARE(Pixel(img, img.width() - 1, y), StoreColour(palette, c));
        }
    }

    void readTakeWrite() {
        SetColour(3, 12, 255, 0, 64);
        W().lstPalettes->setCurrentRow(3);
        W().picPalette_MouseMove(12.7);
        QCOMPARE(W().lblPalInfo->text(), QStringLiteral("Index: 12 Red: 255 Green: 0 Blue: 64"));
        W().picPalette_MouseUp(12.2);
        QCOMPARE(W().txtIdx->text(), QStringLiteral("12"));
        QCOMPARE(W().txtRed->text(), QStringLiteral("255"));
        QCOMPARE(W().txtGreen->text(), QStringLiteral("0"));
        QCOMPARE(W().txtBlue->text(), QStringLiteral("64"));
        QCOMPARE(W().lblColour->palette().color(QPalette::Window), QColor(255, 0, 64));

        W().txtRed->setText(QStringLiteral("1"));
        W().txtGreen->setText(QStringLiteral("2"));
        W().txtBlue->setText(QStringLiteral("3"));
        const auto before = AllPaletteBytes();
        const std::uint8_t fourth = STYPalData[3][12 * 4 + 3];
        W().lblColour_Click();
        QCOMPARE(ChangedBytes(before, AllPaletteBytes()), 3);
        QCOMPARE(StoreColour(3, 12), qRgb(1, 2, 3) & 0xFFFFFFu);
        QCOMPARE(STYPalData[3][12 * 4 + 3], fourth);
        // The strip shows the new colour; the big box still shows the colour taken.
        const QImage img = W().picPalette->image();
        QCOMPARE(Pixel(img, 5, (12 * img.height() + 255) / 256), qRgb(1, 2, 3) & 0xFFFFFFu);
        QCOMPARE(W().lblColour->palette().color(QPalette::Window), QColor(255, 0, 64));
    }

    void pointerEventsReachTheHandlers() {
        SetColour(0, 200, 9, 8, 7);
        W().show();
        W().lstPalettes->setCurrentRow(0);
        const int y = (200 * W().picPalette->height() + 255) / 256;
        W().MainTab->setCurrentIndex(2);
        QMouseEvent move(QEvent::MouseMove, QPointF(10, y), W().picPalette->mapToGlobal(QPointF(10, y)), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(W().picPalette, &move);
        QCOMPARE(W().lblPalInfo->text(), QStringLiteral("Index: 200 Red: 9 Green: 8 Blue: 7"));
        QTest::mouseClick(W().picPalette, Qt::LeftButton, {}, QPoint(10, y));
        QCOMPARE(W().txtIdx->text(), QStringLiteral("200"));
        W().txtRed->setText(QStringLiteral("100"));
        QTest::mouseClick(W().lblColour, Qt::LeftButton);
        QCOMPARE(StoreColour(0, 200), qRgb(100, 8, 7) & 0xFFFFFFu);
    }

    void refusedWrites_data() {
        QTest::addColumn<QString>("idx");
        QTest::addColumn<QString>("red");
        QTest::addColumn<int>("messages");
        QTest::newRow("no colour taken yet") << ""
                                             << "10" << 1;
        QTest::newRow("red above 255") << "12"
                                       << "256" << 1;
        QTest::newRow("red below 0") << "12"
                                     << "-1" << 1;
        QTest::newRow("red empty") << "12"
                                   << "" << 1;
        QTest::newRow("red not a number") << "12"
                                          << "red" << 1;
    }
    void refusedWrites() {
        QFETCH(QString, idx);
        QFETCH(QString, red);
        QFETCH(int, messages);
        W().lstPalettes->setCurrentRow(1);
        W().txtIdx->setText(idx);
        W().txtRed->setText(red);
        W().txtGreen->setText(QStringLiteral("5"));
        W().txtBlue->setText(QStringLiteral("5"));
        const auto before = AllPaletteBytes();
        testsupport::HookRecorder hooks;
        W().lblColour_Click();
        QCOMPARE(ChangedBytes(before, AllPaletteBytes()), 0);
        QCOMPARE(static_cast<int>(hooks.messages().size()), messages);
    }

    void nothingWithoutAPalette_data() {
        QTest::addColumn<double>("y");
        QTest::newRow("inside") << 10.0;
        QTest::newRow("above the strip") << -0.5;
        QTest::newRow("below the strip") << 256.0;
    }
    void nothingWithoutAPalette() {
        QFETCH(double, y);
        W().lstPalettes->setCurrentRow(-1);
        W().txtIdx->setText(QStringLiteral("4"));
        W().txtRed->setText(QStringLiteral("4"));
        W().txtGreen->setText(QStringLiteral("4"));
        W().txtBlue->setText(QStringLiteral("4"));
        const auto before = AllPaletteBytes();
        W().picPalette_MouseMove(y);
        W().picPalette_MouseUp(y);
        W().lblColour_Click();
        QCOMPARE(W().lblPalInfo->text(), QString());
        QCOMPARE(W().txtIdx->text(), QStringLiteral("4"));
        QCOMPARE(ChangedBytes(before, AllPaletteBytes()), 0);
        // With a palette, a pointer beyond the strip changes nothing either.
        W().lstPalettes->setCurrentRow(0);
        if (y < 0 || y >= 256) {
            W().picPalette_MouseMove(y);
            W().picPalette_MouseUp(y);
            QCOMPARE(W().lblPalInfo->text(), QString());
            QCOMPARE(W().txtIdx->text(), QStringLiteral("4"));
        }
    }

    // The layout was drawn for Windows' fonts; their stand-ins must leave every caption its room.
    void captionsFitTheirPlaces() {
        const QList<QPair<QString, QLineEdit*>> rows = {
            {"Index:", W().txtIdx}, {"Red:", W().txtRed}, {"Green:", W().txtGreen}, {"Blue:", W().txtBlue}};
        for (const auto& [caption, box] : rows) {
            const QLabel* label = nullptr;
            for (const QLabel* l : W().findChildren<QLabel*>())
                if (l->text() == caption) label = l;
            QVERIFY2(label, qPrintable(caption));
            QVERIFY2(label->x() + label->fontMetrics().horizontalAdvance(caption) < box->x(), qPrintable(caption));
        }
        QVERIFY(W().Label8->heightForWidth(W().Label8->width()) <= W().Label8->height());
    }
};

QTEST_MAIN(PanesPalettesTest)
#include "panes_palettes_test.moc"
