#pragma once
// A sprite named as a user would: by group and caption number ("car 12",
// "Ped: 3", "code object 2") or by sprite number ("1366").

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace ombrevale::spritesearch {

// The sprite number, or nothing when the text names no sprite of these group
// counts (STYSpriteBase: car, ped, code object, map object, user, font).
std::optional<int> FindSprite(std::string_view text, const std::array<std::int16_t, 6>& groupCounts);

}  // namespace ombrevale::spritesearch
