// How ombrevale-cli fails: wrong words exit 2 with the usage; a bad style, a
// number out of range or an output it cannot write exit 1 with one line naming
// the file; and nothing is left behind.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <QRegularExpression>
#include <QSet>

#include <filesystem>

#include "cliprocess.h"
#include "stylewriter/stylewriter.h"

namespace fs = std::filesystem;
namespace sw = ombrevale::stylewriter;
using namespace ombrevale::clitest;

namespace {

struct Case {
    const char* name;
    std::vector<std::string> args;
    const char* says = "";  // in the one line; for a bad style, the bytes' maker
};

class CliUsage : public ::testing::TestWithParam<Case> {};

TEST_P(CliUsage, ExitsTwoWithTheUsageAndWritesNothing) {
    ombrevale::testsupport::TempDir dir;
    const auto r = RunCli(Place(GetParam().args, kSample, dir));
    EXPECT_EQ(r.exitCode, 2);
    const auto lines = r.ErrLines();
    ASSERT_GE(lines.size(), 2u) << r.err;
    EXPECT_EQ(lines[1].rfind("usage: ombrevale-cli ", 0), 0u);
    EXPECT_TRUE(r.out.empty() && fs::is_empty(dir.path()));
}

INSTANTIATE_TEST_SUITE_P(
    Words, CliUsage,
    ::testing::Values(Case{"NoCommand", {}}, Case{"UnknownCommand", {"show", "STYLE"}},
                      Case{"SaveWithoutOut", {"save", "STYLE"}},
                      Case{"NumberNotDecimal", {"tile", "STYLE", "0x10", "OUT.bmp"}},
                      Case{"PalWithoutValue", {"sprite", "STYLE", "1", "OUT.bmp", "--pal"}},
                      Case{"ColumnsNotANumber", {"sheet", "STYLE", "OUT.png", "--columns", "nine"}},
                      Case{"CarSetWithoutOut", {"car", "STYLE", "3", "--set", "width=3"}},
                      Case{"CarNeitherModelNorCar", {"car", "STYLE", "ped:3"}},
                      Case{"CarNoSuchField", {"car", "STYLE", "3", "--set", "colour=3", "OUT.sty"}}),
    [](const auto& row) { return std::string(row.param.name); });

// A delta has no palette of its own to ask for: one line says why, without the usage.
TEST(CliUsageRefusal, ImportDeltaWithANewPaletteSaysWhyInOneLine) {
    ombrevale::testsupport::TempDir dir;
    const auto r =
        RunCli(Place({"import-delta", "STYLE", "0", "0", "P.bmp", "OUT.sty", "--new-palette"}, kSample, dir));
    EXPECT_EQ(r.exitCode, 2);
    ASSERT_EQ(r.ErrLines().size(), 1u) << r.err;
    EXPECT_NE(r.err.find("a delta is drawn in its sprite's palette"), std::string::npos) << r.err;
    EXPECT_TRUE(r.out.empty() && fs::is_empty(dir.path()));
}

// The usage after wrong words fits a terminal of 80 columns, each line holding
// whole commands, and names every command --help lists, in its order; each
// command refuses every option its usage leaves out.
TEST(CliUsageText, FitsEightyColumnsAndNamesEachCommandsOptions) {
    const auto lines = RunCli({}).ErrLines();
    QString all;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        EXPECT_LE(lines[i].size(), 80u) << lines[i];
        all += QString::fromStdString(lines[i]).remove(QRegularExpression("^(usage: ombrevale-cli)? *")) + ' ';
    }
    std::vector<std::string> named;
    for (const QString& command : all.trimmed().split(" | ")) named.push_back(command.toStdString());
    std::vector<std::string> listed;
    for (const QString& l : QString::fromStdString(RunCli({"--help"}).out).split('\n'))
        if (l.size() > 2 && l.startsWith("  ") && l[2].isLower() && !l.startsWith("  help "))
            listed.push_back(l.mid(2).toStdString());
    EXPECT_EQ(named, listed);
    QSet<QString> options;
    for (const auto& usage : listed)
        for (auto m = QRegularExpression("--[a-z-]+").globalMatch(QString::fromStdString(usage)); m.hasNext();)
            options.insert(m.next().captured());
    EXPECT_EQ(options.size(), 17);
    for (const auto& usage : listed)
        for (const QString& option : options) {
            const std::string command = usage.substr(0, usage.find(' ')), o = option.toStdString();
            if (usage.find(o + ' ') != std::string::npos || usage.find(o + ']') != std::string::npos) continue;
            if (command == "import-delta" && o == "--new-palette") continue;  // told why, in a test below
            const std::string err = RunCli({command, o}).err;
            EXPECT_NE(err.find("option " + o + " is not one of " + command + "'s"), std::string::npos) << err;
        }
}

