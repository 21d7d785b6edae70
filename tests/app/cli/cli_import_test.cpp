// import-tile, import-sprite and import-delta from the command line: pictures
// the style's palette holds go in as they are, others only with --nearest.
#include <gtest/gtest.h>

#include <QFile>
#include <QImage>

#ifndef _WIN32
#include <sys/stat.h>
#endif

#include <filesystem>

#include "cliprocess.h"
#include "style/clssty.h"
#include "stylewriter/stylewriter.h"

namespace {

using namespace ombrevale::clitest;

struct ImportCase {
    const char* name;
    std::vector<std::string> args;  // PIC: the picture made for the row
    bool shifted;                   // the picture's colours moved off the palette
    int exitCode;
    const char* says;  // in stderr for a failure, in stdout for a success
};

class CliImport : public ::testing::TestWithParam<ImportCase> {};

TEST_P(CliImport, AnswersAsAUserExpects) {
    const ImportCase& c = GetParam();
    ombrevale::testsupport::TempDir dir;
    const std::string bmp = dir.File("tile.bmp"), pic = dir.File("pic.png");
    ASSERT_EQ(RunCli({"tile", kSample, "7", bmp}).exitCode, 0);
    QImage image(QString::fromStdString(bmp));
    image = image.convertToFormat(QImage::Format_RGB32);
    if (c.shifted) image.setPixel(10, 10, qRgb(1, 2, 3) ^ image.pixel(10, 10));
    ASSERT_TRUE(image.save(QString::fromStdString(pic)));
    std::vector<std::string> args = Place(c.args, kSample, dir);
    for (auto& a : args) a = a == "PIC" ? pic : a;
    const RunResult r = RunCli(args);
    EXPECT_EQ(r.exitCode, c.exitCode) << r.err;
    EXPECT_NE((c.exitCode == 0 ? r.out : r.err).find(c.says), std::string::npos) << r.out << r.err;
    EXPECT_EQ(QFile::exists(QString::fromStdString(dir.File("OUT.sty"))), c.exitCode == 0);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CliImport,
    ::testing::Values(
        ImportCase{"ExactColours", {"import-tile", "STYLE", "7", "PIC", "OUT.sty"}, false, 0, ""},
        ImportCase{"OffPalette", {"import-tile", "STYLE", "7", "PIC", "OUT.sty"}, true, 1, "give --nearest"},
        ImportCase{"Nearest",
                   {"import-tile", "STYLE", "7", "PIC", "OUT.sty", "--nearest"},
                   true,
                   0,
                   "1 of 4096 pixels took the nearest colour"},
        ImportCase{"NewPalette",
                   {"import-tile", "STYLE", "7", "PIC", "OUT.sty", "--new-palette"},
                   true,
                   0,
                   "tile 7 has palette"},
        ImportCase{"WrongSize", {"import-sprite", "STYLE", "3", "PIC", "OUT.sty"}, false, 1, "is 64 x 64 pixels, but"},
        ImportCase{
            "SpriteWithoutDeltas", {"import-delta", "STYLE", "47", "0", "PIC", "OUT.sty"}, false, 1, "has no deltas"},
        ImportCase{"NotAPicture",
                   {"import-tile", "STYLE", "7", "STYLE", "OUT.sty"},
                   false,
                   1,
                   "is not a picture that can be read"},
        ImportCase{"NoNearestForPalette",
                   {"import-palette", "STYLE", "3", "PIC", "OUT.sty", "--nearest"},
                   false,
                   2,
                   "--nearest"}),
    [](const auto& row) { return std::string(row.param.name); });

#ifndef _WIN32
// A pipe is refused before it is opened: the open would wait for a writer that never comes.
TEST(CliImportFrom, APipeIsRefusedUnopened) {
    ombrevale::testsupport::TempDir dir;
    const std::string pipe = dir.File("pic.png"), out = dir.File("OUT.sty");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    QProcess cli;
    cli.start(OMBREVALE_CLI, {"import-tile", QString::fromStdString(kSample), "7", QString::fromStdString(pipe),
                              QString::fromStdString(out)});
    const bool ended = cli.waitForFinished(20000);
    if (!ended) cli.kill();
    ASSERT_TRUE(ended) << "the import still waits on the pipe";
    EXPECT_EQ(cli.exitCode(), 1);
    const std::string err = cli.readAllStandardError().toStdString();
    EXPECT_NE(err.find("is a pipe"), std::string::npos) << err;
    EXPECT_FALSE(QFile::exists(QString::fromStdString(out)));
}
#endif

}  // namespace

