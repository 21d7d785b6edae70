// cRegistry's two backends against one real Wine prefix: the Win32 calls in
// registry-check.exe under Wine, and the user.reg reader/writer here. Each
// must read what the other wrote, and lines put into user.reg by hand, as the
// other does.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "regcheck.h"
#include "settings/regfile.h"

namespace {

const std::string kByWin32 = "Software\\Ombrevale Test\\Written By Win32";
const std::string kByFile = "Software\\Ombrevale Test\\Written By File";

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

class WinePrefix : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(std::filesystem::exists(Env("WINEPREFIX") + "/user.reg")) << "no Wine prefix";
        ASSERT_TRUE(std::filesystem::exists(Env("OMBREVALE_REGISTRY_CHECK_EXE")))
            << "registry-check.exe was not built (is mingw-w64 installed?)";
        StopWineServer();
    }
};

TEST_F(WinePrefix, WinesOwnFilesParseInFullAndWriteBackUnchanged) {
    for (const char* name : {"/user.reg", "/system.reg"}) {
        const std::string text = ReadFile(Env("WINEPREFIX") + name);
        ombrevale::regfile::File f;
        f.Parse(text);
        EXPECT_FALSE(f.Problem()) << name << ": " << f.Problem()->text;
        std::string out;
        ASSERT_TRUE(f.Serialize(out));
        EXPECT_TRUE(out == text) << name << " changed on the way through";
        for (auto& key : f.Keys())
            for (auto& v : key.values) v.raw.clear();
        ASSERT_TRUE(f.Serialize(out));
        EXPECT_TRUE(out == text) << name << ": values written by us differ from Wine's";
    }
}

struct Row {
    const char* name;
    std::int32_t type;  // as written
    RegValue value;
    std::int32_t readType;  // -1: nothing stored
    RegValue read;
    const char* line = nullptr;  // instead of a write: this line in user.reg
};

TEST_F(WinePrefix, EachBackendReadsWhatTheOtherWrote) {
    using Bytes = std::vector<std::uint8_t>;
    const std::string dir = Env("OMBREVALE_CHECK_DIR");
    const Row rows[] = {
        {"Sz", REG_SZ_, std::string("C:\\GTA2\\data\\wil.sty"), REG_SZ_, std::string("C:\\GTA2\\data\\wil.sty")},
        {"Empty", REG_SZ_, std::string(), REG_SZ_, std::string()},
        {"Number", REG_SZ_, std::int32_t{-5}, REG_SZ_, std::string("-5")},
        // Unknown names stay as written.
        {"Exp", REG_SZ_, std::string("%OMBREVALE_CHECK_DIR%\\x %UNSET_OMBREVALE% 5%"), REG_EXPAND_SZ_,
         dir + "\\x %UNSET_OMBREVALE% 5%"},
        {"Near", REG_SZ_, std::string("%Q%"), REG_EXPAND_SZ_, std::string("%Q%")},
        {"Plain", REG_EXPAND_SZ_, std::string("5%%"), REG_SZ_, std::string("5%%")},
        {"Dw", REG_DWORD_, std::int32_t{-2}, REG_DWORD_, std::int32_t{-2}},
        {"Big", REG_DWORD_BIG_ENDIAN_, std::int32_t{0x01020304}, REG_DWORD_, std::int32_t{0x01020304}},
        {"Bin", REG_BINARY_, Bytes{1, 0xff, 0}, REG_BINARY_, Bytes{1, 0xff, 0}},
        {"DwText", REG_DWORD_, std::string("2"), -1, {}},
        {"BinText", REG_BINARY_, std::string("x"), -1, {}},
        {"MultiText", REG_MULTI_SZ_, std::string("x"), -1, {}},
        {"Swapped", 0, {}, REG_DWORD_BIG_ENDIAN_, std::int32_t{0x01020304}, R"("Swapped"=hex(5):01,02,03,04)"},
        {"Multi", 0, {}, REG_MULTI_SZ_, std::string("a\0b\0", 4), R"("Multi"=hex(7):61,00,00,00,62,00,00,00,00,00)"},
        {"Zero", 0, {}, REG_SZ_, std::string(), R"("Zero"=hex(1):)"},
        {"Odd", 0, {}, 8, Bytes{7}, R"("Odd"=hex(8):07)"},
    };
    // Earlier runs left these behind. The file backend's key is made last, so
    // that lines added at the end of user.reg land in it.
    for (const std::string& key : {kByWin32 + "\\Beta", kByWin32 + "\\alpha", kByWin32, kByFile + "\\Sub", kByFile})
        At(key).DeleteKey();
    ASSERT_TRUE(At(kByFile + "\\Sub").CreateKey());
    const std::string out = Env("WINEPREFIX") + "/registry-check.out";
    std::string command = "wine '" + Env("OMBREVALE_REGISTRY_CHECK_EXE") + "' '" + kByWin32 + "' '" + kByFile + "'";
    for (const Row& row : rows) {
        cRegistry r = At(kByFile, row.name);
        r.ValueType(row.type);
        r.Value(row.value);
        if (row.line) std::ofstream(Env("WINEPREFIX") + "/user.reg", std::ios::app) << row.line << "\n";
        command +=
            std::string(" ") + row.name + " '" + ombrevale::regwire::ValueAnswer(true, row.type, row.value) + "'";
    }
    ASSERT_EQ(std::system((command + " >'" + out + "' 2>/dev/null").c_str()), 0) << command;
    StopWineServer();
    std::vector<std::string> win32;
    std::istringstream lines(ReadFile(out));
    for (std::string l; std::getline(lines, l);) win32.push_back(l.substr(0, l.find('\r')));
    ASSERT_EQ(win32.size(), std::size(rows) + 4) << command;

    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const Row& row = rows[i];
        const std::string expected = ombrevale::regwire::ValueAnswer(row.readType != -1, row.readType, row.read);
        EXPECT_EQ(win32[i], expected) << "Win32 read " << row.name;
        EXPECT_EQ(Answer(kByFile, row.name), expected) << "file read " << row.name;
        EXPECT_EQ(Answer(kByWin32, row.name), row.line ? "none" : expected) << "file read of Win32's " << row.name;
    }
    // Both list the same names, 1-based and in Wine's order.
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(Listing(i < 2 ? kByWin32 : kByFile, i % 2 == 1), win32[std::size(rows) + i]);
    EXPECT_EQ(win32[std::size(rows) + 1], "sections 1 2 [] [alpha] [Beta]");
    EXPECT_EQ(win32[std::size(rows) + 2].substr(0, 31), "values 1 13 [] [Big] [Bin] [Dw]");
}

}  // namespace
