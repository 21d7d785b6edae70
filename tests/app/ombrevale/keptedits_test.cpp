// Edits survive the end of the window however it comes: ombrevale-cli
// recover gives back what a save would have written.
#include <gtest/gtest.h>
#include <signal.h>

#include <QImage>
#include <QProcess>
#include <chrono>
#include <filesystem>
#include <thread>

#include "stylewriter/stylewriter.h"
#include "support/tempdir.h"

namespace {

QString Cli(const QStringList& args, int* code = nullptr) {
    QProcess p;
    p.start(OMBREVALE_CLI, args);
    p.waitForFinished(20000);
    if (code) *code = p.exitCode();
    return QString::fromUtf8(p.readAllStandardOutput());
}

class KeptAfterTheEnd : public ::testing::TestWithParam<const char*> {};

TEST_P(KeptAfterTheEnd, RecoverGivesTheEditedStyle) {
    ombrevale::testsupport::TempDir dir;
    qputenv("XDG_STATE_HOME", QByteArray::fromStdString(dir.File("state")));
    const std::string style = dir.File("city.sty");
    std::filesystem::copy_file(OMBREVALE_SAMPLE, style);
    QImage red(64, 64, QImage::Format_RGB32);
    red.fill(qRgb(220, 20, 20));
    ASSERT_TRUE(red.save(QString::fromStdString(dir.File("red.png"))));
    QProcess window;
    window.start(EDIT_THEN_END, {QString::fromStdString(style), QString::fromStdString(dir.File("red.png")), GetParam(),
                                 QString::fromStdString(dir.File("expected.sty"))});
    if (std::string(GetParam()) == "kill") {
        ASSERT_TRUE(window.waitForReadyRead(30000));
        // Kept within a second of the edit.
        for (int i = 0; i < 100 && !Cli({"recover"}).contains("1 edit\t"); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        int code = -1;
        Cli({"recover", "--discard", QString::fromStdString(style)}, &code);
        EXPECT_EQ(code, 1) << "a running window's edits are its own";
        ::kill(static_cast<pid_t>(window.processId()), SIGKILL);
    }
    ASSERT_TRUE(window.waitForFinished(30000));
    const QString listed = Cli({"recover"});
    EXPECT_EQ(listed.section('\t', 0, 0).toStdString(), style);
    EXPECT_EQ(listed.section('\t', 2, 2), "1 edit");
    int code = -1;
    Cli({"recover", QString::fromStdString(style), QString::fromStdString(dir.File("out.sty"))}, &code);
    EXPECT_EQ(code, 0);
    const auto expected = ombrevale::stylewriter::ReadFile(dir.File("expected.sty"));
    EXPECT_NE(expected, ombrevale::stylewriter::ReadFile(style));
    EXPECT_EQ(ombrevale::stylewriter::ReadFile(dir.File("out.sty")), expected);
    Cli({"recover", "--discard", QString::fromStdString(style)}, &code);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(Cli({"recover"}), QString());
    Cli({"recover", QString::fromStdString(style), QString::fromStdString(dir.File("again.sty"))}, &code);
    EXPECT_EQ(code, 1) << "nothing kept is a failure";
}

INSTANTIATE_TEST_SUITE_P(Ends, KeptAfterTheEnd, ::testing::Values("kill", "esc"));

}  // namespace
