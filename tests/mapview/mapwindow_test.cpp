// The map window beside the real main window, on the bundled sample style
// and map: a click on a block selects its lid tile on the sheet, an import
// into a tile redraws the blocks that show it (and its undo and redo), Show
// on map finds a tile's columns, the sheet greys what the map never uses,
// and a damaged map is told once while the one shown stays.
#include <QtTest>
#include <QtWidgets>

#include "map/usage.h"
#include "mapview/mapwindow.h"
#include "mapwriter/mapwriter.h"
#include "style/moddeclares.h"
#include "stylewriter/stylewriter.h"
#include "support/hookrecorder.h"
#include "support/tempdir.h"
#include "workbench/frmsty2.h"
#include "workbench/mapsheet.h"
#include "workbench/picturebox.h"
#include "workbench/sheetgeometry.h"

namespace {

using ombrevale::mapview::MapWindow;

// The column whose drawn lid is a tile, and that tile.
struct Found {
    int x = -1, y = -1, tile = -1;
};

Found TopLidNear(const MapWindow& w, int x0, int y0) {
    const auto& m = *w.Current();
    for (int y = y0; y < y0 + 32; ++y)
        for (int x = x0; x < x0 + 32; ++x)
            if (const int z = w.Canvas()->Frame().StackAt(x, y).Top(); z >= 0) {
                const auto& b = m.At(x, y, z);
                if (ombrevale::map::IsFlat(b.lid)) continue;
                return {x, y, ombrevale::map::TileOf(b.lid)};
            }
    return {};
}

QRgb CanvasPixel(const MapWindow& w, int x, int y) {
    return w.Canvas()->viewport()->grab().toImage().pixel(w.Canvas()->ViewportPointOf(x, y)) | 0xFF000000u;
}

}  // namespace

class MapWindowTest : public QObject {
    Q_OBJECT
    ombrevale::testsupport::TempDir dir_;
    std::unique_ptr<frmSTY2> window_;
    MapWindow* map_ = nullptr;

    frmSTY2& W() { return *window_; }

private slots:
    void initTestCase() {
        // Kept edits go to a folder of the test's own, never the user's.
        qputenv("XDG_STATE_HOME", QByteArray::fromStdString(dir_.File("state")));
        window_ = std::make_unique<frmSTY2>(std::string(OMBREVALE_SAMPLE));
        window_->setGeometry(10, 40, 300, 400);  // room on the screen's right
        window_->show();
        QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
        QVERIFY(W().Views().map->Open(QStringLiteral(OMBREVALE_SAMPLE_MAP)));
        map_ = W().Views().map->Window();
        QVERIFY(QTest::qWaitForWindowExposed(map_));
        // Beside the main window, not over it.
        QVERIFY(!map_->frameGeometry().intersects(W().frameGeometry()));
        map_->Canvas()->ZoomTo(16, {0, 0});
        map_->Canvas()->CentreOn(128, 128);
    }

    void clickSelectsTheLidTile() {
        const Found f = TopLidNear(*map_, 120, 120);
        QVERIFY(f.tile > 0);
        QTest::mouseClick(map_->Canvas()->viewport(), Qt::LeftButton, {}, map_->Canvas()->ViewportPointOf(f.x, f.y));
        QCOMPARE(W().sSelKind, std::string("t"));
        QCOMPARE(W().picMain->Tag, QString::number(f.tile));
        QCOMPARE(W().MainTab->currentIndex(), 0);
    }

    // An import into tile N as the window makes it: one step, undone and redone.
    void importRedrawsTheBlocksThatShowIt() {
        const Found f = TopLidNear(*map_, 120, 120);
        map_->Canvas()->CentreOn(f.x, f.y);
        const QRgb before = CanvasPixel(*map_, f.x, f.y);
        using ombrevale::editparts::Kind;
        const ByteString plain(4096, 9);
        QVERIFY(W().Document().Record({{Kind::Tile, f.tile}}, "tile",
                                      [&] { return W().Sty().SetBitsTile(f.tile, plain); }));
        const auto& pal = modDeclares::STYPalData.at(std::size_t(modDeclares::STYPalIndex.at(std::size_t(f.tile))));
        const QRgb nine = qRgb(pal[9 * 4 + 2], pal[9 * 4 + 1], pal[9 * 4]);
        QVERIFY(nine != before);
        QCOMPARE(CanvasPixel(*map_, f.x, f.y), nine);
        W().Document().UndoStack()->undo();
        QCOMPARE(CanvasPixel(*map_, f.x, f.y), before);
        W().Document().UndoStack()->redo();
        QCOMPARE(CanvasPixel(*map_, f.x, f.y), nine);
        W().Document().UndoStack()->undo();
        QCOMPARE(CanvasPixel(*map_, f.x, f.y), before);
        // Import folder tries each file on the stores from another thread: the map reads no tile meanwhile.
        const auto original = ombrevale::editparts::Take(W().Sty(), Kind::Tile, f.tile);
        {
            const ombrevale::workbench::StyleDocument::Job job(W().Document());
            QVERIFY(W().Sty().SetBitsTile(f.tile, plain));
            map_->TileChanged(f.tile);
            QCOMPARE(CanvasPixel(*map_, f.x, f.y), before);
            ombrevale::editparts::Put(W().Sty(), original);
        }
        QCOMPARE(CanvasPixel(*map_, f.x, f.y), before);
    }

