#include "style/moddeclares.h"

namespace modDeclares {

void ResetSharedStores() {
    STYDeltaStore.clear();
    STYPalData.clear();
    STYPalIndex.clear();
    STYDeltaIndex.clear();
    STYPalBase.fill(0);
    STYSpriteBase.fill(0);
    STYCarInfo.clear();
    STYRecycle.clear();
    STYFontBase = FontBase{};
}

}  // namespace modDeclares
