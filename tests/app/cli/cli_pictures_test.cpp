// tile, sprite, delta, import-palette, export and sheet, driven as a process
// and checked against the stores of the document loaded here.
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

class SampleDoc : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        modDeclares::ResetSharedStores();
        doc_ = new clsSTY;
        ASSERT_TRUE(doc_->LoadSTY(clitest::kSample));
    }
    static void TearDownTestSuite() { delete doc_; }
    static clsSTY* doc_;
    testsupport::TempDir dir_;
};
clsSTY* SampleDoc::doc_ = nullptr;

std::uint32_t LE32At(const Bytes& b, std::size_t at) {
    return static_cast<std::uint32_t>(b[at] | b[at + 1] << 8 | b[at + 2] << 16 | b[at + 3] << 24);
}

Bytes PaletteBytes(int pal) {
    const auto& p = modDeclares::STYPalData[static_cast<std::size_t>(pal)];
    return Bytes(p.begin(), p.end());
}

// Rows of the sprite, W bytes each, top row first, as the store holds them.
Bytes SpriteRowsTopFirst(const clsSTY& doc, int s) {
    const auto& r = doc.STYSpriteIndex[static_cast<std::size_t>(s)];
    const int w = (r.width + 3) / 4 * 4;
    Bytes out;
    for (int y = 0; y < r.height; ++y)
        for (int x = 0; x < w; ++x) out.push_back(doc.STYSpriteData[static_cast<std::size_t>(r.offset + y * 256 + x)]);
    return out;
}

Bytes BottomFirst(const Bytes& topFirst, int rowBytes) {
    Bytes out;
    for (auto at = static_cast<std::ptrdiff_t>(topFirst.size()) - rowBytes; at >= 0; at -= rowBytes)
        out.insert(out.end(), topFirst.begin() + at, topFirst.begin() + at + rowBytes);
    return out;
}

void ExpectBmp(const Bytes& bmp, int width, int height, const Bytes& palette, const Bytes& pixels) {
    ASSERT_EQ(bmp.size(), 1078 + pixels.size());
    EXPECT_EQ(LE32At(bmp, 2), bmp.size());
    EXPECT_EQ(static_cast<int>(LE32At(bmp, 18)), width);
    EXPECT_EQ(static_cast<int>(LE32At(bmp, 22)), height);
    EXPECT_TRUE(Bytes(bmp.begin() + 54, bmp.begin() + 1078) == palette) << "colour table";
    EXPECT_TRUE(Bytes(bmp.begin() + 1078, bmp.end()) == pixels) << "pixels";
}

class CliTile : public SampleDoc, public ::testing::WithParamInterface<int> {};

TEST_P(CliTile, WritesTheTileBottomRowFirstInItsOwnPalette) {
    const int t = GetParam();
    const std::string out = dir_.File("t.bmp");
    const auto r = clitest::RunCli({"tile", clitest::kSample, std::to_string(t), out});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto& tile = doc_->STYTileStore[static_cast<std::size_t>(t)];
    ExpectBmp(ombrevale::stylewriter::ReadFile(out), 64, 64, PaletteBytes(modDeclares::STYPalIndex[static_cast<std::size_t>(t)]),
              BottomFirst(Bytes(tile.begin(), tile.end()), 64));
}

INSTANTIATE_TEST_SUITE_P(Tiles, CliTile, ::testing::Values(0, 1, 517, 991));

struct SpriteCase {
    const char* name;
    int sprite;
    int pal;  // -1: its own
};

class CliSprite : public SampleDoc, public ::testing::WithParamInterface<SpriteCase> {};

TEST_P(CliSprite, WritesTheSpriteWithPaddedRowsAndTheChosenPalette) {
    const auto c = GetParam();
    const std::string out = dir_.File("s.bmp");
    std::vector<std::string> args = {"sprite", clitest::kSample, std::to_string(c.sprite), out};
    if (c.pal != -1) args.insert(args.end(), {"--pal", std::to_string(c.pal)});
    const auto r = clitest::RunCli(args);
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto& rec = doc_->STYSpriteIndex[static_cast<std::size_t>(c.sprite)];
    const int own = modDeclares::STYPalIndex[static_cast<std::size_t>(modDeclares::STYPalBase[0] + c.sprite)];
    ExpectBmp(ombrevale::stylewriter::ReadFile(out), rec.width, rec.height, PaletteBytes(c.pal == -1 ? own : c.pal),
              BottomFirst(SpriteRowsTopFirst(*doc_, c.sprite), (rec.width + 3) / 4 * 4));
}

