// The Font page: a line set in the font sprites on the bundled sample, glyph
// beside glyph at y = 0, each in its own palette.
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include "panes_fixture.h"
#include "support/hookrecorder.h"
#include "workbench/picturebox.h"

using panestest::Pixel;
using panestest::SpriteByte;
using panestest::StoreColour;

namespace {

int OwnPalette(int s) { return modDeclares::STYPalIndex.at(static_cast<std::size_t>(modDeclares::STYPalBase[0] + s)); }

// Checks the glyphs of sprites at x positions side by side; returns the x after the last.
int CheckGlyphs(const clsSTY& doc, const QImage& img, const QList<int>& sprites, bool transparent) {
    int x0 = 0;
    for (int s : sprites) {
        const int w = doc.GetSpriteWidth(s), h = doc.GetSpriteHeight(s);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w && x0 + x < img.width(); ++x) {
                const int c = SpriteByte(doc, s, x, y);
                const QRgb want = transparent && c == 0 ? qRgb(255, 0, 255) & 0xFFFFFFu : StoreColour(OwnPalette(s), c);
                if (Pixel(img, x0 + x, y) != want) {
                    qWarning("sprite %d pixel (%d, %d) differs", s, x, y);
                    return -1;
                }
            }
        x0 += w;
    }
    return x0;
}

}  // namespace

class PanesFontTest : public QObject {
    Q_OBJECT
    std::unique_ptr<panestest::SampleWindow> s_;
    frmSTY2& W() { return *s_->w; }

private slots:
    void init() { s_ = std::make_unique<panestest::SampleWindow>(); }
    void cleanup() { s_.reset(); }

    void line_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QList<int>>("sprites");
        QTest::addColumn<bool>("transparent");
        QTest::newRow("two exclamation marks") << "!!" << QList<int>{1366, 1366} << false;
        QTest::newRow("A is sprite 1398") << "A!" << QList<int>{1398, 1366} << false;
        QTest::newRow("a space is sprite 1365") << "B C" << QList<int>{1399, 1365, 1400} << false;
        QTest::newRow("key colour while transparent") << "Ab" << QList<int>{1398, 1431} << true;
    }
    void line() {
        QFETCH(QString, text);
        QFETCH(QList<int>, sprites);
        QFETCH(bool, transparent);
        W().Sty().DrawTransparent(transparent);
        W().txtText->setText(QStringLiteral("~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~"));
        W().cmdCreateText->click();
        W().txtText->setText(text);
        W().cmdCreateText->click();
        const QImage img = W().picFont->image();
        const int end = CheckGlyphs(W().Sty(), img, sprites, transparent);
        QVERIFY(end > 0);
        // The longer line before is wiped: past the glyphs only the background remains.
        const QRgb back = W().picFont->BackColor() & 0xFFFFFFu;
        for (int x = end; x < std::min(end + 40, img.width()); ++x) QCOMPARE(Pixel(img, x, 0), back);
        // What is drawn survives a repaint of the control.
        W().show();
        const QImage shown = W().picFont->grab().toImage().convertToFormat(QImage::Format_RGB32);
        QCOMPARE(Pixel(shown, 0, 0), Pixel(img, 0, 0));
        QCOMPARE(Pixel(shown, end - 1, 1), Pixel(img, end - 1, 1));
    }

    void emptyTextWipes() {
        W().txtText->setText(QStringLiteral("ABC"));
        W().cmdCreateText->click();
        W().txtText->clear();
        W().cmdCreateText->click();
        const QImage img = W().picFont->image();
        const QRgb back = W().picFont->BackColor() & 0xFFFFFFu;
        for (int x = 0; x < img.width(); x += 7) QCOMPARE(Pixel(img, x, 2), back);
    }

    void characterWithoutSprite() {
        // A store that ends after the glyph of "A": "Z" has no sprite and is left out, with one message.
        W().Sty().STYSpriteIndex.resize(1399);
        W().Sty().DrawTransparent(false);
        testsupport::HookRecorder hooks;
        W().txtText->setText(QStringLiteral("AZZ!"));
        W().cmdCreateText->click();
        QVERIFY(CheckGlyphs(W().Sty(), W().picFont->image(), {1398, 1366}, false) > 0);
        QCOMPARE(static_cast<int>(hooks.messages().size()), 1);
        QVERIFY(QString::fromStdString(hooks.messages()[0]).contains("\"Z\""));
    }
};

QTEST_MAIN(PanesFontTest)
#include "panes_font_test.moc"
