// A photographic picture into tile 7 of the bundled sample, whose palette 100
// other tiles share: how close the tile comes to the picture with the nearest
// colours of that palette and with a palette of its own (PSNR over red, green
// and blue), and the time of one import with a palette of its own.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <string>

#include "pixels/ownpalette.h"
#include "pixels/pictureimport.h"
#include "quantise/reduce.h"
#include "style/clssty.h"
#include "style/moddeclares.h"

namespace {

using ombrevale::picturefile::Picture;

constexpr std::int32_t kTile = 7;

// Smooth gradients over the whole colour range, with noise as a camera gives:
// about 250 levels of each channel across the picture, few colours repeated.
Picture Photographic() {
    Picture pic;
    pic.width = pic.height = 64;
    std::uint32_t seed = 2024;
    const auto noise = [&seed] {
        double sum = 0;
        for (int i = 0; i < 4; ++i) {
            seed = seed * 1664525u + 1013904223u;
            sum += static_cast<double>(seed >> 8) / 16777216.0;
        }
        return (sum - 2.0) * 14.0;
    };
    const auto channel = [](double v) {
        return static_cast<std::uint8_t>(std::lround(std::fmin(255, std::fmax(0, v))));
    };
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) {
            const double r = 128 + 110 * std::sin(x / 10.0 + y / 23.0) + noise();
            const double g = 20 + 3.5 * y + noise();
            const double b = 235 - 2.2 * x - 1.1 * y + 40 * std::cos(y / 7.0) + noise();
            pic.colours.push_back({channel(r), channel(g), channel(b), 255});
        }
    return pic;
}

double TilePsnr(const clsSTY& doc, const Picture& pic) {
    const Tile& t = doc.STYTileStore[kTile];
    const std::int32_t pal = modDeclares::STYPalIndex[kTile];
    double sum = 0;
    for (std::size_t i = 0; i < pic.colours.size(); ++i) {
        const std::int32_t c = doc.GetCol(pal, t.data()[i]);
        const auto& want = pic.colours[i];
        const double dr = (c & 0xFF) - want.r, dg = (c >> 8 & 0xFF) - want.g, db = (c >> 16 & 0xFF) - want.b;
        sum += dr * dr + dg * dg + db * db;
    }
    return 10 * std::log10(255.0 * 255.0 / (sum / (3.0 * static_cast<double>(pic.colours.size()))));
}

void BM_ImportTileOwnPalette(benchmark::State& state) {
    namespace imp = ombrevale::pictureimport;
    clsSTY doc;
    if (!doc.LoadSTY(OMBREVALE_SAMPLE)) return state.SkipWithError("the sample does not load");
    const Picture pic = Photographic();
    const std::int16_t shared = modDeclares::STYPalIndex[kTile];
    const std::int16_t count = doc.iPalCount;
    if (imp::IntoTile(doc, kTile, imp::Fit(pic, shared).numbers)) return state.SkipWithError("nearest was refused");
    const double nearest = TilePsnr(doc, pic);
    const ombrevale::ownpalette::Target target{ombrevale::ownpalette::TargetKind::Tile, kTile};
    for (auto _ : state) {
        // Each round finds the palette shared again, and adds a page for its own.
        state.PauseTiming();
        modDeclares::STYPalIndex[kTile] = shared;
        modDeclares::STYPalData.resize(static_cast<std::size_t>(count));
        doc.iPalCount = count;
        state.ResumeTiming();
        const auto place = ombrevale::quantise::ImportOwnPalette(doc, target, pic).place;
        if (!place || place->inPlace) return state.SkipWithError("no new palette");
    }
    state.SetLabel("psnr " + std::to_string(nearest) + " " + std::to_string(TilePsnr(doc, pic)));
}
BENCHMARK(BM_ImportTileOwnPalette)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
