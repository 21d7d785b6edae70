#pragma once
// The shared stores: they live as long as the process and are reached
// directly by the document and by the window's panes.

#include <array>
#include <cstdint>
#include <vector>

#include "style/bytes.h"

namespace modDeclares {

// 256 colours of blue, green, red, fourth byte: already a BMP colour table.
using Palette = std::array<std::uint8_t, 1024>;

struct DeltaEntry {
    std::int16_t sprite = 0;
    std::uint8_t deltaCount = 0;
    std::uint8_t pad = 0;
    std::vector<std::int16_t> deltaSizes;

    bool operator==(const DeltaEntry&) const = default;
};

struct CarRecord {
    std::uint8_t model = 0;
    std::uint8_t sprite = 0;
    std::uint8_t width = 0;
    std::uint8_t height = 0;
    std::uint8_t numRemaps = 0;
    std::uint8_t passengers = 0;
    std::uint8_t wreck = 0;
    std::uint8_t rating = 0;
    std::uint8_t frontWheelOffset = 0;
    std::uint8_t rearWheelOffset = 0;
    std::uint8_t frontWindowOffset = 0;
    std::uint8_t rearWindowOffset = 0;
    std::uint8_t infoFlags = 0;
    std::uint8_t infoFlags2 = 0;
    std::vector<std::uint8_t> remaps;
    std::uint8_t numDoors = 0;
    std::vector<std::uint16_t> doors;

    bool operator==(const CarRecord&) const = default;
};

struct FontBase {
    std::int16_t count = 0;
    std::vector<std::int16_t> base;

    bool operator==(const FontBase&) const = default;
};

inline ByteString STYDeltaStore;
inline std::vector<Palette> STYPalData;
inline std::vector<std::int16_t> STYPalIndex;
inline std::vector<DeltaEntry> STYDeltaIndex;
inline std::array<std::int16_t, 8> STYPalBase{};
inline std::array<std::int16_t, 6> STYSpriteBase{};
inline std::vector<CarRecord> STYCarInfo;
inline std::vector<std::uint8_t> STYRecycle;
inline FontBase STYFontBase;

// Empties every shared store, as at process start. Tests use it between cases.
void ResetSharedStores();

// Every shared store at one moment, to compare or to put back.
struct SharedStores {
    ByteString deltaStore;
    std::vector<Palette> palData;
    std::vector<std::int16_t> palIndex;
    std::vector<DeltaEntry> deltaIndex;
    std::array<std::int16_t, 8> palBase{};
    std::array<std::int16_t, 6> spriteBase{};
    std::vector<CarRecord> carInfo;
    std::vector<std::uint8_t> recycle;
    FontBase fontBase;

    bool operator==(const SharedStores&) const = default;
};
SharedStores TakeSharedStores();
void RestoreSharedStores(SharedStores stores);

}  // namespace modDeclares
