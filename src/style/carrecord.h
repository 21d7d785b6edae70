#pragma once
// One CARI record as a user edits it: its single-byte fields with what the
// game holds them to, its remap and door lists as text, and the refusals
// that keep an edited record inside its bytes and inside the style.
//
// The meanings follow DMA's "GBH Style Format" 4.6 (Cars): w and h are the
// car's size in pixels, the four offsets signed distances in pixels from the
// car's centre, a door's rx and ry signed pixels from that centre.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "style/moddeclares.h"

namespace ombrevale::cars {

using modDeclares::CarRecord;

inline constexpr std::size_t kMaxRecords = 256;
inline constexpr std::size_t kMaxRemaps = 64;
inline constexpr std::size_t kMaxDoors = 5;

// Bytes the record takes in CARI, as its counts say.
std::size_t RecordBytes(const CarRecord& r);

enum class Field {
    Model,
    Sprite,
    Width,
    Height,
    Passengers,
    Wreck,
    Rating,
    FrontWheel,
    RearWheel,
    FrontWindow,
    RearWindow,
    Flags,
    Flags2
};

struct FieldSpec {
    Field field;
    std::string_view key;    // as info and car print it
    std::string_view label;  // as the window shows it
    int lo, hi;              // what is taken; a signed byte also takes 128..255
    std::string_view why;    // why hi is below what the byte holds, else empty
};
const std::array<FieldSpec, 13>& Fields();
const FieldSpec* FindField(std::string_view key);
const FieldSpec& SpecOf(Field f);
bool IsSigned(Field f);

// Signed fields come back as -128..127.
int Get(const CarRecord& r, Field f);
void Set(CarRecord& r, Field f, int value);

// A whole decimal number the field takes, or why not.
using Parsed = std::variant<int, std::string>;
Parsed ParseValue(const FieldSpec& spec, std::string_view text);

// The remap numbers that have a palette: PALX entries past the sprites'.
int RemapRoom();

// "40, 41, 42": remap numbers, commas or blanks between them.
std::string RemapsText(const CarRecord& r);
std::variant<std::vector<std::uint8_t>, std::string> ParseRemaps(std::string_view text, int remapRoom);
// Why one of these remaps has no palette, or nothing.
std::optional<std::string> RemapsRefusal(const std::vector<std::uint8_t>& remaps, int remapRoom);

struct Door {
    int x = 0, y = 0;     // pixels from the car's centre
    bool walkIn = false;  // rx beyond +-64: peds walk straight in
};
Door DoorAt(std::uint16_t stored);
// "-12:-6, 12:-6": each door's rx:ry as stored.
std::string DoorsText(const CarRecord& r);
std::variant<std::vector<std::uint16_t>, std::string> ParseDoors(std::string_view text);

// Why record `index` as edited cannot stand among the others, or nothing.
std::optional<std::string> RecordRefusal(const CarRecord& r, std::size_t index, const std::vector<CarRecord>& all,
                                         int remapRoom);

// Record `index` of STYCarInfo becomes r, its counts following its lists.
void Replace(std::size_t index, CarRecord r);

// The first record of that model, or -1.
int FindModel(int model);

// The sprite record `index` draws: each record after the first moves on by its sprite byte.
int SpriteOfRecord(const std::vector<CarRecord>& all, std::size_t index);

// A load's word on records the game would not take, or nothing.
std::optional<std::string> LoadWarning(const std::vector<CarRecord>& cars);

}  // namespace ombrevale::cars
