// info: the document's counts and tables as one JSON object.
#include <cstdio>
#include <string>
#include <vector>

#include "clierror.h"
#include "commands.h"
#include "style/clssty.h"

namespace cli {
namespace {

template <typename T>
std::string List(const T& values, std::size_t count) {
    std::string out = "[";
    for (std::size_t i = 0; i < count && i < values.size(); ++i) {
        if (i) out += ", ";
        out += std::to_string(values[i]);
    }
    return out + "]";
}

std::string Pair(const char* key, long long value) { return std::string("\"") + key + "\": " + std::to_string(value); }

std::string CarJson(const modDeclares::CarRecord& r) {
    std::string s = "{";
    s += Pair("model", r.model) + ", " + Pair("sprite", r.sprite) + ", " + Pair("width", r.width) + ", " +
         Pair("height", r.height) + ", " + Pair("passengers", r.passengers) + ", " + Pair("wreck", r.wreck) + ", " +
         Pair("rating", r.rating) + ", " + Pair("front_wheel_offset", r.frontWheelOffset) + ", " +
         Pair("rear_wheel_offset", r.rearWheelOffset) + ", " + Pair("front_window_offset", r.frontWindowOffset) + ", " +
         Pair("rear_window_offset", r.rearWindowOffset) + ", ";
    s += "\"remaps\": " + List(r.remaps, r.numRemaps) + ", " + Pair("doors", r.numDoors) + "}";
    return s;
}

}  // namespace

int RunInfo(const Args& args) {
    clsSTY doc;
    LoadStyle(doc, args.words[0]);
    using namespace modDeclares;

    std::string sections = "[";
    bool first = true;
    for (int i = 0; i < kSectionCount; ++i) {
        if (!doc.IsPresent(static_cast<Section>(i))) continue;
        sections +=
            std::string(first ? "" : ", ") + "\"" + std::string(kSectionTags[static_cast<std::size_t>(i)]) + "\"";
        first = false;
    }
    sections += "]";

    std::string deltas = "[";
    for (std::size_t i = 0; i < STYDeltaIndex.size(); ++i) {
        const auto& e = STYDeltaIndex[i];
        deltas += std::string(i ? ", " : "") + "{" + Pair("sprite", e.sprite) +
                  ", \"sizes\": " + List(e.deltaSizes, e.deltaCount) + "}";
    }
    deltas += "]";
    std::string cars = "[";
    for (std::size_t i = 0; i < STYCarInfo.size(); ++i) cars += std::string(i ? ", " : "") + CarJson(STYCarInfo[i]);
    cars += "]";
    const std::size_t recycleEntries = STYRecycle.empty() ? 0 : STYRecycle.size() - 1;
    const std::size_t fontEntries = STYFontBase.count > 0 ? static_cast<std::size_t>(STYFontBase.count) : 0;

    std::string out = "{\"sections\": " + sections + ", " + Pair("tiles", doc.GetNumOfTiles()) + ", " +
                      Pair("palettes", doc.GetNumOfPals()) + ", " + Pair("palx", doc.GetNumOfPalx()) + ", " +
                      Pair("sprites", doc.GetNumOfSprx()) + ", \"sprite_base\": " + List(STYSpriteBase, 6) +
                      ", \"pal_base\": " + List(STYPalBase, 8) +
                      ", \"font_base\": " + List(STYFontBase.base, fontEntries) + ", \"deltas\": " + deltas +
                      ", \"cars\": " + cars + ", \"recycle\": " + List(STYRecycle, recycleEntries) + ", " +
                      Pair("sprite_data_bytes", static_cast<long long>(doc.STYSpriteData.size())) + ", " +
                      Pair("delta_data_bytes", static_cast<long long>(STYDeltaStore.size())) + ", " +
                      Pair("object_info_bytes", static_cast<long long>(doc.STYObjectInfo.size())) + ", " +
                      Pair("surface_spec_bytes", static_cast<long long>(doc.STYSurfaceSpec.size())) + "}\n";
    std::fwrite(out.data(), 1, out.size(), stdout);
    return std::fflush(stdout) == 0 ? 0 : 1;
}

int RunSave(const Args& args) {
    clsSTY doc;
    LoadStyle(doc, args.words[0]);
    DocumentVoice voice;
    if (!doc.SaveSTY(args.words[1])) throw Failure(args.words[1], voice.Take(args.words[1], "cannot be saved"));
    return 0;
}

}  // namespace cli
