// Starting ombrevale-link.exe under Wine on a thread of its own and talking to
// it over two pipes from that thread only.
#include "settings/linkhelper.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "settings/wineprefix.h"

extern char** environ;

namespace ombrevale::linkhelper {

namespace {

using Clock = std::chrono::steady_clock;

// Wine's first start in a prefix can take seconds; a request never should.
constexpr int kStartMs = 20000;
constexpr int kAnswerMs = 5000;
constexpr auto kRetryAfter = std::chrono::seconds(5);
// How often a wait looks whether the helper is being shut down.
constexpr int kSliceMs = 20;

// The helper process and its two pipe ends.
class Pipe {
public:
    // What a start needs from the environment, taken on the thread that asks
    // for the start: the main thread may change the environment meanwhile.
    struct Plan {
        std::string prefix, exe, wine;
        std::vector<std::string> env;
    };

    static Plan MakePlan() {
        Plan plan;
        plan.prefix = ombrevale::winepath::PrefixDir();
        plan.exe = HelperPath();
        const char* wineEnv = std::getenv("OMBREVALE_WINE");
        plan.wine = wineEnv && *wineEnv ? wineEnv : "wine";
        for (char** e = environ; *e; ++e) plan.env.emplace_back(*e);
        if (!std::getenv("WINEDEBUG")) plan.env.emplace_back("WINEDEBUG=-all");
        return plan;
    }

    bool Launch(Plan plan) {
        // Without a prefix there is no editor to reach, and Wine must not make one.
        prefix_ = plan.prefix;
        if (prefix_.empty()) return false;
        std::string& exe = plan.exe;
        std::string& wine = plan.wine;
        std::error_code ec;
        if (!std::filesystem::exists(exe, ec)) return false;
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
        std::vector<char*> envp, argv;
        for (auto& e : plan.env) envp.push_back(e.data());
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

    bool ReadLine(std::string& line, int timeoutMs, const std::atomic<bool>& stop) {
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
            if (left <= 0 || stop) return false;
            pollfd p{fromChild_, POLLIN, 0};
            int r = poll(&p, 1, static_cast<int>(std::min<long long>(left, kSliceMs)));
            if (r < 0 && errno == EINTR) continue;
            if (r < 0) return false;
            if (r == 0) continue;
            char buf[4096];
            ssize_t n = read(fromChild_, buf, sizeof buf);
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) return false;
            buffer_.append(buf, static_cast<std::size_t>(n));
        }
    }

    const std::string& prefix() const { return prefix_; }

private:
    std::string prefix_;
    pid_t pid_ = -1;
    int toChild_ = -1;
    int fromChild_ = -1;
    std::string buffer_;
};

// On the helper's own thread, the only one that reads and writes its pipe.
thread_local bool tOnWorker = false;

class Helper {
public:
    ~Helper() { Shutdown(); }

    void Start() {
        std::lock_guard lock(m_);
        BeginStart();
    }

    void Hold(bool on) {
        std::lock_guard lock(m_);
        held_ = on;
        cv_.notify_all();
    }

    bool Ready() {
        std::lock_guard lock(m_);
        return IsReady();
    }

    std::string ReadyPrefix() {
        std::lock_guard lock(m_);
        return IsReady() ? prefix_ : std::string();
    }

    bool Request(const std::string& request, std::vector<std::string>& answer, int waitMs) {
        answer.clear();
        if (tOnWorker) return Talk(request, answer);
        auto pending = std::make_shared<Pending>();
        auto sent = pending->ok.get_future();
        {
            std::lock_guard lock(m_);
            if (state_ != State::Up) {
                BeginStart();
                return false;
            }
            Enqueue(kAnySlot, [this, request, pending] { pending->ok.set_value(Talk(request, pending->answer)); });
        }
        if (sent.wait_for(std::chrono::milliseconds(waitMs)) != std::future_status::ready) return false;
        try {
            if (!sent.get()) return false;
        } catch (const std::future_error&) {
            return false;  // dropped unsent: the start failed, or a shutdown
        }
        answer = std::move(pending->answer);
        return true;
    }

    void WhenUp(int slot, std::function<void()> job) {
        std::lock_guard lock(m_);
        Enqueue(slot, std::move(job));
        if (!BeginStart()) queue_.clear();
    }

    void Shutdown() {
        stopping_ = true;
        {
            std::lock_guard lock(m_);
            cv_.notify_all();
        }
        if (worker_.joinable()) worker_.join();
        std::lock_guard lock(m_);
        if (state_ == State::Up) pipe_.Stop(true);
        state_ = State::Down;
        busy_ = false;
        queue_.clear();
        lastFailedStart_.reset();
        wake_ = false;
        held_ = false;
        worker_ = std::thread();
        stopping_ = false;
    }

private:
    enum class State { Down, Starting, Up };
    static constexpr int kAnySlot = -1;
    struct Queued {
        int slot;
        std::function<void()> job;
    };
    struct Pending {
        std::promise<bool> ok;
        std::vector<std::string> answer;
    };

