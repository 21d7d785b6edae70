// The main window and the progress window, driven offscreen on a small style.
#include <QtTest>
#include <QtWidgets>

#include "style/moddeclares.h"
#include "stylewriter/stylewriter.h"
#include "support/hookrecorder.h"
#include "support/tempdir.h"
#include "teststyle.h"
#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"
#include "workbench/pacedlabel.h"
#include "workbench/pacedprogressbar.h"
#include "workbench/panes_events.h"
#include "workbench/picturebox.h"
#include "workbench/topmost.h"

constexpr int kTiles = 120;
static QImage Sheet(const frmSTY2& w) { return w.picMain->image(); }

class WorkbenchTest : public QObject {
    Q_OBJECT
    ombrevale::testsupport::TempDir dir_;
    ombrevale::testsupport::ScopedCurrentDir cwd_{dir_.path()};
    const std::string style_ = dir_.File("small.sty");
    std::unique_ptr<frmSTY2> Open() {
        auto w = std::make_unique<frmSTY2>(style_);
        w->show();
        return w;
    }

private slots:
    void initTestCase() {
        // Kept edits go to a state folder of the test's own.
        qputenv("XDG_STATE_HOME", QByteArray::fromStdString(dir_.File("state")));
        ombrevale::wbtest::WriteStyle(style_, kTiles);
    }

    // Without a style on the command line the registry names it; without a value, one empty row.
    // The sheet's drawing reports each tile to the progress window.
    void startFromRegistry() {
        for (bool withValue : {false, true}) {  // no value first: the stores are still the process's
            if (withValue) ombrevale::wbtest::WritePrefix(dir_.File("prefix"), style_);  // the same style from then on
            qputenv("WINEPREFIX", QByteArray::fromStdString(dir_.File(withValue ? "prefix" : "")));
            ombrevale::testsupport::HookRecorder hooks;
            frmSTY2 w;
            const int n = withValue ? kTiles : 0;
            QCOMPARE(w.lstSprites->count(), withValue ? 6 : 0);
            QCOMPARE(w.picMain->Height(), (n / 9 + 1) * 64);
            std::vector<std::string> want = {"start 0 " + std::to_string(n - 1) + " Please Wait..."};
            for (int t = 0; t < n; ++t) want.push_back("step " + std::to_string(t) + " Rendering...");
            want.push_back("end");
            const auto at = std::find(hooks.calls().begin(), hooks.calls().end(), want.front());
            QCOMPARE(std::vector<std::string>(at, hooks.calls().end()), want);
            QVERIFY(hooks.messages().empty());
        }
    }

    // With nothing loaded the sheet says how to get a style and Save has nothing to write; a style
    // without tiles says so; a style with tiles shows only its sheet.
    void emptySheetSays_data() {
        QTest::addColumn<QString>("style");  // none: the registry, under a prefix that is not there
        QTest::addColumn<QString>("says");   // empty: no note
        QTest::newRow("no style") << QString() << QStringLiteral("Ctrl+O");
        QTest::newRow("a style without tiles") << QStringLiteral("font.sty") << QStringLiteral("has no tiles");
        QTest::newRow("a style with tiles") << QString::fromStdString(style_) << QString();
    }
    void emptySheetSays() {
        QFETCH(QString, style);
        QFETCH(QString, says);
        const QByteArray prefix = QByteArray::fromStdString(dir_.File("nonexistent"));
        qputenv("WINEPREFIX", prefix);
        if (style == "font.sty")
            ombrevale::stylewriter::WriteFile(dir_.File("font.sty"), ombrevale::stylewriter::MakeFontStyle().bytes());
        ombrevale::testsupport::HookRecorder hooks;
        const auto w =
            style.isEmpty() ? std::make_unique<frmSTY2>() : std::make_unique<frmSTY2>(dir_.File(style.toStdString()));
        w->show();
        QCOMPARE(w->lblSheetNote->isVisible(), !says.isEmpty());
        QVERIFY2(w->lblSheetNote->text().contains(says), qPrintable(w->lblSheetNote->text()));
        if (style.isEmpty()) QVERIFY(w->lblSheetNote->text().contains(QString::fromUtf8(prefix)));
        QCOMPARE(w->Actions().save->isEnabled(), !style.isEmpty());
        QCOMPARE(w->Actions().saveAs->isEnabled(), !style.isEmpty());
        // Refresh with still nothing to load leaves the note as it was.
        w->cmdGen_Click();
        QCOMPARE(w->lblSheetNote->isVisible(), !says.isEmpty());
        if (!style.isEmpty()) return;
        const auto files = QDir(QString::fromStdString(dir_.path().string())).entryList(QDir::Files);
        w->tlbMain_ButtonClick(QStringLiteral("save"));
        QCOMPARE(QDir(QString::fromStdString(dir_.path().string())).entryList(QDir::Files), files);
        QVERIFY(hooks.messages().empty());
    }

