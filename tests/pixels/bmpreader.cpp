#include "bmpreader.h"

#include <exception>

namespace ombrevale::pixeltest {

std::uint32_t U32At(const Bytes& b, std::size_t at) {
    return static_cast<std::uint32_t>(b[at] | (b[at + 1] << 8) | (b[at + 2] << 16)) |
           (static_cast<std::uint32_t>(b[at + 3]) << 24);
}

bool DecodeBmp(const Bytes& file, Picture& out) {
    if (file.size() < 1078 || file[0] != 'B' || file[1] != 'M' || file[28] != 8) return false;
    const auto w = static_cast<int>(U32At(file, 18)), h = static_cast<int>(U32At(file, 22));
    const int stride = (w + 3) / 4 * 4;
    if (w < 1 || h < 1 || file.size() < 1078u + static_cast<std::size_t>(stride * h)) return false;
    out = {w, h, std::vector<std::int32_t>(static_cast<std::size_t>(w * h))};
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const std::size_t colour = file[1078 + static_cast<std::size_t>((h - 1 - y) * stride + x)];
            const std::size_t at = 54 + colour * 4;
            out.colours[static_cast<std::size_t>(y * w + x)] = file[at + 2] | (file[at + 1] << 8) | (file[at] << 16);
        }
    }
    return true;
}

bool TestPicture::LoadPicture(const std::string& sPath) {
    ++loads;
    Picture p;
    Bytes bytes;
    try {
        bytes = ombrevale::stylewriter::ReadFile(sPath);
    } catch (const std::exception&) {
        return false;
    }
    if (!DecodeBmp(bytes, p)) return false;
    picture = p;
    set.clear();
    return true;
}

}  // namespace ombrevale::pixeltest
