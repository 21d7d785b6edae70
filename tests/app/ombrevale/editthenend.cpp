// A window that imports a picture into tile 5 of STYLE, writes the bytes a
// save would write as EXPECTED, and then ends as MODE says: "esc" presses Esc
// at once, "wait" says "edited" and runs until it is killed.
#include <QApplication>
#include <QtTest>
#include <cstdio>

#include "stylewriter/stylewriter.h"
#include "workbench/colourchoice.h"
#include "workbench/frmsty2.h"
#include "workbench/panes_dialogs.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc != 5) return 2;
    const QString picture = QString::fromLocal8Bit(argv[2]);
    ombrevale::panesdialogs::Install(
        {{},
         [&](QWidget*, ombrevale::panesdialogs::FileMode, const QString&, const QString&, const QString&) {
             return picture;
         },
         [](QWidget*, const QString&) { return true; },
         [](ombrevale::workbench::ColourChoice&) { return ombrevale::workbench::ColourAnswer::Nearest; },
         {}});
    frmSTY2 window{std::string(argv[1])};
    window.picMain_MouseUp(1, 0, 5 * 64 + 32, 32);
    window.tlbMain_ButtonClick(QStringLiteral("import"));
    ombrevale::stylewriter::WriteFile(argv[4], window.Sty().SavedBytes());
    if (std::string(argv[3]) == "esc") {
        QTest::keyClick(&window, Qt::Key_Escape);
        return 0;
    }
    std::puts("edited");
    std::fflush(stdout);
    return app.exec();
}
