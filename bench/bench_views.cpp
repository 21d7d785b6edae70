// The added views on the largest style the format allows, 32,767 tiles: the
// surface types read and tinted over the sheet, and the usage of a palette
// that colours every tile, as the window lists it. The stores are filled in
// memory; no tile pixels are needed for either view.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QListWidget>
#include <QScrollBar>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "pixels/paletteusage.h"
#include "style/moddeclares.h"
#include "style/surfaces.h"
#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"
#include "workbench/paletteusagewindow.h"
#include "workbench/picturebox.h"

namespace {

constexpr int kTiles = 32767;
constexpr int kSprites = 2089;
constexpr int kCars = 256;
frmSTY2* gWindow = nullptr;

// Every tile but 0 in one of the nine lists, in turn.
ByteString FullSpec() {
    ByteString spec;
    for (int list = 0; list < 9; ++list) {
        for (int t = 1 + list; t < kTiles; t += 9) {
            spec.push_back(static_cast<std::uint8_t>(t & 0xFF));
            spec.push_back(static_cast<std::uint8_t>(t >> 8));
        }
        spec.insert(spec.end(), {0, 0});
    }
    return spec;
}

// A palette table as long as the format allows, every entry palette 0, so
// palette 0 colours all the tiles, sprites and remaps it can.
void FillStores(frmSTY2& w) {
    using namespace modDeclares;
    w.Sty().iTileCount = kTiles;
    w.Sty().STYSurfaceSpec = FullSpec();
    STYPalIndex.assign(32767, 0);
    STYPalBase = {16384, kSprites, 0, 0, 0, 0, 0, 0};
    STYSpriteBase = {kCars, static_cast<std::int16_t>(kSprites - kCars), 0, 0, 0, 0};
    STYCarInfo.assign(kCars, CarRecord{});
    for (auto& car : STYCarInfo) {
        car.sprite = 1;
        for (std::uint8_t m = 0; m < 64; ++m) car.remaps.push_back(m);
    }
    QStringList rows;
    for (int s = 1; s <= kSprites; ++s) rows << QStringLiteral("Sprite: %1").arg(s);
    w.lstSprites->addItems(rows);
    w.lstPalettes->addItem(QStringLiteral("Palette: 1"));
    w.lstPalettes->setCurrentRow(0);
    w.picMain->resize(w.picMain->width(), (kTiles / w.Cols() + 1) * 64);
}

void BM_ReadSurfaces(benchmark::State& state) {
    const ByteString spec = FullSpec();
    for (auto _ : state) benchmark::DoNotOptimize(ombrevale::surfaces::ReadSurfaces(spec, kTiles));
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kTiles);
}
BENCHMARK(BM_ReadSurfaces)->Unit(benchmark::kMicrosecond);

// The toggle: the lists read and handed to the tint.
void BM_SurfaceToggle(benchmark::State& state) {
    for (auto _ : state) {
        gWindow->Views().ShowSurfaces(true);
        gWindow->Views().ShowSurfaces(false);
    }
}
BENCHMARK(BM_SurfaceToggle)->Unit(benchmark::kMicrosecond);

// One screen of the sheet with its tint, at the end of the sheet, where a scroll ends.
void BM_SurfaceTintScreen(benchmark::State& state) {
    gWindow->Views().ShowSurfaces(true);
    PictureBox* sheet = gWindow->picMain;
    const QRect screen(0, sheet->height() - 480, sheet->width(), 480);
    QImage out(screen.size(), QImage::Format_RGB32);
    for (auto _ : state) sheet->render(&out, QPoint(), QRegion(screen));
    gWindow->Views().ShowSurfaces(false);
}
BENCHMARK(BM_SurfaceTintScreen)->Unit(benchmark::kMillisecond);

void BM_UsesOfPalette(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(ombrevale::paletteusage::UsesOfPalette(0, kTiles, kSprites));
}
BENCHMARK(BM_UsesOfPalette)->Unit(benchmark::kMicrosecond);

// Ctrl+U as the window does it: the usage computed and every entry listed.
void BM_PaletteUsageList(benchmark::State& state) {
    for (auto _ : state) gWindow->Views().usage->Open();
    state.counters["rows"] = gWindow->Views().usage->count();
}
BENCHMARK(BM_PaletteUsageList)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    setenv("OMBREVALE_LINK_EXE", "/nonexistent/ombrevale-link.exe", 0);
    QApplication app(argc, argv);
    modGTA2::InstallAsDocumentHooks();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    // No style: the stores are filled here.
    auto window = std::make_unique<frmSTY2>(std::optional<std::string>(std::string()));
    window->show();
    QCoreApplication::processEvents();
    FillStores(*window);
    gWindow = window.get();
    benchmark::RunSpecifiedBenchmarks();
    gWindow = nullptr;
    window.reset();
    benchmark::Shutdown();
    return 0;
}
