// Wine's registry text format: values, escapes, layout and whole files.
#include <gtest/gtest.h>

#include "settings/regfile.h"

using ombrevale::regfile::Text;

namespace {

std::vector<std::uint8_t> Utf16z(const Text& t) {
    std::vector<std::uint8_t> d;
    for (char16_t c : t) {
        d.push_back(static_cast<std::uint8_t>(c & 0xFF));
        d.push_back(static_cast<std::uint8_t>(c >> 8));
    }
    d.push_back(0);
    d.push_back(0);
    return d;
}

struct ValueCase {
    const char* label;
    std::string line;
    Text name;
    std::uint32_t type;
    std::vector<std::uint8_t> data;
};

class ParseValueTest : public testing::TestWithParam<ValueCase> {};

TEST_P(ParseValueTest, ReadsNameTypeAndBytes) {
    const auto& c = GetParam();
    ombrevale::regfile::Value v;
    ASSERT_TRUE(ombrevale::regfile::ParseValue(c.line, v)) << c.line;
    EXPECT_EQ(v.name, c.name);
    EXPECT_EQ(v.type, c.type);
    EXPECT_EQ(v.data, c.data);
    // What we write must read back the same.
    ombrevale::regfile::Value again;
    std::string written = ombrevale::regfile::FormatValue(v);
    ASSERT_TRUE(ombrevale::regfile::ParseValue(written.substr(0, written.size() - 1), again)) << written;
    EXPECT_EQ(again.name, v.name);
    EXPECT_EQ(again.type, v.type);
    EXPECT_EQ(again.data, v.data);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ParseValueTest,
    testing::Values(ValueCase{"plain", R"("Name"="Text")", u"Name", 1, Utf16z(u"Text")},
                    ValueCase{"default_value", R"(@="d")", u"", 1, Utf16z(u"d")},
                    ValueCase{"empty_string", R"("e"="")", u"e", 1, Utf16z(u"")},
                    ValueCase{"quote_and_backslash", R"("a\"b"="C:\\x\"y")", u"a\"b", 1, Utf16z(u"C:\\x\"y")},
                    ValueCase{"c_escapes", R"("c"="\t\n\r\a\e")", u"c", 1, Utf16z(u"\t\n\r\a\x1b")},
                    ValueCase{"hex_escapes", R"("h"="\xe9t\x20ac1")", u"h", 1, Utf16z(u"\u00e9t\u20ac1")},
                    ValueCase{"octal_escapes", R"("o"="a\0b\0011")", u"o", 1,
                              Utf16z(Text(u"a\0b\x01"
                                          u"1",
                                          5))},
                    ValueCase{"expand_string", R"("p"=str(2):"%TEMP%\\x")", u"p", 2, Utf16z(u"%TEMP%\\x")},
                    ValueCase{"multi_as_str7", R"("m"=str(7):"a\0b\0")", u"m", 7, Utf16z(Text(u"a\0b\0", 4))},
                    ValueCase{"dword", R"("n"=dword:0000002a)", u"n", 4, {0x2a, 0, 0, 0}},
                    ValueCase{"dword_high", R"("n"=dword:fffffffe)", u"n", 4, {0xfe, 0xff, 0xff, 0xff}},
                    ValueCase{"binary", R"("b"=hex:01,ff,00)", u"b", 3, {1, 0xff, 0}},
                    ValueCase{"binary_empty", R"("b"=hex:)", u"b", 3, {}},
                    ValueCase{"multi_hex7", R"("m"=hex(7):61,00,00,00,00,00)", u"m", 7, {0x61, 0, 0, 0, 0, 0}},
                    ValueCase{"big_endian_hex5", R"("d"=hex(5):01,02,03,04)", u"d", 5, {1, 2, 3, 4}},
                    ValueCase{"none_hex0", R"("z"=hex(0):)", u"z", 0, {}},
                    ValueCase{"odd_string_as_hex1", R"("s"=hex(1):41,00,42)", u"s", 1, {0x41, 0, 0x42}}),
    [](const auto& row) { return std::string(row.param.label); });

class RejectValueTest : public testing::TestWithParam<std::string> {};

