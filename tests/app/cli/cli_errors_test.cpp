// Wrong arguments give exit 2 and the usage line; bad style files exit 1 with
// one line naming the file, and leave no output behind.
#include <gtest/gtest.h>

#include <filesystem>

#include "runprogram.h"
#include "stylewriter/stylewriter.h"
#include "support/tempdir.h"

namespace {

using ombrevale::stylewriter::Bytes;

struct UsageCase {
    const char* name;
    std::vector<std::string> args;
};

class CliUsage : public ::testing::TestWithParam<UsageCase> {};

TEST_P(CliUsage, ExitsTwoWithTheUsageLineAndTouchesNothing) {
    testsupport::TempDir dir;
    std::vector<std::string> args = GetParam().args;
    for (auto& a : args)
        if (a == "STYLE")
            a = clitest::kSample;
        else if (a.rfind("OUT", 0) == 0)
            a = dir.File(a);
    const auto r = clitest::RunCli(args);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.out.empty());
    const auto lines = r.ErrLines();
    ASSERT_EQ(lines.size(), 2u) << r.err;
    EXPECT_EQ(lines[0].rfind("ombrevale-cli: ", 0), 0u);
    EXPECT_EQ(lines[1].rfind("usage: ombrevale-cli ", 0), 0u);
    EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
}

INSTANTIATE_TEST_SUITE_P(
    Arguments, CliUsage,
    ::testing::Values(UsageCase{"NoCommand", {}}, UsageCase{"UnknownCommand", {"show", "STYLE"}},
                      UsageCase{"InfoWithoutStyle", {"info"}}, UsageCase{"InfoTwoStyles", {"info", "STYLE", "STYLE"}},
                      UsageCase{"SaveWithoutOut", {"save", "STYLE"}},
                      UsageCase{"TileNumberNotDecimal", {"tile", "STYLE", "0x10", "OUT.bmp"}},
                      UsageCase{"TileNumberEmpty", {"tile", "STYLE", "", "OUT.bmp"}},
                      UsageCase{"TileTakesNoPal", {"tile", "STYLE", "1", "OUT.bmp", "--pal", "2"}},
                      UsageCase{"SpritePalWithoutValue", {"sprite", "STYLE", "1", "OUT.bmp", "--pal"}},
                      UsageCase{"SpritePalTwice", {"sprite", "STYLE", "1", "OUT.bmp", "--pal", "1", "--pal", "2"}},
                      UsageCase{"SpritePalNotANumber", {"sprite", "STYLE", "1", "OUT.bmp", "--pal", "red"}},
                      UsageCase{"DeltaMissingNumber", {"delta", "STYLE", "1", "OUT.bmp"}},
                      UsageCase{"ImportPaletteMissingOut", {"import-palette", "STYLE", "0", "x.pal"}},
                      UsageCase{"ExportUnknownOption", {"export", "STYLE", "OUTDIR", "--jpeg"}},
                      UsageCase{"SheetColumnsNotANumber", {"sheet", "STYLE", "OUT.png", "--columns", "nine"}},
                      UsageCase{"SheetTakesNoPng", {"sheet", "STYLE", "OUT.png", "--png"}}),
    [](const auto& row) { return std::string(row.param.name); });

// Bad style files, each written into the test's folder.
struct BadFile {
    const char* name;
    bool create;
    Bytes (*bytes)();
};

Bytes Sample() { return ombrevale::stylewriter::ReadFile(clitest::kSample); }
Bytes Empty() { return {}; }
Bytes WrongMagic() {
    Bytes b = Sample();
    b[3] = 'X';
    return b;
}
Bytes LowerCaseMagic() {
    Bytes b = Sample();
    for (int i = 0; i < 4; ++i)
        b[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(b[static_cast<std::size_t>(i)] | 0x20);
    return b;
}
Bytes MagicOnly() { return ombrevale::stylewriter::Text("GBST"); }
Bytes CutInsideTiles() {
    Bytes b = Sample();
    b.resize(100);
    return b;
}
Bytes CutInsideSprites() {
    Bytes b = Sample();
    b.resize(b.size() - 400000);
    return b;
}
Bytes CutInsideSectionHead() {
    return ombrevale::stylewriter::StyleBytes().Add("OBJI", {1, 2}).Raw({'R', 'E', 'C', 'Y', 1}).bytes();
}
Bytes NegativeSize() { return ombrevale::stylewriter::StyleBytes().AddWithSize("ZZZZ", -8, {}).bytes(); }
Bytes HugeTileCount() { return ombrevale::stylewriter::StyleBytes().AddWithSize("TILE", 0x7FFFF000, Bytes(16384, 1)).bytes(); }

class CliBadStyle : public ::testing::TestWithParam<std::tuple<BadFile, std::string>> {};

TEST_P(CliBadStyle, ExitsOneWithOneLineNamingTheFileAndWritesNothing) {
    const auto& [bad, command] = GetParam();
    testsupport::TempDir dir;
    const std::string style = dir.File("bad.sty");
    if (bad.create) ombrevale::stylewriter::WriteFile(style, bad.bytes());
    const std::string out = dir.File("out.sty");
    std::vector<std::string> args = {command, style};
    if (command == "save") args.push_back(out);
    const auto r = clitest::RunCli(args);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.out.empty()) << r.out;
    const auto lines = r.ErrLines();
    ASSERT_EQ(lines.size(), 1u) << r.err;
    const std::string lead = "ombrevale-cli: " + style + ": ";
    EXPECT_EQ(lines[0].rfind(lead, 0), 0u) << lines[0];
    EXPECT_GT(lines[0].size(), lead.size() + 5);
    EXPECT_FALSE(std::filesystem::exists(out));
    EXPECT_FALSE(std::filesystem::exists(out + ".bak"));
    EXPECT_FALSE(std::filesystem::exists(out + ".part"));
}

INSTANTIATE_TEST_SUITE_P(
    Files, CliBadStyle,
    ::testing::Combine(::testing::Values(BadFile{"Missing", false, Empty}, BadFile{"Empty", true, Empty},
                                         BadFile{"WrongMagic", true, WrongMagic},
                                         BadFile{"LowerCaseMagic", true, LowerCaseMagic},
                                         BadFile{"MagicWithoutVersion", true, MagicOnly},
                                         BadFile{"CutInsideTiles", true, CutInsideTiles},
                                         BadFile{"CutInsideSprites", true, CutInsideSprites},
                                         BadFile{"CutInsideSectionHead", true, CutInsideSectionHead},
                                         BadFile{"NegativeSectionSize", true, NegativeSize},
                                         BadFile{"TileCountBeyondTheModel", true, HugeTileCount}),
                       ::testing::Values("info", "save")),
    [](const auto& row) { return std::string(std::get<0>(row.param).name) + "_" + std::get<1>(row.param); });

}  // namespace
