// import-palette, export and sheet.
#include <gtest/gtest.h>

#include <QImage>
#include <filesystem>
#include <fstream>

#include "runprogram.h"
#include "style/clssty.h"
#include "stylewriter/stylewriter.h"
#include "support/tempdir.h"

namespace fs = std::filesystem;
using ombrevale::stylewriter::Bytes;

namespace {

std::string WritePal(const testsupport::TempDir& dir, const std::string& name, const std::string& text) {
    const std::string path = dir.File(name);
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

std::string JascColours(int count, int fields = 3) {
    std::string s = "JASC-PAL\r\n0100\r\n256\r\n";
    for (int i = 0; i < count; ++i) {
        s += std::to_string(i) + " " + std::to_string(255 - i) + " " + std::to_string(i / 2);
        if (fields > 3) s += " 99";
        s += "\r\n";
    }
    return s;
}

TEST(CliImportPalette, ReplacesTheColoursOfThatPaletteOnlyAndSaves) {
    testsupport::TempDir dir;
    const std::string pal = WritePal(dir, "p.pal", JascColours(256, 4));
    const std::string out = dir.File("out.sty");
    const auto r = clitest::RunCli({"import-palette", clitest::kSample, "70", pal, out});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    modDeclares::ResetSharedStores();
    clsSTY before;
    ASSERT_TRUE(before.LoadSTY(clitest::kSample));
    const auto old = modDeclares::STYPalData;
    clsSTY after;
    ASSERT_TRUE(after.LoadSTY(out));
    const auto& now = modDeclares::STYPalData;
    ASSERT_EQ(now.size(), old.size());
    for (std::size_t p = 0; p < now.size(); ++p) {
        if (p != 70) {
            EXPECT_TRUE(now[p] == old[p]) << p;
            continue;
        }
        for (std::size_t c = 0; c < 256; ++c) {
            EXPECT_EQ(now[p][c * 4 + 2], c);
            EXPECT_EQ(now[p][c * 4 + 1], 255 - c);
            EXPECT_EQ(now[p][c * 4], c / 2);
            EXPECT_EQ(now[p][c * 4 + 3], old[p][c * 4 + 3]);
        }
    }
}

struct BadPal {
    const char* name;
    std::string text;
};

class CliImportBadPalette : public ::testing::TestWithParam<BadPal> {};

TEST_P(CliImportBadPalette, ExitsOneNamingThePaletteFileAndWritesNoStyle) {
    testsupport::TempDir dir;
    const std::string pal = WritePal(dir, "p.pal", GetParam().text);
    const std::string out = dir.File("out.sty");
    const auto r = clitest::RunCli({"import-palette", clitest::kSample, "3", pal, out});
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.ErrLines().size(), 1u) << r.err;
    EXPECT_EQ(r.ErrLines()[0].rfind("ombrevale-cli: " + pal + ": ", 0), 0u) << r.err;
    EXPECT_FALSE(fs::exists(out));
}

INSTANTIATE_TEST_SUITE_P(Files, CliImportBadPalette,
                         ::testing::Values(BadPal{"NoMark", "0 0 0\r\n"},
                                           BadPal{"LowerCaseMark", "jasc-pal\r\n0100\r\n256\r\n"},
                                           BadPal{"MarkWithTrailingBlank", "JASC-PAL \r\n0100\r\n256\r\n"},
                                           BadPal{"SixteenColoursOnly", JascColours(16)},
                                           BadPal{"ColourAbove255", "JASC-PAL\r\n0100\r\n256\r\n256 0 0\r\n"},
                                           BadPal{"TwoFieldsOnly", "JASC-PAL\r\n0100\r\n256\r\n10 20\r\n"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CliImportPalette, AMissingPaletteFileIsNamed) {
    testsupport::TempDir dir;
    const auto r = clitest::RunCli({"import-palette", clitest::kSample, "3", dir.File("none.pal"), dir.File("o.sty")});
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.ErrLines().size(), 1u);
    EXPECT_EQ(r.ErrLines()[0].rfind("ombrevale-cli: " + dir.File("none.pal") + ": ", 0), 0u);
    EXPECT_FALSE(fs::exists(dir.File("o.sty")));
}

std::size_t FilesIn(const fs::path& p) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(p), fs::directory_iterator()));
}

