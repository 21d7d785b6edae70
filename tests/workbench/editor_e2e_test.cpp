// The window and the editor together: a start in a cold prefix that draws the
// sheet without waiting for Wine; a click on a tile of the sheet, given to
// the window as the platform would (the widget under the point takes it),
// that selects the row before it in the editor stand-in running under Wine and
// clicks that row's top-left corner; Refresh reading the registry live.
#include <QScrollBar>
#include <QWindow>
#include <QtTest>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <thread>

#include "editorlink/modcontrolwin.h"
#include "settings/linkhelper.h"
#include "standin.h"
#include "support/tempdir.h"
#include "teststyle.h"
#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"
#include "workbench/picturebox.h"

namespace {

constexpr int kTiles = 600;
constexpr int kCell = 64;
using Clock = std::chrono::steady_clock;

double Ms(Clock::duration d) { return std::chrono::duration<double, std::milli>(d).count(); }

// Sets the editor's style setting the way the editor would, through Wine's own registry.
bool SetEditorStyle(const std::string& unixPath) {
    std::string windowsPath = "Z:" + unixPath;
    for (char& c : windowsPath)
        if (c == '/') c = '\\';
    const std::string cmd =
        "wine reg add 'HKCU\\Software\\DMA Design LTd\\Gta2 Editor\\App Defaults' /v 'App Style File' /d '" +
        windowsPath + "' /f >/dev/null 2>&1";
    return std::system(cmd.c_str()) == 0;
}

std::string UserReg() {
    std::ifstream in(std::string(std::getenv("WINEPREFIX")) + "/user.reg");
    return std::string(std::istreambuf_iterator<char>(in), {});
}

}  // namespace

class EditorE2ETest : public QObject {
    Q_OBJECT
private:
    std::unique_ptr<testsupport::TempDir> dir_;
    std::unique_ptr<testsupport::ScopedCurrentDir> cwd_;
    std::unique_ptr<standin::StandIn> editor_;
    std::unique_ptr<frmSTY2> window_;

    // A point of tile t's cell, in window coordinates, where the sheet itself
    // takes the click (not the scroll bar, the caption or outside the view).
    std::optional<QPoint> VisiblePointOf(int t) const {
        const int cols = window_->Cols();
        const QPoint cell((t % cols) * kCell, (t / cols) * kCell);
        for (QPoint inside : {QPoint(32, 32), QPoint(16, 16), QPoint(48, 16), QPoint(16, 48), QPoint(48, 48)}) {
            const QPoint p = window_->picMain->mapTo(window_.get(), cell + inside);
            if (window_->rect().contains(p) && window_->childAt(p) == window_->picMain) return p;
        }
        return std::nullopt;
    }

    // StandIn::WaitFor, polled finer: the wait is what the timing measures.
    bool WaitForRelease(std::size_t from, int timeoutMs) const {
        const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
        do {
            const auto lines = editor_->Lines();
            for (std::size_t i = from; i < lines.size(); ++i)
                if (lines[i].rfind("lbuttonup", 0) == 0) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        } while (Clock::now() < deadline);
        return false;
    }

private slots:
    void initTestCase() {
        const std::string missing = standin::MissingPieces();
        QVERIFY2(missing.empty(), ("the Wine pieces are not all there: " + missing).c_str());
        dir_ = std::make_unique<testsupport::TempDir>();
        cwd_ = std::make_unique<testsupport::ScopedCurrentDir>(dir_->path());
        wbtest::WriteStyle(dir_->File("e2e.sty"), kTiles);
    }

    void coldStartDrawsTheSheetBeforeTheHelperAnswers() {
        // No Wine server runs in the prefix: the helper's start boots it.
        ombrevale::linkhelper::Shutdown();
        QCOMPARE(std::system("wineserver -k >/dev/null 2>&1; wineserver -w"), 0);
        // As the program starts: the helper, progress window hooks, the style from the command line, shown.
        modControlWin::StartEditorLink();
        modGTA2::InstallAsDocumentHooks();
        window_ = std::make_unique<frmSTY2>(dir_->File("e2e.sty"));
        window_->show();
        QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
        QCOMPARE(window_->Cols(), 9);
        QCOMPARE(window_->picMain->height(), (kTiles / 9 + 1) * kCell);
        QVERIFY2(!ombrevale::linkhelper::Ready(), "the helper was up before the sheet was shown");
        QTRY_VERIFY_WITH_TIMEOUT(ombrevale::linkhelper::Ready(), 30000);
        editor_ = std::make_unique<standin::StandIn>(standin::Window{}, dir_->File("editor.log"));
        QVERIFY2(editor_->ok(), "the editor stand-in did not come up");
    }

