// The waits of the window itself, on the bundled sample, offscreen: the whole
// tile sheet through "temp.bmp" against the same sheet built in memory, every
// car sprite with each of its deltas, a 40-character line of font text, the
// kept copy and Import folder's read.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "folderimport/folderimport.h"
#include "pixels/exportnames.h"
#include "style/moddeclares.h"
#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"
#include "workbench/keptcopy.h"
#include "workbench/offthread.h"
#include "workbench/picturebox.h"

namespace {

const std::string kSample = OMBREVALE_SAMPLE;

// One window for all runs, as the user has it: the sample loaded, the sheet
// drawn once. Made in main, after the application object.
frmSTY2* gWindow = nullptr;
frmSTY2& Window() { return *gWindow; }

// Refresh without the reload: the render and the paint that shows it.
void BM_RenderSheet(benchmark::State& state) {
    frmSTY2& w = Window();
    for (auto _ : state) {
        w.RenderSheet();
        QCoreApplication::processEvents();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * w.Sty().GetNumOfTiles());
}
BENCHMARK(BM_RenderSheet)->Unit(benchmark::kMillisecond);

// The floor: the same cells, columns and key colour written straight into one
// picture from the tile store and the palettes.
void BM_RenderSheet_Floor(benchmark::State& state) {
    frmSTY2& w = Window();
    const clsSTY& sty = w.Sty();
    const int cols = w.Cols();
    const int n = sty.GetNumOfTiles();
    const auto& palIndex = modDeclares::STYPalIndex;
    const auto& pals = modDeclares::STYPalData;
    for (auto _ : state) {
        QImage sheet(w.picMain->width(), (n / cols + 1) * 64, QImage::Format_RGB32);
        sheet.fill(w.picMain->BackColor());
        for (int t = 0; t < n; ++t) {
            const auto& pal = pals[static_cast<std::size_t>(palIndex[static_cast<std::size_t>(t)])];
            QRgb lut[256];
            for (std::size_t c = 0; c < 256; ++c) lut[c] = qRgb(pal[c * 4 + 2], pal[c * 4 + 1], pal[c * 4]);
            lut[0] = qRgb(255, 0, 255);
            const Tile& tile = sty.STYTileStore[static_cast<std::size_t>(t)];
            const int x0 = (t % cols) * 64, y0 = (t / cols) * 64;
            for (int y = 0; y < 64; ++y) {
                auto* line = reinterpret_cast<QRgb*>(sheet.scanLine(y0 + y)) + x0;
                for (int x = 0; x < 64; ++x) line[x] = lut[tile[static_cast<std::size_t>(y * 64 + x)]];
            }
        }
        benchmark::DoNotOptimize(sheet.constBits());
    }
}
BENCHMARK(BM_RenderSheet_Floor)->Unit(benchmark::kMillisecond);

// Every car sprite in its own palette, then each of its deltas drawn over it.
void BM_RenderCars(benchmark::State& state) {
    frmSTY2& w = Window();
    clsSTY& sty = w.Sty();
    const int cars = modDeclares::STYSpriteBase[0];
    std::int64_t pictures = 0;
    for (auto _ : state) {
        for (int s = 0; s < cars; ++s) {
            std::int16_t pal = -1;
            if (!sty.RenderSprite(s, *w.picSprite, pal)) continue;
            ++pictures;
            for (const auto& e : modDeclares::STYDeltaIndex) {
                if (e.sprite != s) continue;
                for (int d = 0; d < e.deltaCount; ++d) {
                    sty.RenderDelta(static_cast<std::int16_t>(d), static_cast<std::int16_t>(s), *w.picSprite, pal);
                    ++pictures;
                }
                break;
            }
        }
    }
    state.SetItemsProcessed(pictures);
}
BENCHMARK(BM_RenderCars)->Unit(benchmark::kMillisecond);

// Create on the Font page with a 40-character line.
void BM_FontText40(benchmark::State& state) {
    frmSTY2& w = Window();
    w.txtText->setText(QStringLiteral("THE QUICK BROWN FOX JUMPS OVER LAZY DOGS"));
    for (auto _ : state) w.cmdCreateText_Click();
}
BENCHMARK(BM_FontText40)->Unit(benchmark::kMillisecond);

// An edit until its kept copy is on disk (the wait for more edits is part of
// it); gives the longest the event loop went without a turn meanwhile: the
// copy is made on this thread, the write is the writer's.
qint64 EditUntilKept(frmSTY2& w) {
    const auto& store = w.Document().Kept()->store();
    const std::string path = w.Document().Path();
    const std::int64_t before = store.Find(path) ? store.Find(path)->keptMs : 0;
    w.Document().Record({{ombrevale::editparts::Kind::Recycling, 0}}, QStringLiteral("bench"), [] {
        modDeclares::STYRecycle.insert(modDeclares::STYRecycle.begin(), 1);
        return true;
    });
    qint64 worstGapNs = 0;
    QElapsedTimer turn;
    turn.start();
    for (;;) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        worstGapNs = std::max(worstGapNs, turn.nsecsElapsed());
        turn.restart();
        const auto kept = store.Find(path);
        if (kept && kept->keptMs != before) return worstGapNs;
    }
}

