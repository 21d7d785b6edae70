// The window program as a process, in the start-up timing mode scripts/bench
// times start-up by: it opens on a style, draws its sheet, reports the wall
// clock of the sheet's first paint and ends. Its working file lives in a
// private folder of its own, whatever the folder it starts in, and the folders
// of runs that ended without removing theirs go at the next start.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "stylewriter/stylewriter.h"
#include "support/tempdir.h"

namespace fs = std::filesystem;

namespace {

long long WallNs() { return std::chrono::system_clock::now().time_since_epoch() / std::chrono::nanoseconds(1); }

enum class Folder { Plain, LinkNamedTempBmp, TempBmpCannotBeWritten, NoRoomInRuntimeFolder };

// A folder whose path is so long that no folder's name fits under it: nothing can be made there.
fs::path NoRoomUnder(const fs::path& base) {
    constexpr std::size_t kLength = 4085;  // PATH_MAX is 4096
    fs::path deep = base;
    while (deep.string().size() < kLength) {
        const std::size_t left = kLength - deep.string().size();
        deep /= std::string(left > 202 ? 200 : left - 1, 'd');
    }
    fs::create_directories(deep);
    return deep;
}

// The start's environment: its runtime folder, private as a session's is (else Qt makes
// one of its own in the temporary folder), its own temporary folder and state folder.
QProcessEnvironment Places(const fs::path& runtime, const fs::path& tmp, const fs::path& state) {
    fs::permissions(runtime, fs::perms::owner_all, fs::perm_options::replace);
    auto env = QProcessEnvironment::systemEnvironment();
    env.insert("XDG_STATE_HOME", QString::fromStdString(state.string()));
    env.insert("XDG_RUNTIME_DIR", QString::fromStdString(runtime.string()));
    env.insert("TMPDIR", QString::fromStdString(tmp.string()));
    return env;
}

class StartupTiming : public ::testing::TestWithParam<Folder> {};

TEST_P(StartupTiming, DrawsTheSheetAndLeavesTheStartFolderAlone) {
    ombrevale::testsupport::TempDir start, runtimeBase, tmp, elsewhere, state;
    // With no room in the runtime folder the working folder goes to the temporary one.
    const fs::path runtime =
        GetParam() == Folder::NoRoomInRuntimeFolder ? NoRoomUnder(runtimeBase.path()) : runtimeBase.path();
    const std::string target = elsewhere.File("precious.txt");
    ombrevale::stylewriter::WriteFile(target, ombrevale::stylewriter::Text("keep me"));
    if (GetParam() == Folder::LinkNamedTempBmp) fs::create_symlink(target, start.path() / "temp.bmp");
    // A folder in its place: not even root can write the file there.
    if (GetParam() == Folder::TempBmpCannotBeWritten) fs::create_directory(start.path() / "temp.bmp");
    fs::copy_file(OMBREVALE_SAMPLE, start.path() / "style.sty");
    QProcess app;
    app.setWorkingDirectory(QString::fromStdString(start.path().string()));
    app.setProcessEnvironment(Places(runtime, tmp.path(), state.path()));
    const long long before = WallNs();
    app.start(OMBREVALE_WINDOW, {"style.sty"});  // named from the start folder
    ASSERT_TRUE(app.waitForFinished(50000));
    const long long after = WallNs();
    const QString err = QString::fromLocal8Bit(app.readAllStandardError());
    ASSERT_TRUE(app.exitStatus() == QProcess::NormalExit && app.exitCode() == 0) << err.toStdString();
    EXPECT_EQ(err.count("start to sheet shown: "), 1) << err.toStdString();
    const long long painted = err.section("first paint at ", 1).section('\n', 0, 0).toLongLong();
    EXPECT_GE(painted, before) << err.toStdString();
    EXPECT_LE(painted, after) << err.toStdString();
    EXPECT_TRUE(err.contains("tiles drawn 992 of 992")) << err.toStdString();
    // Nothing written where the program started or through the link; the private folder is gone.
    EXPECT_EQ(ombrevale::stylewriter::ReadFile(target), ombrevale::stylewriter::Text("keep me"));
    EXPECT_EQ(fs::exists(start.path() / "temp.bmp"),
              GetParam() == Folder::LinkNamedTempBmp || GetParam() == Folder::TempBmpCannotBeWritten);
    EXPECT_TRUE(fs::is_empty(runtime));
    EXPECT_TRUE(fs::is_empty(tmp.path()));
}

INSTANTIATE_TEST_SUITE_P(Folders, StartupTiming,
                         ::testing::Values(Folder::Plain, Folder::LinkNamedTempBmp, Folder::TempBmpCannotBeWritten,
                                           Folder::NoRoomInRuntimeFolder));

// Ended by a signal (a logout, a kill), the program ends within two seconds
// whatever it shows, with the status the signal gives, and still takes its folder with it.
class Signals : public ::testing::TestWithParam<bool> {};

TEST_P(Signals, TerminatedTheProgramEndsAndRemovesItsFolder) {
    const bool damaged = GetParam();  // a message box on screen at start
    ombrevale::testsupport::TempDir runtime, files;
    const std::string style = damaged ? files.File("no.sty") : std::string(OMBREVALE_SAMPLE);
    if (damaged) ombrevale::stylewriter::WriteFile(style, ombrevale::stylewriter::Text("XXXX not a style"));
    QProcess app;
    qputenv("XDG_RUNTIME_DIR", runtime.path().c_str());
    auto env = QProcessEnvironment::systemEnvironment();
    env.remove("OMBREVALE_STARTUP_TIMING");  // else it would end by itself
    env.insert("XDG_STATE_HOME", QString::fromStdString(files.File("state")));
    app.setProcessEnvironment(env);
    app.start(OMBREVALE_WINDOW, {QString::fromStdString(style)});
    const auto started = [&runtime, damaged] {
        for (const auto& e : fs::recursive_directory_iterator(runtime.path()))
            if (damaged || e.path().filename() == "temp.bmp") return true;
        return false;
    };
    for (int i = 0; i < 1000 && !started(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ASSERT_TRUE(started());
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    app.terminate();
    ASSERT_TRUE(app.waitForFinished(2000));
    EXPECT_EQ(app.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(app.exitCode(), 128 + SIGTERM);
    EXPECT_TRUE(fs::is_empty(runtime.path()));
}

INSTANTIATE_TEST_SUITE_P(AtStart, Signals, ::testing::Values(false, true));

// Folders left by a process that has ended go at the next start, in both places; a link is not
// followed, and the folder of a process that runs stays, as does a link of such a name.
TEST(Start, RemovesTheFoldersOfEndedRuns) {
    ombrevale::testsupport::TempDir runtime, tmp, elsewhere, state;
    QProcess ended;
    ended.start("true");
    ASSERT_TRUE(ended.waitForStarted());
    const std::string gone = std::to_string(ended.processId());
    ASSERT_TRUE(ended.waitForFinished());
    const std::string kept = elsewhere.File("keep.txt");
    ombrevale::stylewriter::WriteFile(kept, ombrevale::stylewriter::Text("keep me"));
    std::vector<fs::path> stale;
    for (const fs::path& base : {runtime.path(), tmp.path()}) {
        stale.push_back(base / ("ombrevale-" + gone + "-AbC123"));
        fs::create_directories(stale.back() / "sub");
        fs::create_directory_symlink(elsewhere.path(), stale.back() / "sub" / "there");
    }
    const fs::path running =
        runtime.path() / ("ombrevale-" + std::to_string(QCoreApplication::applicationPid()) + "-AbC123");
    fs::create_directory(running);
    const fs::path link = runtime.path() / ("ombrevale-" + gone + "-LiNk00");
    fs::create_directory_symlink(elsewhere.path(), link);
    QProcess app;
    app.setProcessEnvironment(Places(runtime.path(), tmp.path(), state.path()));
    app.start(OMBREVALE_WINDOW, {OMBREVALE_SAMPLE});
    ASSERT_TRUE(app.waitForFinished(50000));
    for (const fs::path& folder : stale) EXPECT_FALSE(fs::exists(fs::symlink_status(folder))) << folder;
    EXPECT_TRUE(fs::is_directory(fs::symlink_status(running)));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(ombrevale::stylewriter::ReadFile(kept), ombrevale::stylewriter::Text("keep me"));
}

}  // namespace
