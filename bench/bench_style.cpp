// Load and save of a full-size style: 992 tiles, 16 palette pages, 2,100
// sprites on 256-wide pages, deltas, cars. About 7 MB, like a shipped style.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "style/clssty.h"

namespace {

std::string TempPath(const char* name) { return (std::filesystem::temp_directory_path() / name).string(); }

void FillFullSize(clsSTY& doc) {
    using namespace modDeclares;
    doc.iTileCount = 992;
    doc.STYTileStore.assign(992, Tile{});
    for (std::size_t t = 0; t < 992; ++t)
        for (std::size_t i = 0; i < kTileBytes; ++i) doc.STYTileStore[t][i] = static_cast<std::uint8_t>(t + i / 64);
    doc.iPalCount = 1024;
    STYPalData.assign(1024, Palette{});
    for (std::size_t p = 0; p < 1024; ++p)
        for (std::size_t i = 0; i < 1024; ++i) STYPalData[p][i] = static_cast<std::uint8_t>(p * 7 + i);
    STYPalIndex.assign(16384, 0);
    for (std::size_t i = 0; i < STYPalIndex.size(); ++i) STYPalIndex[i] = static_cast<std::int16_t>(i % 1024);
    // 2,100 sprites of 32 x 32 on pages of 256 x 256: eight a row.
    doc.STYSpriteIndex.resize(2100);
    for (std::size_t s = 0; s < 2100; ++s) {
        const std::size_t page = s / 64, slot = s % 64;
        doc.STYSpriteIndex[s] = {static_cast<std::int32_t>(page * 65536 + (slot / 8) * 32 * 256 + (slot % 8) * 32), 32,
                                 32, 0};
    }
    doc.STYSpriteData.assign(((2100 + 63) / 64) * 65536, 1);
    STYDeltaStore.assign(200000, 3);
    STYDeltaIndex.assign(400, DeltaEntry{1, 4, 0, {100, 100, 100, 100}});
    doc.lDelxBytes = 400 * 12;
    STYCarInfo.assign(80, CarRecord{});
    for (auto& c : STYCarInfo) {
        c.numRemaps = 8;
        c.remaps.assign(8, 1);
        c.numDoors = 2;
        c.doors.assign(2, 0);
    }
    doc.lCariBytes = 80 * (15 + 8 + 4);
    doc.STYObjectInfo.assign(400, 0);
    doc.STYSurfaceSpec.assign(900, 0);
    STYRecycle = {1, 2, 3, 255};
    STYFontBase = {7, {90, 90, 90, 90, 90, 90, 90}};
    doc.Present.fill(true);
}

const std::string& FullSizeFile() {
    static const std::string path = [] {
        const std::string p = TempPath("ombrevale-bench-full.sty");
        clsSTY doc;
        FillFullSize(doc);
        doc.SaveSTY(p);
        modDeclares::ResetSharedStores();
        return p;
    }();
    return path;
}

void BM_LoadSTY(benchmark::State& state) {
    const std::string& path = FullSizeFile();
    clsSTY doc;
    for (auto _ : state) benchmark::DoNotOptimize(doc.LoadSTY(path));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(std::filesystem::file_size(path)));
}
BENCHMARK(BM_LoadSTY)->Unit(benchmark::kMillisecond);

void BM_SaveSTY(benchmark::State& state) {
    clsSTY doc;
    doc.LoadSTY(FullSizeFile());
    const std::string out = TempPath("ombrevale-bench-save.sty");
    for (auto _ : state) benchmark::DoNotOptimize(doc.SaveSTY(out));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(std::filesystem::file_size(out)));
    std::remove(out.c_str());
    std::remove((out + ".bak").c_str());
}
BENCHMARK(BM_SaveSTY)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
