// A save that cannot finish must leave the user's previous file where it was
// (as the file, or at least as its .bak), leave no half-written file behind,
// and say so once. Each case runs the save in a child process, so that a file
// size limit or a dropped privilege stays there.

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "style/clssty.h"
#include "stylewriter/stylewriter.h"
#include "support/hookrecorder.h"
#include "support/tempdir.h"

using namespace ombrevale::testsupport;
using namespace ombrevale::stylewriter;
namespace fs = std::filesystem;

namespace {

enum Outcome { kSaved = 10, kRefusedOnce = 11, kRefusedOtherwise = 12 };

// Runs the save in a child after `fault`; refused counts only with one message
// that names the failure and the progress window closed.
Outcome SaveInChild(const clsSTY& doc, const std::string& path, const std::function<void()>& fault) {
    const pid_t pid = ::fork();
    if (pid == 0) {
        // A save that never ends fails too, and must not outlive the test.
        ::alarm(60);
        fault();
        HookRecorder hooks;
        if (doc.SaveSTY(path)) ::_exit(kSaved);
        const auto& calls = hooks.calls();
        const bool once = hooks.messages().size() == 1 &&
                          hooks.messages()[0].find("was not saved") != std::string::npos &&
                          std::find(calls.begin(), calls.end(), "end") != calls.end();
        ::_exit(once ? kRefusedOnce : kRefusedOtherwise);
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? static_cast<Outcome>(WEXITSTATUS(status)) : kRefusedOtherwise;
}

void LimitFileSize(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);  // the write then fails with EFBIG, as a full disk fails it with ENOSPC
    rlimit lim{};
    ::getrlimit(RLIMIT_FSIZE, &lim);
    lim.rlim_cur = bytes;
    ::setrlimit(RLIMIT_FSIZE, &lim);
}

// Root writes into read-only folders; the user this guards is not root.
void BecomeAnOrdinaryUser() {
    if (::geteuid() != 0) return;
    if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(4);
}

struct FaultCase {
    const char* name;
    std::size_t oldBytes;                          // size of the file already at the path
    std::function<void(const fs::path&)> prepare;  // in the parent, on the folder
    std::function<void()> fault;                   // in the child, before the save
    bool backupMayBeMissing;                       // the backup itself was what failed
};

void PrintTo(const FaultCase& c, std::ostream* os) { *os << c.name; }

std::vector<FaultCase> Cases() {
    return {
        {"DiskFullWhileWriting", 100, [](const fs::path&) {}, [] { LimitFileSize(32 * 1024); }, false},
        {"DiskFullWhileBackingUp", 200 * 1024, [](const fs::path&) {}, [] { LimitFileSize(64 * 1024); }, true},
        {"ReadOnlyFolder", 100,
         [](const fs::path& dir) {
             fs::permissions(dir, fs::perms::owner_read | fs::perms::owner_exec | fs::perms::group_read |
                                      fs::perms::group_exec | fs::perms::others_read | fs::perms::others_exec);
         },
         BecomeAnOrdinaryUser, true},
        {"BackupPathIsAFolder", 100,
         [](const fs::path& dir) {
             fs::create_directory(dir / "style.sty.bak");
             WriteFile((dir / "style.sty.bak" / "inside").string(), Text("x"));
         },
         [] {}, true},
        {"TemporaryFileCannotBeMade", 100,
         [](const fs::path& dir) {
             fs::create_directory(dir / "style.sty.saving");
             WriteFile((dir / "style.sty.saving" / "inside").string(), Text("x"));
         },
         [] {}, false},
    };
}

class SaveFault : public ::testing::TestWithParam<FaultCase> {
protected:
    void SetUp() override { modDeclares::ResetSharedStores(); }
    void TearDown() override {
        fs::permissions(dir.path(), fs::perms::owner_all);
        modDeclares::ResetSharedStores();
    }
    TempDir dir;
};

TEST_P(SaveFault, KeepsThePreviousFileAndSaysSo) {
    const FaultCase& c = GetParam();
    const std::string in = dir.File("in.sty");
    WriteFile(in, ombrevale::stylewriter::MakeFullStyle().file.bytes());
    clsSTY doc;
    ASSERT_TRUE(doc.LoadSTY(in));
    fs::remove(in);

    const std::string path = dir.File("style.sty");
    Bytes old(c.oldBytes);
    for (std::size_t i = 0; i < old.size(); ++i) old[i] = static_cast<std::uint8_t>(i * 13 + 1);
    WriteFile(path, old);
    fs::permissions(path,
                    fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::others_read);
    c.prepare(dir.path());

    EXPECT_EQ(SaveInChild(doc, path, c.fault), kRefusedOnce);
    fs::permissions(dir.path(), fs::perms::owner_all);
    EXPECT_EQ(ReadFile(path), old) << "the previous file must stay as it was";
    const std::string bak = path + ".bak";
    if (fs::is_regular_file(bak)) {
        EXPECT_EQ(ReadFile(bak), old) << "a backup left behind must be whole";
    } else {
        EXPECT_TRUE(c.backupMayBeMissing) << "the backup of the previous file is missing";
    }
    EXPECT_FALSE(fs::is_regular_file(path + ".saving")) << "a half-written file was left behind";
}

// A signal every 50 microseconds, with a handler that does not restart
// interrupted calls: the standard library's file copy gave up under it, and
// the backup, and with it the save, was refused.
void InterruptEveryFiftyMicroseconds() {
    struct sigaction quiet {};
    quiet.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &quiet, nullptr);
    const itimerval every{{0, 50}, {0, 50}};
    ::setitimer(ITIMER_REAL, &every, nullptr);
}

TEST(SaveUnderSignals, EverySaveLandsWithItsBackup) {
    modDeclares::ResetSharedStores();
    TempDir dir;
    const std::string in = dir.File("in.sty");
    WriteFile(in, ombrevale::stylewriter::MakeFullStyle().file.bytes());
    clsSTY doc;
    ASSERT_TRUE(doc.LoadSTY(in));
    const std::string quiet = dir.File("quiet.sty");
    ASSERT_TRUE(doc.SaveSTY(quiet));
    const Bytes saved = ReadFile(quiet);

    const std::string path = dir.File("style.sty");
    Bytes old(3 * 1024 * 1024);
    for (std::size_t i = 0; i < old.size(); ++i) old[i] = static_cast<std::uint8_t>(i * 7 + 3);
    for (int round = 0; round < 8; ++round) {
        WriteFile(path, old);
        ASSERT_EQ(SaveInChild(doc, path, InterruptEveryFiftyMicroseconds), kSaved) << "round " << round;
        EXPECT_EQ(ReadFile(path), saved);
        EXPECT_EQ(ReadFile(path + ".bak"), old);
    }
    modDeclares::ResetSharedStores();
}

INSTANTIATE_TEST_SUITE_P(Faults, SaveFault, ::testing::ValuesIn(Cases()),
                         [](const auto& p) { return std::string(p.param.name); });

}  // namespace
