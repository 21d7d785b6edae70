// A map of a stock city's size (every column filled, about 110,000 blocks,
// 14,000 of them distinct): reading it, opening it to the whole map drawn,
// a frame at each zoom from the whole map to 4 screen pixels a tile pixel,
// and a tile redrawn after an import. The memory the map and its drawing
// hold is in each row's label.

#include <benchmark/benchmark.h>

#include <QImage>
#include <cstdint>
#include <fstream>
#include <string>

#include "map/gbmp.h"
#include "mapdraw/mapframe.h"
#include "mapdraw/tilepyramid.h"
#include "mapwriter/mapwriter.h"
#include "style/clssty.h"

namespace {

namespace mw = ombrevale::mapwriter;
using namespace ombrevale;

constexpr int kFrameW = 1000, kFrameH = 720;

// Ground everywhere, buildings of 1 to 2 levels on most lots: about 110,000
// blocks, most of them repeated as a city's are (roads, pavements, walls).
const mw::Bytes& CityMap() {
    static const mw::Bytes bytes = [] {
        mw::Grid g;
        unsigned seed = 12345;
        const auto next = [&seed] { return seed = seed * 1103515245u + 12345u, (seed >> 16) & 0x7FFF; };
        for (int y = 0; y < mw::kSide; ++y)
            for (int x = 0; x < mw::kSide; ++x) {
                const bool road = x % 8 < 2 || y % 8 < 2;
                g.at(x, y, 1) = {0,
                                 0,
                                 0,
                                 0,
                                 mw::Lid(road ? 200 + (x + y) % 4 : static_cast<int>(1 + next() % 120)),
                                 static_cast<std::uint8_t>(road ? 1 << (x % 2) : 0),
                                 mw::Slope(road ? 1 : 2)};
                if (road) continue;
                const int levels = static_cast<int>(next() % 4 == 0 ? 0 : 1 + next() % 2);
                const int wall = static_cast<int>(600 + next() % 40), roof = static_cast<int>(300 + next() % 150);
                for (int z = 2; z < 2 + levels; ++z)
                    g.at(x, y, z) = {mw::Side(wall),
                                     mw::Side(wall + 1),
                                     0,
                                     0,
                                     z == 1 + levels ? mw::Lid(roof, 0, false, false, static_cast<int>(next() % 4))
                                                     : std::uint16_t{0},
                                     0,
                                     0};
            }
        return mw::MapBytes().Add("DMAP", mw::DmapPayload(g)).bytes();
    }();
    return bytes;
}

clsSTY& Style() {
    static clsSTY doc;
    static const bool loaded = doc.LoadSTY(OMBREVALE_SAMPLE);
    (void)loaded;
    return doc;
}

const map::Map& City() {
    static const map::Map m = std::move(*map::ReadMap(CityMap(), "city.gmp").map);
    return m;
}

void BM_ReadCityMap(benchmark::State& state) {
    for (auto _ : state) {
        auto read = map::ReadMap(CityMap(), "city.gmp");
        if (!read.map) state.SkipWithError(read.error.c_str());
        benchmark::DoNotOptimize(read.map->cells.data());
    }
    const auto& m = City();
    state.SetLabel("blocks " + std::to_string(m.CountBlocks()) + " distinct " + std::to_string(m.blocks.size()) +
                   " dmap " + std::to_string(CityMap().size()) + " held " +
                   std::to_string(m.cells.size() * 4 + m.blocks.size() * sizeof(map::BlockInfo)));
}
BENCHMARK(BM_ReadCityMap)->Unit(benchmark::kMillisecond);

void BM_OpenMapToWholeMapDrawn(benchmark::State& state) {
    QImage frame(kFrameW, kFrameH, QImage::Format_RGB32);
    std::size_t held = 0;
    for (auto _ : state) {
        auto read = map::ReadMap(CityMap(), "city.gmp");
        mapdraw::TilePyramid tiles(Style());
        mapdraw::MapFrame f;
        f.Draw(*read.map, tiles, {kFrameH / 256.0, 0, 0}, {}, reinterpret_cast<std::uint32_t*>(frame.bits()), kFrameW,
               kFrameH, kFrameW);
        benchmark::DoNotOptimize(frame.bits());
        held = tiles.Bytes();
    }
    state.SetLabel("tile copies " + std::to_string(held) + " frame " + std::to_string(frame.sizeInBytes()));
}
BENCHMARK(BM_OpenMapToWholeMapDrawn)->Unit(benchmark::kMillisecond);

// Screen pixels a block: the whole map in the frame, then up to 256 (4 a tile pixel).
void BM_FrameAtZoom(benchmark::State& state) {
    const double blockPx = state.range(0) == 0 ? kFrameH / 256.0 : static_cast<double>(state.range(0));
    QImage frame(kFrameW, kFrameH, QImage::Format_RGB32);
    mapdraw::TilePyramid tiles(Style());
    mapdraw::MapFrame f;
    // Panning: each frame a few pixels on, in the middle of the map.
    double left = 128 * blockPx - kFrameW / 2.0;
    for (auto _ : state) {
        left += 7;
        f.Draw(City(), tiles,
               {blockPx, blockPx * 256 <= kFrameW ? 0 : left,
                blockPx * 256 <= kFrameH ? 0 : 128 * blockPx - kFrameH / 2.0},
               {}, reinterpret_cast<std::uint32_t*>(frame.bits()), kFrameW, kFrameH, kFrameW);
        benchmark::DoNotOptimize(frame.bits());
    }
}
BENCHMARK(BM_FrameAtZoom)->Arg(0)->Arg(4)->Arg(8)->Arg(16)->Arg(32)->Arg(64)->Arg(256)->Unit(benchmark::kMillisecond);

void BM_ImportedTileRedrawn(benchmark::State& state) {
    QImage frame(kFrameW, kFrameH, QImage::Format_RGB32);
    mapdraw::TilePyramid tiles(Style());
    mapdraw::MapFrame f;
    const mapdraw::View view{32, 128 * 32 - kFrameW / 2.0, 128 * 32 - kFrameH / 2.0};
    f.Draw(City(), tiles, view, {}, reinterpret_cast<std::uint32_t*>(frame.bits()), kFrameW, kFrameH, kFrameW);
    for (auto _ : state) {
        tiles.Forget(42);
        f.Draw(City(), tiles, view, {}, reinterpret_cast<std::uint32_t*>(frame.bits()), kFrameW, kFrameH, kFrameW);
        benchmark::DoNotOptimize(frame.bits());
    }
}
BENCHMARK(BM_ImportedTileRedrawn)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
