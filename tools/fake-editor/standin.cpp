// Starting and stopping the editor stand-in for the Wine tests.
#include "standin.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

extern char** environ;

namespace ombrevale::standin {

namespace {

std::string Env(const char* name) {
    const char* v = std::getenv(name);
    return v ? v : "";
}

}  // namespace

std::string MissingPieces() {
    std::string missing;
    std::error_code ec;
    if (Env("WINEPREFIX").empty() || !std::filesystem::exists(Env("WINEPREFIX") + "/user.reg", ec))
        missing += "no Wine prefix (WINEPREFIX=" + Env("WINEPREFIX") + "); ";
    for (const char* exe : {"OMBREVALE_LINK_EXE", "OMBREVALE_STAND_IN_EXE"})
        if (Env(exe).empty() || !std::filesystem::exists(Env(exe), ec))
            missing += std::string(exe) + "=" + Env(exe) + " was not built (is mingw-w64 installed?); ";
    if (std::system("command -v wine >/dev/null 2>&1") != 0) missing += "wine is not installed; ";
    if (Env("DISPLAY").empty()) missing += "no DISPLAY (run under xvfb-run); ";
    return missing;
}

StandIn::StandIn(const Window& w, const std::string& logPath) : log_(logPath) {
    std::filesystem::remove(log_);
    std::string exe = Env("OMBREVALE_STAND_IN_EXE");
    std::string id = std::to_string(w.id);
    std::vector<std::string> args = {"wine", exe, log_, "--title", w.title, "--id", id, "--class", w.cls};
    std::vector<char*> argv;
    for (auto& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    if (posix_spawnp(&pid_, "wine", nullptr, nullptr, argv.data(), environ) != 0) {
        pid_ = -1;
        return;
    }
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < deadline) {
        for (const auto& line : Lines())
            if (std::sscanf(line.c_str(), "ready %lu %lu", &frame_, &list_) == 2) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

StandIn::~StandIn() { Stop(); }

void StandIn::Stop() {
    if (pid_ < 0) return;
    kill(pid_, SIGKILL);
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
}

std::vector<std::string> StandIn::Lines() const {
    std::vector<std::string> lines;
    std::ifstream in(log_);
    for (std::string l; std::getline(in, l);) lines.push_back(l);
    return lines;
}

bool StandIn::WaitFor(const std::string& prefix, std::size_t from, int timeoutMs) const {
    auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    do {
        auto lines = Lines();
        for (std::size_t i = from; i < lines.size(); ++i)
            if (lines[i].rfind(prefix, 0) == 0) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    } while (std::chrono::steady_clock::now() < deadline);
    return false;
}

}  // namespace ombrevale::standin