namespace {

namespace fs = std::filesystem;

// The whole sample out and back unchanged is what save writes, byte for byte;
// a painted tile and a changed palette change those and nothing else.
TEST(CliImportFolder, AnExportComesBackAsItWentAndOnlyWhatChangedGoesIn) {
    ombrevale::testsupport::TempDir dir;
    const std::string out = dir.File("export"), saved = dir.File("saved.sty"), back = dir.File("back.sty");
    ASSERT_EQ(RunCli({"export", kSample, out}).exitCode, 0);
    ASSERT_EQ(RunCli({"save", kSample, saved}).exitCode, 0);
    const RunResult same = RunCli({"import", kSample, out, back});
    ASSERT_EQ(same.exitCode, 0) << same.err;
    EXPECT_TRUE(ombrevale::stylewriter::ReadFile(back) == ombrevale::stylewriter::ReadFile(saved));
    // Painted in true colour: red over tile 5; palette 3 with one colour changed.
    QImage tile(QString::fromStdString(out + "/tiles/tile-0005.bmp"));
    tile = tile.convertToFormat(QImage::Format_RGB32);
    for (int y = 8; y < 24; ++y)
        for (int x = 8; x < 24; ++x) tile.setPixel(x, y, qRgb(230, 10, 10));
    ASSERT_TRUE(tile.save(QString::fromStdString(out + "/tiles/tile-0005.png")));
    fs::remove(out + "/tiles/tile-0005.bmp");
    QFile pal(QString::fromStdString(out + "/palettes/palette-003.pal"));
    ASSERT_TRUE(pal.open(QIODevice::ReadWrite));
    QList<QByteArray> lines = pal.readAll().split('\n');
    lines[3 + 10] = "1 2 3\r";  // colour 10
    pal.resize(0);
    pal.write(lines.join('\n'));
    pal.close();
    EXPECT_EQ(RunCli({"import", kSample, out, back}).exitCode, 1) << "off the palette without --nearest";
    const RunResult changed = RunCli({"import", kSample, out, back, "--nearest"});
    ASSERT_EQ(changed.exitCode, 0) << changed.err;
    EXPECT_NE(changed.out.find("changed tiles/tile-0005.png: 256 pixels took the nearest colour"), std::string::npos)
        << changed.out;
    EXPECT_NE(changed.out.find("2 changed, 3682 unchanged, 0 refused"), std::string::npos) << changed.out;
    clsSTY before, after;
    ASSERT_TRUE(before.LoadSTY(saved));
    const auto was = modDeclares::TakeSharedStores();
    ASSERT_TRUE(after.LoadSTY(back));
    for (std::size_t t = 0; t < after.STYTileStore.size(); ++t)
        EXPECT_EQ(after.STYTileStore[t] == before.STYTileStore[t], t != 5) << t;
    for (std::size_t p = 0; p < modDeclares::STYPalData.size(); ++p)
        EXPECT_EQ(modDeclares::STYPalData[p] == was.palData[p], p != 3) << p;
    EXPECT_EQ(after.STYSpriteData, before.STYSpriteData);
    EXPECT_EQ(modDeclares::STYDeltaStore, was.deltaStore);
    // With a palette of its own the red stays red, and only tile 5's entry names another palette.
    const RunResult own = RunCli({"import", kSample, out, back, "--new-palette"});
    ASSERT_EQ(own.exitCode, 0) << own.err;
    EXPECT_NE(own.out.find("changed tiles/tile-0005.png: a palette of its own"), std::string::npos) << own.out;
    clsSTY owned;
    ASSERT_TRUE(owned.LoadSTY(back));
    for (std::size_t t = 0; t < 992; ++t) EXPECT_EQ(modDeclares::STYPalIndex[t] == was.palIndex[t], t != 5) << t;
    const std::int32_t red = owned.GetCol(modDeclares::STYPalIndex[5], owned.STYTileStore[5][10 * 64 + 10]);
    EXPECT_EQ(red, 230 + 10 * 256 + 10 * 65536);
}

struct FolderCase {
    const char* name;
    const char* file;  // under the folder; empty: an empty folder
    void (*make)(const std::string& path);
    const char* says;
};

void Picture(const std::string& path, int w, int h) {
    QImage image(w, h, QImage::Format_RGB32);
    image.fill(qRgb(1, 2, 3));
    image.save(QString::fromStdString(path));
}

class CliImportFolderRefuses : public ::testing::TestWithParam<FolderCase> {};

TEST_P(CliImportFolderRefuses, NamesTheFileAndWritesNothing) {
    ombrevale::testsupport::TempDir dir;
    const std::string folder = dir.File("export");
    fs::create_directories(folder + "/tiles");
    fs::create_directories(folder + "/sprites");
    if (*GetParam().file) GetParam().make(folder + "/" + GetParam().file);
    const RunResult r = RunCli({"import", kSample, folder, dir.File("out.sty"), "--nearest"});
    EXPECT_EQ(r.exitCode, 1);
    const std::string named = *GetParam().file ? std::string(GetParam().file) : folder;
    EXPECT_NE(r.err.find("ombrevale-cli: " + named + ": " + GetParam().says), std::string::npos) << r.err;
    EXPECT_FALSE(fs::exists(dir.File("out.sty")));
}

INSTANTIATE_TEST_SUITE_P(
    Files, CliImportFolderRefuses,
    ::testing::Values(FolderCase{"WrongSize", "tiles/tile-0003.png", [](const std::string& p) { Picture(p, 32, 64); },
                                 "is 32 x 64 pixels, but tile 3 is 64 x 64"},
                      FolderCase{"NoSuchSprite", "sprites/sprite-9999.bmp",
                                 [](const std::string& p) { Picture(p, 8, 8); }, "the style has no sprite 9999"},
                      FolderCase{"DamagedPng", "tiles/tile-0001.png",
                                 [](const std::string& p) {
                                     QFile f(QString::fromStdString(p));
                                     f.open(QIODevice::WriteOnly);
                                     f.write("\x89PNG\r\n\x1a\n and then nothing");
                                 },
                                 "is not a picture that can be read"},
                      FolderCase{"Link", "tiles/tile-0002.png",
                                 [](const std::string& p) {
                                     Picture(p + ".real", 64, 64);
                                     fs::create_symlink(p + ".real", p);
                                 },
                                 "is a link"},
                      FolderCase{"Pipe", "tiles/tile-0004.png", [](const std::string& p) { ::mkfifo(p.c_str(), 0600); },
                                 "is not a regular file"},
                      FolderCase{"NotAnExportName", "tiles/grass.png", [](const std::string& p) { Picture(p, 64, 64); },
                                 "is not a name the export gives its files"},
                      FolderCase{"EmptyFolder", "", nullptr, "holds no file of an export"}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
