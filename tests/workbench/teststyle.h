#pragma once
// A small style file written from bytes for the window's tests.

#include <QColor>
#include <string>

namespace wbtest {

inline constexpr int kPalettes = 64;

// Colour byte of pixel (x, y) in tile t; every fifth tile holds some colour 0.
int TileByte(int t, int x, int y);
// Physical palette of tile t as written in PALX.
int TilePalette(int t);
// Colour c of palette p as written in PPAL.
QRgb PaletteColour(int p, int c);

// Writes the style with tileCount tiles, 3 cars, 2 peds, 1 map object and
// the recycling bytes 7, 123, 255.
void WriteStyle(const std::string& path, int tileCount);

// A Wine prefix whose user.reg names stylePath (a Windows path on drive Z:).
void WritePrefix(const std::string& prefixDir, const std::string& stylePath);

}  // namespace wbtest
