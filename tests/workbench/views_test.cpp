// The views a user asks for, on the bundled sample, driven by their keys and
// clicks. What they compute is tested in the style and pixel libraries; here
// each must reach the right control and show it.
#include <QtTest>
#include <QtWidgets>

#include "style/moddeclares.h"
#include "style/surfaces.h"
#include "support/hookrecorder.h"
#include "support/tempdir.h"
#include "workbench/frmsty2.h"
#include "workbench/panes_dialogs.h"
#include "workbench/picturebox.h"
#include "workbench/surfaceoverlay.h"
#include "workbench/zoomlens.h"

using modDeclares::STYCarInfo;
using modDeclares::STYPalIndex;

namespace {

QImage Rgb(const QImage& i) { return i.convertToFormat(QImage::Format_RGB32); }

// What the document draws for sprite s in physical palette p (-1: its own).
QImage Drawn(clsSTY& doc, int s, int p) {
    PictureBox box;
    box.resize(doc.GetSpriteWidth(s), doc.GetSpriteHeight(s));
    std::int16_t pal = std::int16_t(p);
    doc.RenderSprite(s, box, pal);
    return Rgb(box.image());
}

void ClickRow(QListWidget* list, int row) {
    list->scrollToItem(list->item(row));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
}

void CtrlWheel(QWidget* on, int notches) {
    for (int i = 0; i < std::abs(notches); ++i) {
        QWheelEvent e({5, 5}, on->mapToGlobal(QPointF(5, 5)), {}, {0, notches > 0 ? 120 : -120}, Qt::NoButton,
                      Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(on, &e);
    }
}

// Record 0 of the sample: sprite 0, with remaps.
int RemapPalette(int k) {
    using namespace modDeclares;
    return STYPalIndex.at(std::size_t(STYPalBase[0] + STYPalBase[1] + STYCarInfo.at(0).remaps.at(std::size_t(k))));
}

}  // namespace

class ViewsTest : public QObject {
    Q_OBJECT
    ombrevale::testsupport::TempDir dir_;
    ombrevale::testsupport::ScopedCurrentDir cwd_{dir_.path()};
    std::unique_ptr<frmSTY2> w_;
    QVariant reply_;  // the input box: a QString, or invalid for Cancel
    frmSTY2& W() { return *w_; }
    void Ctrl(QWidget* on, Qt::Key key) { QTest::keyClick(on, key, Qt::ControlModifier); }
    QPoint CellCentre(int t) { return {t % W().Cols() * 64 + 32, t / W().Cols() * 64 + 32}; }

private slots:
    void init() {
        w_ = std::make_unique<frmSTY2>(std::string(OMBREVALE_SAMPLE));
        reply_ = QVariant();
        ombrevale::panesdialogs::Install({[this](QWidget*, const QString&) {
                                              return reply_.isValid() ? std::optional<QString>(reply_.toString())
                                                                      : std::nullopt;
                                          },
                                          {},
                                          {}});
        QVERIFY(STYCarInfo.at(0).remaps.size() >= 2);
    }
    void cleanup() {
        ombrevale::panesdialogs::Install({});
        w_.reset();
    }

    // Ctrl+T tints a road cell over what was drawn and names it in the tip; again, and it is gone.
    void surfaceTint() {
        const auto types = ombrevale::surfaces::ReadSurfaces(W().Sty().STYSurfaceSpec, 992).type;
        const int road = int(std::find(types.begin(), types.end(), 3) - types.begin());
        const QPoint at = CellCentre(road);
        const QRgb drawn = W().picMain->image().pixel(at), tint = ombrevale::workbench::SurfaceTint(3).rgba();
        Ctrl(W().picMain, Qt::Key_T);
        const QRgb shown = W().picMain->grab().toImage().pixel(at);
        const double a = qAlpha(tint) / 255.0;
        QVERIFY(std::abs(qRed(shown) - (qRed(tint) * a + qRed(drawn) * (1 - a))) < 2);
        QVERIFY(std::abs(qBlue(shown) - (qBlue(tint) * a + qBlue(drawn) * (1 - a))) < 2);
        QCOMPARE(
            W().CellTip(at.x(), at.y()),
            QStringLiteral("Tile %1\nPalette: %2\nSurface: road").arg(road).arg(STYPalIndex.at(std::size_t(road))));
        Ctrl(W().picMain, Qt::Key_T);
        QCOMPARE(W().picMain->grab().toImage().pixel(at) | 0xFF000000u, drawn | 0xFF000000u);
        // A damaged list: one message, and the types as far as it is sound.
        W().Sty().STYSurfaceSpec = {5, 0, 0, 0, 7};
        ombrevale::testsupport::HookRecorder hooks;
        Ctrl(W().picMain, Qt::Key_T);
        QCOMPARE(hooks.messages().size(), std::size_t(1));
        QVERIFY(W().CellTip(CellCentre(5).x(), CellCentre(5).y()).endsWith("grass/dirt"));
    }

