// cRegistry over a Wine prefix's user.reg, with no Wine running.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "settings/cregistry.h"
#include "support/tempdir.h"

namespace {

const char* kKey = "Software\\DMA Design LTd\\Gta2 Editor\\App Defaults";

const char* kUserReg =
    "WINE REGISTRY Version 2\n"
    ";; All keys relative to REGISTRY\\\\User\\\\S-1-5-21-0-0-0-1000\n"
    "\n"
    "#arch=win64\n"
    "\n"
    "[Software\\\\DMA Design LTd\\\\Gta2 Editor\\\\App Defaults] 1700000000\n"
    "#time=1da1747c66d0000\n"
    "\"App Style File\"=\"C:\\\\GTA2\\\\data\\\\wil.sty\"\n"
    "\"Big\"=hex(5):01,02,03,04\n"
    "\"Bin\"=hex:de,ad,00\n"
    "\"Count\"=dword:fffffffe\n"
    "\"Empty\"=\"\"\n"
    "\"Expand\"=str(2):\"%OMBREVALE_TEST_VAR%\\\\x %UNSET_OMBREVALE% 50%\"\n"
    "\"Multi\"=hex(7):61,00,00,00,62,00,63,00,00,00,00,00\n"
    "\"Odd\"=hex(8):07\n"
    "\"Zero\"=hex(1):\n"
    "\n"
    "[Software\\\\DMA Design LTd\\\\Gta2 Editor\\\\Zone] 1700000000\n"
    "#time=1da1747c66d0000\n"
    "\n"
    "[Software\\\\DMA Design LTd\\\\Other\\\\Deep] 1700000000\n"
    "#time=1da1747c66d0000\n";

std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

class FilePrefix : public testing::Test {
protected:
    void SetUp() override {
        std::ofstream(dir_.File("user.reg"), std::ios::binary) << kUserReg;
        setenv("WINEPREFIX", dir_.path().c_str(), 1);
        setenv("OMBREVALE_TEST_VAR", "D:\\Data", 1);
    }
    void TearDown() override { unsetenv("WINEPREFIX"); }
    cRegistry At(const std::string& section, const std::string& value = "") {
        cRegistry r;
        r.ClassKey(HKEY_CURRENT_USER_);
        r.SectionKey(section);
        r.ValueKey(value);
        return r;
    }
    std::string UserReg() { return ReadAll(dir_.File("user.reg")); }
    testsupport::TempDir dir_;
};

struct ReadCase {
    const char* label;
    const char* value;
    RegValue expected;
    std::int32_t type;
};

class ReadTest : public FilePrefix, public testing::WithParamInterface<ReadCase> {};

TEST_P(ReadTest, GivesTypedValueAndSetsValueType) {
    cRegistry r = At(kKey, GetParam().value);
    r.ValueType(99);
    r.Default(std::string("default"));
    EXPECT_EQ(r.Value(), GetParam().expected);
    EXPECT_EQ(r.ValueType(), GetParam().type);
}

using Bytes = std::vector<std::uint8_t>;
INSTANTIATE_TEST_SUITE_P(
    Types, ReadTest,
    testing::Values(ReadCase{"sz", "App Style File", std::string("C:\\GTA2\\data\\wil.sty"), 1},
                    ReadCase{"sz_any_case", "APP STYLE FILE", std::string("C:\\GTA2\\data\\wil.sty"), 1},
                    ReadCase{"empty_sz_is_not_default", "Empty", std::string(), 1},
                    ReadCase{"size_zero_sz", "Zero", std::string(), 1},
                    ReadCase{"expand", "Expand", std::string("D:\\Data\\x %UNSET_OMBREVALE% 50%"), 2},
                    ReadCase{"dword_signed", "Count", std::int32_t{-2}, 4},
                    ReadCase{"big_endian_swapped", "Big", std::int32_t{0x01020304}, 5},
                    ReadCase{"binary", "Bin", Bytes{0xde, 0xad, 0}, 3},
                    ReadCase{"multi_keeps_inner_zeros", "Multi", std::string("a\0bc\0", 5), 7},
                    ReadCase{"other_type_as_bytes", "Odd", Bytes{7}, 8},
                    ReadCase{"missing_value", "Nope", std::string("default"), 99}),
    [](const auto& row) { return std::string(row.param.label); });

TEST_F(FilePrefix, MissingKeyOrPrefixGivesDefault) {
    cRegistry r = At("Software\\Nowhere", "App Style File");
    EXPECT_EQ(r.Value(), RegValue{});
    EXPECT_EQ(RegValueText(r.Value()), "");
    setenv("WINEPREFIX", (dir_.path() / "absent").c_str(), 1);
    cRegistry s = At(kKey, "App Style File");
    s.Default(std::int32_t{7});
    EXPECT_EQ(s.Value(), RegValue{std::int32_t{7}});
    EXPECT_FALSE(s.KeyExists());
    EXPECT_FALSE(s.CreateKey());
    s.ValueType(REG_SZ_);
    s.Value(std::string("x"));  // nothing to write to, and no crash
}

struct WriteCase {
    const char* label;
    std::int32_t type;
    RegValue value;
    std::string line;  // the line expected in user.reg; empty: nothing stored
};

class WriteTest : public FilePrefix, public testing::WithParamInterface<WriteCase> {};

TEST_P(WriteTest, StoresWhatTheTypeAllows) {
    cRegistry r = At("Software\\Ombrevale\\New", "V");
    r.ValueType(GetParam().type);
    r.Value(GetParam().value);
    std::string file = UserReg();
    EXPECT_NE(file.find("[Software\\\\Ombrevale\\\\New] "), std::string::npos) << "the key is made in any case";
    if (GetParam().line.empty()) {
        EXPECT_EQ(file.find("\"V\"="), std::string::npos);
    } else {
        EXPECT_NE(file.find("\n" + GetParam().line + "\n"), std::string::npos) << file;
    }
    EXPECT_EQ(r.ValueType(), GetParam().type);
    EXPECT_NE(file.find("\"App Style File\"=\"C:\\\\GTA2\\\\data\\\\wil.sty\"\n"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Types, WriteTest,
    testing::Values(WriteCase{"sz", REG_SZ_, std::string("a\"b\\c"), R"("V"="a\"b\\c")"},
                    WriteCase{"sz_with_name_becomes_expand", REG_SZ_, std::string("%AB%"), R"("V"=str(2):"%AB%")"},
                    WriteCase{"expand_without_name_becomes_sz", REG_EXPAND_SZ_, std::string("50%%"), R"("V"="50%%")"},
                    WriteCase{"marks_one_apart_is_sz", REG_SZ_, std::string("%A"), R"("V"="%A")"},
                    WriteCase{"marks_two_apart_is_expand", REG_SZ_, std::string("%A%"), R"("V"=str(2):"%A%")"},
                    WriteCase{"number_as_text", REG_SZ_, std::int32_t{-5}, R"("V"="-5")"},
                    WriteCase{"dword", REG_DWORD_, std::int32_t{0x2a}, R"("V"=dword:0000002a)"},
                    WriteCase{"big_endian_not_swapped", REG_DWORD_BIG_ENDIAN_, std::int32_t{0x01020304},
                              R"("V"=dword:01020304)"},
                    WriteCase{"dword_from_text_writes_nothing", REG_DWORD_, std::string("42"), ""},
                    WriteCase{"binary", REG_BINARY_, Bytes{1, 0xff}, R"("V"=hex:01,ff)"},
                    WriteCase{"binary_from_text_writes_nothing", REG_BINARY_, std::string("x"), ""},
                    WriteCase{"type_zero_writes_nothing", 0, std::string("x"), ""},
                    WriteCase{"multi_writes_nothing", REG_MULTI_SZ_, std::string("x"), ""}),
    [](const auto& row) { return std::string(row.param.label); });

TEST_F(FilePrefix, ExpandedTextWrittenBackIsPlain) {
    cRegistry r = At(kKey, "Expand");
    RegValue v = r.Value();
    ASSERT_EQ(r.ValueType(), REG_EXPAND_SZ_);
    r.Value(v);  // still holds %UNSET_OMBREVALE% 50%: two marks far apart
    EXPECT_EQ(r.Value(), v);
    EXPECT_EQ(r.ValueType(), REG_EXPAND_SZ_);
    cRegistry plain = At(kKey, "Plain");
    plain.ValueType(REG_EXPAND_SZ_);
    plain.Value(std::string("D:\\Data\\x"));
    plain.ValueType(0);
    EXPECT_EQ(plain.Value(), RegValue{std::string("D:\\Data\\x")});
    EXPECT_EQ(plain.ValueType(), REG_SZ_);
}

TEST_F(FilePrefix, EnumerationsAreOneBasedAndSorted) {
    std::vector<std::string> names{"stale"};
    std::int32_t count = -1;
    EXPECT_TRUE(At(kKey).EnumerateValues(names, count));
    ASSERT_EQ(count, 9);
    ASSERT_EQ(names.size(), 10u);
    EXPECT_EQ(names[1], "App Style File");
    EXPECT_EQ(names[9], "Zero");

    EXPECT_TRUE(At("software\\dma design ltd").EnumerateSections(names, count));
    ASSERT_EQ(count, 2);
    EXPECT_EQ(names[1], "Gta2 Editor");
    EXPECT_EQ(names[2], "Other");

    EXPECT_TRUE(At("Software\\Nowhere").EnumerateValues(names, count));
    EXPECT_EQ(count, 0);
    EXPECT_TRUE(names.empty());
    EXPECT_TRUE(At("Software\\Nowhere").EnumerateSections(names, count));
    EXPECT_EQ(count, 0);
    EXPECT_TRUE(names.empty());
}

TEST_F(FilePrefix, KeysAreMadeAndDeletedLikeWindowsDoes) {
    EXPECT_TRUE(At("software\\DMA DESIGN LTD").KeyExists());
    EXPECT_FALSE(At("Software\\DMA").KeyExists());
    std::string before = UserReg();
    EXPECT_TRUE(At("SOFTWARE\\dma design ltd\\gta2 editor").CreateKey());
    EXPECT_EQ(UserReg(), before) << "an existing key is only opened";

    EXPECT_TRUE(At("Software\\A\\B\\C").CreateKey());
    EXPECT_TRUE(At("Software\\A\\B").KeyExists());
    EXPECT_FALSE(At("Software\\A\\B").DeleteKey()) << "it has a subkey";
    EXPECT_TRUE(At("software\\a\\b\\c").DeleteKey());
    EXPECT_TRUE(At("Software\\A\\B").KeyExists());
    EXPECT_TRUE(At("Software\\A\\B").DeleteKey());
    EXPECT_FALSE(At("Software\\A\\B").DeleteKey());

    EXPECT_TRUE(At(kKey, "bin").DeleteValue());
    EXPECT_FALSE(At(kKey, "Bin").DeleteValue());
    EXPECT_FALSE(At("Software\\Nowhere", "Bin").DeleteValue());
}

TEST_F(FilePrefix, DoesNotTouchAFileItCannotParse) {
    std::string damaged = std::string(kUserReg) + "\"Broken\"=dword:nothex\n";
    std::ofstream(dir_.File("user.reg"), std::ios::binary) << damaged;
    EXPECT_EQ(RegValueText(At(kKey, "App Style File").Value()), "C:\\GTA2\\data\\wil.sty");
    cRegistry w = At(kKey, "New");
    w.ValueType(REG_SZ_);
    w.Value(std::string("x"));
    EXPECT_FALSE(At("Software\\Fresh").CreateKey());
    EXPECT_FALSE(At(kKey, "Bin").DeleteValue());
    EXPECT_FALSE(At("Software\\DMA Design LTd\\Gta2 Editor\\Zone").DeleteKey());
    EXPECT_EQ(UserReg(), damaged);
}

TEST_F(FilePrefix, StylePathMapsOntoThePrefixDrives) {
    std::filesystem::create_directories(dir_.path() / "drive_c" / "Games" / "GTA2" / "data");
    std::filesystem::create_directories(dir_.path() / "dosdevices");
    std::filesystem::create_directory_symlink("../drive_c", dir_.path() / "dosdevices" / "c:");
    std::ofstream(dir_.path() / "drive_c" / "Games" / "GTA2" / "data" / "WIL.STY") << "x";
    std::string mapped = LocalPathForStylePath("C:\\games\\gta2\\DATA\\wil.sty");
    EXPECT_EQ(mapped, (dir_.path() / "dosdevices" / "c:" / "Games" / "GTA2" / "data" / "WIL.STY").string());
    EXPECT_TRUE(std::filesystem::exists(mapped));
    EXPECT_EQ(LocalPathForStylePath("/home/x/wil.sty"), "/home/x/wil.sty");
    EXPECT_EQ(LocalPathForStylePath("d:\\new\\a.sty"), (dir_.path() / "dosdevices" / "d:" / "new" / "a.sty").string());
}

}  // namespace
