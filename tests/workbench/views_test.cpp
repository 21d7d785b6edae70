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
};

QTEST_MAIN(ViewsTest)
#include "views_test.moc"
