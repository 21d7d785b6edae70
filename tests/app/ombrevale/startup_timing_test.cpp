// OMBREVALE_STARTUP_TIMING=1, which scripts/bench times start-up by: the
// window opens on the sample, draws its sheet through temp.bmp in the
// current folder, reports the wall clock of the sheet's first paint and ends.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "../cli/runprogram.h"
#include "support/tempdir.h"

namespace {

long long WallNs() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

TEST(StartupTiming, ReportsTheSheetsFirstPaintOnTheWallClockAndEnds) {
    testsupport::TempDir dir;
    testsupport::ScopedCurrentDir cwd(dir.path());
    const long long before = WallNs();
    const auto r = clitest::Run(OMBREVALE_WINDOW, {clitest::kSample});
    const long long after = WallNs();
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
    EXPECT_TRUE(std::filesystem::exists(dir.path() / "temp.bmp"));
}

}  // namespace
