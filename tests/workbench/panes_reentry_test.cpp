// Events that arrive through ProgressStep, while Refresh loads the style or
// while the sheet is drawn: Refresh again, a click on the sheet, Page Down,
// choosing a sprite or a palette, making a line of text. None may crash or
// draw outside its picture, and once the Refresh ends the stores hold what a
// quiet load gives and the sheet is the one a quiet Refresh draws.
#include <QLineEdit>
#include <QtTest>

#include "panes_fixture.h"
#include "style/hooks.h"
#include "support/storesnapshot.h"
#include "workbench/keycodes.h"
#include "workbench/picturebox.h"

namespace {

enum class Phase { Load, Render };

void Act(frmSTY2& w, const QString& what) {
    if (what == "refresh") w.cmdGen_Click();
    if (what == "click") w.picMain_MouseUp(1, 0, 70, 130);
    if (what == "key") w.Form_KeyDown(ombrevale::keycodes::vbKeyPageDown, 0);
    if (what == "sprite") {
        w.lstSprites->setCurrentRow(w.lstSprites->count() - 1);
        w.lstSprites_Click();
    }
    if (what == "palette") {
        w.lstPalettes->setCurrentRow(3);
        w.lstPalettes_Click();
    }
    if (what == "text") {
        w.txtText->setText(QStringLiteral("HELLO 123"));
        w.cmdCreateText_Click();
    }
}

}  // namespace

class PanesReentryTest : public QObject {
    Q_OBJECT

private slots:
    void eventsDuringRefresh_data() {
        QTest::addColumn<int>("phase");
        QTest::addColumn<QString>("what");
        for (const char* what : {"refresh", "click", "key", "sprite", "palette", "text"}) {
            QTest::newRow(qPrintable(QStringLiteral("load/") + what)) << int(Phase::Load) << QString(what);
            QTest::newRow(qPrintable(QStringLiteral("render/") + what)) << int(Phase::Render) << QString(what);
        }
    }

    void eventsDuringRefresh() {
        QFETCH(int, phase);
        QFETCH(QString, what);
        panestest::SampleWindow s;
        frmSTY2& w = *s.w;
        w.show();
        w.cmdGen_Click();
        const QImage cleanSheet = w.picMain->image();
        const auto cleanStores = testsupport::TakeSnapshot(w.Sty());

        const std::string wanted = phase == int(Phase::Load) ? "Loading Section" : "Rendering";
        int inner = 0;
        DocumentHooks h;
        h.progressStep = [&](double, const std::string& caption) {
            if (inner > 0 || caption.rfind(wanted, 0) != 0) return;
            ++inner;
            Act(w, what);
        };
        {
            ScopedDocumentHooks scoped(h);
            w.cmdGen_Click();
        }
        QCOMPARE(inner, 1);
        QVERIFY(testsupport::TakeSnapshot(w.Sty()) == cleanStores);
        QCOMPARE(w.picMain->image(), cleanSheet);
        // The window still answers once the Refresh is over.
        w.picMain_MouseUp(1, 0, 70, 130);
        QCOMPARE(w.picMain->Tag, QStringLiteral("19"));
    }
};

QTEST_MAIN(PanesReentryTest)
#include "panes_reentry_test.moc"
