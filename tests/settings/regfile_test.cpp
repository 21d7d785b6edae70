// Wine's registry text format: the exact bytes Wine writes and what they mean.
// Round trips of random text are the fuzzer's (fuzz/fuzz_regfile.cpp).
#include <gtest/gtest.h>

#include "settings/regfile.h"

using ombrevale::regfile::Text;
using Bytes = std::vector<std::uint8_t>;

namespace {

Bytes Utf16z(const Text& t) {
    Bytes d;
    for (char16_t c : t) d.insert(d.end(), {static_cast<std::uint8_t>(c & 0xFF), static_cast<std::uint8_t>(c >> 8)});
    d.insert(d.end(), {0, 0});
    return d;
}

ombrevale::regfile::Value V(Text name, std::uint32_t type, Bytes data) {
    return {std::move(name), type, std::move(data), {}};
}

struct LineCase {
    const char* label;
    std::string line;  // as Wine writes it, without the last newline
    ombrevale::regfile::Value value;
};

class ValueLineTest : public testing::TestWithParam<LineCase> {};

TEST_P(ValueLineTest, FormatsAsWineAndParsesBack) {
    EXPECT_EQ(ombrevale::regfile::FormatValue(GetParam().value), GetParam().line + "\n");
    std::string joined = GetParam().line;
    for (std::size_t at; (at = joined.find("\\\n")) != std::string::npos;) joined.erase(at, 2);
    ombrevale::regfile::Value v;
    ASSERT_TRUE(ombrevale::regfile::ParseValue(joined, v)) << joined;
    EXPECT_EQ(v.name, GetParam().value.name);
    EXPECT_EQ(v.type, GetParam().value.type);
    EXPECT_EQ(v.data, GetParam().value.data);
}

// Escapes are as short as the next character allows: \x takes up to four hex
// digits, an octal escape up to three.
const Text kEscaped(
    u"\t\n\r\a\x1b\u00e9z\u20ac"
    u"1\0b\x01"
    u"7",
    13);

INSTANTIATE_TEST_SUITE_P(
    Lines, ValueLineTest,
    testing::Values(LineCase{"sz", R"("a\"b"="C:\\x\"y")", V(u"a\"b", 1, Utf16z(u"C:\\x\"y"))},
                    LineCase{"default_expand", R"(@=str(2):"%A%")", V(u"", 2, Utf16z(u"%A%"))},
                    LineCase{"empty", R"("e"="")", V(u"e", 1, Utf16z(u""))},
                    LineCase{"escapes", R"("c"="\t\n\r\a\e\xe9z\x20ac1\0b\0017")", V(u"c", 1, Utf16z(kEscaped))},
                    LineCase{"multi", R"("m"=str(7):"a\0b\0")", V(u"m", 7, Utf16z(Text(u"a\0b\0", 4)))},
                    LineCase{"dword", R"("n"=dword:fffffffe)", V(u"n", 4, {0xfe, 0xff, 0xff, 0xff})},
                    LineCase{"short_dword", R"("n"=hex(4):01,02)", V(u"n", 4, {1, 2})},
                    LineCase{"binary", R"("b"=hex:01,ff,00)", V(u"b", 3, {1, 0xff, 0})},
                    LineCase{"typed_empty", R"("z"=hex(0):)", V(u"z", 0, {})},
                    LineCase{"unterminated_sz", R"("s"=hex(1):41,00,42)", V(u"s", 1, {0x41, 0, 0x42})},
                    // Wine counts the name in before it wraps at 76.
                    LineCase{"wrapped",
                             "\"Bin\"=hex:00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,\\\n"
                             "  00,00,00,00,00,00,00",
                             V(u"Bin", 3, Bytes(30))}),
    [](const auto& row) { return std::string(row.param.label); });

