// The window program as a process, in the start-up timing mode that
// scripts/bench times start-up by: it opens on a style, draws its sheet,
// reports the wall clock of the sheet's first paint and ends. Its working file
// lives in a private folder of its own, whatever the folder it starts in.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "../cli/runprogram.h"
#include "stylewriter/stylewriter.h"
#include "support/tempdir.h"

namespace fs = std::filesystem;

namespace {

long long WallNs() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

enum class Folder { Plain, LinkNamedTempBmp, TempBmpCannotBeWritten };

class StartupTiming : public ::testing::TestWithParam<Folder> {};

TEST_P(StartupTiming, DrawsTheSheetAndLeavesTheStartFolderAlone) {
    testsupport::TempDir start, runtime, elsewhere;
    const std::string target = elsewhere.File("precious.txt");
    ombrevale::stylewriter::WriteFile(target, ombrevale::stylewriter::Text("keep me"));
    if (GetParam() == Folder::LinkNamedTempBmp) fs::create_symlink(target, start.path() / "temp.bmp");
    // A folder in its place: not even root can write the file there.
    if (GetParam() == Folder::TempBmpCannotBeWritten) fs::create_directory(start.path() / "temp.bmp");
    fs::copy_file(clitest::kSample, start.path() / "style.sty");
    testsupport::ScopedCurrentDir cwd(start.path());
    setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
    const long long before = WallNs();
    const auto r = clitest::Run(OMBREVALE_WINDOW, {"style.sty"});  // named from the start folder
    const long long after = WallNs();
    unsetenv("XDG_RUNTIME_DIR");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    long long painted = -1;
    int timings = 0;
    for (const auto& line : r.ErrLines()) {
        if (line.rfind("first paint at ", 0) == 0) painted = std::stoll(line.substr(15));
        if (line.rfind("start to sheet shown: ", 0) == 0) ++timings;
    }
    EXPECT_EQ(timings, 1) << r.err;
    EXPECT_GE(painted, before) << r.err;
    EXPECT_LE(painted, after) << r.err;
    EXPECT_NE(r.err.find("tiles drawn 992 of 992"), std::string::npos) << r.err;
    // Nothing written where the program started or through the link; the private folder is gone.
    EXPECT_EQ(ombrevale::stylewriter::ReadFile(target), ombrevale::stylewriter::Text("keep me"));
    EXPECT_EQ(fs::exists(start.path() / "temp.bmp"), GetParam() != Folder::Plain);
    EXPECT_TRUE(fs::is_empty(runtime.path()));
}

INSTANTIATE_TEST_SUITE_P(Folders, StartupTiming,
                         ::testing::Values(Folder::Plain, Folder::LinkNamedTempBmp, Folder::TempBmpCannotBeWritten));

}  // namespace
