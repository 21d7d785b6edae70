// ombrevale [STYLE]: a style path on the command line is loaded instead of the editor's registry setting.
#include <QApplication>
#include <optional>
#include <string>

#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    modGTA2::InstallAsDocumentHooks();
    std::optional<std::string> style;
    if (argc > 1) style = QString::fromLocal8Bit(argv[1]).toStdString();
    frmSTY2 window(style);
    window.show();
    return app.exec();
}
