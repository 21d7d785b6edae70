#pragma once
// What the renders need of a picture control. The window implements it with
// a QImage; the tests with a small BMP reader of their own.

#include <cstddef>
#include <cstdint>
#include <string>

class PictureControl {
public:
    virtual ~PictureControl() = default;

    // Cls: wipes what the control shows.
    virtual void Cls() = 0;
    // LoadPicture + Picture: decodes the BMP at sPath and shows it at its own
    // size. Returns false, leaving the control as it was, if it cannot.
    virtual bool LoadPicture(const std::string& sPath) = 0;
    // SetPixelV: one pixel; colour is red + green * 256 + blue * 65536.
    // Pixels outside the picture are not seen.
    virtual void SetPixelV(int x, int y, std::int32_t colour) = 0;
    // n pixels of one row from (x, y) rightwards, as n calls of SetPixelV.
    virtual void SetPixelRunV(int x, int y, const std::int32_t* colours, std::size_t n) {
        for (std::size_t i = 0; i < n; ++i) SetPixelV(x + static_cast<int>(i), y, colours[i]);
    }
    virtual int Width() const = 0;
    virtual int Height() const = 0;
};
