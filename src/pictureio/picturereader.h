#pragma once
// Any picture a user brings for import: a BMP through the engine's own
// reader, anything else Qt can decode (PNG above all). A picture with a
// colour table keeps its colour numbers, so an exported picture comes back as
// it went out.

#include <string>

#include "pixels/picturefile.h"

namespace ombrevale::pictureio {

// The problem's text says what is wrong without naming the file.
ombrevale::Outcome ReadPicture(const std::string& path, picturefile::Picture& out);

}  // namespace ombrevale::pictureio