INSTANTIATE_TEST_SUITE_P(Sprites, CliSprite,
                         ::testing::Values(SpriteCase{"FirstCar", 0, -1}, SpriteCase{"Ped", 48, -1},
                                           SpriteCase{"ExclamationGlyph", 1366, -1}, SpriteCase{"LastGlyph", 1815, -1},
                                           SpriteCase{"CarInARemapOnTheSecondPage", 3, 120},
                                           SpriteCase{"PaletteZeroIsNotOwn", 48, 0}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(SampleDoc, DeltaIsLaidOverItsSpriteOneColumnRightOfItsPosition) {
    const int sprite = 1, d = 4;
    const std::string out = dir_.File("d.bmp");
    const auto r = clitest::RunCli({"delta", clitest::kSample, std::to_string(sprite), std::to_string(d), out});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto& rec = doc_->STYSpriteIndex[sprite];
    const int w = (rec.width + 3) / 4 * 4;
    Bytes block = SpriteRowsTopFirst(*doc_, sprite);
    // The delta's place is the sum of every size before it.
    std::size_t place = 0;
    const auto& entries = modDeclares::STYDeltaIndex;
    for (const auto& e : entries) {
        if (e.sprite == sprite) break;
        for (int k = 0; k < e.deltaCount; ++k)
            place += static_cast<std::size_t>(e.deltaSizes[static_cast<std::size_t>(k)]);
    }
    const auto& mine = entries[static_cast<std::size_t>(sprite)];
    for (int k = 0; k < d; ++k) place += static_cast<std::size_t>(mine.deltaSizes[static_cast<std::size_t>(k)]);
    const std::size_t end = place + static_cast<std::size_t>(mine.deltaSizes[d]);
    const auto& store = modDeclares::STYDeltaStore;
    int pos = 0;
    bool changed = false;
    for (std::size_t at = place; at < end;) {
        pos += store[at] | store[at + 1] << 8;
        const int n = store[at + 2];
        for (int i = 0; i < n; ++i) {
            const auto to = static_cast<std::size_t>(pos / 256 * w + pos % 256 + 1 + i);
            if (to < block.size()) {
                changed = changed || block[to] != store[at + 3 + static_cast<std::size_t>(i)];
                block[to] = store[at + 3 + static_cast<std::size_t>(i)];
            }
        }
        pos += n;
        at += 3 + static_cast<std::size_t>(n);
    }
    EXPECT_TRUE(changed) << "the delta should change the picture";
    ExpectBmp(ombrevale::stylewriter::ReadFile(out), rec.width, rec.height,
              PaletteBytes(modDeclares::STYPalIndex[static_cast<std::size_t>(modDeclares::STYPalBase[0] + sprite)]),
              BottomFirst(block, w));
}

struct RangeCase {
    const char* name;
    std::vector<std::string> args;  // STYLE and OUT are replaced
    const char* says;
};

class CliOutOfRange : public SampleDoc, public ::testing::WithParamInterface<RangeCase> {};

TEST_P(CliOutOfRange, ExitsOneNamingTheValidRangeAndWritesNothing) {
    std::vector<std::string> args = GetParam().args;
    const std::string pal = dir_.File("good.pal");
    {
        std::ofstream f(pal, std::ios::binary);
        f << "JASC-PAL\r\n0100\r\n256\r\n";
        for (int i = 0; i < 256; ++i) f << "1 2 3\r\n";
    }
    for (auto& a : args)
        if (a == "STYLE")
            a = clitest::kSample;
        else if (a == "PAL")
            a = pal;
        else if (a.rfind("OUT", 0) == 0)
            a = dir_.File(a);
    const auto r = clitest::RunCli(args);
    EXPECT_EQ(r.exitCode, 1);
    const auto lines = r.ErrLines();
    ASSERT_EQ(lines.size(), 1u) << r.err;
    EXPECT_EQ(lines[0].rfind("ombrevale-cli: " + clitest::kSample + ": ", 0), 0u) << lines[0];
    EXPECT_NE(lines[0].find(GetParam().says), std::string::npos) << lines[0];
    EXPECT_EQ(std::distance(fs::directory_iterator(dir_.path()), fs::directory_iterator()), 1) << "only good.pal";
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, CliOutOfRange,
    ::testing::Values(
        RangeCase{"TilePastTheEnd", {"tile", "STYLE", "992", "OUT.bmp"}, "tile 992 is out of range (0..991)"},
        RangeCase{"TileNegative", {"tile", "STYLE", "-1", "OUT.bmp"}, "(0..991)"},
        RangeCase{"SpritePastTheEnd", {"sprite", "STYLE", "1816", "OUT.bmp"}, "(0..1815)"},
        RangeCase{"SpritePalette", {"sprite", "STYLE", "3", "OUT.bmp", "--pal", "192"}, "(-1..191)"},
        RangeCase{"SpritePaletteBelowMinusOne", {"sprite", "STYLE", "3", "OUT.bmp", "--pal", "-2"}, "(-1..191)"},
        RangeCase{"DeltaOfASpriteWithoutDeltas", {"delta", "STYLE", "47", "0", "OUT.bmp"}, "has no deltas"},
        RangeCase{"DeltaNumber", {"delta", "STYLE", "0", "15", "OUT.bmp"}, "delta 15 is out of range (0..14)"},
        RangeCase{"DeltaSprite", {"delta", "STYLE", "5000", "0", "OUT.bmp"}, "(0..1815)"},
        RangeCase{"ImportPaletteNumber", {"import-palette", "STYLE", "192", "PAL", "OUT.sty"}, "(0..191)"},
        RangeCase{"SheetColumns", {"sheet", "STYLE", "OUT.png", "--columns", "0"}, "(1..512)"}),
    [](const auto& row) { return std::string(row.param.name); });

// A picture command on a damaged style: one line, no picture.
class CliPictureOfBadStyle : public ::testing::TestWithParam<std::vector<std::string>> {};

TEST_P(CliPictureOfBadStyle, ExitsOneAndWritesNothing) {
    testsupport::TempDir dir;
    const std::string style = dir.File("bad.sty");
    Bytes bytes = ombrevale::stylewriter::ReadFile(clitest::kSample);
    bytes.resize(bytes.size() / 2);
    ombrevale::stylewriter::WriteFile(style, bytes);
    std::vector<std::string> args = GetParam();
    for (auto& a : args)
        if (a == "STYLE")
            a = style;
        else if (a.rfind("OUT", 0) == 0)
            a = dir.File(a);
    const auto r = clitest::RunCli(args);
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.ErrLines().size(), 1u) << r.err;
    EXPECT_EQ(r.ErrLines()[0].rfind("ombrevale-cli: " + style + ": ", 0), 0u);
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), fs::directory_iterator()), 1);
}