    // A palette table that misses tiles: one message for all of them, whose cells stay blank,
    // and none again at the next render of the same load.
    void tilesWithoutPalette() {
        const int covered = kTiles - 20;
        const std::string path = dir_.File("shortpalx.sty");
        ombrevale::wbtest::WriteStyle(path, kTiles, covered);
        ombrevale::testsupport::HookRecorder hooks;
        frmSTY2 w(path);
        QCOMPARE(hooks.messages().size(), 1u);
        const QString said = QString::fromStdString(hooks.messages()[0]);
        QVERIFY2(said.contains(QStringLiteral("Tile %1 has no palette").arg(covered)) &&
                     said.contains(QStringLiteral(" %1 more tiles ").arg(kTiles - covered - 1)),
                 qPrintable(said));
        QImage blank(64, 64, Sheet(w).format());
        blank.fill(w.picMain->BackColor());
        const auto cell = [&](int t) { return Sheet(w).copy(t % w.Cols() * 64, t / w.Cols() * 64, 64, 64); };
        QVERIFY(cell(covered - 1) != blank);
        for (int t : {covered, kTiles - 1}) QCOMPARE(cell(t), blank);
        w.RenderSheet();
        QCOMPARE(hooks.messages().size(), 1u);
    }

    // The lists' captions, and which tile lands in which cell.
    void listsAndSheet() {
        auto w = Open();
        QCOMPARE(w->lstSprites->item(3)->text(), QStringLiteral("Ped: 1"));
        QCOMPARE(w->lstPalettes->item(63)->text(), QStringLiteral("Palette: 64"));
        QCOMPARE(w->lstRecy->count(), 2);  // "007", "123": the closing 255 is no row
        PictureBox tile;
        tile.resize(64, 64);
        for (int t : {0, 1, 9, kTiles - 1}) {  // nine columns
            QVERIFY(w->Sty().RenderTile(t, tile));
            QCOMPARE(Sheet(*w).copy(t % 9 * 64, t / 9 * 64, 64, 64), tile.image());
        }
        // The sheet keeps no copy of a tile's colour numbers, and a tile replaced
        // afterwards leaves the drawn sheet alone.
        for (const Tile& t : w->Sty().STYTileStore) QVERIFY(t.Block().use_count() >= 2);
        const QImage before = Sheet(*w);
        w->Sty().STYTileStore[0] = Tile(PixelBlock{});
        QCOMPARE(Sheet(*w), before);
    }

    void clickSelects_data() {
        QTest::addColumn<int>("width");  // of the window; 0: as opened
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<int>("tile");  // -1: nothing selected
        QTest::newRow("rounded up into the next cell") << 0 << 63.6 << 0.0 << 1;
        QTest::newRow("tile 991") << 0 << 64.0 << 110.0 * 64 << 991;
        QTest::newRow("tile 992 is refused") << 0 << 128.0 << 110.0 * 64 << -1;
        QTest::newRow("strip right of the last column") << 0 << 9.0 * 64 + 2 << 10.0 << -1;
        QTest::newRow("empty cell behind the last tile") << 0 << 5.0 * 64 << 14.0 * 64 << 131;
        QTest::newRow("narrower than a cell: no columns") << 60 << 5.0 << 5.0 << -1;
    }
    void clickSelects() {
        QFETCH(int, width);
        QFETCH(double, x);
        QFETCH(double, y);
        QFETCH(int, tile);
        auto w = Open();
        if (width) w->resize(width, 300);
        w->cmdGen_Click();
        QCOMPARE(w->picMain->Height(), width ? 64 : (kTiles / 9 + 1) * 64);
        w->picMain_MouseUp(1, 0, x, y);
        QCOMPARE(w->picMain->Tag, QString::number(tile));
        QCOMPARE(w->sSelKind, std::string(tile < 0 ? "" : "t"));
        const auto& index = modDeclares::STYPalIndex;
        const QString pal = std::size_t(tile) < index.size() ? QString::number(index[std::size_t(tile)]) : "none";
        QCOMPARE(w->lblIdx->text(), tile < 0 ? QString() : QStringLiteral("Index: %1 Palette: %2").arg(tile).arg(pal));
    }

