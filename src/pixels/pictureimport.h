#pragma once
// A picture brought back into a tile, a sprite or a delta of a sprite. Its
// colours become colour numbers of the palette the picture is in: as they
// are when the picture's colour table is that palette, else the nearest.

#include <cstdint>
#include <string>

#include "pixels/picturefile.h"
#include "style/clssty.h"

namespace ombrevale::pictureimport {

// A picture's colour numbers, row 0 at the top.
struct Fitted {
    ByteString numbers;
    // Pixels whose colour the palette does not hold, so that they take another.
    int changed = 0;
    // The colour table was the palette itself: the numbers are the file's own.
    bool asStored = false;
};

// Colour numbers for `pic` in physical palette `pal`. A colour table equal
// to the palette (colour 0 may be the transparency key colour instead) gives
// the file's own numbers. Otherwise a pixel whose colour is that of the
// number `present` holds there keeps that number, so a picture saved with
// plain colours comes back as it went out even where the palette holds a
// colour twice; each other pixel takes the colour nearest to it by the
// squared distance of red, green and blue (the lowest number on a tie) among
// colours 1 to 255, and colour 0 is kept for the transparency key colour
// (255, 0, 255) and fully transparent pixels.
Fitted Fit(const picturefile::Picture& pic, std::int16_t pal, const ByteString& present = {});

// The colour numbers a picture of the target shows now, row 0 at the top:
// the tile, or the sprite's own columns with delta `delta` over them (-1: none).
ByteString TileNumbers(const clsSTY& doc, std::int32_t tile);
ByteString SpriteNumbers(const clsSTY& doc, std::int32_t sprite, std::int16_t delta);

// What is wrong with a picture of this size for a target of w x h pixels, or nothing.
ombrevale::Outcome CheckSize(const picturefile::Picture& pic, std::int32_t w, std::int32_t h,
                             const std::string& target);

// The pictures' numbers into the document, through SetBitsTile, SetBits and
// TrySetDeltaBits. Only the sprite's own columns are written: the bytes that
// pad its rows belong to whatever lies beside it. When one changed nothing it
// says why, in a sentence for the user, and tells nobody itself.
ombrevale::Outcome IntoTile(clsSTY& doc, std::int32_t tile, const ByteString& numbers);
ombrevale::Outcome IntoSprite(clsSTY& doc, std::int32_t sprite, const ByteString& numbers);
ombrevale::Outcome IntoDelta(clsSTY& doc, std::int16_t sprite, std::int16_t delta, const ByteString& numbers);

}  // namespace ombrevale::pictureimport