TEST(ParseValue, RefusesWhatWineWouldNotWrite) {
    for (const char* line :
         {R"("a"=bogus)", R"("a"=dword:xyz)", R"("a"=hex:1)", R"("a"=hex:01;02)", R"("a"="unterminated)",
          R"("a"=str(2):5)", R"(name="x")", R"("a"="x" junk)", R"("a"=hex(zz):00)", R"("unterminated=1)"}) {
        ombrevale::regfile::Value v;
        EXPECT_FALSE(ombrevale::regfile::ParseValue(line, v)) << line;
    }
}

const std::string kFile =
    "WINE REGISTRY Version 2\n"
    "\n"
    "[Control Panel\\\\Desktop] 1795402116\n"
    "#time=1dd7af523e54cf6\n"
    "\n"
    "[Software\\\\Wine\\\\Drivers] 1795402101\n"
    "#time=1dd7af51a054466\n"
    "#class=\"x\"\n"
    "\"TEMP\"=str(2):\"%USERPROFILE%\\\\Temp\"\n";

TEST(RegFile, FindsKeysAndValuesWithoutCaseAndImpliesParents) {
    ombrevale::regfile::File f;
    f.Parse(kFile);
    EXPECT_TRUE(f.KeyExists(u"SOFTWARE\\wine"));
    EXPECT_TRUE(f.KeyExists(u"software\\Wine\\Drivers\\"));
    EXPECT_FALSE(f.KeyExists(u"Software\\Win"));
    EXPECT_FALSE(f.KeyExists(u"Software\\\\Wine"));
    EXPECT_EQ(f.SubKeys(u""), (std::vector<Text>{u"Control Panel", u"Software"}));
    const ombrevale::regfile::Key* key = f.FindKey(u"software\\WINE\\drivers");
    ASSERT_NE(key, nullptr);
    EXPECT_NE(ombrevale::regfile::File::FindValue(*key, u"temp"), nullptr);
}

TEST(RegFile, EditsKeepWinesOrderStampAndRules) {
    ombrevale::regfile::File f;
    f.Parse(kFile);
    ombrevale::regfile::Key* key = f.FindKey(u"Software\\Wine\\Drivers");
    ASSERT_NE(key, nullptr);
    for (const auto& v : {V(u"path", 1, Utf16z(u"x")), V(u"A", 4, {1, 0, 0, 0}), V(u"temp", 1, Utf16z(u"y"))})
        ombrevale::regfile::File::SetValue(*key, v, 1700000000);
    ASSERT_EQ(key->values.size(), 3u);
    EXPECT_EQ(key->values[0].name, u"A");
    EXPECT_EQ(key->values[1].name, u"path");
    EXPECT_EQ(key->values[2].name, u"TEMP");  // Windows keeps the first spelling
    EXPECT_EQ(key->values[2].data, Utf16z(u"y"));
    EXPECT_EQ(key->head, "[Software\\\\Wine\\\\Drivers] 1700000000\n#time=1da1747c66d0000\n#class=\"x\"\n");
    EXPECT_FALSE(f.RemoveKey(u"Software\\Wine", 1700000000)) << "it has a subkey";
    EXPECT_TRUE(f.RemoveKey(u"software\\wine\\drivers", 1700000000));
    EXPECT_TRUE(f.KeyExists(u"Software\\Wine"));
}

TEST(RegFile, ReadsADamagedFileButWillNotWriteIt) {
    for (std::string text :
         {kFile + "\"Bad\"=dword:zz\n", kFile + "garbage\n", kFile + "[Unclosed\n", kFile + "\"x\"=hex:01,\\\n  0g\n",
          kFile + "\"y\"=\"no end\n", std::string("REGEDIT4\n\n[HKEY_CURRENT_USER\\Software]\n")}) {
        ombrevale::regfile::File f;
        f.Parse(text);
        std::string out;
        EXPECT_TRUE(f.Problem() && !f.Problem()->text.empty() && !f.Serialize(out)) << text;
        EXPECT_FALSE(f.Keys().empty()) << "what could be read is gone";
    }
}

}  // namespace
