#pragma once
// Style file reads and careful writes for the document.

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "style/bytecursor.h"

namespace styleio {

// Style files are a few megabytes; anything past this is not one.
inline constexpr std::uintmax_t kMaxStyleFileBytes = std::uintmax_t{1} << 30;

// A style file opened for reading in pieces.
class InputFile : public ByteSource {
public:
    // False, with why in plain words, for a missing file, a folder, one that
    // cannot be opened and one too long to be a style file.
    bool Open(const std::string& path, std::string& why);
    std::size_t Length() const { return length_; }

    std::size_t Read(std::uint8_t* to, std::size_t n) override;
    bool Seek(std::size_t offset) override;

private:
    std::ifstream in_;
    std::size_t length_ = 0;
};

// Copies a file whole. The standard library's copy gives up when a signal
// interrupts it (a child process ending is enough); the streams here carry on.
bool CopyWholeFile(const std::string& from, const std::string& to, std::string& why);

// Writes bytes to path through a temporary file beside it that replaces the
// path only once every byte is written, so a failed write leaves what was
// there. Returns false and says why on failure.
bool ReplaceFileWith(const std::string& path, const std::vector<std::uint8_t>& bytes, std::string& why);

}  // namespace styleio
