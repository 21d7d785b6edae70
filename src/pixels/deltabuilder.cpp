// SetDeltaBits: a delta made from the difference between a changed image and
// the sprite in the store, put in place of an existing delta.

#include <optional>
#include <vector>

#include "pixels/checks.h"
#include "pixels/deltaruns.h"
#include "pixels/spriteblock.h"
#include "style/bytewriter.h"
#include "style/clssty.h"

using modDeclares::STYDeltaIndex;
using modDeclares::STYDeltaStore;

namespace {

constexpr std::size_t kMaxRuns = 256;
constexpr std::size_t kMaxRunPixels = 254;
constexpr std::int64_t kMaxWord = 32767;

struct Run {
    std::int64_t distance = 0;
    ByteString pixels;
};

// Walks the cells row by row; gap counts the positions since the last run
// ended, and every row end adds the part of the 256-wide row the sprite lacks.
std::vector<Run> BuildRuns(const ByteString& oldTop, const ByteString& newTop, std::int32_t W, std::int32_t height) {
    std::vector<Run> runs;
    std::int64_t gap = -1;
    for (std::int64_t r = 0; r < height; ++r) {
        for (std::int64_t c = 0; c < W; ++c) {
            const auto i = static_cast<std::size_t>(r * W + c);
            // Position 0 cannot be recorded: its P would be -1.
            const bool marked = i > 0 && oldTop[i] != newTop[i];
            if (!marked) {
                ++gap;
            } else if (gap > 0 || runs.empty()) {
                // A change right at the start meets gap 0 with no run open: it opens one at distance 0.
                runs.push_back({gap > 0 ? gap : 0, {newTop[i]}});
                gap = 0;
            } else {
                runs.back().pixels.push_back(newTop[i]);
            }
        }
        gap += kSpriteRowStride - W;
    }
    return runs;
}

std::optional<ByteString> Encode(const std::vector<Run>& runs, std::string& why) {
    if (runs.size() > kMaxRuns) {
        why = "it needs " + std::to_string(runs.size()) + " runs; a delta holds at most 256";
        return std::nullopt;
    }
    ByteString out;
    ByteWriter w(out);
    for (const auto& run : runs) {
        if (run.distance > kMaxWord) {
            why = "a gap of " + std::to_string(run.distance) + " pixels does not fit a run's distance";
            return std::nullopt;
        }
        if (run.pixels.size() > kMaxRunPixels) {
            why = "a run of " + std::to_string(run.pixels.size()) + " pixels is longer than 254";
            return std::nullopt;
        }
        w.I16(static_cast<std::int16_t>(run.distance));
        w.U8(static_cast<std::uint8_t>(run.pixels.size()));
        w.Bytes(run.pixels);
    }
    if (static_cast<std::int64_t>(out.size()) > kMaxWord) {
        why = "it would take " + std::to_string(out.size()) + " bytes; a delta holds at most 32,767";
        return std::nullopt;
    }
    return out;
}

}  // namespace

ombrevale::Outcome clsSTY::TrySetDeltaBits(std::int16_t deltaNumber, std::int16_t spriteIdx, ByteString& bits) {
    const auto Refusal = [](std::string text) {
        return ombrevale::Problem{ombrevale::Problem::Kind::Damaged, std::move(text)};
    };
    const std::string name = "delta " + std::to_string(deltaNumber) + " of sprite " + std::to_string(spriteIdx);
    if (!ombrevale::pixelchecks::SpriteExists(*this, spriteIdx))
        return Refusal("There is no sprite " + std::to_string(spriteIdx) + ".");
    ombrevale::deltaruns::Place place;
    if (!ombrevale::deltaruns::Find(deltaNumber, spriteIdx, place))
        return Refusal("There is no " + name + " to replace.");
    const auto g = ombrevale::spriteblock::Of(*this, spriteIdx);
    const auto expected = static_cast<std::size_t>(g.padded) * static_cast<std::size_t>(g.height);
    const ByteString oldTop = ombrevale::spriteblock::RowsTopFirst(*this, g);
    if (oldTop.size() != expected)
        return Refusal("Sprite " + std::to_string(spriteIdx) + " runs past the end of the sprite data.");
    if (bits.size() != expected)
        return Refusal("The image for " + name + " has " + std::to_string(bits.size()) + " bytes; the sprite takes " +
                       std::to_string(expected) + ".");
    if (place.start + place.length > STYDeltaStore.size())
        return Refusal("The " + name + " runs past the end of the delta data.");

    ByteString newTop = ombrevale::spriteblock::FlipRows(bits, g.padded);
    std::string why;
    const auto delta = Encode(BuildRuns(oldTop, newTop, g.padded, g.height), why);
    if (!delta) return Refusal("The " + name + " cannot be made from this image: " + why + ".");

    bits = std::move(newTop);
    const auto start = STYDeltaStore.begin() + static_cast<long>(place.start);
    STYDeltaStore.erase(start, start + static_cast<long>(place.length));
    STYDeltaStore.insert(STYDeltaStore.begin() + static_cast<long>(place.start), delta->begin(), delta->end());
    STYDeltaIndex[place.entry].deltaSizes[static_cast<std::size_t>(deltaNumber)] =
        static_cast<std::int16_t>(delta->size());
    return std::nullopt;
}

bool clsSTY::SetDeltaBits(std::int16_t deltaNumber, std::int16_t spriteIdx, ByteString& bits) {
    const auto problem = TrySetDeltaBits(deltaNumber, spriteIdx, bits);
    return !problem || ombrevale::pixelchecks::Refuse(problem->text);
}