    void clickHandsTileToEditor_data() {
        QTest::addColumn<int>("tile");
        QTest::addColumn<int>("row");  // the editor's list starts one tile later; tile 0 also gets row 0
        QTest::addColumn<bool>("scrolls");
        QTest::newRow("tile 0") << 0 << 0 << false;
        QTest::newRow("tile 1") << 1 << 0 << false;
        QTest::newRow("tile 2") << 2 << 1 << false;
        QTest::newRow("tile 500, below the first screen") << 500 << 499 << true;
    }
    void clickHandsTileToEditor() {
        QFETCH(int, tile);
        QFETCH(int, row);
        QFETCH(bool, scrolls);
        QWindow* handle = window_->windowHandle();
        QVERIFY(handle);
        // Page Down until some of the cell shows, as a user would.
        int pages = 0;
        std::optional<QPoint> at = VisiblePointOf(tile);
        while (!at && window_->vScroll->value() < window_->vScrollMax()) {
            const int before = window_->vScroll->value();
            QTest::keyClick(handle, Qt::Key_PageDown);
            QVERIFY2(window_->vScroll->value() > before, "Page Down did not scroll");
            ++pages;
            at = VisiblePointOf(tile);
        }
        QVERIFY2(at, qPrintable(QStringLiteral("tile %1 never came into view").arg(tile)));
        QCOMPARE(pages > 0, scrolls);

        const std::size_t from = editor_->Lines().size();
        QTest::mousePress(handle, Qt::LeftButton, {}, *at);
        const auto released = Clock::now();
        QTest::mouseRelease(handle, Qt::LeftButton, {}, *at);
        const auto handled = Clock::now();
        const bool seen = WaitForRelease(from, 5000);
        const auto logged = Clock::now();
        QVERIFY2(seen, "the stand-in logged no release");
        std::printf(
            "tile %d (Page Down x%d): release handled after %.2f ms, stand-in logged its release after %.2f ms\n", tile,
            pages, Ms(handled - released), Ms(logged - released));

        QCOMPARE(window_->picMain->Tag, QString::number(tile));
        QCOMPARE(modControlWin::hWndEditorList.load(), std::uint32_t(editor_->list()));
        auto lines = editor_->Lines();
        lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(from));
        QCOMPARE(lines.size(), std::size_t(4));
        long asked = -1, selected = -1, index = -1, left = -1, top = -1, right = 0, bottom = 0;
        QCOMPARE(std::sscanf(lines[0].c_str(), "setcursel %ld %ld", &asked, &selected), 2);
        QCOMPARE(asked, long(row));
        QCOMPARE(selected, long(row));
        QCOMPARE(std::sscanf(lines[1].c_str(), "getitemrect %ld %ld %ld %ld %ld", &index, &left, &top, &right, &bottom),
                 5);
        QCOMPARE(index, long(row));
        // The selected row is scrolled into view: its corner lies in the list's client area, on a row boundary.
        QCOMPARE(left, 0L);
        QVERIFY(bottom > top);
        QVERIFY2(top >= 0 && bottom <= 360, lines[1].c_str());
        QCOMPARE(top % (bottom - top), 0L);
        if (row == 0) QCOMPARE(top, 0L);
        std::ostringstream press, release;
        press << "lbuttondown 1 " << left << " " << top << " " << row;
        release << "lbuttonup 1 " << left << " " << top << " " << row;
        QCOMPARE(lines[2], press.str());
        QCOMPARE(lines[3], release.str());
    }

    void refreshReadsTheRegistryLive() {
        const std::string first = dir_->File("first.sty"), second = dir_->File("second.sty");
        wbtest::WriteStyle(first, 40);
        wbtest::WriteStyle(second, 64);
        QVERIFY(SetEditorStyle(first));
        frmSTY2 window;
        QCOMPARE(window.Sty().GetNumOfTiles(), 40);
        QVERIFY(SetEditorStyle(second));
        // The temporary folder's name is new to this run.
        QVERIFY2(UserReg().find(dir_->path().filename().string()) == std::string::npos,
                 "Wine wrote user.reg already: the test cannot tell a live read from the file");
        window.cmdGen_Click();
        QCOMPARE(window.Sty().GetNumOfTiles(), 64);
    }

    void cleanupTestCase() {
        window_.reset();
        ombrevale::linkhelper::Shutdown();
        editor_.reset();
        cwd_.reset();
        dir_.reset();
    }
};

QTEST_MAIN(EditorE2ETest)
#include "editor_e2e_test.moc"
