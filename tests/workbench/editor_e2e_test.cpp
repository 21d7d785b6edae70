// The window and the editor together: a start in a cold prefix that draws the
// sheet without waiting for Wine; a click on a tile of the sheet, given to
// the window as the platform would (the widget under the point takes it),
// that selects the row before it in the editor stand-in running under Wine and
// clicks that row's top-left corner; Refresh reading the registry live.
#include <QProcess>
#include <QScrollBar>
#include <QWindow>
#include <QtTest>
#include <fstream>
#include <memory>
#include <optional>

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

int Run(const QString& program, const QStringList& args) {
    QProcess p;
    p.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    p.setStandardOutputFile(QProcess::nullDevice());
    p.start(program, args);
    return p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
}

// Sets the editor's style setting the way the editor would, through Wine's own registry.
bool SetEditorStyle(const std::string& unixPath) {
    const QString windowsPath = "Z:" + QString::fromStdString(unixPath).replace('/', '\\');
    return Run("wine", {"reg", "add", "HKCU\\Software\\DMA Design LTd\\Gta2 Editor\\App Defaults", "/v",
                        "App Style File", "/d", windowsPath, "/f"}) == 0;
}

std::string UserReg() {
    std::ifstream in(std::string(qgetenv("WINEPREFIX").constData()) + "/user.reg");
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

    // The middle of tile t's cell in window coordinates, if the sheet itself
    // takes a click there (not the scroll bar, the caption or outside the view).
    std::optional<QPoint> VisiblePointOf(int t) const {
        const int cols = window_->Cols();
        const QPoint p = window_->picMain->mapTo(window_.get(), QPoint(t % cols, t / cols) * kCell + QPoint(32, 32));
        if (window_->rect().contains(p) && window_->childAt(p) == window_->picMain) return p;
        return std::nullopt;
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
        Run("wineserver", {"-k"});
        QCOMPARE(Run("wineserver", {"-w"}), 0);
        // As the program starts: the helper, progress window hooks, the style from the command line, shown.
        modControlWin::StartEditorLink();
        modGTA2::InstallAsDocumentHooks();
        window_ = std::make_unique<frmSTY2>(dir_->File("e2e.sty"));
        window_->show();
        QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
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
        QTest::mouseClick(handle, Qt::LeftButton, {}, *at);
        QVERIFY2(editor_->WaitFor("lbuttonup", from, 5000), "the stand-in logged no release");
        QCOMPARE(window_->picMain->Tag, QString::number(tile));
        QCOMPARE(modControlWin::hWndEditorList.load(), std::uint32_t(editor_->list()));
        QStringList lines;
        for (std::size_t i = from; i < editor_->Lines().size(); ++i)
            lines << QString::fromStdString(editor_->Lines()[i]);
        QCOMPARE(lines.size(), 4);
        QCOMPARE(lines[0], QStringLiteral("setcursel %1 %1").arg(row));
        const QStringList rect = lines[1].split(' ');  // getitemrect index left top right bottom
        QCOMPARE(rect.size(), 6);
        QCOMPARE(rect[1].toInt(), row);
        const int top = rect[3].toInt(), bottom = rect[5].toInt();
        // The selected row is scrolled into view: its corner lies in the list's client area, on a row boundary.
        QCOMPARE(rect[2], QStringLiteral("0"));
        QVERIFY2(top >= 0 && bottom > top && bottom <= 360, qPrintable(lines[1]));
        QCOMPARE(top % (bottom - top), 0);
        if (row == 0) QCOMPARE(top, 0);
        QCOMPARE(lines[2], QStringLiteral("lbuttondown 1 0 %1 %2").arg(top).arg(row));
        QCOMPARE(lines[3], QStringLiteral("lbuttonup 1 0 %1 %2").arg(top).arg(row));
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
