// ombrevale [STYLE]: a style path on the command line is loaded instead of the editor's registry setting.
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
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

#include "editorlink/modcontrolwin.h"
#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"
#include "workbench/picturebox.h"

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
    FirstSheetPaint(const QElapsedTimer& sinceMain, const frmSTY2& window) : sinceMain_(sinceMain), window_(window) {}

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
                         "first paint at %lld\n",
                         static_cast<double>(sinceMain_.nsecsElapsed()) / 1e6,
                         static_cast<double>(window_.LastRenderNs()) / 1e6,
                         static_cast<double>(window_.LastTileRoadNs()) / 1e6, static_cast<long long>(wall));
            // The work put off until after the first paint still counts
            // towards the peak memory a caller measures: let it run first.
            QTimer::singleShot(kSettleMs, qApp, [] { QCoreApplication::exit(0); });
        });
        return false;
    }

private:
    const QElapsedTimer& sinceMain_;
    const frmSTY2& window_;
    bool seen_ = false;
};

}  // namespace

int main(int argc, char* argv[]) {
    QElapsedTimer sinceStart;
    sinceStart.start();
    // Wine may take a second or more to come up in a cold prefix: let it do
    // so while Qt connects to the display and the style loads.
    modControlWin::StartEditorLink();
    FontConfigWarmUp fonts;
    QApplication app(argc, argv);
    fonts.Join();
    modGTA2::InstallAsDocumentHooks();
    std::optional<std::string> style;
    if (argc > 1) style = QString::fromLocal8Bit(argv[1]).toStdString();
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
