// ombrevale [STYLE]: a style path on the command line is loaded instead of the editor's registry setting.
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEvent>
#include <QFileInfo>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#if defined(Q_OS_UNIX)
#include <sys/socket.h>
#include <unistd.h>
#include <QSocketNotifier>
#include <cerrno>
#include <csignal>
#endif
#if defined(Q_OS_LINUX)
#include <dlfcn.h>

#include "settings/linkhelper.h"
#endif

#include "commandline.h"
#include "editorlink/modcontrolwin.h"
#include "style/hooks.h"
#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"
#include "workbench/mapsheet.h"
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

// OMBREVALE_STARTUP_TIMING=link: after the first paint, the longest time
// the event loop went without a turn until the editor link is up (Linux; a
// 20 s limit), so a Wine that boots meanwhile shows as a stall if it causes one.
class StallWatch : public QObject {
public:
    explicit StallWatch(const QElapsedTimer& sinceMain) : sinceMain_(sinceMain) {
        turns_.setTimerType(Qt::PreciseTimer);
        turns_.setInterval(kTickMs);
        connect(&turns_, &QTimer::timeout, this, [this] { Tick(); });
    }
    void Begin() {
        last_.start();
        turns_.start();
    }

private:
    static constexpr int kTickMs = 2;
    static constexpr qint64 kLimitNs = 20'000'000'000;
    void Tick() {
        longest_ = std::max(longest_, last_.nsecsElapsed());
        last_.start();
#if defined(Q_OS_LINUX)
        const bool up = ombrevale::linkhelper::Ready();
#else
        const bool up = true;
#endif
        if (!up && sinceMain_.nsecsElapsed() < kLimitNs) return;
        turns_.stop();
        std::fprintf(stderr, "link %s after %.1f ms; longest event-loop gap meanwhile %.1f ms\n", up ? "up" : "not up",
                     static_cast<double>(sinceMain_.nsecsElapsed()) / 1e6, static_cast<double>(longest_) / 1e6);
        QCoreApplication::exit(0);
    }
    const QElapsedTimer& sinceMain_;
    QTimer turns_;
    QElapsedTimer last_;
    qint64 longest_ = 0;
};

// OMBREVALE_STARTUP_TIMING=1: once the sheet's first paint has been flushed,
// report on stderr, and end once what follows the first paint has run. The wall clock (CLOCK_REALTIME, ns) lets a
// caller that noted the clock before the start measure from the exec itself. With a StallWatch, that one ends the
// program instead.
class FirstSheetPaint : public QObject {
public:
    FirstSheetPaint(const QElapsedTimer& sinceMain, frmSTY2& window, StallWatch* stalls)
        : sinceMain_(sinceMain), window_(window), stalls_(stalls) {}

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
                         static_cast<double>(window_.LastRender().ns) / 1e6,
                         static_cast<double>(window_.LastRender().tileRoadNs) / 1e6, window_.LastRender().tilesDrawn,
                         static_cast<int>(window_.Sty().GetNumOfTiles()), static_cast<long long>(wall));
            if (stalls_) {
                stalls_->Begin();
                return;
            }
            // The work put off until after the first paint still counts
            // towards the peak memory a caller measures: let it run first.
            QTimer::singleShot(kSettleMs, qApp, [] { QCoreApplication::exit(0); });
        });
        return false;
    }

private:
    const QElapsedTimer& sinceMain_;
    frmSTY2& window_;
    StallWatch* stalls_;
    bool seen_ = false;
};

// Wine's boot would take the cores the first paint needs, so the editor link
// launches it once the sheet is on screen, or after a second at the latest.
class LinkAfterFirstPaint : public QObject {
public:
    explicit LinkAfterFirstPaint(QWidget* sheet) {
        sheet->installEventFilter(this);
        QTimer::singleShot(kLatestMs, this, [this] { Release(); });
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            watched->removeEventFilter(this);
            QTimer::singleShot(0, this, [this] { Release(); });
        }
        return false;
    }

private:
    static constexpr int kLatestMs = 1000;
    void Release() {
        if (!std::exchange(released_, true)) modControlWin::ReleaseEditorLink();
    }
    bool released_ = false;
};

