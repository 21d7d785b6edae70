// The hand-over as the user waits for it: from the release of the mouse on a
// tile of the sheet to the editor's row pressed, over 50 clicks, the first
// click after start-up included. The editor is editor-stand-in.exe under Wine,
// started by the caller with --clock 1, whose log gives the press's wall clock.
//   bench_handover STYLE STAND_IN_LOG
// Prints "handover <ms> ..." for each click, then "handover p50 <ms> p95 <ms>".
#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "editorlink/modcontrolwin.h"
#include "settings/linkhelper.h"
#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"
#include "workbench/picturebox.h"

namespace {

constexpr int kClicks = 50;
constexpr int kCell = 64;

long long NowNs() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

// The wall clock of the first press logged after line `from`, or 0.
long long PressAfter(const std::string& log, std::size_t from) {
    std::ifstream in(log);
    std::size_t n = 0;
    for (std::string line; std::getline(in, line); ++n) {
        long long at = 0;
        if (n >= from && line.rfind("lbuttondown", 0) == 0 &&
            std::sscanf(line.c_str(), "%*s %*d %*d %*d %*d at %lld", &at) == 1)
            return at;
    }
    return 0;
}

std::size_t LineCount(const std::string& log) {
    std::ifstream in(log);
    std::size_t n = 0;
    for (std::string line; std::getline(in, line);) ++n;
    return n;
}

}  // namespace

int main(int argc, char* argv[]) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: bench_handover STYLE STAND_IN_LOG\n");
        return 2;
    }
    const std::string log = argv[2];
    modControlWin::StartEditorLink();
    QApplication app(argc, argv);
    modGTA2::InstallAsDocumentHooks();
    frmSTY2 window{std::string(argv[1])};
    window.show();
    if (!QTest::qWaitForWindowExposed(&window)) return 1;
    // The user's first click comes after the start-up's search has been answered.
    QElapsedTimer waited;
    waited.start();
    while (!ombrevale::linkhelper::Ready() && waited.elapsed() < 30000) QTest::qWait(5);
    if (!ombrevale::linkhelper::Ready()) {
        std::fprintf(stderr, "bench_handover: ombrevale-link.exe did not come up\n");
        return 1;
    }
    QWindow* handle = window.windowHandle();
    const int cols = window.Cols();
    std::vector<double> ms;
    for (int i = 0; i < kClicks; ++i) {
        // Cells of the first screen, a different one each time.
        const int t = (i * 7) % (cols * 5);
        const QPoint at = window.picMain->mapTo(&window, QPoint((t % cols) * kCell + 32, (t / cols) * kCell + 32));
        const std::size_t from = LineCount(log);
        QTest::mousePress(handle, Qt::LeftButton, {}, at);
        const long long released = NowNs();
        QTest::mouseRelease(handle, Qt::LeftButton, {}, at);
        long long pressed = 0;
        QElapsedTimer wait;
        wait.start();
        while ((pressed = PressAfter(log, from)) == 0 && wait.elapsed() < 5000)
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        if (pressed == 0) {
            std::fprintf(stderr, "bench_handover: click %d never reached the editor\n", i + 1);
            return 1;
        }
        ms.push_back(static_cast<double>(pressed - released) / 1e6);
        std::printf("handover %.2f ms (tile %d)\n", ms.back(), t);
    }
    std::vector<double> sorted = ms;
    std::sort(sorted.begin(), sorted.end());
    auto at = [&](double q) {
        return sorted[static_cast<std::size_t>(q * static_cast<double>(sorted.size() - 1) + 0.5)];
    };
    std::printf("handover p50 %.2f p95 %.2f first %.2f\n", at(0.5), at(0.95), ms.front());
    return 0;
}