INSTANTIATE_TEST_SUITE_P(Commands, CliPictureOfBadStyle,
                         ::testing::Values(std::vector<std::string>{"tile", "STYLE", "0", "OUT.bmp"},
                                           std::vector<std::string>{"sprite", "STYLE", "0", "OUT.bmp"},
                                           std::vector<std::string>{"delta", "STYLE", "0", "0", "OUT.bmp"},
                                           std::vector<std::string>{"export", "STYLE", "OUTDIR"},
                                           std::vector<std::string>{"sheet", "STYLE", "OUT.png"}));

}  // namespace

namespace {

// An output that cannot be written: one line naming it, whatever the engine says.
class CliUnwritableOutput : public ::testing::TestWithParam<std::vector<std::string>> {};

TEST_P(CliUnwritableOutput, ExitsOneWithOneLineNamingTheOutput) {
    testsupport::TempDir dir;
    const std::string missing = dir.File("no-such-folder/out");
    std::vector<std::string> args = GetParam();
    for (auto& a : args)
        if (a == "STYLE")
            a = clitest::kSample;
        else if (a == "OUT")
            a = missing;
    const auto r = clitest::RunCli(args);
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.ErrLines().size(), 1u) << r.err;
    EXPECT_EQ(r.ErrLines()[0].rfind("ombrevale-cli: " + missing + ": ", 0), 0u) << r.err;
    EXPECT_TRUE(fs::is_empty(dir.path()));
}

INSTANTIATE_TEST_SUITE_P(Commands, CliUnwritableOutput,
                         ::testing::Values(std::vector<std::string>{"tile", "STYLE", "0", "OUT"},
                                           std::vector<std::string>{"sprite", "STYLE", "0", "OUT", "--pal", "3"},
                                           std::vector<std::string>{"delta", "STYLE", "0", "0", "OUT"},
                                           std::vector<std::string>{"sheet", "STYLE", "OUT"},
                                           std::vector<std::string>{"save", "STYLE", "OUT"}));

}  // namespace
