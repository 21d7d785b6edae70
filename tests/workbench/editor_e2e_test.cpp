// The window and the editor stand-in under Wine: a start in a cold prefix
// draws the sheet without waiting for Wine; a click on a tile, given as the
// platform would, reaches the stand-in's row before it (how the row is
// clicked is the link's own test); Refresh reads the style setting live.
#include <QtTest>
#include <QtWidgets>

#include "editorlink/modcontrolwin.h"
#include "mapview/mapwindow.h"
#include "mapwriter/mapwriter.h"
#include "settings/linkhelper.h"
#include "standin.h"
#include "support/tempdir.h"
#include "teststyle.h"
#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"
#include "workbench/mapsheet.h"
#include "workbench/picturebox.h"

constexpr int kTiles = 600;

// Sets the editor's style setting the way the editor would, through Wine's own registry.
bool SetEditorStyle(const std::string& unixPath) {
    const QString windowsPath = "Z:" + QString::fromStdString(unixPath).replace('/', '\\');
    return QProcess::execute("wine", {"reg", "add", "HKCU\\Software\\DMA Design LTd\\Gta2 Editor\\App Defaults", "/v",
                                      "App Style File", "/d", windowsPath, "/f"}) == 0;
}

class EditorE2ETest : public QObject {
    Q_OBJECT
    ombrevale::testsupport::TempDir dir_;
    ombrevale::testsupport::ScopedCurrentDir cwd_{dir_.path()};
    std::unique_ptr<ombrevale::standin::StandIn> editor_;
    std::unique_ptr<frmSTY2> window_;

private slots:
    void initTestCase() {
        const std::string missing = ombrevale::standin::MissingPieces();
        QVERIFY2(missing.empty(), ("the Wine pieces are not all there: " + missing).c_str());
        // Kept edits go to a folder of the test's own, never the user's.
        qputenv("XDG_STATE_HOME", QByteArray::fromStdString(dir_.File("state")));
        ombrevale::wbtest::WriteStyle(dir_.File("e2e.sty"), kTiles);
    }

    void coldStartDrawsTheSheetBeforeTheHelperAnswers() {
        // No Wine server runs in the prefix: the helper's start boots it.
        ombrevale::linkhelper::Shutdown();
        QProcess::execute("wineserver", {"-k"});
        QCOMPARE(QProcess::execute("wineserver", {"-w"}), 0);
        // As the program starts: the helper, progress window hooks, the style from the command line, shown.
        modControlWin::StartEditorLink();
        modGTA2::InstallAsDocumentHooks();
        window_ = std::make_unique<frmSTY2>(dir_.File("e2e.sty"));
        window_->show();
        QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
        QCOMPARE(window_->picMain->height(), (kTiles / 9 + 1) * 64);
        QVERIFY2(!ombrevale::linkhelper::Ready(), "the helper was up before the sheet was shown");
        QTRY_VERIFY_WITH_TIMEOUT(ombrevale::linkhelper::Ready(), 30000);
        editor_ = std::make_unique<ombrevale::standin::StandIn>(ombrevale::standin::Window{}, dir_.File("editor.log"));
        QVERIFY2(editor_->ok(), "the editor stand-in did not come up");
    }

    // A click, or Go to tile (Ctrl+G), which takes the click's road.
    void clickHandsTileToEditor_data() {
        QTest::addColumn<int>("tile");
        QTest::addColumn<bool>("goTo");
        QTest::addColumn<int>("row");  // the editor's list starts one tile later; tile 0 also gets row 0
        QTest::newRow("tile 0") << 0 << false << 0;
        QTest::newRow("tile 500, below the first screen") << 500 << false << 499;
        QTest::newRow("go to tile 555") << 555 << true << 554;
    }
    void clickHandsTileToEditor() {
        QFETCH(int, tile);
        QFETCH(bool, goTo);
        QFETCH(int, row);
        const int cols = window_->Cols();
        window_->vScroll->setValue(tile / cols * 64 - 128);  // the cell's row well inside the view
        const QPoint at =
            window_->picMain->mapTo(window_.get(), QPoint(tile % cols, tile / cols) * 64 + QPoint(32, 32));
        const std::size_t from = editor_->Lines().size();
        if (goTo)
            window_->GoToTile(tile);
        else
            QTest::mouseClick(window_->windowHandle(), Qt::LeftButton, {}, at);
        QVERIFY2(editor_->WaitFor("lbuttonup", from, 5000), "the stand-in logged no release");
        QCOMPARE(window_->picMain->Tag, QString::number(tile));
        QCOMPARE(editor_->Lines().at(from), QStringLiteral("setcursel %1 %1").arg(row).toStdString());
    }

    // A click on a block of the map hands its lid tile over as a click on the sheet does.
    void mapClickHandsTheLidToEditor() {
        namespace mw = ombrevale::mapwriter;
        mw::Grid g;
        g.at(10, 10, 1).lid = mw::Lid(321);
        ombrevale::stylewriter::WriteFile(dir_.File("e2e.gmp"), mw::MapBytes().Add("DMAP", mw::DmapPayload(g)).bytes());
        QVERIFY(window_->Views().map->Open(QString::fromStdString(dir_.File("e2e.gmp"))));
        auto* canvas = window_->Views().map->Window()->Canvas();
        canvas->ZoomTo(16, {0, 0});
        canvas->CentreOn(10, 10);
        const std::size_t from = editor_->Lines().size();
        QTest::mouseClick(canvas->viewport(), Qt::LeftButton, {}, canvas->ViewportPointOf(10, 10));
        QVERIFY2(editor_->WaitFor("lbuttonup", from, 5000), "the stand-in logged no release");
        QCOMPARE(window_->picMain->Tag, QStringLiteral("321"));
        QCOMPARE(editor_->Lines().at(from), std::string("setcursel 320 320"));
    }

    void refreshReadsTheRegistryLive() {
        // One window a style: the one of the clicks above lets go of it.
        window_.reset();
        ombrevale::wbtest::WriteStyle(dir_.File("second.sty"), 64);
        QVERIFY(SetEditorStyle(dir_.File("e2e.sty")));
        frmSTY2 window;
        QCOMPARE(window.Sty().GetNumOfTiles(), kTiles);
        QVERIFY(SetEditorStyle(dir_.File("second.sty")));
        // The temporary folder's name is new to this run.
        QFile userReg(qgetenv("WINEPREFIX") + "/user.reg");
        QVERIFY(userReg.open(QIODevice::ReadOnly));
        QVERIFY2(!userReg.readAll().contains(QByteArray::fromStdString(dir_.path().filename().string())),
                 "Wine wrote user.reg already: the test cannot tell a live read from the file");
        window.cmdGen_Click();
        QCOMPARE(window.Sty().GetNumOfTiles(), 64);
    }

    void cleanupTestCase() {
        window_.reset();
        ombrevale::linkhelper::Shutdown();
        editor_.reset();
    }
};

QTEST_MAIN(EditorE2ETest)
#include "editor_e2e_test.moc"