void BM_EditToKeptCopy(benchmark::State& state) {
    for (auto _ : state) EditUntilKept(Window());
}
BENCHMARK(BM_EditToKeptCopy)->Unit(benchmark::kMillisecond);

// Its time is the longest event-loop gap of each edit until the copy is kept.
void BM_KeptCopyGap(benchmark::State& state) {
    for (auto _ : state) state.SetIterationTime(static_cast<double>(EditUntilKept(Window())) / 1e9);
}
BENCHMARK(BM_KeptCopyGap)->UseManualTime()->Unit(benchmark::kMillisecond);

// Import folder's read of every tile of the sample, exported once: on the UI
// thread as it was, and off it, where its time is the longest the event loop
// went without a turn meanwhile.
const std::string& TileFolder() {
    static const QTemporaryDir dir;
    static const std::string path = [] {
        const std::string root = dir.path().toStdString();
        QDir().mkpath(dir.path() + QStringLiteral("/tiles"));
        for (int t = 0; t < Window().Sty().GetNumOfTiles(); ++t)
            Window().Sty().SaveTile(root + "/" + ombrevale::exportnames::Path({ombrevale::exportnames::Kind::Tile, t}),
                                    t);
        return root;
    }();
    return path;
}

ombrevale::folderimport::Plan ReadTiles() {
    return ombrevale::folderimport::Read(Window().Sty(), TileFolder(), ombrevale::folderimport::Colours::Nearest, {});
}

void BM_FolderReadOnUiThread(benchmark::State& state) {
    for (auto _ : state) state.counters["unchanged"] = ReadTiles().unchanged;
}
BENCHMARK(BM_FolderReadOnUiThread)->Unit(benchmark::kMillisecond);

void BM_FolderReadOffThreadGap(benchmark::State& state) {
    TileFolder();
    for (auto _ : state) {
        qint64 worstGapNs = 0;
        QElapsedTimer turn;
        QTimer tick;
        QObject::connect(&tick, &QTimer::timeout, [&] {
            worstGapNs = std::max(worstGapNs, turn.nsecsElapsed());
            turn.restart();
        });
        turn.start();
        tick.start(1);
        const ombrevale::workbench::StyleDocument::Job job(Window().Document());
        benchmark::DoNotOptimize(ombrevale::workbench::OffThread(ReadTiles));
        worstGapNs = std::max(worstGapNs, turn.nsecsElapsed());
        state.SetIterationTime(static_cast<double>(worstGapNs) / 1e9);
    }
}
BENCHMARK(BM_FolderReadOffThreadGap)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    // Offscreen unless told otherwise, and no Wine helper: the editor link is not measured here.
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    setenv("OMBREVALE_LINK_EXE", "/nonexistent/ombrevale-link.exe", 0);
    QApplication app(argc, argv);
    // Kept edits of the bench's own go to a folder of its own.
    const QTemporaryDir state;
    qputenv("XDG_STATE_HOME", state.path().toLocal8Bit());
    modGTA2::InstallAsDocumentHooks();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    auto window = std::make_unique<frmSTY2>(std::optional<std::string>(kSample));
    window->show();
    QCoreApplication::processEvents();
    gWindow = window.get();
    benchmark::RunSpecifiedBenchmarks();
    gWindow = nullptr;
    window.reset();
    benchmark::Shutdown();
    return 0;
}