TEST_P(RejectValueTest, RefusesWhatWineWouldNotWrite) {
    ombrevale::regfile::Value v;
    EXPECT_FALSE(ombrevale::regfile::ParseValue(GetParam(), v)) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(Lines, RejectValueTest,
                         testing::Values(R"("a"=bogus)", R"("a"=dword:xyz)", R"("a"=hex:1)", R"("a"=hex:01;02)",
                                         R"("a"="unterminated)", R"("a"=str(2):5)", R"(name="x")", R"("a"="x" junk)",
                                         R"("a"=hex(zz):00)", R"("unterminated=1)"));

struct FormatCase {
    const char* label;
    ombrevale::regfile::Value value;
    std::string text;
};

class FormatValueTest : public testing::TestWithParam<FormatCase> {};

TEST_P(FormatValueTest, WritesWineLayout) { EXPECT_EQ(ombrevale::regfile::FormatValue(GetParam().value), GetParam().text); }

ombrevale::regfile::Value V(Text name, std::uint32_t type, std::vector<std::uint8_t> data) {
    ombrevale::regfile::Value v;
    v.name = std::move(name);
    v.type = type;
    v.data = std::move(data);
    return v;
}

std::vector<std::uint8_t> Count(std::size_t n) {
    std::vector<std::uint8_t> d(n);
    for (std::size_t i = 0; i < n; ++i) d[i] = static_cast<std::uint8_t>(i);
    return d;
}

INSTANTIATE_TEST_SUITE_P(
    Values, FormatValueTest,
    testing::Values(FormatCase{"sz", V(u"App Style File", 1, Utf16z(u"C:\\GTA2\\wil.sty")),
                               "\"App Style File\"=\"C:\\\\GTA2\\\\wil.sty\"\n"},
                    FormatCase{"default_expand", V(u"", 2, Utf16z(u"%A%")), "@=str(2):\"%A%\"\n"},
                    FormatCase{"control_and_wide",
                               V(u"x", 1,
                                 Utf16z(u"\x01"
                                        u"7\u00e9z")),
                               "\"x\"=\"\\0017\\xe9z\"\n"},
                    FormatCase{"wide_before_hex_digit", V(u"x", 1, Utf16z(u"\u00e9b")), "\"x\"=\"\\x00e9b\"\n"},
                    FormatCase{"unterminated_sz_is_hex1", V(u"x", 1, {0x41, 0}), "\"x\"=hex(1):41,00\n"},
                    FormatCase{"dword", V(u"n", 4, {0x04, 0x03, 0x02, 0x01}), "\"n\"=dword:01020304\n"},
                    FormatCase{"short_dword_is_hex4", V(u"n", 4, {1, 2}), "\"n\"=hex(4):01,02\n"},
                    FormatCase{"big_endian", V(u"n", 5, {1, 2, 3, 4}), "\"n\"=hex(5):01,02,03,04\n"},
                    FormatCase{"wraps_after_76", V(u"Bin", 3, Count(30)),
                               "\"Bin\"=hex:00,01,02,03,04,05,06,07,08,09,0a,0b,0c,0d,0e,0f,10,11,12,13,14,15,16,\\\n"
                               "  17,18,19,1a,1b,1c,1d\n"}),
    [](const auto& row) { return std::string(row.param.label); });

// Lines exactly as Wine 8 wrote them into a fresh prefix's user.reg.
const char* kWineFile =
    "WINE REGISTRY Version 2\n"
    ";; All keys relative to REGISTRY\\\\User\\\\S-1-5-21-0-0-0-1000\n"
    "\n"
    "#arch=win64\n"
    "\n"
    "[Control Panel\\\\Desktop\\\\WindowMetrics] 1795402116\n"
    "#time=1dd7af523e54cf6\n"
    "\"BorderWidth\"=\"-15\"\n"
    "\"CaptionFont\"=hex:f5,ff,ff,ff,00,00,00,00,00,00,00,00,00,00,00,00,bc,02,00,00,\\\n"
    "  00,00,00,00,00,00,00,22,4d,00,53,00,20,00,53,00,68,00,65,00,6c,00,6c,00,20,\\\n"
    "  00,44,00,6c,00,67,00,00,00\n"
    "\n"
    "[Environment] 1795402101\n"
    "#time=1dd7af51a054466\n"
    "\"TEMP\"=str(2):\"%USERPROFILE%\\\\AppData\\\\Local\\\\Temp\"\n"
    "\n"
    "[Software\\\\Wine\\\\Drivers] 1795402101\n"
    "#time=1dd7af51a054466\n"
    "#class=\"x\"\n"
    "\"Flags\"=dword:00000003\n";

TEST(RegFile, WritesBackWhatItReadByteForByte) {
    ombrevale::regfile::File f;
    f.Parse(kWineFile);
    ASSERT_TRUE(f.Complete()) << f.Problem();
    std::string out;
    ASSERT_TRUE(f.Serialize(out));
    EXPECT_EQ(out, kWineFile);
    // A value rewritten from its parsed form comes out as Wine wrote it.
    ombrevale::regfile::Key* key = f.FindKey(u"control panel\\DESKTOP\\windowmetrics");
    ASSERT_NE(key, nullptr);
    for (auto& v : key->values) v.raw.clear();
    ASSERT_TRUE(f.Serialize(out));
    EXPECT_EQ(out, kWineFile);
}

TEST(RegFile, NamesMatchWithoutCaseAndSubkeysAreImplied) {
    ombrevale::regfile::File f;
    f.Parse(kWineFile);
    EXPECT_TRUE(f.KeyExists(u"SOFTWARE\\wine"));
    EXPECT_TRUE(f.KeyExists(u"software\\Wine\\Drivers\\"));
    EXPECT_FALSE(f.KeyExists(u"Software\\Win"));
    EXPECT_FALSE(f.KeyExists(u"Software\\\\Wine"));
    EXPECT_EQ(f.SubKeys(u""), (std::vector<Text>{u"Control Panel", u"Environment", u"Software"}));
    EXPECT_EQ(f.SubKeys(u"control panel"), std::vector<Text>{u"Desktop"});
    const ombrevale::regfile::Key* key = f.FindKey(u"ENVIRONMENT");
    ASSERT_NE(key, nullptr);
    EXPECT_NE(ombrevale::regfile::File::FindValue(*key, u"temp"), nullptr);
}

TEST(RegFile, KeepsValuesSortedAndRefusesToDeleteAKeyWithSubkeys) {
    ombrevale::regfile::File f;
    f.Parse(kWineFile);
    ombrevale::regfile::Key* key = f.FindKey(u"Environment");
    ASSERT_NE(key, nullptr);
    ombrevale::regfile::File::SetValue(*key, V(u"path", 1, Utf16z(u"x")), 1700000000);
    ombrevale::regfile::File::SetValue(*key, V(u"A", 4, {1, 0, 0, 0}), 1700000000);
    ombrevale::regfile::File::SetValue(*key, V(u"temp", 1, Utf16z(u"y")), 1700000000);
    ASSERT_EQ(key->values.size(), 3u);
    EXPECT_EQ(key->values[0].name, u"A");
    EXPECT_EQ(key->values[1].name, u"path");
    EXPECT_EQ(key->values[2].name, u"TEMP");  // the first spelling stays
    EXPECT_EQ(key->values[2].data, Utf16z(u"y"));
    EXPECT_EQ(key->head, "[Environment] 1700000000\n#time=1da1747c66d0000\n");

    EXPECT_FALSE(f.RemoveKey(u"Software\\Wine", 1700000000));  // no entry of its own, has subkeys
    EXPECT_TRUE(f.RemoveKey(u"software\\wine\\drivers", 1700000000));
    EXPECT_TRUE(f.KeyExists(u"Software\\Wine"));  // the parent stays
    EXPECT_FALSE(f.KeyExists(u"Software\\Wine\\Drivers"));
}

class IncompleteFileTest : public testing::TestWithParam<std::string> {};

TEST_P(IncompleteFileTest, ReadsWhatItCanButWillNotWrite) {
    std::string text = std::string(kWineFile) + GetParam();
    ombrevale::regfile::File f;
    f.Parse(text);
    EXPECT_FALSE(f.Complete());
    EXPECT_FALSE(f.Problem().empty());
    std::string out;
    EXPECT_FALSE(f.Serialize(out));
    EXPECT_NE(f.FindKey(u"Environment"), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Damage, IncompleteFileTest,
                         testing::Values("\"Bad\"=dword:zz\n", "garbage line\n", "[Unclosed key\n",
                                         "\"x\"=hex:01,\\\n  0g\n", "\"y\"=\"no end\n"));

TEST(RegFile, RefusesAFileWithoutWinesHeader) {
    ombrevale::regfile::File f;
    f.Parse("REGEDIT4\n\n[HKEY_CURRENT_USER\\Software]\n");
    EXPECT_FALSE(f.Complete());
}

}  // namespace
