#include "pixels/editparts.h"

#include <algorithm>
#include <iterator>

namespace ombrevale::editparts {
namespace {

bool HasPalette(std::int32_t p) { return p >= 0 && static_cast<std::size_t>(p) < modDeclares::STYPalData.size(); }

bool HasCar(std::int32_t r) { return r >= 0 && static_cast<std::size_t>(r) < modDeclares::STYCarInfo.size(); }

bool HasEntry(std::int32_t v) { return v >= 0 && static_cast<std::size_t>(v) < modDeclares::STYPalIndex.size(); }

bool HasTile(const clsSTY& doc, std::int32_t t) {
    return t >= 0 && static_cast<std::size_t>(t) < doc.STYTileStore.size();
}

void PutDeltas(const Part& part) {
    auto& store = modDeclares::STYDeltaStore;
    if (!part.splice) {
        store = part.bytes;
    } else {
        const auto [at, replaces] = *part.splice;
        // A store of another shape than the step was made on is left alone.
        if (at > store.size() || replaces > store.size() - at) return;
        const auto from = store.begin() + static_cast<std::ptrdiff_t>(at);
        if (replaces == part.bytes.size()) {
            std::copy(part.bytes.begin(), part.bytes.end(), from);
        } else {
            store.insert(store.erase(from, from + static_cast<std::ptrdiff_t>(replaces)), part.bytes.begin(),
                         part.bytes.end());
        }
    }
    modDeclares::STYDeltaIndex = part.deltaIndex;
}

std::size_t PartBytes(const Part& part) {
    // A tile's block may be shared with the store; it is counted all the same,
    // as the step alone may keep it alive.
    std::size_t n = sizeof(Part) + part.bytes.capacity() + (part.tile ? Tile::size() : 0) +
                    part.deltaIndex.capacity() * sizeof(modDeclares::DeltaEntry);
    for (const auto& entry : part.deltaIndex) n += entry.deltaSizes.capacity() * sizeof(std::int16_t);
    if (part.car) n += part.car->remaps.capacity() + part.car->doors.capacity() * sizeof(std::uint16_t);
    return n;
}

}  // namespace

Part Take(const clsSTY& doc, Kind kind, std::int32_t number) {
    Part part;
    part.kind = kind;
    part.number = number;
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
        case Kind::Car:
            if (HasCar(number)) part.car = modDeclares::STYCarInfo[static_cast<std::size_t>(number)];
            break;
        case Kind::PaletteEntry:
            if (HasEntry(number)) part.value = modDeclares::STYPalIndex[static_cast<std::size_t>(number)];
            break;
        case Kind::PaletteCount:
            part.value = doc.iPalCount;
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
            PutDeltas(part);
            break;
        case Kind::Palette:
            if (HasPalette(part.number) && part.bytes.size() == modDeclares::Palette().size())
                std::copy(part.bytes.begin(), part.bytes.end(),
                          modDeclares::STYPalData[static_cast<std::size_t>(part.number)].begin());
            break;
        case Kind::Recycling:
            modDeclares::STYRecycle.assign(part.bytes.begin(), part.bytes.end());
            break;
        case Kind::Car:
            if (part.car && HasCar(part.number))
                modDeclares::STYCarInfo[static_cast<std::size_t>(part.number)] = *part.car;
            break;
        case Kind::PaletteEntry:
            if (HasEntry(part.number))
                modDeclares::STYPalIndex[static_cast<std::size_t>(part.number)] = static_cast<std::int16_t>(part.value);
            break;
        case Kind::PaletteCount:
            // Palettes past the count go with it; ones it gains start as zeros.
            doc.iPalCount = static_cast<std::int16_t>(part.value);
            modDeclares::STYPalData.resize(static_cast<std::size_t>(std::max(part.value, 0)));
            break;
    }
}

void Narrow(Part& before, Part& after) {
    if (before.kind != Kind::Deltas || after.kind != Kind::Deltas || before.splice || after.splice) return;
    const ByteString& a = before.bytes;
    const ByteString& b = after.bytes;
    const auto head = static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
    // The common tail may not reach back into the common head.
    const std::size_t room = std::min(a.size(), b.size()) - head;
    const auto tail = static_cast<std::size_t>(
        std::mismatch(a.rbegin(), a.rbegin() + static_cast<std::ptrdiff_t>(room), b.rbegin()).first - a.rbegin());
    // Fresh strings, so that no capacity of the whole store stays behind.
    ByteString a2(a.begin() + static_cast<std::ptrdiff_t>(head), a.end() - static_cast<std::ptrdiff_t>(tail));
    ByteString b2(b.begin() + static_cast<std::ptrdiff_t>(head), b.end() - static_cast<std::ptrdiff_t>(tail));
    before.splice = Part::Splice{head, b2.size()};
    after.splice = Part::Splice{head, a2.size()};
    before.bytes = std::move(a2);
    after.bytes = std::move(b2);
}

std::size_t StepBytes(const Part& before, const Part& after) { return PartBytes(before) + PartBytes(after); }

}  // namespace ombrevale::editparts