#if defined(Q_OS_UNIX)
// A logout, a kill or Ctrl+C ends the program within moments whatever it is
// doing, a message box on screen or a job running: the edits not yet kept are
// written first, then the helper and the working folder go, and the process
// ends with the status the signal gives (128 + its number). The handler only
// writes a byte; any event loop that runs, a message box's or a job's
// included, reads it. Should none run, the alarm ends the process all the same.
class EndOnSignals {
public:
    explicit EndOnSignals(std::function<void(int status)> end) : end_(std::move(end)) {
        int fds[2];
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, fds) != 0) return;
        writeEnd_ = fds[0];
        notifier_ = std::make_unique<QSocketNotifier>(fds[1], QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, qApp, [this, fd = fds[1]] {
            char byte = 0;
            [[maybe_unused]] const auto n = ::read(fd, &byte, 1);
            notifier_->setEnabled(false);
            end_(128 + caught_);
        });
        struct sigaction sa = {};
        sa.sa_handler = [](int signal) {
            // The code the signal interrupted may be about to read errno.
            const int saved = errno;
            if (caught_ == 0) caught_ = signal;
            const char byte = 1;
            [[maybe_unused]] const auto n = ::write(writeEnd_, &byte, 1);
            ::alarm(kLastResortS);
            errno = saved;
        };
        sigemptyset(&sa.sa_mask);
        sa.sa_flags = SA_RESTART;
        for (const int s : {SIGTERM, SIGINT, SIGHUP}) ::sigaction(s, &sa, nullptr);
    }

private:
    static constexpr unsigned kLastResortS = 2;
    static inline int writeEnd_ = -1;
    static inline volatile std::sig_atomic_t caught_ = 0;
    std::function<void(int)> end_;
    std::unique_ptr<QSocketNotifier> notifier_;
};
#endif

}  // namespace

int main(int argc, char* argv[]) {
    if (const auto answered = AnswerWithoutWindow(argc, argv)) return *answered;
    QElapsedTimer sinceStart;
    sinceStart.start();
    // Wine may take a second or more to come up in a cold prefix: everything
    // but the launch itself is made ready now, and nothing waits for it.
    modControlWin::HoldEditorLink();
    modControlWin::StartEditorLink();
    FontConfigWarmUp fonts;
    QApplication app(argc, argv);
    // Matches the installed ombrevale.desktop, whose icon Wayland shows.
    QGuiApplication::setDesktopFileName(QStringLiteral("ombrevale"));
    fonts.Join();
    modGTA2::InstallAsDocumentHooks();
    std::optional<std::string> style;
    QString mapFile;
    // Named from the folder the user started in, before the working folder becomes the current one.
    const auto absolute = [](const char* arg) { return QFileInfo(QString::fromLocal8Bit(arg)).absoluteFilePath(); };
    int first = 1;
    if (argc > 2 && std::string_view(argv[1]) == "--map") {
        mapFile = absolute(argv[2]);
        first = 3;
    }
    // A map on its own (the desktop opens a .gmp this way) opens beside the editor's style.
    if (argc == 2 && QString::fromLocal8Bit(argv[1]).endsWith(QLatin1String(".gmp"), Qt::CaseInsensitive)) {
        mapFile = absolute(argv[1]);
        first = 2;
    }
    if (argc > first) style = absolute(argv[first]).toStdString();
    const ombrevale::workbench::WorkFolder work;
    frmSTY2* shown = nullptr;
#if defined(Q_OS_UNIX)
    const EndOnSignals endOnSignals([&work, &shown](int status) {
        if (shown) shown->Document().KeepNow();
#if defined(Q_OS_LINUX)
        ombrevale::linkhelper::Shutdown();
#endif
        if (!work.Path().isEmpty()) QDir(work.Path()).removeRecursively();
        std::_Exit(status);
    });
#endif
    if (!work.Problem().isEmpty()) MsgBox(work.Problem().toStdString(), "Ombrevale", MsgIcon::Exclamation);
    frmSTY2 window(style);
    shown = &window;
    std::optional<FirstSheetPaint> timing;
    std::optional<StallWatch> stalls;
    const std::string timingMode =
        std::getenv("OMBREVALE_STARTUP_TIMING") ? std::getenv("OMBREVALE_STARTUP_TIMING") : "";
    if (timingMode == "link") stalls.emplace(sinceStart);
    if (timingMode == "1" || stalls) {
        timing.emplace(sinceStart, window, stalls ? &*stalls : nullptr);
        // On the application, installed last, so it sees the paint before the
        // window's own filter sets off what follows the first paint.
        app.installEventFilter(&*timing);
    }
    const LinkAfterFirstPaint link(window.picMain);
    window.show();
    // The map opens beside the window once the desktop has placed it.
    if (!mapFile.isEmpty())
        QTimer::singleShot(kSettleMs, &window, [&window, mapFile] { window.Views().map->Open(mapFile); });
    const int code = app.exec();
    shown = nullptr;
    return code;
}
