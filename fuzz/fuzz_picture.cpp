// Any bytes as a BMP brought for import. The reader never reads outside them
// and a picture it gives agrees with itself; fitted into a palette it has a
// colour number a pixel, colour 0 only where the picture is transparent.

#include <cstddef>
#include <cstdint>
#include <span>

#include "fuzz_common.h"
#include "pixels/pictureimport.h"
#include "style/moddeclares.h"

using ombrevale::fuzzing::Broken;
using ombrevale::picturefile::Rgba;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    ombrevale::fuzzing::SilenceDocument();
    modDeclares::ResetSharedStores();
    // Two palettes: one of many colours, one whose first sixteen match the seeds' 4-bit tables.
    modDeclares::STYPalData.assign(2, modDeclares::Palette{});
    for (std::size_t i = 0; i < modDeclares::STYPalData[0].size(); ++i) {
        modDeclares::STYPalData[0][i] = static_cast<std::uint8_t>(i * 37 + 11);
        modDeclares::STYPalData[1][i] = static_cast<std::uint8_t>(i / 4 * 16);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ombrevale::picturefile::Picture pic;
    if (ombrevale::picturefile::ReadBMP(std::span(data, size), pic)) {
        if (!pic.colours.empty() || pic.width != 0) Broken("a refused picture came back with pixels");
        return 0;
    }
    using ombrevale::picturefile::kMaxSide;
    if (pic.width < 1 || pic.height < 1 || pic.width > kMaxSide || pic.height > kMaxSide)
        Broken("a picture of a size the reader refuses");
    const auto pixels = static_cast<std::size_t>(pic.width) * static_cast<std::size_t>(pic.height);
    if (pic.colours.size() != pixels) Broken("a picture's colours are not one a pixel");
    if (!pic.numbers.empty() && pic.numbers.size() != pixels) Broken("a picture's numbers are not one a pixel");
    for (std::size_t i = 0; i < pic.numbers.size(); ++i) {
        const std::uint8_t n = pic.numbers[i];
        const Rgba want = n < pic.table.size() ? pic.table[n] : Rgba{0, 0, 0, 255};
        if (pic.colours[i] != want) Broken("a pixel's colour is not its table entry");
    }
    for (std::int16_t pal : {std::int16_t{0}, std::int16_t{1}}) {
        const auto fitted = ombrevale::pictureimport::Fit(pic, pal);
        if (fitted.numbers.size() != pixels) Broken("a fitted picture lost or gained pixels");
        if (fitted.changed < 0 || static_cast<std::size_t>(fitted.changed) > pixels) Broken("more changed than pixels");
        if (fitted.asStored) continue;
        for (std::size_t i = 0; i < pixels; ++i) {
            const Rgba c = pic.colours[i];
            const bool clear = c.a == 0 || (c.r == 255 && c.g == 0 && c.b == 255);
            if ((fitted.numbers[i] == 0) != clear)
                Broken("colour 0 for a pixel that is not transparent, or not for one that is");
        }
    }
    return 0;
}
