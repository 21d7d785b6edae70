#include "pixels/modbmp.h"

#include <fcntl.h>

#include "style/bytewriter.h"
#include "style/moddeclares.h"

#ifdef _WIN32
#include <io.h>
#include <sys/stat.h>
#else
#include <unistd.h>
#endif

namespace modBMP {
namespace {

void Head(ByteWriter& w, std::int32_t lW, std::int32_t lH, std::size_t blockBytes) {
    w.U8('B');  // bfType
    w.U8('M');
    w.U32(static_cast<std::uint32_t>(kHeadBytes + blockBytes));  // bfSize
    w.U16(0);                                                    // bfReserved1
    w.U16(0);                                                    // bfReserved2
    w.U32(kHeadBytes);                                           // bfOffBits
    w.U32(40);                                                   // biSize
    w.I32(lW);                                                   // biWidth
    w.I32(lH);                                                   // biHeight
    w.U16(1);                                                    // biPlanes
    w.U16(8);                                                    // biBitCount
    w.U32(0);                                                    // biCompression
    w.U32(0);                                                    // biSizeImage
    w.U32(0);                                                    // biXPelsPerMeter
    w.U32(0);                                                    // biYPelsPerMeter
    w.U32(256);                                                  // biClrUsed
    w.U32(256);                                                  // biClrImportant
}

// One open that keeps what lies behind the new end and makes a file that is
// not there yet, then the whole picture in one write call (more only if the
// system takes less at a time).
bool WriteFromStart(const std::string& path, const ByteString& bytes) {
#ifdef _WIN32
    const int fd = _open(path.c_str(), _O_WRONLY | _O_CREAT | _O_BINARY, _S_IREAD | _S_IWRITE);
#else
    // The working file is ours alone: a link standing in its place is refused, never followed.
    const int noFollow = path == kWorkFile ? O_NOFOLLOW : 0;
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | noFollow, 0666);
#endif
    if (fd < 0) return false;
    bool ok = true;
    for (std::size_t done = 0; ok && done < bytes.size();) {
#ifdef _WIN32
        const auto n = _write(fd, bytes.data() + done, static_cast<unsigned>(bytes.size() - done));
#else
        const auto n = write(fd, bytes.data() + done, bytes.size() - done);
#endif
        ok = n > 0;
        if (ok) done += static_cast<std::size_t>(n);
    }
#ifdef _WIN32
    return _close(fd) == 0 && ok;
#else
    return close(fd) == 0 && ok;
#endif
}

}  // namespace

bool WriteBMP(const std::string& sFile, std::int32_t lW, std::int32_t lH, std::int16_t iPal,
              std::span<const std::uint8_t> sBits) {
    const auto& pals = modDeclares::STYPalData;
    if (iPal < 0 || static_cast<std::size_t>(iPal) >= pals.size()) return false;
    // Kept between calls: the sheet writes a thousand of these in a row.
    thread_local ByteString file;
    file.clear();
    file.reserve(static_cast<std::size_t>(kHeadBytes) + sBits.size());
    ByteWriter w(file);
    Head(w, lW, lH, sBits.size());
    w.Bytes(pals[static_cast<std::size_t>(iPal)]);
    w.Bytes(sBits);
    return WriteFromStart(sFile, file);
}

ByteString ReverseString(const ByteString& s) { return ByteString(s.rbegin(), s.rend()); }

std::int16_t ByteStringValue(const ByteString& s) {
    // Highest byte first, as the hexadecimal text would read; two bytes wrap to signed.
    std::uint32_t value = 0;
    for (const std::uint8_t b : ReverseString(s)) value = (value << 8) | b;
    return static_cast<std::int16_t>(value & 0xFFFF);
}

}  // namespace modBMP
