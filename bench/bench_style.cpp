// Load and save of the bundled sample style (about 5 MB, full-size sections),
// each beside its floor: the least any loader or saver has to do with the
// same bytes. A picture imported into one of its tiles and its largest
// sprite, every pixel a colour the palette lacks. And the memory one undo
// step of a tile or a delta edit holds.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "pixels/editparts.h"
#include "pixels/pictureimport.h"
#include "style/clssty.h"
#include "style/moddeclares.h"
#include "style/palettebases.h"

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

// A 24-bit BMP of w x h pixels in colours no palette is likely to hold exactly.
std::string WriteNoisyBmp(const char* name, int w, int h) {
    const auto stride = static_cast<std::uint32_t>((w * 3 + 3) / 4 * 4);
    std::vector<std::uint8_t> b(54 + stride * static_cast<std::uint32_t>(h), 0);
    const auto put = [&b](std::size_t at, std::uint32_t v) {
        for (std::size_t i = 0; i < 4; ++i) b[at + i] = static_cast<std::uint8_t>(v >> (8 * i));
    };
    b[0] = 'B';
    b[1] = 'M';
    put(10, 54);
    put(14, 40);
    put(18, static_cast<std::uint32_t>(w));
    put(22, static_cast<std::uint32_t>(h));
    put(26, 1 | 24 << 16);
    std::uint32_t seed = 12345;
    for (std::size_t i = 54; i < b.size(); ++i) {
        seed = seed * 1103515245u + 12345u;
        b[i] = static_cast<std::uint8_t>(seed >> 16);
    }
    const std::string path = TempPath(name);
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (f) {
        std::fwrite(b.data(), 1, b.size(), f);
        std::fclose(f);
    }
    return path;
}

// Read, fitted to the target's palette by nearest colour, and written into the document.
void Import(benchmark::State& state, bool sprite) {
    namespace imp = ombrevale::pictureimport;
    clsSTY doc;
    if (!doc.LoadSTY(kSample)) return state.SkipWithError("the sample does not load");
    std::int32_t target = 5, w = 64, h = 64;
    if (sprite)
        for (std::int32_t s = 0; s < static_cast<std::int32_t>(doc.STYSpriteIndex.size()); ++s)
            if (doc.GetSpriteWidth(s) * doc.GetSpriteHeight(s) > w * h || target == 5) {
                target = s;
                w = doc.GetSpriteWidth(s);
                h = doc.GetSpriteHeight(s);
            }
    const std::string file = WriteNoisyBmp("ombrevale-bench-import.bmp", w, h);
    const auto pal =
        sprite ? ombrevale::palettebases::SpritePalette(target) : ombrevale::palettebases::TilePalette(target);
    if (!pal) return state.SkipWithError("the target has no palette");
    for (auto _ : state) {
        ombrevale::picturefile::Picture pic;
        if (ombrevale::picturefile::ReadBMPFile(file, pic)) return state.SkipWithError("the picture does not read");
        const auto fitted = imp::Fit(pic, *pal);
        const auto refused =
            sprite ? imp::IntoSprite(doc, target, fitted.numbers) : imp::IntoTile(doc, target, fitted.numbers);
        if (refused || fitted.changed == 0) return state.SkipWithError("the import did not map colours");
    }
    state.SetLabel(std::to_string(w) + "x" + std::to_string(h));
    std::remove(file.c_str());
}
void BM_ImportTileNearest(benchmark::State& state) { Import(state, false); }
void BM_ImportSpriteNearest(benchmark::State& state) { Import(state, true); }
BENCHMARK(BM_ImportTileNearest)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ImportSpriteNearest)->Unit(benchmark::kMillisecond);

// A step as the window records it: the part before, the edit, the part after, both cut to what changed.
// Each round changes the target again, so that no round records a step of nothing.
void StepBytes(benchmark::State& state, ombrevale::editparts::Kind kind) {
    namespace parts = ombrevale::editparts;
    clsSTY doc;
    if (!doc.LoadSTY(kSample)) return state.SkipWithError("the sample does not load");
    const std::int16_t sprite = modDeclares::STYDeltaIndex.at(0).sprite;
    const std::int32_t target = kind == parts::Kind::Tile ? 5 : sprite;
    std::size_t bytes = 0, whole = 0;
    std::uint8_t round = 0;
    for (auto _ : state) {
        parts::Part before = parts::Take(doc, kind, target);
        ++round;
        bool made = false;
        if (kind == parts::Kind::Tile) {
            made = doc.SetBitsTile(target, ByteString(4096, round));
        } else {
            ByteString bits = doc.GetBits(sprite);
            bits[bits.size() / 2 + round % 2] ^= 1;
            made = doc.SetDeltaBits(0, sprite, bits);
        }
        if (!made) return state.SkipWithError("the edit was refused");
        parts::Part after = parts::Take(doc, kind, target);
        whole = parts::StepBytes(before, after);
        parts::Narrow(before, after);
        bytes = parts::StepBytes(before, after);
        benchmark::DoNotOptimize(bytes);
    }
    // In the label, not in counters: the CSV's header is written before this benchmark runs.
    state.SetLabel("step " + std::to_string(bytes) + " uncut " + std::to_string(whole));
}
void BM_UndoStepTile(benchmark::State& state) { StepBytes(state, ombrevale::editparts::Kind::Tile); }
void BM_UndoStepDelta(benchmark::State& state) { StepBytes(state, ombrevale::editparts::Kind::Deltas); }
BENCHMARK(BM_UndoStepTile)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_UndoStepDelta)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
