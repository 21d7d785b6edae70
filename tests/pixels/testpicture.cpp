#include "testpicture.h"

namespace ombrevale::pixeltest {

bool TestPicture::LoadPicture(const std::string& sPath) {
    ++loads;
    picturefile::Picture read;
    if (picturefile::ReadBMPFile(sPath, read)) return false;
    picture = read;
    set.clear();
    return true;
}

std::int32_t TestPicture::At(int x, int y) const {
    const picturefile::Rgba c = picture.colours.at(static_cast<std::size_t>(y * picture.width + x));
    return c.r + c.g * 256 + c.b * 65536;
}

}  // namespace ombrevale::pixeltest