    void goToTile_data() {
        QTest::addColumn<QVariant>("reply");
        QTest::addColumn<int>("messages");
        QTest::newRow("500, below the first screen") << QVariant("500") << 0;
        QTest::newRow("beyond the tiles") << QVariant("992") << 1;
    }
    // Ctrl+G: in view, and the caption, number and box that a click on the cell gives.
    void goToTile() {
        QFETCH(QVariant, reply);
        QFETCH(int, messages);
        reply_ = reply;
        ombrevale::testsupport::HookRecorder hooks;
        Ctrl(W().picMain, Qt::Key_G);
        QCOMPARE(int(hooks.messages().size()), messages);
        frmSTY2 clicked{std::string(OMBREVALE_SAMPLE)};
        if (reply == "500") clicked.picMain_MouseUp(1, 0, CellCentre(500).x(), CellCentre(500).y());
        QCOMPARE(W().lblIdx->text(), clicked.lblIdx->text());
        QCOMPARE(W().picMain->Tag, clicked.picMain->Tag);
        QCOMPARE(W().picMain->image(), clicked.picMain->image());
        const int top = W().picMain->y() + CellCentre(500).y() - 32;
        QCOMPARE(top >= 0 && top + 64 <= W().picCont->height(), reply == "500");
    }

    void findSprite_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QString>("caption");  // of the row selected; empty: a message instead
        QTest::newRow("group and number") << "font 40"
                                          << "Font: 40";
        QTest::newRow("sprite number") << "1366"
                                       << "Font: 1";
        QTest::newRow("no such car") << "car 999"
                                     << "";
    }
    void findSprite() {
        QFETCH(QString, reply);
        QFETCH(QString, caption);
        W().MainTab->setCurrentIndex(1);
        reply_ = reply;
        ombrevale::testsupport::HookRecorder hooks;
        Ctrl(W().lstSprites, Qt::Key_F);
        QCOMPARE(hooks.messages().size(), std::size_t(caption.isEmpty()));
        QCOMPARE(W().lstSprites->currentItem() ? W().lstSprites->currentItem()->text() : QString(), caption);
    }

    // Ctrl+U lists a remap of the chosen palette; a click shows the car in it. It follows the palette chosen.
    void paletteUsage() {
        const int p = RemapPalette(1);
        W().MainTab->setCurrentIndex(2);
        W().lstPalettes->setCurrentRow(p);
        Ctrl(W().lstPalettes, Qt::Key_U);
        const auto found =
            W().lstUsage->findItems(QStringLiteral("Car: 1, remap %1").arg(STYCarInfo[0].remaps[1]), Qt::MatchExactly);
        QCOMPARE(found.size(), 1);
        ClickRow(W().lstUsage, W().lstUsage->row(found[0]));
        QCOMPARE(W().lstRemaps->currentRow(), 2);
        const QImage want = Drawn(W().Sty(), 0, p);
        QCOMPARE(Rgb(W().picSprite->image().copy(want.rect())), want);
    }

    void zoom_data() {
        QTest::addColumn<bool>("font");
        QTest::addColumn<int>("notches");
        QTest::addColumn<int>("zoom");
        QTest::newRow("sprite with a delta, 2x") << false << 1 << 2;
        QTest::newRow("sprite with a delta, 6x, grid") << false << 4 << 6;
        QTest::newRow("font text, no step past 8x") << true << 9 << 8;
    }
    // Ctrl+wheel: a square of zoom x zoom a pixel, of what is drawn; a grid from 4x; the colour in the tip.
    void zoom() {
        QFETCH(bool, font);
        QFETCH(int, notches);
        QFETCH(int, zoom);
        W().txtText->setText("Ab!");
        W().cmdCreateText->click();
        W().lstSprites->setCurrentRow(0);
        W().cmbDeltas->setCurrentIndex(2);
        PictureBox* box = font ? W().picFont : W().picSprite;
        const QImage drawn = Rgb(box->image());
        CtrlWheel(box, notches);
        const QImage shown = Rgb(box->grab().toImage());
        for (int y = 0; y < 15; ++y)
            for (int x = 0; x < 15; ++x) {
                QCOMPARE(shown.pixel(x * zoom + zoom - 1, y * zoom + zoom - 1), drawn.pixel(x, y));
                QCOMPARE(shown.pixel(x * zoom, y * zoom + 1) == drawn.pixel(x, y), zoom < 4);
            }
        const QRgb c = drawn.pixel(3, 5);
        QCOMPARE((font ? W().picFontZoom : W().picSpriteZoom)->TipAt({3 * zoom + 1, 5 * zoom + 1}),
                 QStringLiteral("x 3 y 5 Red: %1 Green: %2 Blue: %3").arg(qRed(c)).arg(qGreen(c)).arg(qBlue(c)));
        CtrlWheel(box, -9);
        QCOMPARE(Rgb(box->grab().toImage()), drawn);
    }

    // Ctrl+R: the car in its own palette and each remap, labelled; a click chooses that remap.
    void allRemaps() {
        W().MainTab->setCurrentIndex(1);
        W().lstSprites->setCurrentRow(0);
        Ctrl(W().lstSprites, Qt::Key_R);
        QListWidget* strip = W().lstAllRemaps;
        QCOMPARE(strip->count(), W().lstRemaps->count());
        QCOMPARE(strip->item(2)->text(), QStringLiteral("remap %1").arg(STYCarInfo[0].remaps[1]));
        const QImage want = Drawn(W().Sty(), 0, RemapPalette(1));
        QCOMPARE(Rgb(strip->item(2)->icon().pixmap(want.size()).toImage()), want);
        ClickRow(strip, 2);
        QCOMPARE(W().lstRemaps->currentRow(), 2);
        QCOMPARE(Rgb(W().picSprite->image().copy(want.rect())), want);
        W().lstSprites->setCurrentRow(W().lstSprites->count() - 1);
        QCOMPARE(strip->count(), 0);
    }
};

QTEST_MAIN(ViewsTest)
#include "views_test.moc"
