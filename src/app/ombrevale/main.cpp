// ombrevale [STYLE]: a style path on the command line is loaded instead of the editor's registry setting.
#include <QApplication>
#include <QElapsedTimer>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"

int main(int argc, char* argv[]) {
    QElapsedTimer sinceStart;
    sinceStart.start();
    QApplication app(argc, argv);
    modGTA2::InstallAsDocumentHooks();
    std::optional<std::string> style;
    if (argc > 1) style = QString::fromLocal8Bit(argv[1]).toStdString();
    frmSTY2 window(style);
    window.show();
    // OMBREVALE_STARTUP_TIMING=1: report the time to the first drawn sheet on stderr and end.
    if (const char* t = std::getenv("OMBREVALE_STARTUP_TIMING"); t && *t == '1') {
        QCoreApplication::processEvents();
        std::fprintf(stderr, "start to sheet shown: %.1f ms; render %.1f ms, of it RenderTile (temp.bmp) %.1f ms\n",
                     static_cast<double>(sinceStart.nsecsElapsed()) / 1e6,
                     static_cast<double>(window.LastRenderNs()) / 1e6,
                     static_cast<double>(window.LastTileRoadNs()) / 1e6);
        return 0;
    }
    return app.exec();
}