// One line that starts with the file it is about, exit 1, no other file made.
void ExpectOneLineAbout(const RunResult& r, const std::string& file, const std::string& says,
                        const ombrevale::testsupport::TempDir& dir, std::size_t filesBefore) {
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.out.empty()) << r.out;
    const auto lines = r.ErrLines();
    ASSERT_EQ(lines.size(), 1u) << r.err;
    EXPECT_EQ(lines[0].rfind("ombrevale-cli: " + file + ": ", 0), 0u) << lines[0];
    EXPECT_NE(lines[0].find(says), std::string::npos) << lines[0];
    EXPECT_EQ(static_cast<std::size_t>(std::distance(fs::directory_iterator(dir.path()), fs::directory_iterator())),
              filesBefore);
}

class CliOutOfRange : public ::testing::TestWithParam<Case> {};

TEST_P(CliOutOfRange, NamesTheValidRange) {
    ombrevale::testsupport::TempDir dir;
    const std::string pal = dir.File("good.pal");
    std::string text = "JASC-PAL\r\n0100\r\n256\r\n";
    for (int i = 0; i < 256; ++i) text += "1 2 3\r\n";
    sw::WriteFile(pal, sw::Text(text));
    ExpectOneLineAbout(RunCli(Place(GetParam().args, kSample, dir, pal)), kSample, GetParam().says, dir, 1);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, CliOutOfRange,
    ::testing::Values(
        Case{"TilePastTheEnd", {"tile", "STYLE", "992", "OUT.bmp"}, "tile 992 is out of range (0..991)"},
        Case{"TileNegative", {"tile", "STYLE", "-1", "OUT.bmp"}, "(0..991)"},
        Case{"SpritePastTheEnd", {"sprite", "STYLE", "1816", "OUT.bmp"}, "(0..1815)"},
        Case{"DeltaOfNoSprite", {"delta", "STYLE", "1816", "0", "OUT.bmp"}, "(0..1815)"},
        Case{"SpritePalette",
             {"sprite", "STYLE", "3", "OUT.bmp", "--pal", "192"},
             "--pal 192 is out of range (-1..191)"},
        Case{"PaletteBelowOwn", {"sprite", "STYLE", "3", "OUT.bmp", "--pal", "-2"}, "(-1..191)"},
        Case{"ImportSpritePalette",
             {"import-sprite", "STYLE", "3", "P.bmp", "OUT.sty", "--pal", "192"},
             "palette 192 is out of range (-1..191)"},
        Case{"SpriteWithoutDeltas", {"delta", "STYLE", "47", "0", "OUT.bmp"}, "has no deltas"},
        Case{"DeltaNumber", {"delta", "STYLE", "0", "15", "OUT.bmp"}, "delta 15 is out of range (0..14)"},
        Case{"ImportPaletteNumber", {"import-palette", "STYLE", "192", "PAL", "OUT.sty"}, "(0..191)"},
        Case{"SheetColumns", {"sheet", "STYLE", "OUT.png", "--columns", "0"}, "(1..512)"},
        Case{"FontPastTheLast", {"text", "STYLE", "x", "OUT.png", "--font", "8"}, "--font 8 is out of range"},
        Case{"CarNoSuchModel", {"car", "STYLE", "200"}, "has no car record of model 200"},
        Case{"CarPastTheList", {"car", "STYLE", "car:999"}, "has no Car: 999"},
        Case{"CarWidth", {"car", "STYLE", "3", "--set", "width=129", "OUT.sty"}, "(0..128)"},
        Case{"CarSixDoors",
             {"car", "STYLE", "3", "--set", "door_positions=1:1 1:1 1:1 1:1 1:1 1:1", "OUT.sty"},
             "at most 5"}),
    [](const auto& row) { return std::string(row.param.name); });

