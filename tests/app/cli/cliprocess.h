#pragma once
// Runs a built program as its own process and keeps what it said.

#include <QProcess>
#include <string>
#include <vector>

#include "support/tempdir.h"

namespace ombrevale::clitest {

struct RunResult {
    int exitCode = -1;
    std::string out, err;
    std::vector<std::string> ErrLines() const {
        std::vector<std::string> lines;
        for (const QString& l : QString::fromStdString(err).split('\n', Qt::SkipEmptyParts))
            lines.push_back(l.toStdString());
        return lines;
    }
};

inline RunResult Run(const char* program, const std::vector<std::string>& args) {
    QStringList list;
    for (const auto& a : args) list << QString::fromStdString(a);
    QProcess p;
    p.start(program, list);
    p.waitForFinished(-1);
    return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, p.readAllStandardOutput().toStdString(),
            p.readAllStandardError().toStdString()};
}

inline RunResult RunCli(const std::vector<std::string>& args) { return Run(OMBREVALE_CLI, args); }

inline const std::string kSample = OMBREVALE_SAMPLE;

// Words of a table row with STYLE, PAL and OUT... put in place.
inline std::vector<std::string> Place(std::vector<std::string> args, const std::string& style,
                                      const testsupport::TempDir& dir, const std::string& pal = "") {
    for (auto& a : args) a = a == "STYLE" ? style : a == "PAL" ? pal : a.rfind("OUT", 0) == 0 ? dir.File(a) : a;
    return args;
}

}  // namespace ombrevale::clitest
