// The main window and the progress window, driven offscreen.
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QWheelEvent>
#include <QWindow>
#include <QtTest>
#include <memory>
#include "workbench/pacedprogressbar.h"

#include "style/moddeclares.h"
#include "support/hookrecorder.h"
#include "support/tempdir.h"
#include "teststyle.h"
#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"
#include "workbench/keycodes.h"
#include "workbench/pacedlabel.h"
#include "workbench/panes_events.h"
#include "workbench/picturebox.h"
#include "workbench/topmost.h"

namespace {

constexpr int kTiles = 120;

QImage SheetImage(const frmSTY2& w) { return w.picMain->image(); }

// The box of a cell: its outline, right and bottom edges on the neighbours' first pixels.
bool OnOutline(int c, int r, int x, int y) {
    const int x1 = c * 64, y1 = r * 64, x2 = x1 + 64, y2 = y1 + 64;
    const bool inX = x >= x1 && x <= x2, inY = y >= y1 && y <= y2;
    return (inX && (y == y1 || y == y2)) || (inY && (x == x1 || x == x2));
}

}  // namespace

class WorkbenchTest : public QObject {
    Q_OBJECT
private:
    std::unique_ptr<testsupport::TempDir> dir_;
    std::unique_ptr<testsupport::ScopedCurrentDir> cwd_;
    std::string style_;
    std::unique_ptr<frmSTY2> Open(const std::string& path) {
        auto w = std::make_unique<frmSTY2>(path);
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

    void startFromRegistry_data() {
        QTest::addColumn<bool>("withValue");
        QTest::addColumn<int>("sprites");
        QTest::addColumn<int>("sheetHeight");
        // 120 tiles in 9 columns: 13 full rows, a part row, one spare.
        // The stores are the process's: the empty start comes first.
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
        auto w = Open(style_);
        QCOMPARE(w->windowTitle(), QStringLiteral("Ombrevale v" OMBREVALE_VERSION));
        QStringList sprites;
        for (int i = 0; i < w->lstSprites->count(); ++i) sprites << w->lstSprites->item(i)->text();
        QCOMPARE(sprites, (QStringList{"Car: 1", "Car: 2", "Car: 3", "Ped: 1", "Ped: 2", "Map Object: 1"}));
        QCOMPARE(w->lstPalettes->count(), wbtest::kPalettes);
        QCOMPARE(w->lstPalettes->item(0)->text(), QStringLiteral("Palette: 1"));
        QCOMPARE(w->lstPalettes->item(63)->text(), QStringLiteral("Palette: 64"));
        QCOMPARE(w->lstRecy->count(), 2);
        QCOMPARE(w->lstRecy->item(0)->text(), QStringLiteral("007"));
        QCOMPARE(w->lstRecy->item(1)->text(), QStringLiteral("123"));
        QCOMPARE(w->MainTab->currentIndex(), 0);
        QCOMPARE(w->MainTab->tabText(4), QStringLiteral("Recycling"));
        QCOMPARE(w->picMain->Tag, QStringLiteral("-1"));
    }

    void sheetPixels_data() {
        QTest::addColumn<int>("tile");
        QTest::newRow("first") << 0;
        QTest::newRow("with colour 0") << 1;
        QTest::newRow("end of the first row") << 8;
        QTest::newRow("start of the second row") << 9;
        QTest::newRow("last") << kTiles - 1;
    }
    void sheetPixels() {
        QFETCH(int, tile);
        auto w = Open(style_);
        QCOMPARE(w->Cols(), 9);
        const QImage sheet = SheetImage(*w);
        const int cx = (tile % 9) * 64, cy = (tile / 9) * 64;
        for (int y = 0; y < 64; y += 7)
            for (int x = 0; x < 64; x += 5) {
                const int c = wbtest::TileByte(tile, x, y);
                const QRgb want = c == 0 ? qRgb(255, 0, 255) : wbtest::PaletteColour(wbtest::TilePalette(tile), c);
                QCOMPARE(sheet.pixel(cx + x, cy + y), want);
            }
    }

    // The sheet holds each tile's own block of colour numbers, not a copy;
    // a tile replaced afterwards leaves the sheet's picture as drawn.
    void sheetSharesTheTilesBlocks() {
        auto w = Open(style_);
        const auto& store = w->Sty().STYTileStore;
        for (std::size_t t = 0; t < store.size(); ++t)
            QVERIFY2(store[t].Block().use_count() >= 2, qPrintable(QString::number(t)));
        const QImage before = SheetImage(*w);
        PixelBlock other;
        other.fill(3);
        w->Sty().STYTileStore[0] = Tile(other);
        w->picMain->update();
        QCOMPARE(SheetImage(*w), before);
    }

    void clickSelects_data() {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<int>("tile");  // -1: nothing changes
        QTest::newRow("(70, 130) is tile 19") << 70.0 << 130.0 << 19;
        QTest::newRow("rounded up into the next cell") << 63.6 << 0.0 << 1;
        QTest::newRow("tile 991") << 1.0 * 1 * 64 << 110.0 * 64 << 991;
        QTest::newRow("tile 992 is refused") << 2.0 * 64 << 110.0 * 64 << -1;
        QTest::newRow("strip right of the last column") << 9.0 * 64 + 2 << 10.0 << -1;
        QTest::newRow("empty cell behind the last tile") << 5.0 * 64 << 14.0 * 64 << 131;
    }
    void clickSelects() {
        QFETCH(double, x);
        QFETCH(double, y);
        QFETCH(int, tile);
        auto w = Open(style_);
        w->picMain_MouseUp(1, 0, x, y);
        if (tile < 0) {
            QCOMPARE(w->picMain->Tag, QStringLiteral("-1"));
            QVERIFY(w->sSelKind.empty());
            QVERIFY(w->lblIdx->text().isEmpty());
            return;
        }
        QCOMPARE(w->picMain->Tag, QString::number(tile));
        QCOMPARE(w->sSelKind, std::string("t"));
        QCOMPARE(int(w->iSelNum), tile);
        const auto& pal = modDeclares::STYPalIndex;
        const QString palText = std::size_t(tile) < pal.size() ? QString::number(pal[std::size_t(tile)]) : "none";
        QCOMPARE(w->lblIdx->text(), QStringLiteral("Index: %1 Palette: %2").arg(tile).arg(palText));
    }

    void realMouseClick() {
        auto w = Open(style_);
        QTest::mouseClick(w->picMain, Qt::LeftButton, {}, QPoint(70, 130));
        QCOMPARE(w->picMain->Tag, QStringLiteral("19"));
        QCOMPARE(w->lblIdx->text(), QStringLiteral("Index: 19 Palette: %1").arg(wbtest::TilePalette(19)));
    }

    void boxInvertsInAndOut() {
        auto w = Open(style_);
        const QImage before = SheetImage(*w);
        w->picMain_MouseUp(1, 0, 70, 130);  // tile 19: column 1, row 2
        const QImage boxed = SheetImage(*w);
        for (int y = 120; y < 200; ++y)
            for (int x = 56; x < 136; ++x) {
                const QRgb want = OnOutline(1, 2, x, y) ? before.pixel(x, y) ^ 0x00FFFFFFu : before.pixel(x, y);
                QCOMPARE(boxed.pixel(x, y) & 0xFFFFFF, want & 0xFFFFFF);
            }
        w->picMain_MouseUp(1, 0, 70, 130);  // the same cell: off and on again
        QCOMPARE(SheetImage(*w), boxed);
        w->picMain_MouseUp(1, 0, 10, 10);  // tile 0: the old box goes
        const QImage moved = SheetImage(*w);
        QCOMPARE(moved.copy(60, 124, 72, 72), before.copy(60, 124, 72, 72));
        QVERIFY(moved.pixel(0, 0) != before.pixel(0, 0));
    }

    void renderWipesBoxAndNextClickDrawsOnlyOne() {
        auto w = Open(style_);
        w->cmdGen_Click();  // the sheet's width after the first layout
        const QImage before = SheetImage(*w);
        w->picMain_MouseUp(1, 0, 70, 130);
        w->cmdGen_Click();
        QCOMPARE(SheetImage(*w), before);
        QCOMPARE(w->picMain->Tag, QStringLiteral("19"));  // the render keeps the selection's texts
        QVERIFY(w->lblIdx->text().startsWith("Index: 19 "));
        w->picMain_MouseUp(1, 0, 10, 10);
        QCOMPARE(SheetImage(*w).copy(60, 124, 72, 72), before.copy(60, 124, 72, 72));
    }

    void keysScroll_data() {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QString>("expect");  // "0", "64", "max", "max-64"...
        QTest::newRow("Up at the top stays") << QList<int>{Qt::Key_Up} << "0";
        QTest::newRow("Page Up at the top stays") << QList<int>{Qt::Key_PageUp} << "0";
        QTest::newRow("Down is one row") << QList<int>{Qt::Key_Down} << "64";
        QTest::newRow("Page Down is LargeChange") << QList<int>{Qt::Key_PageDown} << "page";
        QTest::newRow("Page Down at the end stays at Max") << QList<int>(30, Qt::Key_PageDown) << "max";
        QTest::newRow("Up from the end") << (QList<int>(30, Qt::Key_Down) << Qt::Key_Up) << "max-64";
        QTest::newRow("other keys do nothing") << QList<int>{Qt::Key_A, Qt::Key_Right} << "0";
    }
    void keysScroll() {
        QFETCH(QList<int>, keys);
        QFETCH(QString, expect);
        auto w = Open(style_);
        QVERIFY(w->vScrollMax() > 256);
        for (int k : keys) QTest::keyClick(w.get(), Qt::Key(k));
        const int value = w->vScroll->value();
        const int want = expect == "0"      ? 0
                         : expect == "64"   ? 64
                         : expect == "page" ? w->vScroll->pageStep()
                         : expect == "max"  ? w->vScrollMax()
                                            : w->vScrollMax() - 64;
        QCOMPARE(value, want);
        // The sheet moves when the value changes; at the start it stands at its design top.
        if (want != 0) QCOMPARE(w->picMain->y(), -want);
    }

    void escEnds() {
        auto w = Open(style_);
        QVERIFY(w->isVisible());
        QTest::keyClick(w.get(), Qt::Key_Escape);
        QVERIFY(!w->isVisible());
    }

    void resizeSteps_data() {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::newRow("start size") << 594 << 514;
        QTest::newRow("wider and taller") << 900 << 700;
        QTest::newRow("view under two rows") << 400 << 150;
    }
    void resizeSteps() {
        QFETCH(int, width);
        QFETCH(int, height);
        auto w = Open(style_);
        const QRect sprites = w->lstSprites->geometry();
        const int pageBefore = w->vScroll->pageStep();
        const int sheetW = w->picMain->width();
        w->resize(width, height);
        QCoreApplication::processEvents();
        const int tpp = 15;
        const int tabH = w->MainTab->height() * tpp, tabW = w->MainTab->width() * tpp;
        QCOMPARE(w->MainTab->height(), height);
        QCOMPARE(tabW, width * tpp + 60);
        QCOMPARE(w->picCont->height() * tpp, tabH - w->MainTab->tabBar()->sizeHint().height() * tpp);
        QCOMPARE(w->picCont->width(), (tabW - w->vScroll->width()) / tpp);
        QCOMPARE(w->vScroll->x(), w->picCont->width() - w->vScroll->width() - 2);
        QCOMPARE(w->vScroll->height(), w->picCont->height() - 4);
        const int r = w->vScroll->height() / 64 - 1;
        QCOMPARE(w->vScroll->pageStep(), r >= 1 ? r * 64 : pageBefore);
        QCOMPARE(w->vScrollMax(), w->picMain->height() - w->picCont->height());
        QCOMPARE(w->cmdGen->x(), (tabW - w->cmdGen->width() * tpp - 30) / tpp);
        QCOMPARE(w->cmdGen->y(), (tabH - w->cmdGen->height() * tpp - 15) / tpp);
        QCOMPARE(w->lstSprites->geometry(), sprites);
        QCOMPARE(w->picMain->width(), sheetW);  // columns change only at the next render
    }

    void startGeometry_data() {
        QTest::addColumn<QString>("control");
        QTest::addColumn<QRect>("twips");
        QTest::newRow("lstSprites") << "lstSprites" << QRect(120, 120, 1965, 4350);
        QTest::newRow("lstPalettes") << "lstPalettes" << QRect(120, 120, 1665, 4335);
        QTest::newRow("lstRecy") << "lstRecy" << QRect(120, 120, 1665, 4350);
        QTest::newRow("cmdRecyRemove") << "cmdRecyRemove" << QRect(1830, 525, 900, 360);
        QTest::newRow("cmdCreateText") << "cmdCreateText" << QRect(7800, 450, 1020, 405);
    }
    void startGeometry() {
        QFETCH(QString, control);
        QFETCH(QRect, twips);
        frmSTY2 w(style_);
        const std::map<QString, QWidget*> byName = {{"lstSprites", w.lstSprites},
                                                    {"lstPalettes", w.lstPalettes},
                                                    {"lstRecy", w.lstRecy},
                                                    {"cmdRecyRemove", w.cmdRecyRemove},
                                                    {"cmdCreateText", w.cmdCreateText}};
        const QRect g = byName.at(control)->geometry();
        QCOMPARE(g, QRect(twips.x() / 15, twips.y() / 15, twips.width() / 15, twips.height() / 15));
    }

    void progressCallsOfLoadAndRender() {
        testsupport::HookRecorder hooks;
        frmSTY2 w(style_);
        const auto& calls = hooks.calls();
        QVERIFY(!calls.empty());
        QVERIFY(calls.front().rfind("start 1 ", 0) == 0);
        const auto renderStart =
            std::find(calls.begin(), calls.end(), "start 0 " + std::to_string(kTiles - 1) + " Please Wait...");
        QVERIFY(renderStart != calls.end());
        QVERIFY(std::find(calls.begin(), renderStart, "step 4 Loading Section TILE...") != renderStart ||
                std::any_of(calls.begin(), renderStart, [](const std::string& c) {
                    return c.find("Loading Section TILE...") != std::string::npos;
                }));
        auto it = renderStart + 1;
        for (int t = 0; t < kTiles; ++t, ++it) {
            QVERIFY(it != calls.end());
            QCOMPARE(*it, "step " + std::to_string(t) + " Rendering...");
        }
        QVERIFY(it != calls.end());
        QCOMPARE(*it, std::string("end"));
    }

    void progressWindow_data() {
        QTest::addColumn<int>("min");
        QTest::addColumn<int>("max");
        QTest::addColumn<QList<int>>("steps");
        QTest::addColumn<int>("barMin");
        QTest::addColumn<int>("barMax");
        QTest::addColumn<int>("value");
        QTest::newRow("last step is not shown") << 0 << 9 << QList<int>{7, 8, 9} << 0 << 9 << 8;
        QTest::newRow("a minimum the bar refuses") << 5 << 5 << QList<int>{3} << 0 << 5 << 3;
        QTest::newRow("empty document") << 0 << -1 << QList<int>{} << 0 << 100 << -1;
    }
    void progressWindow() {
        QFETCH(int, min);
        QFETCH(int, max);
        QFETCH(QList<int>, steps);
        QFETCH(int, barMin);
        QFETCH(int, barMax);
        QFETCH(int, value);
        modGTA2::ProgressStart(min, max, "Start...");
        frmProgress* f = modGTA2::LoadedInstance();
        QVERIFY(f && f->isVisible());
        QCOMPARE(f->windowTitle(), QStringLiteral("Please Wait..."));
        QCOMPARE(f->l->text(), QStringLiteral("Start..."));
        for (int s : steps) modGTA2::ProgressStep(s, "Stepping...");
        QCOMPARE(f->pbar->minimum(), barMin);
        QCOMPARE(f->pbar->maximum(), barMax);
        QCOMPARE(f->pbar->value(), value);
        if (!steps.isEmpty()) QCOMPARE(f->l->text(), QStringLiteral("Stepping..."));
        modGTA2::ProgressEnd();
        QVERIFY(modGTA2::LoadedInstance() == nullptr);
    }

    // Whatever a job did to the window, the next one finds it as designed.
    void nextJobStartsFromDesignValues() {
        modGTA2::ProgressStart(0, 500, "First...");
        frmProgress* first = modGTA2::LoadedInstance();
        QVERIFY(first);
        const QPoint centred = first->pos();
        modGTA2::ProgressStep(300, "Halfway...");
        first->move(centred + QPoint(40, 30));
        modGTA2::ProgressEnd();
        QVERIFY(modGTA2::LoadedInstance() == nullptr);
        QVERIFY(!first->isVisible());
        modGTA2::ProgressStart(0, -1, "Second...");  // a range the bar refuses
        frmProgress* f = modGTA2::LoadedInstance();
        QVERIFY(f && f->isVisible());
        QCOMPARE(f->pos(), centred);
        QCOMPARE(f->pbar->minimum(), 0);
        QCOMPARE(f->pbar->maximum(), 100);
        QCOMPARE(f->pbar->value(), -1);
        QCOMPARE(f->l->text(), QStringLiteral("Second..."));
        modGTA2::ProgressEnd();
    }

    void progressStepRunsEvents() {
        modGTA2::ProgressStart(0, 10, "x");
        bool ran = false;
        QTimer::singleShot(0, [&] { ran = true; });
        modGTA2::ProgressStep(1, "x");
        QVERIFY(ran);
        modGTA2::ProgressEnd();
    }

    void eventsDuringRender_data() {
        QTest::addColumn<QString>("what");
        QTest::newRow("Refresh") << "refresh";
        QTest::newRow("click") << "click";
        QTest::newRow("Page Down") << "key";
    }
    void eventsDuringRender() {
        QFETCH(QString, what);
        auto w = Open(style_);
        w->cmdGen_Click();
        const QImage clean = SheetImage(*w);
        int inner = 0;
        DocumentHooks h;
        h.progressStep = [&](double v, const std::string&) {
            if (v != 5) return;
            ++inner;
            if (what == "refresh") w->cmdGen_Click();
            if (what == "click") w->picMain_MouseUp(1, 0, 70, 130);
            if (what == "key") w->Form_KeyDown(ombrevale::keycodes::vbKeyPageDown, 0);
        };
        {
            ScopedDocumentHooks scoped(h);
            w->cmdGen_Click();
        }
        QCOMPARE(inner, 1);
        if (what == "click") {
            // The sheet is hidden while drawn: the click selects nothing.
            QCOMPARE(w->picMain->Tag, QStringLiteral("-1"));
            QVERIFY(w->sSelKind.empty());
        }
        QCOMPARE(SheetImage(*w), clean);
    }

    void sheetNarrowerThanACell() {
        auto w = Open(style_);
        w->resize(60, 300);
        QCoreApplication::processEvents();
        w->cmdGen_Click();
        QCOMPARE(w->Cols(), 0);
        QCOMPARE(w->picMain->Height(), 64);
        w->picMain_MouseUp(1, 0, 5, 5);
        QCOMPARE(w->picMain->Tag, QStringLiteral("-1"));
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
        QVERIFY(!w.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        QVERIFY(!w.windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
        ombrevale::workbench::SetTopMost(&w, true);
        QVERIFY(w.windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
        QCOMPARE(w.winId(), id);
        QCOMPARE(hides, 0);
        QVERIFY(w.isVisible());
    }

    void wheelOverSheetScrollsAsOverTheBar() {
        auto w = Open(style_);
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

    void messageBoxesBelongToTheWindow() {
        modGTA2::InstallAsDocumentHooks();
        auto w = Open(style_);
        QWidget* parent = nullptr;
        QTimer::singleShot(0, [&parent] {
            QWidget* box = QApplication::activeModalWidget();
            if (!box) return;
            parent = box->parentWidget();
            box->close();
        });
        MsgBox("a message");
        InstallDocumentHooks({});
        QCOMPARE(parent, static_cast<QWidget*>(w.get()));
    }

    void scrollBarMovesSheet() {
        auto w = Open(style_);
        w->vScroll->setValue(200);
        QCOMPARE(w->picMain->y(), -200);
        w->vScroll->setValue(0);
        QCOMPARE(w->picMain->y(), 0);
    }

    void cleanupTestCase() {
        cwd_.reset();
        dir_.reset();
    }
};

QTEST_MAIN(WorkbenchTest)
#include "workbench_test.moc"
