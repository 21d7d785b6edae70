#pragma once
// Style file reads and careful writes for the document.

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "style/bytecursor.h"
#include "style/problem.h"

namespace ombrevale::styleio {

// Style files are a few megabytes; anything past this is not one.
inline constexpr std::uintmax_t kMaxStyleFileBytes = std::uintmax_t{1} << 30;

// A style file opened for reading in pieces.
class InputFile : public ByteSource {
public:
    // A problem for a missing file, a folder, one that cannot be opened and
    // one too long to be a style file.
    ombrevale::Outcome Open(const std::string& path);
    std::size_t Length() const { return length_; }

    std::size_t Read(std::uint8_t* to, std::size_t n) override;
    bool Seek(std::size_t offset) override;

private:
    std::ifstream in_;
    std::size_t length_ = 0;
};

// Copies a file whole. The standard library's copy gives up when a signal
// interrupts it (a child process ending is enough); the streams here carry on.
// The copy is made anew: a file or a link already at `to` is refused, never written through.
ombrevale::Outcome CopyWholeFile(const std::string& from, const std::string& to);

// Writes bytes to path through a temporary file beside it that replaces the
// path only once every byte is written, so a failed write leaves what was
// there. The temporary file is made anew, never through a link in its place.
ombrevale::Outcome ReplaceFileWith(const std::string& path, const std::vector<std::uint8_t>& bytes);

}  // namespace ombrevale::styleio