TEST(CliExport, WritesEveryPictureAndPaletteUnderItsNameAndPngMatchesBmp) {
    testsupport::TempDir dir;
    modDeclares::ResetSharedStores();
    clsSTY doc;
    ASSERT_TRUE(doc.LoadSTY(clitest::kSample));
    std::size_t deltas = 0;
    for (const auto& e : modDeclares::STYDeltaIndex) deltas += e.deltaCount;

    for (const bool png : {false, true}) {
        const fs::path out = dir.path() / (png ? "png" : "bmp");
        std::vector<std::string> args = {"export", clitest::kSample, out.string()};
        if (png) args.push_back("--png");
        const auto r = clitest::RunCli(args);
        ASSERT_EQ(r.exitCode, 0) << r.err;
        EXPECT_TRUE(r.err.empty()) << "no progress bar when stderr is no terminal";
        EXPECT_EQ(FilesIn(out / "tiles"), static_cast<std::size_t>(doc.GetNumOfTiles()));
        EXPECT_EQ(FilesIn(out / "sprites"), static_cast<std::size_t>(doc.GetNumOfSprx()));
        EXPECT_EQ(FilesIn(out / "deltas"), deltas);
        EXPECT_EQ(FilesIn(out / "palettes"), static_cast<std::size_t>(doc.GetNumOfPals()));
        const char* ext = png ? ".png" : ".bmp";
        for (const std::string name :
             {"tiles/tile-0000", "tiles/tile-0991", "sprites/sprite-0000", "sprites/sprite-1815",
              "deltas/sprite-0000-delta-00", "deltas/sprite-0001-delta-22"})
            EXPECT_TRUE(fs::exists(out / (name + ext))) << name;
        EXPECT_TRUE(fs::exists(out / "palettes/palette-191.pal"));
    }
    // The export's BMP is what the single command writes, and the PNG holds the same colours.
    const std::string single = dir.File("t.bmp");
    ASSERT_EQ(clitest::RunCli({"tile", clitest::kSample, "300", single}).exitCode, 0);
    EXPECT_TRUE(ombrevale::stylewriter::ReadFile(single) ==
                ombrevale::stylewriter::ReadFile((dir.path() / "bmp/tiles/tile-0300.bmp").string()));
    for (const std::string name : {"tiles/tile-0300", "sprites/sprite-0007", "deltas/sprite-0005-delta-04"}) {
        const QImage bmp(QString::fromStdString((dir.path() / "bmp" / (name + ".bmp")).string()));
        const QImage png(QString::fromStdString((dir.path() / "png" / (name + ".png")).string()));
        ASSERT_FALSE(bmp.isNull());
        EXPECT_EQ(bmp.convertToFormat(QImage::Format_RGB32), png.convertToFormat(QImage::Format_RGB32)) << name;
    }
    // A palette file reads back as the palette's colours.
    std::ifstream pal(dir.path() / "bmp/palettes/palette-070.pal", std::ios::binary);
    std::string all((std::istreambuf_iterator<char>(pal)), std::istreambuf_iterator<char>());
    const auto& p = modDeclares::STYPalData[70];
    const std::string line5 =
        std::to_string(p[5 * 4 + 2]) + " " + std::to_string(p[5 * 4 + 1]) + " " + std::to_string(p[5 * 4]);
    EXPECT_EQ(all.rfind("JASC-PAL\r\n0100\r\n256\r\n", 0), 0u);
    EXPECT_NE(all.find("\r\n" + line5 + "\r\n"), std::string::npos);
}

// A style of four tiles in two palettes, tile 1 holding colour 0.
// lastTilePalette lets a test point tile 3 at a palette the file does not hold.
// extra: further sections, as tag and payload.
std::string SmallSheetStyle(const testsupport::TempDir& dir, int lastTilePalette = 63,
                            const std::vector<std::pair<std::string, Bytes>>& extra = {}) {
    std::vector<ombrevale::stylewriter::TilePixels> tiles(4);
    for (int t = 0; t < 4; ++t)
        for (int i = 0; i < 4096; ++i)
            tiles[static_cast<std::size_t>(t)][static_cast<std::size_t>(i)] =
                static_cast<std::uint8_t>(t == 1 && i % 3 == 0 ? 0 : t * 10 + i % 7 + 1);
    std::vector<ombrevale::stylewriter::PaletteBytes> pals(64);
    for (std::size_t p = 0; p < 64; ++p)
        for (std::size_t c = 0; c < 256; ++c) {
            pals[p][c * 4] = static_cast<std::uint8_t>(c);
            pals[p][c * 4 + 1] = static_cast<std::uint8_t>(p * 3);
            pals[p][c * 4 + 2] = static_cast<std::uint8_t>(255 - c);
        }
    const std::string path = dir.File("small.sty");
    ombrevale::stylewriter::StyleBytes file;
    file.Add("TILE", ombrevale::stylewriter::TilePayload(tiles))
        .Add("PPAL", ombrevale::stylewriter::PalettePayload(pals))
        .Add("PALX", ombrevale::stylewriter::Cat({ombrevale::stylewriter::LE16(0), ombrevale::stylewriter::LE16(5), ombrevale::stylewriter::LE16(5),
                                       ombrevale::stylewriter::LE16(lastTilePalette)}));
    for (const auto& [tag, payload] : extra) file.Add(tag, payload);
    ombrevale::stylewriter::WriteFile(path, file.bytes());
    return path;
}