    // Called with m_ held.
    bool IsReady() const { return state_ == State::Up && queue_.empty() && !busy_; }

    // Called with m_ held.
    void Enqueue(int slot, std::function<void()> job) {
        auto same = std::find_if(queue_.begin(), queue_.end(),
                                 [slot](const Queued& q) { return slot != kAnySlot && q.slot == slot; });
        if (same != queue_.end())
            same->job = std::move(job);
        else
            queue_.push_back({slot, std::move(job)});
        cv_.notify_all();
    }

    // Called with m_ held. False when a start may not be tried yet.
    bool BeginStart() {
        if (state_ != State::Down) return true;
        if (lastFailedStart_ && Clock::now() - *lastFailedStart_ < kRetryAfter) return false;
        state_ = State::Starting;
        plan_ = Pipe::MakePlan();
        wake_ = true;
        if (!worker_.joinable()) worker_ = std::thread([this] { Work(); });
        cv_.notify_all();
        return true;
    }

    // On the worker, with m_ not held.
    bool Talk(const std::string& request, std::vector<std::string>& answer) {
        {
            std::lock_guard lock(m_);
            if (state_ != State::Up) return false;
        }
        bool ok = pipe_.WriteLine(request);
        for (std::string line; ok;) {
            ok = pipe_.ReadLine(line, kAnswerMs, stopping_);
            if (ok) answer.push_back(line);
            if (ok && (request != "windows" || line == "end")) return true;
        }
        answer.clear();
        pipe_.Stop(false);
        std::lock_guard lock(m_);
        // It had started fine, so no pause before the next start: the work
        // queued behind this request goes to the new one.
        state_ = State::Starting;
        wake_ = true;
        return false;
    }

    // On the worker, with m_ not held.
    bool Launch(Pipe::Plan plan) {
        std::string banner;
        if (!pipe_.Launch(std::move(plan))) return false;
        if (pipe_.ReadLine(banner, kStartMs, stopping_) && banner.rfind("ombrevale-link", 0) == 0) return true;
        pipe_.Stop(false);
        return false;
    }

    void Work() {
        tOnWorker = true;
        std::unique_lock lock(m_);
        for (;;) {
            cv_.wait(lock,
                     [this] { return stopping_ || (wake_ && !held_) || (state_ == State::Up && !queue_.empty()); });
            if (stopping_) return;
            if (wake_) {
                wake_ = false;
                Pipe::Plan plan = plan_;  // kept for a start again after a hang
                lock.unlock();
                const bool up = Launch(std::move(plan));
                lock.lock();
                if (up) {
                    state_ = State::Up;
                    prefix_ = pipe_.prefix();
                    lastFailedStart_.reset();
                } else {
                    state_ = State::Down;
                    lastFailedStart_ = Clock::now();
                    queue_.clear();
                }
                continue;
            }
            std::function<void()> job = std::move(queue_.front().job);
            queue_.erase(queue_.begin());
            busy_ = true;
            lock.unlock();
            job();
            job = nullptr;
            lock.lock();
            busy_ = false;
        }
    }

    std::mutex m_;
    std::condition_variable cv_;
    State state_ = State::Down;
    bool wake_ = false;
    bool held_ = false;
    bool busy_ = false;
    std::atomic<bool> stopping_ = false;
    std::vector<Queued> queue_;
    std::optional<Clock::time_point> lastFailedStart_;
    std::string prefix_;
    Pipe::Plan plan_;
    // Touched by the worker only, and by Shutdown once the worker has ended.
    Pipe pipe_;
    std::thread worker_;
};

Helper& TheHelper() {
    static Helper helper;
    return helper;
}

}  // namespace

void Start() { TheHelper().Start(); }

void Hold(bool on) { TheHelper().Hold(on); }

bool Ready() { return TheHelper().Ready(); }

std::string ReadyPrefix() { return TheHelper().ReadyPrefix(); }

bool Request(const std::string& request, std::vector<std::string>& answer, int waitMs) {
    return TheHelper().Request(request, answer, waitMs);
}

void WhenUp(int slot, std::function<void()> job) { TheHelper().WhenUp(slot, std::move(job)); }

void Shutdown() { TheHelper().Shutdown(); }

std::string HelperPath() {
    if (const char* p = std::getenv("OMBREVALE_LINK_EXE"); p && *p) return p;
    std::error_code ec;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec) return "ombrevale-link.exe";
    const auto beside = self.parent_path() / "ombrevale-link.exe";
    if (std::filesystem::exists(beside, ec)) return beside.string();
    return (self.parent_path() / OMBREVALE_HELPER_FROM_BIN / "ombrevale-link.exe").lexically_normal().string();
}

}  // namespace ombrevale::linkhelper
