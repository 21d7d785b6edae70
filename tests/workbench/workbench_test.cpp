// The main window and the progress window, driven offscreen on a small style.
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTimer>
#include <QWheelEvent>
#include <QWindow>
#include <QtTest>
#include <memory>

#include "style/moddeclares.h"
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

namespace {

constexpr int kTiles = 120;

QImage Sheet(const frmSTY2& w) { return w.picMain->image(); }

QStringList Texts(const QListWidget* list) {
    QStringList out;
    for (int i = 0; i < list->count(); ++i) out << list->item(i)->text();
    return out;
}

}  // namespace

class WorkbenchTest : public QObject {
    Q_OBJECT
    std::unique_ptr<testsupport::TempDir> dir_;
    std::unique_ptr<testsupport::ScopedCurrentDir> cwd_;
    std::string style_;
    std::unique_ptr<frmSTY2> Open() {
        auto w = std::make_unique<frmSTY2>(style_);
        w->show();
        return w;
    }

private slots:
    void initTestCase() {
        dir_ = std::make_unique<testsupport::TempDir>();
        cwd_ = std::make_unique<testsupport::ScopedCurrentDir>(dir_->path());
        style_ = dir_->File("small.sty");
        wbtest::WriteStyle(style_, kTiles);
        // An empty prefix: no registry value unless a test writes one.
        std::filesystem::create_directories(dir_->path() / "noprefix");
        qputenv("WINEPREFIX", QByteArray::fromStdString(dir_->File("noprefix")));
    }
    void cleanupTestCase() {
        cwd_.reset();
        dir_.reset();
    }

    void startFromRegistry_data() {
        QTest::addColumn<bool>("withValue");
        QTest::addColumn<int>("sprites");
        QTest::addColumn<int>("sheetHeight");
        // The empty start runs first: the stores are the process's.
        QTest::newRow("no value: one empty row") << false << 0 << 64;
        QTest::newRow("value names the style") << true << 6 << (kTiles / 9 + 1) * 64;
    }
    void startFromRegistry() {
        QFETCH(bool, withValue);
        QFETCH(int, sprites);
        QFETCH(int, sheetHeight);
        testsupport::TempDir prefix;
        if (withValue) wbtest::WritePrefix(prefix.path().string(), style_);
        const QByteArray old = qgetenv("WINEPREFIX");
        qputenv("WINEPREFIX", QByteArray::fromStdString(prefix.path().string()));
        testsupport::HookRecorder hooks;
        frmSTY2 w;
        qputenv("WINEPREFIX", old);
        QCOMPARE(w.lstSprites->count(), sprites);
        QCOMPARE(w.picMain->Height(), sheetHeight);
        QVERIFY(hooks.messages().empty());
    }

    void listsFromCommandLine() {
        auto w = Open();
        QCOMPARE(Texts(w->lstSprites),
                 (QStringList{"Car: 1", "Car: 2", "Car: 3", "Ped: 1", "Ped: 2", "Map Object: 1"}));
        QCOMPARE(w->lstPalettes->count(), wbtest::kPalettes);
        QCOMPARE(w->lstPalettes->item(63)->text(), QStringLiteral("Palette: 64"));
        QCOMPARE(Texts(w->lstRecy), (QStringList{"007", "123"}));
    }

    void sheetPixels_data() {
        QTest::addColumn<int>("tile");
        QTest::newRow("first") << 0;
        QTest::newRow("with colour 0") << 1;
        QTest::newRow("start of the second row") << 9;
        QTest::newRow("last") << kTiles - 1;
    }
    void sheetPixels() {
        QFETCH(int, tile);
        auto w = Open();
        QCOMPARE(w->Cols(), 9);
        const QImage sheet = Sheet(*w);
        const int cx = (tile % 9) * 64, cy = (tile / 9) * 64;
        for (int y = 0; y < 64; y += 7)
            for (int x = 0; x < 64; x += 5) {
                const int c = wbtest::TileByte(tile, x, y);
                const QRgb want = c == 0 ? qRgb(255, 0, 255) : wbtest::PaletteColour(wbtest::TilePalette(tile), c);
                QCOMPARE(sheet.pixel(cx + x, cy + y), want);
            }
    }

