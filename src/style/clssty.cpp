#include "style/clssty.h"

// A new document knows no section; every other field starts empty or zero.
clsSTY::clsSTY() { Present.fill(false); }

std::int16_t clsSTY::SpriteNumFromModelNum(std::int32_t iModelNum) const {
    // Counted, not stored: the matching record adds nothing, so test before adding.
    std::int32_t count = 0;
    for (const auto& record : modDeclares::STYCarInfo) {
        if (record.model == iModelNum) break;
        if (record.sprite == 1) ++count;
    }
    return static_cast<std::int16_t>(count);
}
