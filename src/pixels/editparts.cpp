#include "pixels/editparts.h"

#include <algorithm>

namespace ombrevale::editparts {
namespace {

bool HasPalette(std::int32_t p) { return p >= 0 && static_cast<std::size_t>(p) < modDeclares::STYPalData.size(); }

bool HasTile(const clsSTY& doc, std::int32_t t) {
    return t >= 0 && static_cast<std::size_t>(t) < doc.STYTileStore.size();
}

}  // namespace

Part Take(const clsSTY& doc, Kind kind, std::int32_t number) {
    Part part{kind, number, std::nullopt, {}, {}};
    switch (kind) {
        case Kind::Tile:
            if (HasTile(doc, number)) part.tile = doc.STYTileStore[static_cast<std::size_t>(number)];
            break;
        case Kind::Sprite:
            part.bytes = doc.GetBits(number);
            break;
        case Kind::Deltas:
            part.bytes = modDeclares::STYDeltaStore;
            part.deltaIndex = modDeclares::STYDeltaIndex;
            break;
        case Kind::Palette:
            if (HasPalette(number)) {
                const auto& pal = modDeclares::STYPalData[static_cast<std::size_t>(number)];
                part.bytes.assign(pal.begin(), pal.end());
            }
            break;
        case Kind::Recycling:
            part.bytes.assign(modDeclares::STYRecycle.begin(), modDeclares::STYRecycle.end());
            break;
    }
    return part;
}

void Put(clsSTY& doc, const Part& part) {
    switch (part.kind) {
        case Kind::Tile:
            if (part.tile && HasTile(doc, part.number))
                doc.STYTileStore[static_cast<std::size_t>(part.number)] = *part.tile;
            break;
        case Kind::Sprite:
            // A block GetBits could not give stays empty, and an empty block writes nothing.
            if (!part.bytes.empty() && part.number <= INT16_MAX)
                doc.SetBits(static_cast<std::int16_t>(part.number), part.bytes);
            break;
        case Kind::Deltas:
            modDeclares::STYDeltaStore = part.bytes;
            modDeclares::STYDeltaIndex = part.deltaIndex;
            break;
        case Kind::Palette:
            if (HasPalette(part.number) && part.bytes.size() == modDeclares::Palette().size())
                std::copy(part.bytes.begin(), part.bytes.end(),
                          modDeclares::STYPalData[static_cast<std::size_t>(part.number)].begin());
            break;
        case Kind::Recycling:
            modDeclares::STYRecycle.assign(part.bytes.begin(), part.bytes.end());
            break;
    }
}

}  // namespace ombrevale::editparts