    // The sheet keeps no copy of a tile's colour numbers, and a tile replaced
    // afterwards leaves the drawn sheet alone.
    void sheetSharesTheTilesBlocks() {
        auto w = Open();
        const auto& store = w->Sty().STYTileStore;
        for (std::size_t t = 0; t < store.size(); ++t) QVERIFY(store[t].Block().use_count() >= 2);
        const QImage before = Sheet(*w);
        PixelBlock other;
        other.fill(3);
        w->Sty().STYTileStore[0] = Tile(other);
        QCOMPARE(Sheet(*w), before);
    }

    void clickSelects_data() {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<bool>("byMouse");
        QTest::addColumn<int>("tile");  // -1: nothing selected
        QTest::newRow("mouse at (70, 130) is tile 19") << 70.0 << 130.0 << true << 19;
        QTest::newRow("rounded up into the next cell") << 63.6 << 0.0 << false << 1;
        QTest::newRow("tile 991") << 64.0 << 110.0 * 64 << false << 991;
        QTest::newRow("tile 992 is refused") << 128.0 << 110.0 * 64 << false << -1;
        QTest::newRow("strip right of the last column") << 9.0 * 64 + 2 << 10.0 << false << -1;
        QTest::newRow("empty cell behind the last tile") << 5.0 * 64 << 14.0 * 64 << false << 131;
    }
    void clickSelects() {
        QFETCH(double, x);
        QFETCH(double, y);
        QFETCH(bool, byMouse);
        QFETCH(int, tile);
        auto w = Open();
        if (byMouse)
            QTest::mouseClick(w->picMain, Qt::LeftButton, {}, QPoint(int(x), int(y)));
        else
            w->picMain_MouseUp(1, 0, x, y);
        QCOMPARE(w->picMain->Tag, QString::number(tile));
        QCOMPARE(w->sSelKind, std::string(tile < 0 ? "" : "t"));
        if (tile < 0) {
            QVERIFY(w->lblIdx->text().isEmpty());
            return;
        }
        QCOMPARE(int(w->iSelNum), tile);
        const auto& index = modDeclares::STYPalIndex;
        const QString pal = std::size_t(tile) < index.size() ? QString::number(index[std::size_t(tile)]) : "none";
        QCOMPARE(w->lblIdx->text(), QStringLiteral("Index: %1 Palette: %2").arg(tile).arg(pal));
    }

    // The box is the cell's outline inverted, right and bottom edges on the
    // neighbours' first pixels; a render wipes it but keeps the selection.
    void selectionBox() {
        auto w = Open();
        w->cmdGen_Click();  // the sheet's width after the first layout
        const QImage before = Sheet(*w);
        w->picMain_MouseUp(1, 0, 70, 130);  // tile 19: column 1, row 2
        const QImage boxed = Sheet(*w);
        for (int y = 120; y < 200; ++y)
            for (int x = 56; x < 136; ++x) {
                const bool inX = x >= 64 && x <= 128, inY = y >= 128 && y <= 192;
                const bool edge = (inX && (y == 128 || y == 192)) || (inY && (x == 64 || x == 128));
                QCOMPARE(boxed.pixel(x, y) & 0xFFFFFF, (before.pixel(x, y) ^ (edge ? 0xFFFFFF : 0)) & 0xFFFFFF);
            }
        w->picMain_MouseUp(1, 0, 70, 130);  // the same cell: off and on again
        QCOMPARE(Sheet(*w), boxed);
        w->picMain_MouseUp(1, 0, 10, 10);  // tile 0: the old box goes
        QCOMPARE(Sheet(*w).copy(60, 124, 72, 72), before.copy(60, 124, 72, 72));
        QVERIFY(Sheet(*w).pixel(0, 0) != before.pixel(0, 0));
        w->cmdGen_Click();
        QCOMPARE(Sheet(*w), before);
        QCOMPARE(w->picMain->Tag, QStringLiteral("0"));
        QVERIFY(w->lblIdx->text().startsWith("Index: 0 "));
        // The next click draws one box, not a second one over a stale first.
        w->picMain_MouseUp(1, 0, 70, 130);
        QCOMPARE(Sheet(*w).copy(0, 0, 32, 32), before.copy(0, 0, 32, 32));
    }