// A sprite's last row ends (height - 1) rows of 256 after its offset plus its width
// rounded up to 4: a byte past the sprite data and it is refused, as is an own
// palette the style does not have.
TEST(CliHostileSprite, IsRefusedPastTheSpriteDataOrItsPalettes) {
    ombrevale::testsupport::TempDir dir, out;
    struct Sprite {
        int offset, width, palette;
        const char* says;  // empty: drawn
    };
    const Sprite sprites[] = {
        {252, 4, 0, ""},         {253, 4, 0, "lies outside the sprite data (offset 253, 4x2"},
        {248, 5, 0, ""},         {249, 5, 0, "outside"},
        {241, 16, 0, "outside"}, {0, 4, 64, "sprite 5 uses palette 64 but the style has 64 palettes"}};
    sw::Bytes sprx, palx;
    for (const auto& sp : sprites) {
        sprx = sw::Cat({sprx, sw::LE32(sp.offset), {static_cast<std::uint8_t>(sp.width), 2}, sw::LE16(0)});
        palx = sw::Cat({palx, sw::LE16(sp.palette)});
    }
    const std::string style = dir.File("s.sty");
    sw::WriteFile(style, sw::StyleBytes()
                             .Add("PPAL", sw::PalettePayload(std::vector<sw::PaletteBytes>(64)))
                             .Add("PALX", palx)
                             .Add("SPRX", sprx)
                             .Add("SPRG", sw::Bytes(512, 1))
                             .Add("PALB", sw::Cat({sw::LE16(0), sw::LE16(6), sw::Bytes(12, 0)}))
                             .bytes());
    for (int n = 0; n < 6; ++n) {
        SCOPED_TRACE(n);
        fs::remove(out.File("s.bmp"));
        const auto r = RunCli({"sprite", style, std::to_string(n), out.File("s.bmp")});
        if (*sprites[n].says)
            ExpectOneLineAbout(r, style, sprites[n].says, out, 0);
        else
            EXPECT_TRUE(r.exitCode == 0 && fs::exists(out.File("s.bmp"))) << r.err;
    }
}

// One row for each way a load fails; the document's own tests hold the many files behind each.
struct BadStyle {
    const char* name;
    sw::Bytes (*bytes)();  // null: no file at all, or a pipe
    const char* says;
    bool pipe = false;  // which would hold the read for as long as nobody writes
};

const BadStyle kBadStyles[] = {
    {"Missing", nullptr, "cannot be read: "},
    {"WrongMagic", [] { return sw::Text("GBSX"); }, "not a style file (it does not begin with GBST)"},
    {"CutInsideSprites",
     [] {
         sw::Bytes b = sw::ReadFile(kSample);
         b.resize(b.size() - 400000);
         return b;
     },
     "is damaged: "},
    {"APipe", nullptr, "cannot be read: it is not a regular file", true},
};

class CliBadStyle : public ::testing::TestWithParam<std::tuple<BadStyle, std::vector<std::string>>> {};

TEST_P(CliBadStyle, NamesTheStyle) {
    const auto& [bad, args] = GetParam();
    ombrevale::testsupport::TempDir dir;
    const std::string style = dir.File("bad.sty");
    if (bad.bytes) sw::WriteFile(style, bad.bytes());
    if (bad.pipe) {
        ASSERT_EQ(::mkfifo(style.c_str(), 0600), 0);
    }
    ExpectOneLineAbout(RunCli(Place(args, style, dir)), style, bad.says, dir, bad.bytes || bad.pipe ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Files, CliBadStyle,
                         ::testing::Combine(::testing::ValuesIn(kBadStyles),
                                            ::testing::Values(std::vector<std::string>{"info", "STYLE"},
                                                              std::vector<std::string>{"save", "STYLE", "OUT.sty"})),
                         [](const auto& row) {
                             return std::string(std::get<0>(row.param).name) + "_" + std::get<1>(row.param)[0];
                         });

class CliUnwritableOutput : public ::testing::TestWithParam<std::vector<std::string>> {};

TEST_P(CliUnwritableOutput, NamesTheOutput) {
    ombrevale::testsupport::TempDir dir;
    // Under a file, where no folder can be made either.
    sw::WriteFile(dir.File("a-file"), sw::Text("x"));
    const std::string out = dir.File("a-file/out");
    std::vector<std::string> args = GetParam();
    for (auto& a : args) a = a == "STYLE" ? kSample : a == "OUT" ? out : a;
    ExpectOneLineAbout(RunCli(args), args[0] == "export" ? out + "/tiles" : out, "", dir, 1);
}

INSTANTIATE_TEST_SUITE_P(Commands, CliUnwritableOutput,
                         ::testing::Values(std::vector<std::string>{"tile", "STYLE", "0", "OUT"},
                                           std::vector<std::string>{"sprite", "STYLE", "0", "OUT", "--pal", "3"},
                                           std::vector<std::string>{"delta", "STYLE", "0", "0", "OUT"},
                                           std::vector<std::string>{"sheet", "STYLE", "OUT"},
                                           std::vector<std::string>{"save", "STYLE", "OUT"},
                                           std::vector<std::string>{"export", "STYLE", "OUT"}));

}  // namespace
