// Starting ombrevale-link.exe under Wine and talking to it over two pipes.
#include "editorlink/linkhelper.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include "settings/wineprefix.h"

extern char** environ;

namespace linkhelper {

namespace {

using Clock = std::chrono::steady_clock;

// Wine's first start in a prefix can take seconds; a request never should.
constexpr int kStartMs = 20000;
constexpr int kAnswerMs = 5000;
constexpr auto kRetryAfter = std::chrono::seconds(5);

class Helper {
public:
    ~Helper() { Stop(true); }

    bool Request(const std::string& request, std::vector<std::string>& answer) {
        answer.clear();
        if (pid_ < 0 && !Start()) return false;
        if (!WriteLine(request)) return Fail();
        std::string line;
        do {
            if (!ReadLine(line, kAnswerMs)) return Fail();
            answer.push_back(line);
        } while (request == "windows" && line != "end");
        return true;
    }

    void Reset() {
        Stop(true);
        lastFailedStart_.reset();
    }

    void Stop(bool polite) {
        if (pid_ < 0) return;
        if (polite) WriteLine("quit");
        close(toChild_);
        close(fromChild_);
        int status = 0;
        for (int i = 0; polite && i < 50 && waitpid(pid_, &status, WNOHANG) == 0; ++i) usleep(10000);
        if (waitpid(pid_, &status, WNOHANG) == 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, &status, 0);
        }
        pid_ = -1;
        buffer_.clear();
    }

private:
    bool Fail() {
        Stop(false);
        return false;
    }

    bool Start() {
        if (lastFailedStart_ && Clock::now() - *lastFailedStart_ < kRetryAfter) return false;
        if (!Launch()) {
            lastFailedStart_ = Clock::now();
            return false;
        }
        std::string banner;
        if (!ReadLine(banner, kStartMs) || banner.rfind("ombrevale-link", 0) != 0) {
            Stop(false);
            lastFailedStart_ = Clock::now();
            return false;
        }
        lastFailedStart_.reset();
        return true;
    }

    bool Launch() {
        // Without a prefix there is no editor to reach, and Wine must not make one.
        if (winepath::PrefixDir().empty()) return false;
        std::string exe = HelperPath();
        std::error_code ec;
        if (!std::filesystem::exists(exe, ec)) return false;
        const char* wineEnv = std::getenv("OMBREVALE_WINE");
        std::string wine = wineEnv && *wineEnv ? wineEnv : "wine";
        int in[2], out[2];
        if (pipe2(in, O_CLOEXEC) != 0) return false;
        if (pipe2(out, O_CLOEXEC) != 0) {
            close(in[0]);
            close(in[1]);
            return false;
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in[0], 0);
        posix_spawn_file_actions_adddup2(&actions, out[1], 1);
        posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
        std::vector<std::string> env;
        for (char** e = environ; *e; ++e) env.emplace_back(*e);
        if (!std::getenv("WINEDEBUG")) env.emplace_back("WINEDEBUG=-all");
        std::vector<char*> envp, argv;
        for (auto& e : env) envp.push_back(e.data());
        envp.push_back(nullptr);
        argv = {wine.data(), exe.data(), nullptr};
        pid_t pid = -1;
        int rc = posix_spawnp(&pid, wine.c_str(), &actions, nullptr, argv.data(), envp.data());
        posix_spawn_file_actions_destroy(&actions);
        close(in[0]);
        close(out[1]);
        if (rc != 0) {
            close(in[1]);
            close(out[0]);
            return false;
        }
        pid_ = pid;
        toChild_ = in[1];
        fromChild_ = out[0];
        return true;
    }

    // A helper that died must not kill this process with SIGPIPE.
    bool WriteLine(const std::string& request) {
        std::string line = request + "\n";
        sigset_t block, old;
        sigemptyset(&block);
        sigaddset(&block, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &block, &old);
        bool ok = true;
        for (std::size_t done = 0; ok && done < line.size();) {
            ssize_t n = write(toChild_, line.data() + done, line.size() - done);
            if (n < 0 && errno == EINTR) continue;
            ok = n > 0;
            if (ok) done += static_cast<std::size_t>(n);
        }
        if (!ok && errno == EPIPE) {
            timespec zero{0, 0};
            sigtimedwait(&block, nullptr, &zero);
        }
        pthread_sigmask(SIG_SETMASK, &old, nullptr);
        return ok;
    }

    bool ReadLine(std::string& line, int timeoutMs) {
        auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
        for (;;) {
            std::size_t nl = buffer_.find('\n');
            if (nl != std::string::npos) {
                line = buffer_.substr(0, nl);
                if (!line.empty() && line.back() == '\r') line.pop_back();
                buffer_.erase(0, nl + 1);
                return true;
            }
            auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
            if (left <= 0) return false;
            pollfd p{fromChild_, POLLIN, 0};
            int r = poll(&p, 1, static_cast<int>(left));
            if (r < 0 && errno == EINTR) continue;
            if (r <= 0) return false;
            char buf[4096];
            ssize_t n = read(fromChild_, buf, sizeof buf);
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) return false;
            buffer_.append(buf, static_cast<std::size_t>(n));
        }
    }

    pid_t pid_ = -1;
    int toChild_ = -1;
    int fromChild_ = -1;
    std::string buffer_;
    std::optional<Clock::time_point> lastFailedStart_;
};

Helper& TheHelper() {
    static Helper helper;
    return helper;
}

}  // namespace

bool Request(const std::string& request, std::vector<std::string>& answer) {
    return TheHelper().Request(request, answer);
}

void Shutdown() { TheHelper().Reset(); }

std::string HelperPath() {
    if (const char* p = std::getenv("OMBREVALE_LINK_EXE"); p && *p) return p;
    std::error_code ec;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec) return "ombrevale-link.exe";
    const auto beside = self.parent_path() / "ombrevale-link.exe";
    if (std::filesystem::exists(beside, ec)) return beside.string();
    return (self.parent_path() / OMBREVALE_HELPER_FROM_BIN / "ombrevale-link.exe").lexically_normal().string();
}

}  // namespace linkhelper
