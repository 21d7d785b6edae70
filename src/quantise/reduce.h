#pragma once
// A true-colour picture brought down to colours 1 to 255 of a palette of its
// own, with libimagequant. Linux builds only: the mingw build has no
// libimagequant and leaves this library out.

#include <optional>

#include "pixels/ownpalette.h"
#include "pixels/picturefile.h"

namespace ombrevale::quantise {

// Fully clear pixels and the key colour (255, 0, 255) become 0; a picture of
// at most 255 other colours keeps them exactly, a richer one is reduced and
// dithered. Nothing when libimagequant fails.
std::optional<ownpalette::Reduced> Reduce(const picturefile::Picture& pic);

// The picture into a tile or a sprite with a palette of its own: where that
// palette went, or why it did not go in.
ownpalette::Plan ImportOwnPalette(clsSTY& doc, const ownpalette::Target& target, const picturefile::Picture& pic);

}  // namespace ombrevale::quantise