    // The box is the cell's outline inverted, right and bottom edges on the
    // neighbours' first pixels; a render wipes it but keeps the selection.
    void selectionBox() {
        auto w = Open();
        w->cmdGen_Click();  // the sheet's width after the first layout
        const QImage before = Sheet(*w);
        const auto Flipped = [&](int x, int y) { return (Sheet(*w).pixel(x, y) ^ before.pixel(x, y)) & 0xFFFFFF; };
        QTest::mouseClick(w->picMain, Qt::LeftButton, {}, QPoint(70, 130));  // tile 19: column 1, row 2
        for (int k = 64; k <= 128; k += 16)
            for (QPoint p : {QPoint(k, 128), QPoint(k, 192), QPoint(64, k + 64), QPoint(128, k + 64)})
                QCOMPARE(Flipped(p.x(), p.y()), 0xFFFFFFu);
        for (QPoint p : {QPoint(63, 128), QPoint(65, 129), QPoint(129, 192), QPoint(96, 193)})
            QCOMPARE(Flipped(p.x(), p.y()), 0u);
        const QImage boxed = Sheet(*w);
        w->picMain_MouseUp(1, 0, 70, 130);  // the same cell: off and on again
        QCOMPARE(Sheet(*w), boxed);
        w->picMain_MouseUp(1, 0, 10, 10);  // tile 0: the old box goes
        QCOMPARE(Flipped(64, 128), 0u);
        QCOMPARE(Flipped(0, 0), 0xFFFFFFu);
        w->cmdGen_Click();
        QCOMPARE(Sheet(*w), before);
        QCOMPARE(w->picMain->Tag, QStringLiteral("0"));
        w->picMain_MouseUp(1, 0, 70, 130);  // one box, not a second over a stale first
        QCOMPARE(Flipped(0, 0), 0u);
    }

