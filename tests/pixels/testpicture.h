#pragma once
// A picture control that keeps what the document shows in it: the picture it
// loads, read by the import's BMP reader (whose own tests pin it against
// independently written files), and every pixel set on it.

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "pixels/picturecontrol.h"
#include "pixels/picturefile.h"

namespace ombrevale::pixeltest {

class TestPicture : public PictureControl {
public:
    void Cls() override { ++wipes; }
    bool LoadPicture(const std::string& sPath) override;
    void SetPixelV(int x, int y, std::int32_t colour) override { set[{x, y}] = colour; }
    int Width() const override { return picture.width; }
    int Height() const override { return picture.height; }
    // The loaded picture's colour at x, y (row 0 at the top) as red + green * 256 + blue * 65536.
    std::int32_t At(int x, int y) const;

    picturefile::Picture picture;
    int wipes = 0;
    int loads = 0;
    std::map<std::pair<int, int>, std::int32_t> set;
};

}  // namespace ombrevale::pixeltest
