#pragma once
// Byte strings: one byte a pixel, never text-converted between load and save.

#include <cstdint>
#include <vector>

using ByteString = std::vector<std::uint8_t>;
