#pragma once
// Picture files beyond the engine's BMP: PNG through QImage, palettes as JASC-PAL.

#include <functional>
#include <string>

#include "commands.h"

class clsSTY;

namespace ombrevale::cli {

// Writes one picture to `path`: `writeBmp` makes a BMP at the path it is
// given; with png the BMP is turned into a PNG of the same pixels and colours.
// Throws Failure; nothing is left behind on failure.
void WritePicture(const std::string& path, bool png, const std::function<bool(const std::string& bmpPath)>& writeBmp,
                  Durability durability = Durability::Synced);

// Physical palette `pal` as a JASC-PAL text file.
void WriteJascPalette(const std::string& path, int pal, Durability durability = Durability::Synced);

// Whether the file's first line is exactly "JASC-PAL"; throws Failure if it cannot be read.
bool HasJascMark(const std::string& path);

}  // namespace ombrevale::cli