    void keysScroll_data() {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QString>("expect");
        QTest::newRow("Up at the top stays") << QList<int>{Qt::Key_Up} << "0";
        QTest::newRow("Page Up at the top stays") << QList<int>{Qt::Key_PageUp} << "0";
        QTest::newRow("Down is one row") << QList<int>{Qt::Key_Down} << "64";
        QTest::newRow("Page Down is a page") << QList<int>{Qt::Key_PageDown} << "page";
        QTest::newRow("Page Down stops at the end") << QList<int>(30, Qt::Key_PageDown) << "max";
        QTest::newRow("Up from the end") << (QList<int>(30, Qt::Key_Down) << Qt::Key_Up) << "max-64";
        QTest::newRow("other keys do nothing") << QList<int>{Qt::Key_A, Qt::Key_Right} << "0";
    }
    void keysScroll() {
        QFETCH(QList<int>, keys);
        QFETCH(QString, expect);
        auto w = Open();
        QVERIFY(w->vScrollMax() > 256);
        for (int k : keys) QTest::keyClick(w.get(), Qt::Key(k));
        const int want = expect == "0"      ? 0
                         : expect == "64"   ? 64
                         : expect == "page" ? w->vScroll->pageStep()
                         : expect == "max"  ? w->vScrollMax()
                                            : w->vScrollMax() - 64;
        QCOMPARE(w->vScroll->value(), want);
        if (want != 0) QCOMPARE(w->picMain->y(), -want);  // before any scroll it stands a little higher
    }

    void escEnds() {
        auto w = Open();
        QTest::keyClick(w.get(), Qt::Key_Escape);
        QVERIFY(!w->isVisible());
    }

