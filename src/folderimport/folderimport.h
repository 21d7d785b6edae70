#pragma once
// A folder as the export writes it, back into the style in one go: every
// picture and palette file read and checked first, then only what differs
// from what the style draws goes in. Shared by the window and the command line.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "pixels/editparts.h"
#include "pixels/exportnames.h"
#include "style/clssty.h"

namespace ombrevale::folderimport {

enum class Colours {
    Exact,    // a picture in colours its palette does not hold is refused
    Nearest,  // such colours take the palette's nearest
    // such a tile or sprite gets a palette of its own; a delta, which draws
    // in its sprite's palette, is refused
    OwnPalette,
};

struct Change {
    exportnames::Name name;
    std::string file;  // relative to the folder
    // The picture's colour numbers, or a palette's 1,024 bytes.
    ByteString bytes;
    // Pixels that took the nearest colour.
    int mapped = 0;
    std::int16_t palette = 0;
    // Goes in with a palette of its own, read again from path when it is made.
    bool ownPalette = false;
    std::string path;
};

struct Refusal {
    std::string file;
    std::string why;
};

struct Plan {
    std::vector<Change> changes;
    std::vector<Refusal> refusals;
    int unchanged = 0;
};

// Reads and checks every file under dir without changing the style (each
// change is tried and put back, so one the engine would refuse is refused
// here). step is told of every file read, with their count.
Plan Read(clsSTY& doc, const std::string& dir, Colours colours,
          const std::function<void(int done, int total)>& step = {});

// The parts of the stores the plan's changes touch, for an undo step (a plan
// without palettes of their own).
std::vector<editparts::Part> Touched(const clsSTY& doc, const Plan& plan);

// Makes the changes: deltas first, against the sprites as the folder saw
// them, then sprites, tiles and palettes last, so that every picture is
// read in the palette it was written in.
void Apply(clsSTY& doc, const Plan& plan);

// One line for a change: "tiles/tile-0005.png: 120 pixels took the nearest colour of palette 12",
// or "tiles/tile-0005.png: a palette of its own".
std::string Describe(const Change& change);

}  // namespace ombrevale::folderimport
