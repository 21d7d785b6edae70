// A picture brought down to a palette of its own: colour 0 only where the
// picture is clear, its own colours kept while they fit, and a close likeness
// when they do not.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "quantise/reduce.h"

namespace {

using ombrevale::picturefile::Picture;
using ombrevale::picturefile::Rgba;

struct Case {
    const char* name;
    int side;
    int colours;  // distinct opaque colours, as a smooth ramp
};

bool Clear(int i) { return i % 11 == 0; }
bool Key(int i) { return i % 13 == 0; }

Picture Make(const Case& c) {
    Picture pic;
    pic.width = pic.height = c.side;
    for (int i = 0; i < c.side * c.side; ++i) {
        const int k = i % c.colours;
        Rgba px{static_cast<std::uint8_t>(k % 64 * 4), static_cast<std::uint8_t>(k / 64 * 4),
                static_cast<std::uint8_t>(k % 64 * 2 + k / 64 * 2), 255};
        if (Clear(i)) px.a = 0;
        if (Key(i)) px = {255, 0, 255, 255};
        pic.colours.push_back(px);
    }
    return pic;
}

class Reduce : public ::testing::TestWithParam<Case> {};

TEST_P(Reduce, Colour0WhereClearAndALikenessElsewhere) {
    const Case& c = GetParam();
    const Picture pic = Make(c);
    const auto reduced = ombrevale::quantise::Reduce(pic);
    ASSERT_TRUE(reduced);
    ASSERT_EQ(reduced->numbers.size(), pic.colours.size());
    ASSERT_LE(reduced->colours.size(), 255u);
    long error = 0;
    int opaque = 0;
    for (std::size_t i = 0; i < pic.colours.size(); ++i) {
        const int n = reduced->numbers[i];
        const bool clear = Clear(static_cast<int>(i)) || Key(static_cast<int>(i));
        ASSERT_EQ(n == 0, clear) << "pixel " << i;
        if (clear) continue;
        ASSERT_LE(static_cast<std::size_t>(n), reduced->colours.size());
        const Rgba& got = reduced->colours[static_cast<std::size_t>(n - 1)];
        const Rgba& want = pic.colours[i];
        error += std::abs(got.r - want.r) + std::abs(got.g - want.g) + std::abs(got.b - want.b);
        ++opaque;
    }
    // A picture of few colours keeps them exactly; a reduced one stays close on the whole.
    if (c.colours <= 255)
        EXPECT_EQ(error, 0);
    else
        EXPECT_LT(static_cast<double>(error) / (3.0 * opaque), 8.0);
}

INSTANTIATE_TEST_SUITE_P(Pictures, Reduce,
                         ::testing::Values(Case{"ThreeColours", 8, 3}, Case{"AsManyAsFit", 32, 255},
                                           Case{"OneTooMany", 32, 256}, Case{"Photographic", 64, 4096}),
                         [](const auto& row) { return std::string(row.param.name); });

// A smooth gradient with camera noise in red and a hard-edged red disc: the
// noise spreads the colours, the disc's edge shows any banding.
Picture NoisyGradient() {
    Picture pic;
    pic.width = pic.height = 64;
    std::uint32_t seed = 37;
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) {
            seed = seed * 1664525u + 1013904223u;
            const int noise = static_cast<int>(seed >> 24) % 13 - 6;
            const bool disc = (x - 40) * (x - 40) + (y - 22) * (y - 22) < 14 * 14;
            const int r = std::clamp(x * 4 + noise, 0, 255);
            pic.colours.push_back(disc ? Rgba{230, 16, 24, 255}
                                       : Rgba{static_cast<std::uint8_t>(r), static_cast<std::uint8_t>(y * 4),
                                              static_cast<std::uint8_t>(160 - x - y), 255});
        }
    return pic;
}

TEST(ReduceQuality, ANoisyGradientComesWithinThirtyDecibels) {
    const Picture pic = NoisyGradient();
    const auto reduced = ombrevale::quantise::Reduce(pic);
    ASSERT_TRUE(reduced);
    std::vector<Rgba> shown;
    for (const std::uint8_t n : reduced->numbers) shown.push_back(reduced->colours.at(n - 1u));
    const double psnr = ombrevale::picturefile::Psnr(pic, shown);
    RecordProperty("psnr", std::to_string(psnr));
    EXPECT_GE(psnr, 30.0);
}

}  // namespace
