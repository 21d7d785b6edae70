// cRegistry over a Wine prefix's user.reg, with no Wine running: what the
// Win32 side has no counterpart for. Values of each type, as both sides read
// and write them, are checked under Wine (registry_wine_test.cpp).
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "regcheck.h"
#include "support/tempdir.h"

namespace fs = std::filesystem;

namespace {

const char* kKey = "Software\\DMA Design LTd\\Gta2 Editor\\App Defaults";

const std::string kUserReg =
    "WINE REGISTRY Version 2\n"
    "\n"
    "[Software\\\\DMA Design LTd\\\\Gta2 Editor\\\\App Defaults] 1700000000\n"
    "#time=1da1747c66d0000\n"
    "\"App Style File\"=\"C:\\\\GTA2\\\\data\\\\wil.sty\"\n"
    "\"Bin\"=hex:de,ad,00\n";

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
    }
    void TearDown() override { unsetenv("WINEPREFIX"); }
    std::string UserReg() { return ReadAll(dir_.File("user.reg")); }
    ombrevale::testsupport::TempDir dir_;
};

TEST_F(FilePrefix, KeysAndValuesAreMadeAndDeletedInTheFile) {
    std::string before = UserReg();
    EXPECT_TRUE(At("SOFTWARE\\dma design ltd\\gta2 editor").CreateKey());
    EXPECT_EQ(UserReg(), before) << "an existing key is only opened";
    EXPECT_TRUE(At("Software\\A\\B").CreateKey());
    EXPECT_TRUE(At("software\\a\\b").DeleteKey());
    EXPECT_FALSE(At("Software\\A\\B").KeyExists());
    EXPECT_TRUE(At("Software\\A").KeyExists());
    EXPECT_TRUE(At(kKey, "bin").DeleteValue());
    EXPECT_FALSE(At(kKey, "Bin").DeleteValue());
    cRegistry missing = At(kKey, "Nope");
    missing.ValueType(99);
    missing.Default(std::int32_t{7});
    EXPECT_EQ(missing.Value(), RegValue{std::int32_t{7}});
    EXPECT_EQ(missing.ValueType(), 99);
    std::vector<std::string> names{"stale"};
    std::int32_t count = -1;
    EXPECT_TRUE(At("Software\\Nowhere").EnumerateSections(names, count));
    EXPECT_EQ(count, 0);
    EXPECT_TRUE(names.empty());
}

TEST_F(FilePrefix, NeverWritesAFileItCouldNotParse) {
    const std::string damaged = kUserReg + "\"Broken\"=dword:nothex\n";
    std::ofstream(dir_.File("user.reg"), std::ios::binary) << damaged;
    EXPECT_EQ(RegValueText(At(kKey, "App Style File").Value()), "C:\\GTA2\\data\\wil.sty");
    cRegistry w = At(kKey, "New");
    w.ValueType(REG_SZ_);
    w.Value(std::string("x"));
    EXPECT_FALSE(At("Software\\Fresh").CreateKey());
    EXPECT_FALSE(At(kKey, "Bin").DeleteValue());
    EXPECT_FALSE(At(kKey).DeleteKey());
    EXPECT_EQ(UserReg(), damaged);
}

TEST_F(FilePrefix, AMissingPrefixIsNeitherMadeNorSwappedForHomes) {
    fs::create_directory(dir_.path() / ".wine");
    fs::copy_file(dir_.File("user.reg"), dir_.path() / ".wine" / "user.reg");
    const std::string home = std::getenv("HOME") ? std::getenv("HOME") : "";
    setenv("HOME", dir_.path().c_str(), 1);
    setenv("WINEPREFIX", dir_.File("absent").c_str(), 1);
    cRegistry r = At(kKey, "App Style File");
    r.Default(std::int32_t{7});
    EXPECT_EQ(r.Value(), RegValue{std::int32_t{7}});
    EXPECT_FALSE(r.CreateKey());
    r.ValueType(REG_SZ_);
    r.Value(std::string("x"));
    setenv("HOME", home.c_str(), 1);
    EXPECT_FALSE(fs::exists(dir_.File("absent")));
    EXPECT_EQ(ReadAll(dir_.File(".wine/user.reg")), kUserReg);
}

TEST_F(FilePrefix, StylePathMapsOntoThePrefixDrivesWithoutCase) {
    fs::create_directories(dir_.path() / "drive_c" / "Games");
    fs::create_directories(dir_.path() / "dosdevices");
    fs::create_directory_symlink("../drive_c", dir_.path() / "dosdevices" / "c:");
    std::ofstream(dir_.path() / "drive_c" / "Games" / "WIL.STY") << "x";
    const fs::path dos = dir_.path() / "dosdevices";
    EXPECT_EQ(LocalPathForStylePath("C:\\games\\wil.sty"), (dos / "c:" / "Games" / "WIL.STY").string());
    EXPECT_EQ(LocalPathForStylePath("d:\\new\\a.sty"), (dos / "d:" / "new" / "a.sty").string());
    EXPECT_EQ(LocalPathForStylePath("/home/x/wil.sty"), "/home/x/wil.sty");
}

}  // namespace