TEST(CliExport, PngLeavesOutASpriteOfNoPixelsAndSaysSo) {
    using ombrevale::stylewriter::LE16, ombrevale::stylewriter::LE32, ombrevale::stylewriter::Cat;
    testsupport::TempDir dir;
    // Sprite 0 is 2 x 1 pixels, sprite 1 is 0 x 0.
    const std::string style = SmallSheetStyle(
        dir, 63, {{"SPRX", Cat({LE32(0), {2, 1}, LE16(0), LE32(0), {0, 0}, LE16(0)})}, {"SPRG", Bytes(256, 9)}});
    for (const bool png : {false, true}) {
        const fs::path out = dir.path() / (png ? "png" : "bmp");
        std::vector<std::string> args = {"export", style, out.string()};
        if (png) args.push_back("--png");
        const auto r = clitest::RunCli(args);
        ASSERT_EQ(r.exitCode, 0) << r.err;
        const char* ext = png ? ".png" : ".bmp";
        EXPECT_TRUE(fs::exists(out / (std::string("sprites/sprite-0000") + ext)));
        EXPECT_EQ(fs::exists(out / (std::string("sprites/sprite-0001") + ext)), !png);
        EXPECT_EQ(r.ErrLines().size(), png ? 1u : 0u) << r.err;
        EXPECT_EQ(r.err.find("sprite 1 is 0x0 pixels") != std::string::npos, png) << r.err;
    }
    EXPECT_EQ(fs::file_size(dir.path() / "bmp/sprites/sprite-0001.bmp"), 1078u);
}

struct SheetCase {
    const char* name;
    int columns;  // 0: the default
    bool transparent;
    int width, height;
};

class CliSheet : public ::testing::TestWithParam<SheetCase> {};

TEST_P(CliSheet, DrawsEveryTileInItsCellWithOneSpareRow) {
    const auto c = GetParam();
    testsupport::TempDir dir;
    const std::string style = SmallSheetStyle(dir);
    const std::string out = dir.File("sheet.png");
    std::vector<std::string> args = {"sheet", style, out};
    if (c.columns) args.insert(args.end(), {"--columns", std::to_string(c.columns)});
    if (c.transparent) args.push_back("--transparent");
    const auto r = clitest::RunCli(args);
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QImage sheet(QString::fromStdString(out));
    ASSERT_EQ(sheet.width(), c.width);
    ASSERT_EQ(sheet.height(), c.height);
    const int cols = c.columns ? c.columns : 9;
    const int palOf[4] = {0, 5, 5, 63};
    for (int t = 0; t < 4; ++t)
        for (const auto& [x, y] : {std::pair{0, 0}, std::pair{7, 3}, std::pair{63, 63}, std::pair{30, 41}}) {
            const int v = t == 1 && (y * 64 + x) % 3 == 0 ? 0 : t * 10 + (y * 64 + x) % 7 + 1;
            QRgb want = qRgb(255 - v, palOf[t] * 3, v);
            if (v == 0 && c.transparent) want = qRgb(255, 0, 255);
            EXPECT_EQ(sheet.pixel((t % cols) * 64 + x, (t / cols) * 64 + y), want)
                << "tile " << t << " at " << x << "," << y;
        }
    EXPECT_TRUE(fs::exists(out));
    EXPECT_FALSE(fs::exists(dir.File("temp.bmp")));
}

INSTANTIATE_TEST_SUITE_P(Layouts, CliSheet,
                         ::testing::Values(SheetCase{"DefaultNineColumns", 0, false, 576, 64},
                                           SheetCase{"TwoColumnsFullRowsGetAnEmptyRow", 2, false, 128, 192},
                                           SheetCase{"ThreeColumns", 3, false, 192, 128},
                                           SheetCase{"TransparentKeyInColourZero", 2, true, 128, 192}),
                         [](const auto& row) { return std::string(row.param.name); });

// A palette number in the file that names no palette: refused before anything is written.
class CliFileNumberOutOfRange : public ::testing::TestWithParam<std::vector<std::string>> {};

TEST_P(CliFileNumberOutOfRange, ExitsOneSayingWhichPaletteAndWritesNothing) {
    testsupport::TempDir dir;
    const std::string style = SmallSheetStyle(dir, 64);
    std::vector<std::string> args = GetParam();
    for (auto& a : args)
        if (a == "STYLE")
            a = style;
        else if (a == "OUT")
            a = dir.File("out");
    const auto r = clitest::RunCli(args);
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.ErrLines().size(), 1u) << r.err;
    EXPECT_EQ(r.ErrLines()[0], "ombrevale-cli: " + style + ": tile 3 uses palette 64 but the style has 64 palettes");
    EXPECT_FALSE(fs::exists(dir.File("out")));
}

INSTANTIATE_TEST_SUITE_P(Commands, CliFileNumberOutOfRange,
                         ::testing::Values(std::vector<std::string>{"tile", "STYLE", "3", "OUT"},
                                           std::vector<std::string>{"export", "STYLE", "OUT"},
                                           std::vector<std::string>{"sheet", "STYLE", "OUT"}));

TEST(CliSheet, TheSampleSheetHasNineColumnsAndOneHundredAndElevenRows) {
    testsupport::TempDir dir;
    const std::string out = dir.File("sheet.png");
    const auto r = clitest::RunCli({"sheet", clitest::kSample, out});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QImage sheet(QString::fromStdString(out));
    EXPECT_EQ(sheet.width(), 9 * 64);
    EXPECT_EQ(sheet.height(), (992 / 9 + 1) * 64);
}

}  // namespace
