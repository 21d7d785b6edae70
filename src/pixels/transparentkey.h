#pragma once
// Puts the transparency key into colour 0 of a palette for as long as it
// lives, and the stored bytes back afterwards, on every path out.

#include <algorithm>
#include <array>
#include <cstdint>

#include "style/moddeclares.h"

class TransparentKey {
public:
    TransparentKey(bool active, std::int16_t pal) : active_(active), pal_(static_cast<std::size_t>(pal)) {
        if (!active_) return;
        auto& colour = modDeclares::STYPalData[pal_];
        std::copy_n(colour.begin(), 4, kept_.begin());
        colour[0] = 255;  // blue
        colour[1] = 0;    // green
        colour[2] = 255;  // red; the fourth byte stays
    }
    ~TransparentKey() {
        if (active_) std::copy_n(kept_.begin(), 4, modDeclares::STYPalData[pal_].begin());
    }
    TransparentKey(const TransparentKey&) = delete;
    TransparentKey& operator=(const TransparentKey&) = delete;

private:
    bool active_;
    std::size_t pal_;
    std::array<std::uint8_t, 4> kept_{};
};