    void wheelOverSheetScrollsAsOverTheBar() {
        auto w = Open();
        const auto Wheel = [](QWidget* target) {
            QWheelEvent e(QPointF(5, 5), target->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, -120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(target, &e);
        };
        Wheel(w->vScroll);
        const int byBar = w->vScroll->value();
        QVERIFY(byBar > 0);
        w->vScroll->setValue(0);
        Wheel(w->picMain);
        QCOMPARE(w->vScroll->value(), byBar);
        QCOMPARE(w->picMain->y(), -byBar);
    }

    // What a resize must keep true, whatever the size: the view fills the page,
    // the bar runs down its right edge and scrolls by whole rows over the sheet.
    void resizeFitsTheView_data() {
        QTest::addColumn<QSize>("size");
        QTest::newRow("wider and taller") << QSize(900, 700);
        QTest::newRow("view under two rows") << QSize(400, 150);
    }
    void resizeFitsTheView() {
        QFETCH(QSize, size);
        auto w = Open();
        const int pageBefore = w->vScroll->pageStep(), sheetW = w->picMain->width();
        w->resize(size);
        QCoreApplication::processEvents();
        QCOMPARE(w->MainTab->height(), size.height());
        QVERIFY(qAbs(w->picCont->width() - size.width()) <= 4);
        QCOMPARE(w->vScroll->geometry().right(), w->picCont->width() - 3);
        QCOMPARE(w->vScroll->height(), w->picCont->height() - 4);
        const int rows = w->vScroll->height() / 64 - 1;
        QCOMPARE(w->vScroll->pageStep(), rows >= 1 ? rows * 64 : pageBefore);
        QCOMPARE(w->vScrollMax(), w->picMain->height() - w->picCont->height());
        const QRect button = w->cmdGen->geometry().translated(w->cmdGen->parentWidget()->mapTo(w.get(), QPoint()));
        QVERIFY(qAbs(button.right() - size.width()) <= 6 && qAbs(button.bottom() - size.height()) <= 6);
        QCOMPARE(w->picMain->width(), sheetW);  // columns change only at the next render
    }

    void sheetNarrowerThanACell() {
        auto w = Open();
        w->resize(60, 300);
        QCoreApplication::processEvents();
        w->cmdGen_Click();
        QCOMPARE(w->Cols(), 0);
        QCOMPARE(w->picMain->Height(), 64);
        w->picMain_MouseUp(1, 0, 5, 5);
        QCOMPARE(w->picMain->Tag, QStringLiteral("-1"));
    }

    // The render reports one step a tile, numbered from 0, between its own start and end.
    void renderReportsEachTile() {
        testsupport::HookRecorder hooks;
        frmSTY2 w(style_);
        std::vector<std::string> want = {"start 0 " + std::to_string(kTiles - 1) + " Please Wait..."};
        for (int t = 0; t < kTiles; ++t) want.push_back("step " + std::to_string(t) + " Rendering...");
        want.push_back("end");
        const auto& calls = hooks.calls();
        const auto at = std::find(calls.begin(), calls.end(), want.front());
        QVERIFY(at != calls.end());
        QCOMPARE(std::vector<std::string>(at, calls.end()), want);
    }

    // Whatever a job did to the window, the next one finds it as at the start.
    void progressWindow_data() {
        QTest::addColumn<int>("min");
        QTest::addColumn<int>("max");
        QTest::addColumn<int>("barMax");
        QTest::addColumn<int>("value");
        QTest::newRow("last step is not shown") << 0 << 9 << 9 << 8;
        QTest::newRow("a minimum the bar refuses") << 5 << 5 << 5 << 4;
        QTest::newRow("a range the bar refuses") << 0 << -1 << 100 << -1;
    }
    void progressWindow() {
        QFETCH(int, min);
        QFETCH(int, max);
        QFETCH(int, barMax);
        QFETCH(int, value);
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
        modGTA2::ProgressStart(min, max, "Start...");
        f = modGTA2::LoadedInstance();
        QVERIFY(f && f->isVisible());
        QCOMPARE(f->pos(), centred);
        QCOMPARE(f->l->text(), QStringLiteral("Start..."));
        bool ran = false;  // a step lets queued events run
        QTimer tick;
        tick.callOnTimeout([&] { ran = true; });
        tick.start(0);
        for (int s = 3; s <= max; ++s) modGTA2::ProgressStep(s, "Stepping...");
        QCOMPARE(ran, max >= 3);
        QCOMPARE(f->l->text(), max >= 3 ? QStringLiteral("Stepping...") : QStringLiteral("Start..."));
        QCOMPARE(f->pbar->minimum(), 0);
        QCOMPARE(f->pbar->maximum(), barMax);
        QCOMPARE(f->pbar->value(), value);
        modGTA2::ProgressEnd();
    }

    // The state changes in place: the same native window, never hidden on the way.
    void topMostUntilResizedVisible() {
        frmSTY2 w(style_);
        QVERIFY(w.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        w.show();
        const WId id = w.winId();
        int hides = 0;
        new PanesEventTap(&w, QEvent::Hide, [&hides](QEvent*) { ++hides; });
        w.resize(700, 600);
        QCoreApplication::processEvents();
        QVERIFY(!w.windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
        ombrevale::workbench::SetTopMost(&w, true);
        QVERIFY(w.windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
        QCOMPARE(w.winId(), id);
        QCOMPARE(hides, 0);
    }

    void messageBoxesBelongToTheWindow() {
        modGTA2::InstallAsDocumentHooks();
        auto w = Open();
        QWidget* parent = nullptr;
        QTimer::singleShot(0, [&parent] {
            if (QWidget* box = QApplication::activeModalWidget()) {
                parent = box->parentWidget();
                box->close();
            }
        });
        MsgBox("a message");
        InstallDocumentHooks({});
        QCOMPARE(parent, static_cast<QWidget*>(w.get()));
    }
};

QTEST_MAIN(WorkbenchTest)
#include "workbench_test.moc"
