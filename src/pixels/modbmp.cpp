#include "pixels/modbmp.h"

#include <cstdio>
#include <memory>

#include "style/bytewriter.h"
#include "style/moddeclares.h"

namespace modBMP {
namespace {

struct FileCloser {
    void operator()(std::FILE* f) const { std::fclose(f); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

// "r+b" keeps what lies behind the new end; a file that is not there yet is made.
File OpenForOverwrite(const std::string& path) {
    if (std::FILE* f = std::fopen(path.c_str(), "r+b")) return File(f);
    return File(std::fopen(path.c_str(), "wb"));
}

ByteString Head(std::int32_t lW, std::int32_t lH, std::size_t blockBytes) {
    ByteString head;
    ByteWriter w(head);
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
    return head;
}

}  // namespace

bool WriteBMP(const std::string& sFile, std::int32_t lW, std::int32_t lH, std::int16_t iPal, const ByteString& sBits) {
    const auto& pals = modDeclares::STYPalData;
    if (iPal < 0 || static_cast<std::size_t>(iPal) >= pals.size()) return false;
    const ByteString head = Head(lW, lH, sBits.size());
    File f = OpenForOverwrite(sFile);
    if (!f) return false;
    const auto& palette = pals[static_cast<std::size_t>(iPal)];
    bool ok = std::fwrite(head.data(), 1, head.size(), f.get()) == head.size();
    ok = ok && std::fwrite(palette.data(), 1, palette.size(), f.get()) == palette.size();
    // An empty block has no data pointer, and fwrite may not be given null.
    ok = ok && (sBits.empty() || std::fwrite(sBits.data(), 1, sBits.size(), f.get()) == sBits.size());
    return std::fclose(f.release()) == 0 && ok;
}

ByteString ReverseString(const ByteString& s) { return ByteString(s.rbegin(), s.rend()); }

std::int16_t ByteStringValue(const ByteString& s) {
    // Highest byte first, as the hexadecimal text would read; two bytes wrap to signed.
    std::uint32_t value = 0;
    for (const std::uint8_t b : ReverseString(s)) value = (value << 8) | b;
    return static_cast<std::int16_t>(value & 0xFFFF);
}

}  // namespace modBMP
