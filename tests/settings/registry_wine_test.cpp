// cRegistry's two backends against one real Wine prefix: the Win32 calls in
// registry-check.exe under Wine, and the user.reg reader/writer here.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "settings/cregistry.h"
#include "settings/regfile.h"

namespace {

const char* kWin32Key = "Software\\Ombrevale Test\\Written By Win32";
const char* kFileKey = "Software\\Ombrevale Test\\Written By File";

std::string Env(const char* name) {
    const char* v = std::getenv(name);
    return v ? v : "";
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// Wine's server holds the registry in memory and writes user.reg when it stops.
void StopWineServer() { ASSERT_EQ(std::system("wineserver -w"), 0); }

std::vector<std::string> RunCheck(const std::string& args) {
    std::vector<std::string> lines;
    std::string cmd = "wine '" + Env("OMBREVALE_REGISTRY_CHECK_EXE") + "' " + args + " 2>/dev/null";
    FILE* p = popen(cmd.c_str(), "r");
    if (!p) return lines;
    char buf[4096];
    while (std::fgets(buf, sizeof buf, p)) {
        std::string l(buf);
        while (!l.empty() && (l.back() == '\n' || l.back() == '\r')) l.pop_back();
        lines.push_back(l);
    }
    pclose(p);
    return lines;
}

std::string Hex(const std::string& s) {
    std::string out;
    char b[4];
    for (char c : s) {
        std::snprintf(b, sizeof b, "%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
        out += b;
    }
    return out.empty() ? "-" : out;
}

cRegistry At(const std::string& key, const std::string& name = "") {
    cRegistry r;
    r.ClassKey(HKEY_CURRENT_USER_);
    r.SectionKey(key);
    r.ValueKey(name);
    return r;
}

class WinePrefix : public testing::Test {
protected:
    void SetUp() override {
        std::error_code ec;
        ASSERT_TRUE(std::filesystem::exists(Env("WINEPREFIX") + "/user.reg", ec)) << "no Wine prefix";
        ASSERT_TRUE(std::filesystem::exists(Env("OMBREVALE_REGISTRY_CHECK_EXE"), ec))
            << "registry-check.exe was not built (is mingw-w64 installed?)";
        ASSERT_EQ(std::system("command -v wine >/dev/null"), 0) << "wine is not installed";
        StopWineServer();
    }
    std::string UserReg() const { return Env("WINEPREFIX") + "/user.reg"; }
};

TEST_F(WinePrefix, WinesOwnFilesParseInFullAndWriteBackUnchanged) {
    for (const char* name : {"/user.reg", "/system.reg"}) {
        std::string text = ReadFile(Env("WINEPREFIX") + name);
        ombrevale::regfile::File f;
        f.Parse(text);
        EXPECT_TRUE(f.Complete()) << name << ": " << f.Problem();
        std::string out;
        ASSERT_TRUE(f.Serialize(out));
        EXPECT_TRUE(out == text) << name << " changed on the way through";
        for (auto& key : f.Keys())
            for (auto& v : key.values) v.raw.clear();
        ASSERT_TRUE(f.Serialize(out));
        EXPECT_TRUE(out == text) << name << ": values written by us differ from Wine's";
    }
}

struct Expect {
    const char* name;
    RegValue value;
    std::int32_t type;
};

TEST_F(WinePrefix, FileBackendReadsWhatWin32Wrote) {
    auto created = RunCheck(std::string("write '") + kWin32Key + "'");
    ASSERT_EQ(created, std::vector<std::string>{"created 1 1"});
    StopWineServer();
    std::vector<Expect> rows = {
        {"Sz", std::string("C:\\GTA2\\data\\wil.sty"), REG_SZ_},
        {"sz", std::string("C:\\GTA2\\data\\wil.sty"), REG_SZ_},
        {"Exp", Env("OMBREVALE_CHECK_DIR") + "\\x", REG_EXPAND_SZ_},
        {"Dw", std::int32_t{-2}, REG_DWORD_},
        {"Big", std::int32_t{0x01020304}, REG_DWORD_},  // written as a plain DWORD, unswapped
        {"Bin", std::vector<std::uint8_t>{1, 2, 0xff, 0}, REG_BINARY_},
        {"Skipped", RegValue{}, 99},
    };
    for (const auto& row : rows) {
        cRegistry r = At(kWin32Key, row.name);
        r.ValueType(99);
        EXPECT_EQ(r.Value(), row.value) << row.name;
        EXPECT_EQ(r.ValueType(), row.type) << row.name;
    }
    std::vector<std::string> names;
    std::int32_t count = 0;
    EXPECT_TRUE(At(kWin32Key).EnumerateSections(names, count));
    EXPECT_EQ(names, (std::vector<std::string>{"", "alpha", "Beta"}));
    EXPECT_EQ(count, 2);
}

TEST_F(WinePrefix, Win32ReadsWhatTheFileBackendWrote) {
    // Values no cRegistry write makes (big-endian, multi-string) go in through the file format itself.
    {
        cRegistry make = At(kFileKey);
        ASSERT_TRUE(make.CreateKey());
        ombrevale::regfile::File f;
        f.Parse(ReadFile(UserReg()));
        ombrevale::regfile::Key* key = f.FindKey(ombrevale::regfile::Widen(kFileKey));
        ASSERT_NE(key, nullptr);
        ombrevale::regfile::Value big, multi;
        big.name = u"Big";
        big.type = 5;
        big.data = {1, 2, 3, 4};
        multi.name = u"Multi";
        multi.type = 7;
        multi.data = {'a', 0, 0, 0, 'b', 0, 'c', 0, 0, 0, 0, 0};
        ombrevale::regfile::File::SetValue(*key, big, 1700000000);
        ombrevale::regfile::File::SetValue(*key, multi, 1700000000);
        std::string text;
        ASSERT_TRUE(f.Serialize(text));
        std::ofstream(UserReg(), std::ios::binary) << text;
    }
    auto write = [](const char* name, std::int32_t type, const RegValue& v) {
        cRegistry r = At(kFileKey, name);
        r.ValueType(type);
        r.Value(v);
    };
    write("Sz", REG_SZ_, std::string("C:\\GTA2\\data\\wil.sty"));
    write("Exp", REG_EXPAND_SZ_, std::string("%OMBREVALE_CHECK_DIR%\\x"));
    write("Plain", REG_EXPAND_SZ_, std::string("50%"));
    write("Dw", REG_DWORD_, std::int32_t{-2});
    write("Bin", REG_BINARY_, std::vector<std::uint8_t>{0xde, 0xad});
    write("Empty", REG_SZ_, std::string());
    write("Gone", REG_SZ_, std::string("x"));
    ASSERT_TRUE(At(kFileKey, "gone").DeleteValue());
    ASSERT_TRUE(At(std::string(kFileKey) + "\\Sub").CreateKey());

    auto lines = RunCheck(std::string("read '") + kFileKey + "' Sz Exp Plain Dw Big Bin Multi Empty Gone");
    std::vector<std::string> expected = {
        "Sz 1 text " + Hex("C:\\GTA2\\data\\wil.sty"),
        "Exp 2 text " + Hex(Env("OMBREVALE_CHECK_DIR") + "\\x"),
        "Plain 1 text " + Hex("50%"),
        "Dw 4 number -2",
        "Big 5 number 16909060",  // bytes 01 02 03 04 swapped: 0x01020304
        "Bin 3 bytes dead",
        "Multi 7 text " + Hex(std::string("a\0bc\0", 5)),
        "Empty 1 text -",
        "Gone 99 none -",
    };
    EXPECT_EQ(lines, expected);

    auto listed = RunCheck(std::string("enum '") + kFileKey + "'");
    ASSERT_EQ(listed.size(), 2u);
    EXPECT_EQ(listed[0], "values 1 8 0= 1=Big 2=Bin 3=Dw 4=Empty 5=Exp 6=Multi 7=Plain 8=Sz");
    EXPECT_EQ(listed[1], "sections 1 1 0= 1=Sub");
    EXPECT_EQ(RunCheck("read 'Software\\Ombrevale Test\\Nowhere' Sz"), std::vector<std::string>{"Sz 99 none -"});
    EXPECT_EQ(RunCheck("enum 'Software\\Ombrevale Test\\Nowhere'"),
              (std::vector<std::string>{"values 1 0", "sections 1 0"}));
    EXPECT_EQ(RunCheck(std::string("delete '") + kFileKey + "' Bin"),
              (std::vector<std::string>{"deletevalue 1", "deletekey 0"}));
}

}  // namespace
