// The picture path as the window uses it: every tile of a full sheet through
// "temp.bmp" into a picture, and sprite files.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "pixels/picturecontrol.h"
#include "style/clssty.h"

namespace {

// Reads the file back as the window does, without decoding.
class FilePicture : public PictureControl {
public:
    void Cls() override {}
    bool LoadPicture(const std::string& sPath) override {
        std::ifstream in(sPath, std::ios::binary);
        bytes_.assign(std::istreambuf_iterator<char>(in), {});
        return !bytes_.empty();
    }
    void SetPixelV(int, int, std::int32_t) override {}
    int Width() const override { return 64; }
    int Height() const override { return 64; }

private:
    std::vector<char> bytes_;
};

void Fill(clsSTY& doc) {
    using namespace modDeclares;
    ResetSharedStores();
    doc.STYTileStore.assign(992, Tile{});
    doc.iTileCount = 992;
    STYPalData.assign(1024, Palette{});
    STYPalIndex.assign(16384, 0);
    for (std::size_t i = 0; i < STYPalIndex.size(); ++i) STYPalIndex[i] = static_cast<std::int16_t>(i % 1024);
    STYPalBase[0] = 992;
    doc.STYSpriteData.assign(33 * 65536, 5);
    for (std::size_t s = 0; s < 2100; ++s)
        doc.STYSpriteIndex.push_back(
            {static_cast<std::int32_t>((s / 64) * 65536 + (s % 64 / 8) * 32 * 256 + (s % 8) * 32), 30, 32, 0});
}

void BM_RenderSheetTiles(benchmark::State& state) {
    const auto dir = std::filesystem::temp_directory_path() / "ombrevale-bench-pixels";
    std::filesystem::create_directories(dir);
    std::filesystem::current_path(dir);
    clsSTY doc;
    Fill(doc);
    doc.DrawTransparent(true);
    FilePicture pic;
    for (auto _ : state)
        for (std::int32_t t = 0; t < 992; ++t) benchmark::DoNotOptimize(doc.RenderTile(t, pic));
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * 992);
}
BENCHMARK(BM_RenderSheetTiles)->Unit(benchmark::kMillisecond);

void BM_SaveSprite(benchmark::State& state) {
    clsSTY doc;
    Fill(doc);
    const auto out = (std::filesystem::temp_directory_path() / "ombrevale-bench-sprite.bmp").string();
    std::int32_t s = 0;
    for (auto _ : state) {
        std::int16_t pal = -1;
        benchmark::DoNotOptimize(doc.SaveSprite(out, s, pal));
        s = (s + 1) % 2100;
    }
}
BENCHMARK(BM_SaveSprite)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
