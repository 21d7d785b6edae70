#include "style/moddeclares.h"

#include <utility>

namespace modDeclares {

void ResetSharedStores() { RestoreSharedStores({}); }

SharedStores TakeSharedStores() {
    return {STYDeltaStore, STYPalData, STYPalIndex, STYDeltaIndex, STYPalBase,
            STYSpriteBase, STYCarInfo, STYRecycle,  STYFontBase};
}

void RestoreSharedStores(SharedStores stores) {
    STYDeltaStore = std::move(stores.deltaStore);
    STYPalData = std::move(stores.palData);
    STYPalIndex = std::move(stores.palIndex);
    STYDeltaIndex = std::move(stores.deltaIndex);
    STYPalBase = stores.palBase;
    STYSpriteBase = stores.spriteBase;
    STYCarInfo = std::move(stores.carInfo);
    STYRecycle = std::move(stores.recycle);
    STYFontBase = std::move(stores.fontBase);
}

}  // namespace modDeclares
