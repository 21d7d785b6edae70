#pragma once
// The tests' own reading of an 8-bit BMP, field by field from the format's
// offsets, and a picture control that shows what it loads.

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "pixels/picturecontrol.h"
#include "stylewriter/stylewriter.h"

namespace ombrevale::pixeltest {

using ombrevale::stylewriter::Bytes;

std::uint32_t U32At(const Bytes& b, std::size_t at);

// A picture as 24-bit colours, row 0 at the top.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::int32_t> colours;  // red + green * 256 + blue * 65536
    std::int32_t At(int x, int y) const { return colours[static_cast<std::size_t>(y * width + x)]; }
};

// Decodes a BMP this program writes; false if it is not one.
bool DecodeBmp(const Bytes& file, Picture& out);

class TestPicture : public PictureControl {
public:
    void Cls() override { ++wipes; }
    bool LoadPicture(const std::string& sPath) override;
    void SetPixelV(int x, int y, std::int32_t colour) override { set[{x, y}] = colour; }
    int Width() const override { return picture.width; }
    int Height() const override { return picture.height; }

    Picture picture;
    int wipes = 0;
    int loads = 0;
    std::map<std::pair<int, int>, std::int32_t> set;
};

}  // namespace ombrevale::pixeltest
