// Pedestrians from above, facing up: three sets of 158 animation frames.
#include <array>

#include "palettes.h"
#include "sprites.h"

namespace ombrevale::sample {
namespace {

enum class Arms { Swing, Punch, Gun, Raised, Carry };

constexpr std::array<int, 8> kStride = {0, 2, 3, 2, 0, -2, -3, -2};

void DrawPed(Canvas& c, int stride, Arms arms, int build) {
    const int cx = c.Width() / 2, cy = c.Height() / 2;
    const int shoulder = 4 + build;
    // Feet show ahead of and behind the body as the legs swing.
    c.FillEllipse(cx - 2, cy + stride, 1, 2, Shade(kShoes, 12));
    c.FillEllipse(cx + 2, cy - stride, 1, 2, Shade(kShoes, 12));
    c.FillRect(cx - 3, cy - 1, 6, 3, Shade(kTrousers, 15));
    int reachL = -stride, reachR = stride;
    if (arms == Arms::Punch) reachR = -5;
    if (arms == Arms::Gun || arms == Arms::Raised) reachL = reachR = -4;
    if (arms == Arms::Carry) reachL = reachR = -2;
    c.FillEllipse(cx - shoulder, cy + reachL / 2, 1, 2, Shade(kShirt, 14));
    c.FillEllipse(cx + shoulder, cy + reachR / 2, 1, 2, Shade(kShirt, 14));
    c.Set(cx - shoulder, cy + reachL, Shade(kSkin, 18));
    c.Set(cx + shoulder, cy + reachR, Shade(kSkin, 18));
    c.FillEllipse(cx, cy, shoulder, 2, Shade(kShirt, 17));
    c.Line(cx - shoulder + 1, cy - 1, cx + shoulder - 1, cy - 1, Shade(kShirt, 21));
    if (arms == Arms::Gun) c.Line(cx + shoulder, cy - 5, cx + shoulder, cy - 8, Shade(kMetal, 14));
    if (arms == Arms::Carry) c.FillRect(cx - 3, cy - 5, 6, 3, Shade(kMetal, 18));
    c.FillEllipse(cx, cy - 1, 2, 2, Shade(kHair, 14));
    c.Set(cx, cy - 3, Shade(kSkin, 17));
}

}  // namespace

std::vector<SpriteArt> BuildPeds() {
    std::vector<SpriteArt> out;
    for (int set = 0; set < 3; ++set) {
        const int size = 18 + set;
        for (int f = 0; f < kPedFrames; ++f) {
            SpriteArt art{Canvas(size, size + (set == 1 ? 2 : 0)), kPedPal + set};
            const int phase = f % 8;
            const int group = f / 8;
            if (group == 6 || group == 7) {
                // Knocked down: the figure lies on its side in a pool.
                Canvas lying(size, size);
                lying.FillEllipse(size / 2 + 1, size / 2 + 2, 5 + phase % 3, 3 + phase % 2, Shade(kBlood, 10 + phase));
                DrawPed(lying, 0, phase < 4 ? Arms::Raised : Arms::Swing, set);
                art.pixels = group == 6 ? lying.RotatedQuarter() : lying;
            } else {
                static constexpr std::array<Arms, 5> kArms = {Arms::Swing, Arms::Punch, Arms::Gun, Arms::Raised,
                                                              Arms::Carry};
                const Arms arms = group < 2 ? Arms::Swing : kArms[static_cast<std::size_t>(group % 5)];
                const int stride =
                    kStride[static_cast<std::size_t>(phase)] * (group == 1 ? 2 : 1) / (group == 1 ? 1 : 1);
                DrawPed(art.pixels, group == 1 ? stride + stride / 2 : stride, arms, set);
            }
            out.push_back(std::move(art));
        }
    }
    return out;
}

}  // namespace ombrevale::sample
