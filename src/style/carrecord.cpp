#include "style/carrecord.h"

#include <algorithm>
#include <charconv>

#include "style/messages.h"
#include "style/palettebases.h"

namespace ombrevale::cars {
namespace {

using namespace std::string_literals;

std::string Str(std::string_view s) { return std::string(s); }

// Words of a list: runs of characters other than commas and blanks.
std::vector<std::string_view> Words(std::string_view text) {
    std::vector<std::string_view> out;
    std::size_t i = 0;
    while (i < text.size()) {
        const auto sep = [](char c) { return c == ',' || c == ' ' || c == '\t'; };
        while (i < text.size() && sep(text[i])) ++i;
        const std::size_t start = i;
        while (i < text.size() && !sep(text[i])) ++i;
        if (i > start) out.push_back(text.substr(start, i - start));
    }
    return out;
}

std::optional<long long> Number(std::string_view text) {
    long long v = 0;
    const char* first = text.data();
    const char* last = text.data() + text.size();
    if (!text.empty() && text[0] == '+') ++first;
    const auto [end, ec] = std::from_chars(first, last, v);
    if (text.empty() || ec != std::errc() || end != last) return std::nullopt;
    return v;
}

// The record's byte of a field, const or not.
template <typename Record>
auto& Byte(Record& r, Field f) {
    switch (f) {
        case Field::Model:
            return r.model;
        case Field::Sprite:
            return r.sprite;
        case Field::Width:
            return r.width;
        case Field::Height:
            return r.height;
        case Field::Passengers:
            return r.passengers;
        case Field::Wreck:
            return r.wreck;
        case Field::Rating:
            return r.rating;
        case Field::FrontWheel:
            return r.frontWheelOffset;
        case Field::RearWheel:
            return r.rearWheelOffset;
        case Field::FrontWindow:
            return r.frontWindowOffset;
        case Field::RearWindow:
            return r.rearWindowOffset;
        case Field::Flags:
            return r.infoFlags;
        case Field::Flags2:
            break;
    }
    return r.infoFlags2;
}

int Signed(std::uint8_t b) { return b < 128 ? b : b - 256; }

}  // namespace

std::size_t RecordBytes(const CarRecord& r) { return 15u + r.numRemaps + 2u * r.numDoors; }

const std::array<FieldSpec, 13>& Fields() {
    static const std::array<FieldSpec, 13> fields = {{
        {Field::Model, "model", "Model", 0, 255, ""},
        {Field::Sprite, "sprite", "Own sprite", 0, 1, "1 gives the car a sprite of its own, 0 shares the one before"},
        {Field::Width, "width", "Width", 0, 128, "the game takes no wider car"},
        {Field::Height, "height", "Height", 0, 128, "the game takes no longer car"},
        {Field::Passengers, "passengers", "Passengers", 0, 255, ""},
        {Field::Wreck, "wreck", "Wreck No.", 0, 255, ""},
        {Field::Rating, "rating", "Rating", 0, 255, ""},
        {Field::FrontWheel, "front_wheel_offset", "Front Wheel Offset", -128, 127, ""},
        {Field::RearWheel, "rear_wheel_offset", "Rear Wheel Offset", -128, 127, ""},
        {Field::FrontWindow, "front_window_offset", "Front Window Offset", -128, 127, ""},
        {Field::RearWindow, "rear_window_offset", "Rear Window Offset", -128, 127, ""},
        {Field::Flags, "info_flags", "Flags", 0, 255, ""},
        {Field::Flags2, "info_flags2", "Flags 2", 0, 255, ""},
    }};
    return fields;
}

const FieldSpec* FindField(std::string_view key) {
    for (const auto& f : Fields())
        if (f.key == key) return &f;
    return nullptr;
}

const FieldSpec& SpecOf(Field f) {
    for (const auto& spec : Fields())
        if (spec.field == f) return spec;
    return Fields().front();
}

bool IsSigned(Field f) { return f >= Field::FrontWheel && f <= Field::RearWindow; }

int Get(const CarRecord& r, Field f) {
    const std::uint8_t b = Byte(r, f);
    return IsSigned(f) ? Signed(b) : b;
}

void Set(CarRecord& r, Field f, int value) { Byte(r, f) = static_cast<std::uint8_t>(value & 0xFF); }

Parsed ParseValue(const FieldSpec& spec, std::string_view text) {
    const std::string name = Str(spec.label);
    const auto v = Number(text);
    if (!v) return name + " must be a whole number, not \"" + Str(text) + "\"";
    if (IsSigned(spec.field)) {
        // info prints these bytes unsigned, so both spellings come back.
        if (*v < -128 || *v > 255)
            return name + " " + std::to_string(*v) + " does not fit its signed byte (-128 to 127, or 0 to 255)";
        return static_cast<int>(*v > 127 ? *v - 256 : *v);
    }
    if (*v < 0 || *v > 255) return name + " " + std::to_string(*v) + " does not fit its byte (0 to 255)";
    if (*v < spec.lo || *v > spec.hi)
        return name + " " + std::to_string(*v) + " is out of range (" + std::to_string(spec.lo) + ".." +
               std::to_string(spec.hi) + "): " + Str(spec.why);
    return static_cast<int>(*v);
}

int RemapRoom() {
    const std::int64_t left = static_cast<std::int64_t>(modDeclares::STYPalIndex.size()) - palettebases::RemapEntry(0);
    return static_cast<int>(std::clamp<std::int64_t>(left, 0, 256));
}

std::string RemapsText(const CarRecord& r) {
    std::string out;
    for (std::uint8_t m : r.remaps) out += (out.empty() ? "" : ", ") + std::to_string(m);
    return out;
}

std::optional<std::string> RemapsRefusal(const std::vector<std::uint8_t>& remaps, int remapRoom) {
    if (remaps.size() > kMaxRemaps)
        return std::to_string(remaps.size()) + " remaps; a car holds at most " + std::to_string(kMaxRemaps);
    for (std::uint8_t m : remaps)
        if (m >= remapRoom)
            return "remap " + std::to_string(m) + " has no palette: PALX holds " +
                   (remapRoom > 0 ? "remaps 0.." + std::to_string(remapRoom - 1) : "no remaps"s);
    return std::nullopt;
}

std::variant<std::vector<std::uint8_t>, std::string> ParseRemaps(std::string_view text, int remapRoom) {
    std::vector<std::uint8_t> out;
    for (std::string_view w : Words(text)) {
        const auto v = Number(w);
        if (!v) return "a remap must be a whole number, not \"" + Str(w) + "\"";
        if (*v < 0 || *v > 255) return "remap " + std::to_string(*v) + " does not fit its byte (0 to 255)";
        out.push_back(static_cast<std::uint8_t>(*v));
    }
    if (auto why = RemapsRefusal(out, remapRoom)) return *why;
    return out;
}

Door DoorAt(std::uint16_t stored) {
    // rx is the first byte in the file, so the low one.
    Door d{Signed(static_cast<std::uint8_t>(stored & 0xFF)), Signed(static_cast<std::uint8_t>(stored >> 8)), false};
    if (d.x > 64 || d.x < -64) {
        d.walkIn = true;
        d.x += d.x > 0 ? -64 : 64;
    }
    return d;
}

std::string DoorsText(const CarRecord& r) {
    std::string out;
    for (std::uint16_t d : r.doors)
        out += (out.empty() ? "" : ", ") + std::to_string(Signed(static_cast<std::uint8_t>(d & 0xFF))) + ":" +
               std::to_string(Signed(static_cast<std::uint8_t>(d >> 8)));
    return out;
}

std::variant<std::vector<std::uint16_t>, std::string> ParseDoors(std::string_view text) {
    std::vector<std::uint16_t> out;
    for (std::string_view w : Words(text)) {
        const auto colon = w.find(':');
        const auto x = colon == w.npos ? std::nullopt : Number(w.substr(0, colon));
        const auto y = colon == w.npos ? std::nullopt : Number(w.substr(colon + 1));
        if (!x || !y) return "a door is x:y, two whole numbers, not \"" + Str(w) + "\"";
        for (long long v : {*x, *y})
            if (v < -128 || v > 127)
                return "door " + Str(w) + ": " + std::to_string(v) + " does not fit its signed byte (-128 to 127)";
        out.push_back(static_cast<std::uint16_t>((*x & 0xFF) | ((*y & 0xFF) << 8)));
    }
    if (out.size() > kMaxDoors)
        return std::to_string(out.size()) + " doors; a car holds at most " + std::to_string(kMaxDoors);
    return out;
}

std::optional<std::string> RecordRefusal(const CarRecord& r, std::size_t index, const std::vector<CarRecord>& all,
                                         int remapRoom) {
    for (const FieldSpec& f : Fields()) {
        const auto v = ParseValue(f, std::to_string(Get(r, f.field)));
        if (const auto* why = std::get_if<std::string>(&v)) return *why;
    }
    if (auto why = RemapsRefusal(r.remaps, remapRoom)) return why;
    if (r.doors.size() > kMaxDoors)
        return std::to_string(r.doors.size()) + " doors; a car holds at most " + std::to_string(kMaxDoors);
    for (std::size_t i = 0; i < all.size(); ++i)
        if (i != index && all[i].model == r.model)
            return "model " + std::to_string(r.model) + " is record " + std::to_string(i) +
                   "'s already; a model names one car";
    return std::nullopt;
}

void Replace(std::size_t index, CarRecord r) {
    auto& cars = modDeclares::STYCarInfo;
    if (index >= cars.size()) return;
    r.numRemaps = static_cast<std::uint8_t>(r.remaps.size());
    r.numDoors = static_cast<std::uint8_t>(r.doors.size());
    cars[index] = std::move(r);
}

int FindModel(int model) {
    const auto& cars = modDeclares::STYCarInfo;
    for (std::size_t i = 0; i < cars.size(); ++i)
        if (cars[i].model == model) return static_cast<int>(i);
    return -1;
}

int SpriteOfRecord(const std::vector<CarRecord>& all, std::size_t index) {
    int sprite = 0;
    for (std::size_t i = 1; i <= index && i < all.size(); ++i) sprite += all[i].sprite;
    return sprite;
}

std::optional<std::string> LoadWarning(const std::vector<CarRecord>& cars) {
    std::string models;
    std::size_t n = 0;
    for (const CarRecord& c : cars)
        if (c.numDoors > kMaxDoors) {
            models += (n++ ? ", " : "") + std::to_string(c.model);
        }
    if (n == 0) return std::nullopt;
    return (n == 1 ? "the car record of model " + models + " lists"
                   : GroupedNumber(static_cast<std::int64_t>(n)) + " car records (models " + models + ") list") +
           " more than " + std::to_string(kMaxDoors) + " doors, which the game does not take";
}

}  // namespace ombrevale::cars
