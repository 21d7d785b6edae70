// Any bytes as a style file. Whatever loads must render and save every tile,
// sprite and delta without harm, take a changed delta without disturbing any
// other, save, and load again into a document that saves to the same bytes.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "fuzz_common.h"
#include "style/clssty.h"

using namespace modDeclares;

namespace {

// Small inputs can still claim thousands of sprites; the first and last
// indices are where the bounds are, so those are the ones taken.
constexpr std::int32_t kEachEnd = 96;

template <typename F>
void ForEdges(std::int32_t count, F&& f) {
    for (std::int32_t i = 0; i < count; ++i) {
        if (i == kEachEnd && count > 2 * kEachEnd) i = count - kEachEnd;
        f(i);
    }
}

void RenderAndSaveEverything(clsSTY& doc) {
    ombrevale::fuzzing::CheckingPicture pic;
    ForEdges(doc.GetNumOfTiles(), [&](std::int32_t t) {
        doc.RenderTile(t, pic);
        doc.SaveTile("tile.bmp", t);
    });
    ForEdges(doc.GetNumOfSprx(), [&](std::int32_t s) {
        std::int16_t pal = -1;
        doc.RenderSprite(s, pic, pal);
        pal = -1;
        doc.SaveSprite("sprite.bmp", s, pal);
    });
    ForEdges(static_cast<std::int32_t>(STYDeltaIndex.size()), [&](std::int32_t e) {
        const auto& entry = STYDeltaIndex[static_cast<std::size_t>(e)];
        for (std::int16_t d = 0; d < entry.deltaCount; ++d) {
            std::int16_t pal = -1;
            doc.RenderDelta(d, entry.sprite, pic, pal);
            doc.SaveDelta("delta.bmp", d, entry.sprite, pal);
        }
    });
}

using DeltaKey = std::pair<std::int16_t, std::int16_t>;  // sprite, delta

std::map<DeltaKey, ByteString> EveryDelta(const clsSTY& doc) {
    std::map<DeltaKey, ByteString> all;
    for (const auto& entry : STYDeltaIndex)
        for (std::int16_t d = 0; d < entry.deltaCount; ++d)
            all.emplace(DeltaKey{entry.sprite, d}, doc.GetDeltaString(d, entry.sprite));
    return all;
}

// Changes a few pixels of the first delta's sprite, picked by the input itself.
void ChangeOneDelta(clsSTY& doc, const std::uint8_t* data, std::size_t size) {
    if (STYDeltaIndex.empty() || STYDeltaIndex[0].deltaCount == 0 || size == 0) return;
    const std::int16_t sprite = STYDeltaIndex[0].sprite;
    const std::int16_t delta = static_cast<std::int16_t>(data[0] % STYDeltaIndex[0].deltaCount);
    ByteString bits = doc.GetBits(sprite);
    if (bits.empty()) return;
    for (std::size_t i = 0; i < std::min<std::size_t>(size, 16); ++i)
        bits[(data[i] * 131u + i * 977u) % bits.size()] ^= data[i] | 1u;

    auto before = EveryDelta(doc);
    if (!doc.SetDeltaBits(delta, sprite, bits)) return;
    auto after = EveryDelta(doc);
    before.erase({sprite, delta});
    after.erase({sprite, delta});
    if (before != after) ombrevale::fuzzing::Broken("SetDeltaBits changed another delta");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    ombrevale::fuzzing::EnterScratchFolder();
    ombrevale::fuzzing::SilenceDocument();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ombrevale::fuzzing::WriteFile("in.sty", data, size);
    ResetSharedStores();
    clsSTY doc;
    if (!doc.LoadSTY("in.sty")) return 0;
    RenderAndSaveEverything(doc);
    ChangeOneDelta(doc, data, size);

    if (!doc.SaveSTY("first.sty")) ombrevale::fuzzing::Broken("a loaded document did not save");
    ResetSharedStores();
    clsSTY again;
    if (!again.LoadSTY("first.sty")) ombrevale::fuzzing::Broken("a saved document did not load");
    if (!again.SaveSTY("second.sty")) ombrevale::fuzzing::Broken("a reloaded document did not save");
    if (ombrevale::fuzzing::ReadFile("first.sty") != ombrevale::fuzzing::ReadFile("second.sty"))
        ombrevale::fuzzing::Broken("a saved file did not come back byte for byte");
    return 0;
}
