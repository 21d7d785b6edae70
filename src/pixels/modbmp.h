#pragma once
// The one picture format: 8-bit BMP with a full 256-colour table copied
// straight from a palette of the store.

#include <cstdint>
#include <span>
#include <string>

#include "style/bytes.h"

namespace modBMP {

// The working file every render goes through, in the current folder.
inline constexpr const char* kWorkFile = "temp.bmp";

inline constexpr std::int32_t kHeadBytes = 1078;

// Writes from byte 0 without cutting a longer file short. False when the file
// cannot be written or iPal names no palette; nothing is told here.
bool WriteBMP(const std::string& sFile, std::int32_t lW, std::int32_t lH, std::int16_t iPal,
              std::span<const std::uint8_t> sBits);

ByteString ReverseString(const ByteString& s);

// A little-endian number of up to two bytes, read as signed 16 bits when it has two.
std::int16_t ByteStringValue(const ByteString& s);

}  // namespace modBMP
