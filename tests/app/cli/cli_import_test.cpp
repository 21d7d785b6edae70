// import-tile, import-sprite and import-delta from the command line: pictures
// the style's palette holds go in as they are, others only with --nearest.
#include <gtest/gtest.h>

#include <QFile>
#include <QImage>

#ifndef _WIN32
#include <sys/stat.h>
#endif

#include "cliprocess.h"

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
