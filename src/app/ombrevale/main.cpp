// ombrevale [STYLE]: a style path on the command line is loaded instead of the editor's registry setting.
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QFileInfo>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <thread>

#if defined(Q_OS_LINUX)
#include <dlfcn.h>
#endif

#include "commandline.h"
#include "style/hooks.h"
#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"
#include "workbench/picturebox.h"
#include "workbench/workfolder.h"

namespace {

constexpr int kSettleMs = 300;

// Fontconfig reads dozens of XML files before the first widget can measure
// text. Read them on a second thread while Qt connects to the display; Qt's
// own call then finds the work done. Looked up at run time, so a system
// without fontconfig (Windows) or with another Qt font back end skips it.
class FontConfigWarmUp {
public:
    FontConfigWarmUp() {
#if defined(Q_OS_LINUX)
        if (auto* init = reinterpret_cast<int (*)()>(dlsym(RTLD_DEFAULT, "FcInit")))
            thread_ = std::thread([init] { init(); });
#endif
    }
    ~FontConfigWarmUp() { Join(); }
    void Join() {
        if (thread_.joinable()) thread_.join();
    }

private:
    std::thread thread_;
};

// OMBREVALE_STARTUP_TIMING=1: once the sheet's first paint has been flushed,
// report on stderr, and end once what follows the first paint has run. The wall clock (CLOCK_REALTIME, ns) lets a
// caller that noted the clock before the start measure from the exec itself.
class FirstSheetPaint : public QObject {
public:
    FirstSheetPaint(const QElapsedTimer& sinceMain, frmSTY2& window) : sinceMain_(sinceMain), window_(window) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Paint || watched != window_.picMain || seen_) return false;
        seen_ = true;
        // The timer runs once the paint has been flushed to the window.
        QTimer::singleShot(0, this, [this] {
            const auto wall = std::chrono::duration_cast<std::chrono::nanoseconds>(
                                  std::chrono::system_clock::now().time_since_epoch())
                                  .count();
            std::fprintf(stderr,
                         "start to sheet shown: %.1f ms; render %.1f ms, of it RenderTile (temp.bmp) %.1f ms\n"
                         "tiles drawn %d of %d\n"
                         "first paint at %lld\n",
                         static_cast<double>(sinceMain_.nsecsElapsed()) / 1e6,
                         static_cast<double>(window_.LastRenderNs()) / 1e6,
                         static_cast<double>(window_.LastTileRoadNs()) / 1e6, window_.LastTilesDrawn(),
                         static_cast<int>(window_.Sty().GetNumOfTiles()), static_cast<long long>(wall));
            // The work put off until after the first paint still counts
            // towards the peak memory a caller measures: let it run first.
            QTimer::singleShot(kSettleMs, qApp, [] { QCoreApplication::exit(0); });
        });
        return false;
    }

private:
    const QElapsedTimer& sinceMain_;
    frmSTY2& window_;
    bool seen_ = false;
};

}  // namespace

int main(int argc, char* argv[]) {
    if (const auto answered = AnswerWithoutWindow(argc, argv)) return *answered;
    QElapsedTimer sinceStart;
    sinceStart.start();
    FontConfigWarmUp fonts;
    QApplication app(argc, argv);
    // Matches the installed ombrevale.desktop, whose icon Wayland shows.
    QGuiApplication::setDesktopFileName(QStringLiteral("ombrevale"));
    fonts.Join();
    modGTA2::InstallAsDocumentHooks();
    std::optional<std::string> style;
    // Named from the folder the user started in, before the working folder becomes the current one.
    if (argc > 1) style = QFileInfo(QString::fromLocal8Bit(argv[1])).absoluteFilePath().toStdString();
    const workbench::WorkFolder work;
    if (!work.Problem().isEmpty()) MsgBox(work.Problem().toStdString(), "Ombrevale", MsgIcon::Exclamation);
    frmSTY2 window(style);
    std::optional<FirstSheetPaint> timing;
    if (const char* t = std::getenv("OMBREVALE_STARTUP_TIMING"); t && *t == '1') {
        timing.emplace(sinceStart, window);
        // On the application, installed last, so it sees the paint before the
        // window's own filter sets off what follows the first paint.
        app.installEventFilter(&*timing);
    }
    window.show();
    return app.exec();
}
