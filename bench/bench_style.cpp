// Load and save of the bundled sample style (about 5 MB, full-size sections),
// each beside its floor: the least any loader or saver has to do with the
// same bytes.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "style/clssty.h"

namespace {

const std::string kSample = OMBREVALE_SAMPLE;

std::string TempPath(const char* name) { return (std::filesystem::temp_directory_path() / name).string(); }

std::int64_t FileBytes(const std::string& path) { return static_cast<std::int64_t>(std::filesystem::file_size(path)); }

void BM_LoadSTY(benchmark::State& state) {
    clsSTY doc;
    for (auto _ : state) {
        if (!doc.LoadSTY(kSample)) state.SkipWithError("the sample does not load");
        benchmark::DoNotOptimize(doc.STYTileStore.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * FileBytes(kSample));
}
BENCHMARK(BM_LoadSTY)->Unit(benchmark::kMillisecond);

std::uint32_t Le32(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

// The floor: one read of the whole file, then the tiles de-striped by the
// plainest loop; every other section stays where it lies in the buffer.
void BM_LoadSTY_Floor(benchmark::State& state) {
    std::vector<std::array<std::uint8_t, 4096>> tiles;
    for (auto _ : state) {
        std::FILE* f = std::fopen(kSample.c_str(), "rb");
        std::fseek(f, 0, SEEK_END);
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::ftell(f)));
        std::fseek(f, 0, SEEK_SET);
        if (std::fread(bytes.data(), 1, bytes.size(), f) != bytes.size()) state.SkipWithError("short read");
        std::fclose(f);
        for (std::size_t at = 6; at + 8 <= bytes.size();) {
            const std::size_t size = Le32(&bytes[at + 4]);
            const std::uint8_t* p = &bytes[at + 8];
            if (std::memcmp(&bytes[at], "TILE", 4) == 0) {
                tiles.resize(size / 4096);
                for (std::size_t t = 0; t < tiles.size(); ++t)
                    for (std::size_t r = 0; r < 64; ++r)
                        std::memcpy(&tiles[t][r * 64], p + (t / 4) * 16384 + r * 256 + (t % 4) * 64, 64);
            }
            at += 8 + size;
        }
        benchmark::DoNotOptimize(tiles.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * FileBytes(kSample));
}
BENCHMARK(BM_LoadSTY_Floor)->Unit(benchmark::kMillisecond);

void BM_SaveSTY(benchmark::State& state) {
    clsSTY doc;
    doc.LoadSTY(kSample);
    const std::string out = TempPath("ombrevale-bench-save.sty");
    for (auto _ : state) {
        if (!doc.SaveSTY(out)) state.SkipWithError("the save failed");
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * FileBytes(out));
    std::remove(out.c_str());
    std::remove((out + ".bak").c_str());
}
BENCHMARK(BM_SaveSTY)->Unit(benchmark::kMillisecond);

// The floor of a save that keeps a backup: copy the old file aside, then the
// same number of bytes written in one call and renamed into place.
void BM_SaveSTY_Floor(benchmark::State& state) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(FileBytes(kSample)));
    std::FILE* in = std::fopen(kSample.c_str(), "rb");
    if (std::fread(bytes.data(), 1, bytes.size(), in) != bytes.size()) state.SkipWithError("short read");
    std::fclose(in);
    const std::string out = TempPath("ombrevale-bench-save-floor.sty");
    const std::string temp = out + ".saving";
    for (auto _ : state) {
        std::error_code ec;
        if (std::filesystem::exists(out))
            std::filesystem::copy_file(out, out + ".bak", std::filesystem::copy_options::overwrite_existing, ec);
        std::FILE* f = std::fopen(temp.c_str(), "wb");
        if (std::fwrite(bytes.data(), 1, bytes.size(), f) != bytes.size()) state.SkipWithError("short write");
        std::fclose(f);
        std::filesystem::rename(temp, out, ec);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(bytes.size()));
    std::remove(out.c_str());
    std::remove((out + ".bak").c_str());
}
BENCHMARK(BM_SaveSTY_Floor)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
