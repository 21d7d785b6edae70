// A car record's fields as the edit dialog and the command line take them,
// and CARI written back after records grew and shrank.
#include <gtest/gtest.h>

#include <map>

#include "style/carrecord.h"
#include "stylefiletest.h"
#include "stylewriter/stylewriter.h"

using namespace ombrevale;
using modDeclares::CarRecord;

namespace {

struct ValueCase {
    const char* key;
    const char* text;
    std::uint8_t CarRecord::*byte;
    int stored;           // the byte written
    const char* refusal;  // empty: taken
};

class FieldValue : public ::testing::TestWithParam<ValueCase> {};

// A value taken lands in its own byte and no other; one refused says why.
TEST_P(FieldValue, TakesWhatItsByteAndTheGameHold) {
    const ValueCase& c = GetParam();
    const cars::FieldSpec* spec = cars::FindField(c.key);
    ASSERT_NE(spec, nullptr);
    const auto v = cars::ParseValue(*spec, c.text);
    if (*c.refusal) {
        ASSERT_TRUE(std::holds_alternative<std::string>(v));
        EXPECT_NE(std::get<std::string>(v).find(c.refusal), std::string::npos) << std::get<std::string>(v);
        return;
    }
    ASSERT_TRUE(std::holds_alternative<int>(v)) << std::get<std::string>(v);
    CarRecord r, want;
    cars::Set(r, spec->field, std::get<int>(v));
    want.*c.byte = static_cast<std::uint8_t>(c.stored);
    EXPECT_EQ(r, want);
}

INSTANTIATE_TEST_SUITE_P(
    Fields, FieldValue,
    ::testing::Values(
        ValueCase{"model", "255", &CarRecord::model, 255, ""}, ValueCase{"sprite", "1", &CarRecord::sprite, 1, ""},
        ValueCase{"sprite", "2", nullptr, 0, "(0..1)"}, ValueCase{"width", "128", &CarRecord::width, 128, ""},
        ValueCase{"width", "129", nullptr, 0, "(0..128)"}, ValueCase{"height", "7", &CarRecord::height, 7, ""},
        ValueCase{"passengers", "256", nullptr, 0, "does not fit its byte (0 to 255)"},
        ValueCase{"wreck", "99", &CarRecord::wreck, 99, ""},
        ValueCase{"rating", "-1", nullptr, 0, "does not fit its byte"},
        ValueCase{"front_wheel_offset", "-128", &CarRecord::frontWheelOffset, 128, ""},
        ValueCase{"rear_wheel_offset", "255", &CarRecord::rearWheelOffset, 255, ""},
        ValueCase{"front_window_offset", "-3", &CarRecord::frontWindowOffset, 253, ""},
        ValueCase{"rear_window_offset", "256", nullptr, 0, "signed byte"},
        ValueCase{"rear_window_offset", "-129", nullptr, 0, "signed byte"},
        ValueCase{"info_flags", "+7", &CarRecord::infoFlags, 7, ""},
        ValueCase{"info_flags2", "0x10", nullptr, 0, "whole number"}),
    [](const auto& p) {
        std::string name = std::string(p.param.key) + "_" + p.param.text;
        for (char& ch : name)
            if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
        return name + "_" + std::to_string(p.index);
    });

struct ListCase {
    const char* name;
    bool doors;
    std::string text;
    int room;  // remap numbers with a palette
    std::vector<std::uint16_t> stored;
    const char* refusal = "";
};

std::string Repeat(const char* item, int n) {
    std::string s;
    for (int i = 0; i < n; ++i) s += std::string(i ? "," : "") + item;
    return s;
}

class Lists : public ::testing::TestWithParam<ListCase> {};

TEST_P(Lists, TakeAsManyAsARecordHolds) {
    const ListCase& c = GetParam();
    std::vector<std::uint16_t> got;
    std::string why;
    if (c.doors) {
        const auto d = cars::ParseDoors(c.text);
        if (const auto* w = std::get_if<std::string>(&d)) why = *w;
        if (const auto* v = std::get_if<std::vector<std::uint16_t>>(&d)) got = *v;
    } else {
        const auto m = cars::ParseRemaps(c.text, c.room);
        if (const auto* w = std::get_if<std::string>(&m)) why = *w;
        if (const auto* v = std::get_if<std::vector<std::uint8_t>>(&m)) got.assign(v->begin(), v->end());
    }
    if (*c.refusal) {
        EXPECT_NE(why.find(c.refusal), std::string::npos) << why;
    } else {
        EXPECT_EQ(why, "");
        EXPECT_EQ(got, c.stored);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Lists,
    ::testing::Values(ListCase{"Remaps", false, "40, 41 42", 43, {40, 41, 42}}, ListCase{"NoRemaps", false, " ", 0, {}},
                      ListCase{"RemapWithoutPalette", false, "3, 43", 43, {}, "remap 43 has no palette"},
                      ListCase{"SixtyFiveRemaps", false, Repeat("1", 65), 256, {}, "at most 64"},
                      ListCase{"RemapNotANumber", false, "4x", 256, {}, "whole number"},
                      // rx is the first byte in the file: the low one.
                      ListCase{"Doors", true, "-12:-6, 12:-6", 0, {0xFAF4, 0xFA0C}},
                      ListCase{"SixDoors", true, Repeat("1:1", 6), 0, {}, "at most 5"},
                      ListCase{"DoorPastItsByte", true, "1:128", 0, {}, "signed byte"},
                      ListCase{"DoorWithoutColon", true, "1-2", 0, {}, "x:y"}),
    [](const auto& p) { return p.param.name; });

// Past 64 either way a door is one peds walk into; the 64 comes off its place.
TEST(Doors, WalkInLoseTheir64) {
    for (const auto& [rx, x, walkIn] : {std::tuple{70, 6, true}, std::tuple{-70, -6, true}, std::tuple{64, 64, false},
                                        std::tuple{65, 1, true}, std::tuple{-65, -1, true}}) {
        const cars::Door d = cars::DoorAt(static_cast<std::uint16_t>((rx & 0xFF) | (5 << 8)));
        EXPECT_EQ(std::tuple(d.x, d.y, d.walkIn), std::tuple(x, 5, walkIn)) << rx;
    }
}

TEST(Records, AModelNamesOneCar) {
    std::vector<CarRecord> all(2);
    all[0].model = 3;
    all[1].model = 4;
    CarRecord edited = all[1];
    edited.model = 3;
    const auto why = cars::RecordRefusal(edited, 1, all, 256);
    ASSERT_TRUE(why);
    EXPECT_NE(why->find("model 3 is record 0's"), std::string::npos) << *why;
    EXPECT_FALSE(cars::RecordRefusal(all[0], 0, all, 256));
}

// Tag to payload, read by the heads' sizes; a size that lies scrambles what follows.
std::map<std::string, stylewriter::Bytes> Sections(const stylewriter::Bytes& file) {
    std::map<std::string, stylewriter::Bytes> out;
    std::size_t at = 6;
    while (at + 8 <= file.size()) {
        const std::string tag(file.begin() + static_cast<long>(at), file.begin() + static_cast<long>(at + 4));
        std::size_t size = 0;
        for (std::size_t k = 0; k < 4; ++k) size |= std::size_t{file[at + 4 + k]} << (8 * k);
        const std::size_t end = std::min(file.size(), at + 8 + size);
        out[tag].assign(file.begin() + static_cast<long>(at + 8), file.begin() + static_cast<long>(end));
        at = end;
    }
    EXPECT_EQ(at, file.size());
    return out;
}

using CarsFile = testsupport::StyleFileTest;

TEST_F(CarsFile, RemapsAndDoorsAddedAndRemovedChangeOnlyCari) {
    const auto full = stylewriter::MakeFullStyle();
    ASSERT_TRUE(Load(full.file.bytes()));
    std::vector<CarRecord> edited = modDeclares::STYCarInfo;
    ASSERT_EQ(edited.size(), 3u);
    edited[0].remaps = {1, 2, 3, 4, 5};
    edited[0].doors = {};
    edited[1].doors = {0x0102, 0x0304, 0x0506};
    edited[2].remaps = {};
    for (std::size_t i = 0; i < edited.size(); ++i) {
        cars::Replace(i, edited[i]);
        edited[i] = modDeclares::STYCarInfo[i];
    }
    const auto saved = doc.SavedBytes();
    auto before = Sections(full.file.bytes()), after = Sections(saved);
    EXPECT_NE(after.at("CARI"), before.at("CARI"));
    before.erase("CARI");
    after.erase("CARI");
    EXPECT_EQ(after, before);

    modDeclares::ResetSharedStores();
    clsSTY again;
    ASSERT_TRUE(Load(saved, again, "saved.sty"));
    EXPECT_EQ(modDeclares::STYCarInfo, edited);
}

}  // namespace
