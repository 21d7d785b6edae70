#include "runprogram.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "support/tempdir.h"

namespace clitest {
namespace {

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

}  // namespace

std::vector<std::string> RunResult::ErrLines() const {
    std::vector<std::string> lines;
    std::istringstream in(err);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

RunResult Run(const std::string& program, const std::vector<std::string>& args) {
    testsupport::TempDir dir;
    const std::string outPath = dir.File("stdout"), errPath = dir.File("stderr");
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(program.c_str()));
    for (const auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    std::fflush(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        const int o = open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const int e = open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(o, 1);
        dup2(e, 2);
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    RunResult r;
    int status = 0;
    waitpid(pid, &status, 0);
    r.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    r.out = Slurp(outPath);
    r.err = Slurp(errPath);
    return r;
}

RunResult RunCli(const std::vector<std::string>& args) { return Run(OMBREVALE_CLI, args); }

}  // namespace clitest