    void showOnMapCentresEachColumnInTurn() {
        const Found f = TopLidNear(*map_, 100, 100);
        map_->ShowTile(f.tile);
        const auto columns = ombrevale::map::ColumnsUsing(*map_->Current(), f.tile);
        QCOMPARE(map_->ShownCount(), int(columns.size()));
        const QPoint middle(map_->Canvas()->viewport()->width() / 2, map_->Canvas()->viewport()->height() / 2);
        for (const int i : {0, 1}) {
            QCOMPARE(map_->Canvas()->BlockAt(middle), QPoint(columns[std::size_t(i)].x, columns[std::size_t(i)].y));
            QTest::keyClick(map_, Qt::Key_F3);
        }
        QTest::keyClick(map_, Qt::Key_F3, Qt::ShiftModifier);
        QTest::keyClick(map_, Qt::Key_F3, Qt::ShiftModifier);
        QCOMPARE(map_->Canvas()->BlockAt(middle), QPoint(columns[0].x, columns[0].y));
    }

    void sheetGreysWhatTheMapNeverUses() {
        const auto& usage = map_->Usage();
        int unused = -1, used = -1;
        for (int t = 1; t < W().Sty().GetNumOfTiles(); ++t) {
            int& first = usage.Used(t) ? used : unused;
            if (first < 0) first = t;
        }
        QVERIFY(unused > 0 && used > 0);
        const int cols = W().Cols();
        const auto cellOf = [&](int t) { return ombrevale::sheet::CellRect(t, cols).center(); };
        W().vScroll->setValue(0);
        const QImage plain = W().picMain->grab().toImage();
        W().Views().map->UsageAction()->setChecked(true);
        const QImage greyed = W().picMain->grab().toImage();
        QVERIFY(plain.pixel(cellOf(unused)) != greyed.pixel(cellOf(unused)));
        QCOMPARE(plain.pixel(cellOf(used)), greyed.pixel(cellOf(used)));
        QVERIFY(W().Views()
                    .map->CellTip(cellOf(used).x(), cellOf(used).y())
                    .contains(QStringLiteral("lid of %1 block(s)").arg(usage.lids[std::size_t(used)])));
        W().Views().map->UsageAction()->setChecked(false);
        QCOMPARE(W().picMain->grab().toImage().pixel(cellOf(unused)), plain.pixel(cellOf(unused)));
    }

    void aDamagedMapIsToldOnceAndTheShownOneStays() {
        const std::string bad = dir_.File("bad.gmp");
        ombrevale::stylewriter::WriteFile(bad,
                                          ombrevale::mapwriter::MapBytes().AddWithSize("DMAP", 70000, {1}).bytes());
        ombrevale::testsupport::HookRecorder hooks;
        QVERIFY(!W().Views().map->Open(QString::fromStdString(bad)));
        QCOMPARE(hooks.messages().size(), std::size_t(1));
        QVERIFY(QString::fromStdString(hooks.messages()[0]).contains(QStringLiteral("past the end of the file")));
        QCOMPARE(map_->Path(), QStringLiteral(OMBREVALE_SAMPLE_MAP));
    }

    // Another style opened: the map stays and draws with its tiles.
    void openingAStyleRedrawsTheMapWithIt() {
        const Found f = TopLidNear(*map_, 120, 120);
        map_->Canvas()->CentreOn(f.x, f.y);
        const QRgb before = CanvasPixel(*map_, f.x, f.y);
        clsSTY other;
        QVERIFY(other.LoadSTY(OMBREVALE_SAMPLE));
        QVERIFY(other.SetBitsTile(f.tile, ByteString(4096, 9)));
        const std::string path = dir_.File("other.sty");
        QVERIFY(other.SaveSTY(path));
        W().OpenStyle(QString::fromStdString(path));
        QVERIFY(CanvasPixel(*map_, f.x, f.y) != before);
        W().OpenStyle(QStringLiteral(OMBREVALE_SAMPLE));
        QCOMPARE(CanvasPixel(*map_, f.x, f.y), before);
        QCOMPARE(map_->Path(), QStringLiteral(OMBREVALE_SAMPLE_MAP));
    }

    // Too little room on either side of the main window: the map opens at its usual size, over it.
    void aNarrowRoomGivesWayToTheMap() {
        const QRect free = W().screen()->availableGeometry();
        map_->hide();
        W().setGeometry(free.left() + 100, 40, free.width() - 300, 400);
        QVERIFY(W().Views().map->Open(QStringLiteral(OMBREVALE_SAMPLE_MAP)));
        QVERIFY(map_->width() >= 320);
        QVERIFY(free.contains(map_->frameGeometry()));
    }

    void cleanupTestCase() { window_.reset(); }

    // The tool bar's Open holds Open map: a press held opens the menu, and no arrow marks the button.
    void openButtonHoldsOpenMap() {
        auto* button = qobject_cast<QToolButton*>(W().Actions().open->associatedObjects().value(0));
        QVERIFY(button && !button->menu());
        QStringList seen;
        QTimer look;
        connect(&look, &QTimer::timeout, this, [&] {
            if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
                for (const QAction* a : menu->actions()) seen << a->text();
                menu->close();
            }
        });
        look.start(20);
        QTest::mousePress(button, Qt::LeftButton);
        QTRY_VERIFY(!seen.isEmpty());
        // The release ends in the menu: no Open dialog follows.
        QTest::mouseRelease(button, Qt::LeftButton);
        QCOMPARE(seen, (QStringList{"Open style...", "Open map..."}));
    }
};

QTEST_MAIN(MapWindowTest)
#include "mapwindow_test.moc"
