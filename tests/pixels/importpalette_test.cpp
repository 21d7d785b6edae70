#include <gtest/gtest.h>

#include <string>

#include "scene.h"

namespace ombrevale::pixeltest {
namespace {

std::string ColourLines(int count, const std::string& eol, int shift = 0) {
    std::string s;
    for (int i = 0; i < count; ++i)
        s += std::to_string((i + shift) % 256) + " " + std::to_string((i * 3) % 256) + " " + std::to_string(255 - i) +
             eol;
    return s;
}

std::string Jasc(const std::string& eol, int count = 256, const std::string& countLine = "256") {
    return "JASC-PAL" + eol + "0100" + eol + countLine + eol + ColourLines(count, eol);
}

void ExpectImported(std::size_t pal, int count) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        const auto& p = modDeclares::STYPalData[pal];
        ASSERT_EQ(p[i * 4 + 2], i % 256) << "red of " << i;
        ASSERT_EQ(p[i * 4 + 1], (i * 3) % 256) << "green of " << i;
        ASSERT_EQ(p[i * 4 + 0], 255 - i) << "blue of " << i;
        ASSERT_EQ(p[i * 4 + 3], StoredColour(pal, i)[3]) << "fourth byte of " << i;
    }
}

struct GoodFile {
    const char* name;
    std::string text;
};

class ImportGood : public Scene, public ::testing::WithParamInterface<GoodFile> {};

TEST_P(ImportGood, ReplacesAll256ColoursKeepingTheFourthByte) {
    ombrevale::stylewriter::WriteFile(File("p.pal"), ombrevale::stylewriter::Text(GetParam().text));
    ASSERT_TRUE(doc.ImportPalette(File("p.pal"), 1));
    ExpectImported(1, 256);
    EXPECT_EQ(modDeclares::STYPalData[0][4], StoredColour(0, 1)[0]) << "other palettes untouched";
    EXPECT_TRUE(hooks.messages().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Files, ImportGood,
    ::testing::Values(GoodFile{"CrLf", Jasc("\r\n")}, GoodFile{"CrAlone", Jasc("\r")}, GoodFile{"Lf", Jasc("\n")},
                      GoodFile{"CountLineSays16", Jasc("\r\n", 256, "16")},
                      GoodFile{"FourthFieldIgnored", "JASC-PAL\n0100\n256\n" + ColourLines(256, " 40\n")},
                      GoodFile{"LinesBehindAreNotRead", Jasc("\n") + "garbage\n"}),
    [](const auto& p) { return std::string(p.param.name); });

struct BadFile {
    const char* name;
    std::string text;
    bool told;  // a file that is not a palette file at all is passed over silently
};

class ImportBad : public Scene, public ::testing::WithParamInterface<BadFile> {};

TEST_P(ImportBad, LeavesThePaletteAsItWas) {
    if (GetParam().name != std::string("Missing"))
        ombrevale::stylewriter::WriteFile(File("p.pal"), ombrevale::stylewriter::Text(GetParam().text));
    const auto before = modDeclares::STYPalData;
    EXPECT_FALSE(doc.ImportPalette(File("p.pal"), 2));
    EXPECT_EQ(modDeclares::STYPalData, before);
    EXPECT_EQ(hooks.messages().size(), GetParam().told ? 1u : 0u);
}

std::string WithLine(int colour, const std::string& line) {
    std::string s = "JASC-PAL\n0100\n256\n";
    for (int i = 0; i < 256; ++i) s += (i == colour ? line : "1 2 3") + "\n";
    return s;
}

INSTANTIATE_TEST_SUITE_P(Files, ImportBad,
                         ::testing::Values(BadFile{"LowerCaseMark", Jasc("\n").replace(0, 8, "jasc-pal"), false},
                                           BadFile{"MarkWithBlank", "JASC-PAL " + Jasc("\n").substr(8), false},
                                           BadFile{"Empty", "", false}, BadFile{"Missing", "", true},
                                           BadFile{"OnlySixteenColours", Jasc("\r\n", 16, "16"), true},
                                           BadFile{"DoubleBlank", WithLine(9, "1  2 3"), true},
                                           BadFile{"TwoFields", WithLine(200, "1 2"), true},
                                           BadFile{"Above255", WithLine(255, "1 256 3"), true},
                                           BadFile{"NotANumber", WithLine(3, "1 2 x"), true}),
                         [](const auto& p) { return std::string(p.param.name); });

}  // namespace
}  // namespace ombrevale::pixeltest
