#include "pixels/checks.h"
#include "style/clssty.h"
#include "style/moddeclares.h"

std::int32_t clsSTY::GetCol(std::int32_t Pal, std::int32_t Col) const {
    if (!ombrevale::pixelchecks::PaletteExists(Pal) || Col < 0 || Col > 255) {
        ombrevale::pixelchecks::Refuse("There is no colour " + std::to_string(Col) + " in palette " +
                                       std::to_string(Pal) + ".");
        return 0;
    }
    const auto& c = modDeclares::STYPalData[static_cast<std::size_t>(Pal)];
    const auto at = static_cast<std::size_t>(Col) * 4;
    // Stored blue, green, red; the platform's colour is red + green * 256 + blue * 65536.
    return c[at + 2] | (c[at + 1] << 8) | (c[at] << 16);
}
