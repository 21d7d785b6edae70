#pragma once
// Whole-file reads and careful writes for the document.

#include <cstdint>
#include <string>
#include <vector>

namespace styleio {

// Style files are a few megabytes; anything past this is not one.
inline constexpr std::uintmax_t kMaxStyleFileBytes = std::uintmax_t{1} << 30;

// Reads the whole file. On failure returns false and says why in plain words.
bool ReadWholeFile(const std::string& path, std::vector<std::uint8_t>& out, std::string& why);

// Writes bytes to path through a temporary file beside it that replaces the
// path only once every byte is written, so a failed write leaves what was
// there. Returns false and says why on failure.
// Copies a file whole. The standard library's copy gives up when a signal
// interrupts it (a child process ending is enough); the streams here carry on.
bool CopyWholeFile(const std::string& from, const std::string& to, std::string& why);

bool ReplaceFileWith(const std::string& path, const std::vector<std::uint8_t>& bytes, std::string& why);

}  // namespace styleio
