#pragma once
// Runs a built program as its own process and keeps what it said.

#include <string>
#include <vector>

namespace clitest {

struct RunResult {
    int exitCode = -1;
    std::string out;
    std::string err;
    // stderr split at line ends, without them.
    std::vector<std::string> ErrLines() const;
};

RunResult Run(const std::string& program, const std::vector<std::string>& args);
RunResult RunCli(const std::vector<std::string>& args);

inline const std::string kSample = OMBREVALE_SAMPLE;

}  // namespace clitest
