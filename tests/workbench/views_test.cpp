// The views a user asks for, on the bundled sample: each driven by its keys
// or clicks. What the views compute is tested with the style and pixel
// libraries; here each must be wired to the right control and show it.
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

namespace {

constexpr int kCell = 64;

// The first tile of a type on the sample's sheet.
int TileOfType(const clsSTY& doc, int type) {
    const auto map = ombrevale::surfaces::ReadSurfaces(doc.STYSurfaceSpec, doc.GetNumOfTiles());
    for (std::size_t t = 0; t < map.type.size(); ++t)
        if (map.type[t] == type) return int(t);
    return -1;
}

bool Near(QRgb a, QRgb b) {
    return std::abs(qRed(a) - qRed(b)) <= 2 && std::abs(qGreen(a) - qGreen(b)) <= 2 &&
           std::abs(qBlue(a) - qBlue(b)) <= 2;
}

QRgb Over(QRgb under, QColor tint) {
    const double a = tint.alphaF();
    return qRgb(int(tint.red() * a + qRed(under) * (1 - a) + 0.5),
                int(tint.green() * a + qGreen(under) * (1 - a) + 0.5),
                int(tint.blue() * a + qBlue(under) * (1 - a) + 0.5));
}

std::int16_t RemapPalette(int m) {
    using namespace modDeclares;
    return STYPalIndex.at(std::size_t(STYPalBase[0] + STYPalBase[1] + m));
}

// What the document draws for sprite s in physical palette p (-1: its own).
QImage Drawn(clsSTY& doc, int s, int p) {
    PictureBox box;
    box.resize(doc.GetSpriteWidth(s), doc.GetSpriteHeight(s));
    std::int16_t pal = std::int16_t(p);
    doc.RenderSprite(s, box, pal);
    return box.image().convertToFormat(QImage::Format_RGB32);
}

void ClickRow(QListWidget* list, int row) {
    list->scrollToItem(list->item(row));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
}

void CtrlWheel(QWidget* on, int steps) {
    for (int i = 0; i < std::abs(steps); ++i) {
        QWheelEvent e(QPointF(5, 5), on->mapToGlobal(QPointF(5, 5)), {}, {0, steps > 0 ? 120 : -120}, Qt::NoButton,
                      Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(on, &e);
    }
}

// The first car sprite whose record has two remaps or more, and that record.
std::pair<int, int> CarWithRemaps() {
    long n = 0;
    const auto& cars = modDeclares::STYCarInfo;
    for (std::size_t r = 0; r < cars.size(); ++r) {
        if (r > 0) n += cars[r].sprite;
        if (cars[r].remaps.size() >= 2 && (r == 0 || cars[r].sprite == 1)) return {int(n), int(r)};
    }
    return {-1, -1};
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
    // Centre of tile t's cell in sheet pixels.
    QPoint CellCentre(int t) { return {t % W().Cols() * kCell + kCell / 2, t / W().Cols() * kCell + kCell / 2}; }

private slots:
    void init() {
        w_ = std::make_unique<frmSTY2>(std::string(OMBREVALE_SAMPLE));
        reply_ = QVariant();
        ombrevale::panesdialogs::Install({[this](QWidget*, const QString&) {
                                              return reply_.isValid() ? std::optional<QString>(reply_.toString())
                                                                      : std::nullopt;
                                          },
                                          {}});
    }
    void cleanup() {
        ombrevale::panesdialogs::Install({});
        w_.reset();
    }

    // Ctrl+T tints a road cell and leaves a normal one; again, and the sheet is as drawn.
    void surfaceTint() {
        const int road = TileOfType(W().Sty(), 3), normal = TileOfType(W().Sty(), 1);
        QVERIFY(road >= 0 && normal >= 0);
        const QPoint r = CellCentre(road), n = CellCentre(normal);
        QVERIFY(!W().SurfacesShown());
        Ctrl(W().picMain, Qt::Key_T);
        QVERIFY(W().SurfacesShown());
        QImage shown = W().picMain->grab().toImage();
        const QImage drawn = W().picMain->image();
        QVERIFY(Near(shown.pixel(r), Over(drawn.pixel(r), ombrevale::workbench::SurfaceTint(3))));
        QCOMPARE(shown.pixel(n) | 0xFF000000u, drawn.pixel(n) | 0xFF000000u);
        const QString tip = W().CellTip(r.x(), r.y());
        QCOMPARE(tip, QStringLiteral("Tile %1\nPalette: %2\nSurface: road")
                          .arg(road)
                          .arg(modDeclares::STYPalIndex.at(std::size_t(road))));
        Ctrl(W().picMain, Qt::Key_T);
        shown = W().picMain->grab().toImage();
        QCOMPARE(shown.pixel(r) | 0xFF000000u, drawn.pixel(r) | 0xFF000000u);
    }

    // A damaged list: the types as far as sound, and one message.
    void damagedSurfaceList() {
        W().Sty().STYSurfaceSpec = {5, 0, 0, 0, 7};
        ombrevale::testsupport::HookRecorder hooks;
        Ctrl(W().picMain, Qt::Key_T);
        QCOMPARE(hooks.messages().size(), std::size_t(1));
        QVERIFY(W().CellTip(CellCentre(5).x(), CellCentre(5).y()).endsWith("grass/dirt"));
    }

    void goToTile_data() {
        QTest::addColumn<QVariant>("reply");
        QTest::addColumn<int>("tile");  // -1: nothing selected
        QTest::addColumn<int>("messages");
        QTest::newRow("500, below the first screen") << QVariant("500") << 500 << 0;
        QTest::newRow("0") << QVariant(" 0 ") << 0 << 0;
        QTest::newRow("last tile") << QVariant("991") << 991 << 0;
        QTest::newRow("beyond the tiles") << QVariant("992") << -1 << 1;
        QTest::newRow("not a number") << QVariant("road") << -1 << 1;
        QTest::newRow("Cancel") << QVariant() << -1 << 0;
    }
    // The same caption, number and box as a click on the cell, and the cell in view.
    void goToTile() {
        QFETCH(QVariant, reply);
        QFETCH(int, tile);
        QFETCH(int, messages);
        reply_ = reply;
        ombrevale::testsupport::HookRecorder hooks;
        Ctrl(W().picMain, Qt::Key_G);
        QCOMPARE(int(hooks.messages().size()), messages);
        if (tile < 0) {
            QCOMPARE(W().picMain->Tag, QStringLiteral("-1"));
            return;
        }
        const QPoint at = CellCentre(tile);
        const int top = W().picMain->y() + at.y() - kCell / 2;
        QVERIFY(top >= 0 && top + kCell <= W().picCont->height());
        const QString caption = W().lblIdx->text();
        const QImage sheet = W().picMain->image();
        frmSTY2 clicked{std::string(OMBREVALE_SAMPLE)};
        clicked.picMain_MouseUp(1, 0, at.x(), at.y());
        QCOMPARE(caption, clicked.lblIdx->text());
        QCOMPARE(W().picMain->Tag, clicked.picMain->Tag);
        QCOMPARE(W().sSelKind, std::string("t"));
        QCOMPARE(sheet, clicked.picMain->image());
    }

    void findSprite_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QString>("row");  // the caption selected; empty: refused
        QTest::newRow("car 12") << "car 12"
                                << "Car: 12";
        QTest::newRow("ped 3") << "ped 3"
                               << "Ped: 3";
        QTest::newRow("font 40") << "font 40"
                                 << "Font: 40";
        QTest::newRow("sprite number") << "1366"
                                       << "";
        QTest::newRow("no such car") << "car 999"
                                     << "";
    }
    void findSprite() {
        QFETCH(QString, reply);
        QFETCH(QString, row);
        W().MainTab->setCurrentIndex(1);
        reply_ = reply;
        ombrevale::testsupport::HookRecorder hooks;
        Ctrl(W().lstSprites, Qt::Key_F);
        const bool number = reply == "1366";
        if (row.isEmpty() && !number) {
            QCOMPARE(hooks.messages().size(), std::size_t(1));
            QCOMPARE(W().lstSprites->currentRow(), -1);
            return;
        }
        QVERIFY(hooks.messages().empty());
        if (number)
            QCOMPARE(W().lstSprites->currentRow(), 1366);
        else
            QCOMPARE(W().lstSprites->currentItem()->text(), row);
        QCOMPARE(int(W().iSelNum), W().lstSprites->currentRow());
    }

    void paletteUsage_data() {
        QTest::addColumn<QString>("kind");
        QTest::newRow("a tile") << "tile";
        QTest::newRow("a sprite") << "sprite";
        QTest::newRow("a car remap") << "remap";
    }
    // Ctrl+U lists the pictures of the chosen palette; a click on one goes to it.
    void paletteUsage() {
        QFETCH(QString, kind);
        using namespace modDeclares;
        const auto [car, record] = CarWithRemaps();
        QVERIFY(car >= 0);
        const int m = STYCarInfo[std::size_t(record)].remaps[1];
        const int p = kind == "tile"     ? STYPalIndex.at(500)
                      : kind == "sprite" ? STYPalIndex.at(std::size_t(STYPalBase[0] + car))
                                         : RemapPalette(m);
        const QString want = kind == "tile" ? QStringLiteral("Tile 500")
                             : kind == "sprite"
                                 ? W().lstSprites->item(car)->text()
                                 : QStringLiteral("%1, remap %2").arg(W().lstSprites->item(car)->text()).arg(m);
        W().MainTab->setCurrentIndex(2);
        W().lstPalettes->setCurrentRow(p);
        QVERIFY(!W().lstUsage);
        Ctrl(W().lstPalettes, Qt::Key_U);
        QVERIFY(W().lstUsage && W().lstUsage->isVisible());
        const auto found = W().lstUsage->findItems(want, Qt::MatchExactly);
        QCOMPARE(found.size(), 1);
        ClickRow(W().lstUsage, W().lstUsage->row(found[0]));
        if (kind == "tile") {
            QCOMPARE(W().MainTab->currentIndex(), 0);
            QCOMPARE(W().picMain->Tag, QStringLiteral("500"));
            return;
        }
        QCOMPARE(W().MainTab->currentIndex(), 1);
        QCOMPARE(W().lstSprites->currentRow(), car);
        if (kind == "remap") {
            QCOMPARE(W().lstRemaps->currentItem()->text(), QString::number(m));
            const QImage picture = Drawn(W().Sty(), car, p);
            QCOMPARE(W().picSprite->image().copy(picture.rect()).convertToFormat(QImage::Format_RGB32), picture);
        }
    }

    // Another palette chosen while the list is open: the list follows.
    void paletteUsageFollowsTheChoice() {
        W().MainTab->setCurrentIndex(2);
        W().lstPalettes->setCurrentRow(0);
        Ctrl(W().lstPalettes, Qt::Key_U);
        W().lstPalettes->setCurrentRow(1);
        QVERIFY(W().lstUsage->windowTitle().startsWith("Palette: 2 "));
        for (int i = 0; i < W().lstUsage->count(); ++i) {
            const QString text = W().lstUsage->item(i)->text();
            if (text.startsWith("Tile "))
                QCOMPARE(modDeclares::STYPalIndex.at(std::size_t(text.mid(5).toInt())), std::int16_t(1));
        }
    }

    void zoom_data() {
        QTest::addColumn<bool>("font");
        QTest::addColumn<int>("steps");  // Ctrl+wheel notches up from 1x
        QTest::addColumn<int>("zoom");
        QTest::newRow("sprite 2x") << false << 1 << 2;
        QTest::newRow("sprite 3x") << false << 2 << 3;
        QTest::newRow("sprite 4x, grid") << false << 3 << 4;
        QTest::newRow("sprite 6x") << false << 4 << 6;
        QTest::newRow("sprite 8x") << false << 5 << 8;
        QTest::newRow("sprite, no step past 8x") << false << 9 << 8;
        QTest::newRow("font text 3x") << true << 2 << 3;
    }
    // Each picture pixel a square of zoom x zoom, the delta on its sprite included; a grid from 4x.
    void zoom() {
        QFETCH(bool, font);
        QFETCH(int, steps);
        QFETCH(int, zoom);
        PictureBox* box = W().picSprite;
        if (font) {
            W().txtText->setText("Ab!");
            W().cmdCreateText->click();
            box = W().picFont;
        } else {
            const auto [car, record] = CarWithRemaps();
            W().lstSprites->setCurrentRow(car);
            W().cmbDeltas->setCurrentIndex(2);
        }
        const QImage drawn = box->image().convertToFormat(QImage::Format_RGB32);
        QVERIFY(box->grab().toImage().convertToFormat(QImage::Format_RGB32) == drawn);
        CtrlWheel(box, steps);
        const QImage shown = box->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const int n = std::min(20, box->width() / zoom - 1);
        for (int y = 0; y < n; ++y)
            for (int x = 0; x < n; ++x) {
                QCOMPARE(shown.pixel(x * zoom + zoom / 2 + zoom % 2, y * zoom + zoom - 1), drawn.pixel(x, y));
                if (zoom >= ombrevale::workbench::ZoomLens::kGridFrom)
                    QVERIFY(shown.pixel(x * zoom, y * zoom + 1) != drawn.pixel(x, y));
                else
                    QCOMPARE(shown.pixel(x * zoom, y * zoom), drawn.pixel(x, y));
            }
        // The colour under the pointer, readable at the zoom.
        const QRgb c = drawn.pixel(3, 5);
        QCOMPARE((font ? W().picFontZoom : W().picSpriteZoom)->TipAt({3 * zoom + 1, 5 * zoom + 1}),
                 QStringLiteral("x 3 y 5 Red: %1 Green: %2 Blue: %3").arg(qRed(c)).arg(qGreen(c)).arg(qBlue(c)));
        CtrlWheel(box, -9);
        QVERIFY(box->grab().toImage().convertToFormat(QImage::Format_RGB32) == drawn);
    }

    // Ctrl+R shows the car in each palette of its remap list; a click chooses that remap there.
    void allRemaps() {
        const auto [car, record] = CarWithRemaps();
        QVERIFY(car >= 0);
        W().MainTab->setCurrentIndex(1);
        W().lstSprites->setCurrentRow(car);
        Ctrl(W().lstSprites, Qt::Key_R);
        QListWidget* strip = W().lstAllRemaps;
        QVERIFY(strip && strip->isVisible());
        const auto& remaps = modDeclares::STYCarInfo[std::size_t(record)].remaps;
        QCOMPARE(strip->count(), int(remaps.size()) + 1);
        QCOMPARE(strip->item(0)->text(), QStringLiteral("own"));
        const int k = int(remaps.size());
        QCOMPARE(strip->item(k)->text(), QStringLiteral("remap %1").arg(remaps.back()));
        const QImage want = Drawn(W().Sty(), car, RemapPalette(remaps.back()));
        QCOMPARE(strip->item(k)->icon().pixmap(want.size()).toImage().convertToFormat(QImage::Format_RGB32), want);
        ClickRow(strip, k);
        QCOMPARE(W().lstRemaps->currentRow(), k);
        QCOMPARE(W().picSprite->image().copy(want.rect()).convertToFormat(QImage::Format_RGB32), want);
        // Another sprite: the strip follows; a sprite of no car has none.
        W().lstSprites->setCurrentRow(W().lstSprites->count() - 1);
        QCOMPARE(strip->count(), 0);
    }
};

QTEST_MAIN(ViewsTest)
#include "views_test.moc"
