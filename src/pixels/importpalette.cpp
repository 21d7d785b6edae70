// JASC-PAL: "JASC-PAL", a version line, a count line (not used as a count),
// then 256 lines of red green blue. Everything is read before anything is
// stored, so a bad file leaves the palette as it was.

#include <array>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "pixels/checks.h"
#include "style/clssty.h"

namespace {

// Lines end with CR LF, CR alone, or LF alone.
bool ReadLine(std::istream& in, std::string& line) {
    line.clear();
    char c = 0;
    bool any = false;
    while (in.get(c)) {
        any = true;
        if (c == '\n') return true;
        if (c == '\r') {
            if (in.peek() == '\n') in.get();
            return true;
        }
        line.push_back(c);
    }
    return any;
}

std::optional<std::uint8_t> Channel(const std::string& field) {
    if (field.empty() || field.size() > 3) return std::nullopt;
    int v = 0;
    for (const char c : field) {
        if (c < '0' || c > '9') return std::nullopt;
        v = v * 10 + (c - '0');
    }
    if (v > 255) return std::nullopt;
    return static_cast<std::uint8_t>(v);
}

// Fields are split at every single blank; the fourth and later are ignored.
std::optional<std::array<std::uint8_t, 3>> ColourLine(const std::string& line) {
    std::array<std::uint8_t, 3> rgb{};
    std::size_t from = 0;
    for (std::size_t f = 0; f < 3; ++f) {
        if (from > line.size()) return std::nullopt;
        const std::size_t blank = line.find(' ', from);
        const std::size_t to = blank == std::string::npos ? line.size() : blank;
        const auto v = Channel(line.substr(from, to - from));
        if (!v) return std::nullopt;
        rgb[f] = *v;
        from = to + 1;
    }
    return rgb;
}

bool Fail(const std::string& file, const std::string& why) {
    return ombrevale::pixelchecks::Refuse("The palette file " + file + " was not imported: " + why +
                                          ". The palette is unchanged.");
}

}  // namespace

bool clsSTY::ImportPalette(const std::string& sFile, std::int32_t PalIdx) {
    if (!ombrevale::pixelchecks::PaletteExists(PalIdx))
        return ombrevale::pixelchecks::Refuse("There is no palette " + std::to_string(PalIdx) + " to import into.");
    std::ifstream in(sFile, std::ios::binary);
    if (!in) return Fail(sFile, "it cannot be opened");
    std::string line;
    // Not a palette file at all: nothing to say, nothing to change.
    if (!ReadLine(in, line) || line != "JASC-PAL") return false;
    if (!ReadLine(in, line) || !ReadLine(in, line)) return Fail(sFile, "it ends before its first colour");

    std::vector<std::array<std::uint8_t, 3>> colours;
    for (int i = 0; i < 256; ++i) {
        if (!ReadLine(in, line)) return Fail(sFile, "it ends after " + std::to_string(i) + " of the 256 colours");
        const auto rgb = ColourLine(line);
        if (!rgb)
            return Fail(sFile, "line " + std::to_string(i + 4) + " (\"" + line.substr(0, 40) +
                                   "\") is not three numbers from 0 to 255 parted by single blanks");
        colours.push_back(*rgb);
    }
    // Red, green, blue in the file; blue, green, red in the store; the fourth byte stays.
    auto& pal = modDeclares::STYPalData[static_cast<std::size_t>(PalIdx)];
    for (std::size_t i = 0; i < 256; ++i) {
        pal[i * 4 + 2] = colours[i][0];
        pal[i * 4 + 1] = colours[i][1];
        pal[i * 4 + 0] = colours[i][2];
    }
    return true;
}
