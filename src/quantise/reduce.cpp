#include "quantise/reduce.h"

#include <libimagequant.h>
#include <omp.h>

#include <memory>
#include <unordered_map>

namespace ombrevale::quantise {
namespace {

using picturefile::Rgba;

constexpr std::size_t kOwnColours = 255;

bool Clear(const Rgba& c) { return c.a == 0 || (c.r == 255 && c.g == 0 && c.b == 255); }

template <auto Free>
struct Freed {
    template <typename T>
    void operator()(T* p) const {
        Free(p);
    }
};
using Attr = std::unique_ptr<liq_attr, Freed<liq_attr_destroy>>;
using Image = std::unique_ptr<liq_image, Freed<liq_image_destroy>>;
using Result = std::unique_ptr<liq_result, Freed<liq_result_destroy>>;

// The picture's own colours when there are few enough of them, numbered as they first appear.
bool Exact(const picturefile::Picture& pic, ownpalette::Reduced& out) {
    std::unordered_map<std::uint32_t, std::uint8_t> number;
    for (std::size_t i = 0; i < pic.colours.size(); ++i) {
        const Rgba& c = pic.colours[i];
        if (Clear(c)) continue;
        const auto [at, added] = number.try_emplace(static_cast<std::uint32_t>(c.r << 16 | c.g << 8 | c.b), 0);
        if (added) {
            if (out.colours.size() == kOwnColours) return false;
            out.colours.push_back({c.r, c.g, c.b, 255});
            at->second = static_cast<std::uint8_t>(out.colours.size());
        }
        out.numbers[i] = at->second;
    }
    return true;
}

}  // namespace

std::optional<ownpalette::Reduced> Reduce(const picturefile::Picture& pic) {
    const std::size_t n = pic.colours.size();
    ownpalette::Reduced out;
    out.numbers.assign(n, 0);
    if (Exact(pic, out)) return out;
    out.colours.clear();

    // Clear pixels and the key weigh nothing in the palette; opaque to the
    // quantiser all the same, so that no palette entry goes to see-through.
    std::vector<liq_color> rgba;
    std::vector<unsigned char> weight;
    rgba.reserve(n);
    weight.reserve(n);
    for (const Rgba& c : pic.colours) {
        rgba.push_back({c.r, c.g, c.b, 255});
        weight.push_back(Clear(c) ? 0 : 255);
    }
    // One thread: a tile or a sprite is too small to share out, and on a busy
    // machine OpenMP's waiting threads cost several times what they save.
    omp_set_num_threads(1);
    // One small picture at a time: the slowest, most thorough search costs
    // milliseconds, and no colours are given up to posterization.
    const Attr attr(liq_attr_create());
    if (!attr || liq_set_max_colors(attr.get(), static_cast<int>(kOwnColours)) != LIQ_OK ||
        liq_set_speed(attr.get(), 1) != LIQ_OK || liq_set_quality(attr.get(), 0, 100) != LIQ_OK ||
        liq_set_min_posterization(attr.get(), 0) != LIQ_OK)
        return std::nullopt;
    const Image image(liq_image_create_rgba(attr.get(), rgba.data(), pic.width, pic.height, 0));
    if (!image || liq_image_set_importance_map(image.get(), weight.data(), weight.size(), LIQ_COPY_PIXELS) != LIQ_OK)
        return std::nullopt;
    liq_result* made = nullptr;
    if (liq_image_quantize(image.get(), attr.get(), &made) != LIQ_OK) return std::nullopt;
    const Result result(made);
    // Full Floyd-Steinberg: smooth gradients would show bands without it.
    if (liq_set_dithering_level(result.get(), 1.0f) != LIQ_OK) return std::nullopt;
    std::vector<unsigned char> index(n);
    if (liq_write_remapped_image(result.get(), image.get(), index.data(), index.size()) != LIQ_OK) return std::nullopt;
    const liq_palette* pal = liq_get_palette(result.get());
    for (unsigned k = 0; k < pal->count && k < kOwnColours; ++k)
        out.colours.push_back({pal->entries[k].r, pal->entries[k].g, pal->entries[k].b, 255});
    for (std::size_t i = 0; i < n; ++i)
        out.numbers[i] = Clear(pic.colours[i]) ? 0 : static_cast<std::uint8_t>(index[i] + 1);
    return out;
}

ownpalette::Plan ImportOwnPalette(clsSTY& doc, const ownpalette::Target& target, const picturefile::Picture& pic) {
    // Refused before the picture is reduced, which is the slow part.
    const ownpalette::Plan plan = ownpalette::PlanFor(doc, target);
    if (!plan.place) return plan;
    const auto reduced = Reduce(pic);
    if (!reduced)
        return {std::nullopt,
                "The picture for " + ownpalette::Describe(target) + " could not be reduced to 255 colours of its own."};
    if (auto problem = ownpalette::Apply(doc, target, *plan.place, *reduced)) return {std::nullopt, problem->text};
    return plan;
}

}  // namespace ombrevale::quantise