    // Key 0 stands for a turn of the wheel over the sheet, which scrolls as over the bar.
    void keysScroll_data() {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QList<int>>("want");  // rows of 64, pages, ends, wheel turns
        QTest::newRow("Up at the top stays") << QList<int>{Qt::Key_Up} << QList<int>{0, 0, 0, 0};
        QTest::newRow("Down is one row") << QList<int>{Qt::Key_Down} << QList<int>{1, 0, 0, 0};
        QTest::newRow("Page Down is a page") << QList<int>{Qt::Key_PageDown} << QList<int>{0, 1, 0, 0};
        QTest::newRow("Page Down stops at the end") << QList<int>(30, Qt::Key_PageDown) << QList<int>{0, 0, 1, 0};
        QTest::newRow("Up from the end") << (QList<int>(30, Qt::Key_Down) << Qt::Key_Up) << QList<int>{-1, 0, 1, 0};
        QTest::newRow("other keys do nothing") << QList<int>{Qt::Key_A, Qt::Key_Right} << QList<int>{0, 0, 0, 0};
        QTest::newRow("Escape closes") << QList<int>{Qt::Key_Escape} << QList<int>{0, 0, 0, 0};
        QTest::newRow("wheel over the sheet") << QList<int>{0} << QList<int>{0, 0, 0, 1};
    }
    void keysScroll() {
        QFETCH(QList<int>, keys);
        QFETCH(QList<int>, want);
        auto w = Open();
        QVERIFY(w->vScrollMax() > 256);
        QWheelEvent wheel(QPointF(5, 5), w->picMain->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        for (int k : keys) {
            if (k)
                QTest::keyClick(w.get(), Qt::Key(k));
            else
                QApplication::sendEvent(w->picMain, &wheel);
        }
        QCOMPARE(w->isVisible(), !keys.contains(Qt::Key_Escape));
        const int value = want[0] * 64 + want[1] * w->vScroll->pageStep() + want[2] * w->vScrollMax() +
                          want[3] * QApplication::wheelScrollLines() * w->vScroll->singleStep();
        QCOMPARE(w->vScroll->value(), value);
        if (value != 0) QCOMPARE(w->picMain->y(), -value);  // before any scroll it stands a little higher
    }

    // Whatever a job did to the window, the next one finds it as at the start.
    void progressWindow_data() {
        QTest::addColumn<QList<int>>("range");
        QTest::addColumn<QList<int>>("bar");  // minimum, maximum, value after the steps from 3
        QTest::newRow("last step is not shown") << QList<int>{0, 9} << QList<int>{0, 9, 8};
        QTest::newRow("a minimum the bar refuses") << QList<int>{5, 5} << QList<int>{0, 5, 4};
        QTest::newRow("a range the bar refuses") << QList<int>{0, -1} << QList<int>{0, 100, -1};
    }
    void progressWindow() {
        QFETCH(QList<int>, range);
        QFETCH(QList<int>, bar);
        // The window's first show in the process lands 2 px off the later ones: not what this checks.
        modGTA2::ProgressStart(0, 1, "Warm-up...");
        modGTA2::ProgressEnd();
        modGTA2::ProgressStart(0, 500, "First...");
        frmProgress* f = modGTA2::LoadedInstance();
        const QPoint centred = f->pos();
        modGTA2::ProgressStep(300, "Halfway...");
        f->move(centred + QPoint(40, 30));
        modGTA2::ProgressEnd();
        QVERIFY(modGTA2::LoadedInstance() == nullptr && !f->isVisible());
        modGTA2::ProgressStart(range[0], range[1], "Start...");
        QVERIFY((f = modGTA2::LoadedInstance()) && f->isVisible());
        QCOMPARE(f->pos(), centred);
        bool ran = false;  // a step lets queued events run
        QObject scope;
        QTimer::singleShot(0, &scope, [&ran] { ran = true; });
        for (int s = 3; s <= range[1]; ++s) modGTA2::ProgressStep(s, "Stepping...");
        QCOMPARE(ran, range[1] >= 3);
        QCOMPARE(f->l->text(), ran ? QStringLiteral("Stepping...") : QStringLiteral("Start..."));
        QCOMPARE(QList<int>({f->pbar->minimum(), f->pbar->maximum(), f->pbar->value()}), bar);
        modGTA2::ProgressEnd();
    }

    // Top-most until the first resize with the window shown; set again in place, same native window.
    // Its message boxes belong to it, so the window manager keeps them above it.
    void topMostUntilResizedVisible() {
        auto w = Open();
        const WId id = w->winId();
        int hides = 0;
        new PanesEventTap(w.get(), QEvent::Hide, [&hides](QEvent*) { ++hides; });
        QVERIFY(w->windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
        QWidget* parent = nullptr;
        QTimer::singleShot(0, w.get(), [&parent] {
            if (QWidget* box = QApplication::activeModalWidget()) {
                parent = box->parentWidget();
                box->close();
            }
        });
        modGTA2::InstallAsDocumentHooks();
        MsgBox("a message");
        InstallDocumentHooks({});
        QCOMPARE(parent, static_cast<QWidget*>(w.get()));
        w->resize(700, 600);
        QCoreApplication::processEvents();
        QVERIFY(!w->windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
        ombrevale::workbench::SetTopMost(w.get(), true);
        QVERIFY(w->windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
        QCOMPARE(w->winId(), id);
        QCOMPARE(hides, 0);
    }
};

QTEST_MAIN(WorkbenchTest)
#include "workbench_test.moc"
