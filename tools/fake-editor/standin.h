#pragma once
// Runs editor-stand-in.exe under Wine for a test and reads what it logged.

#include <sys/types.h>

#include <string>
#include <vector>

namespace ombrevale::standin {

struct Window {
    std::string title = "GTA2 Editor - stand-in";
    int id = 1050;
    std::string cls = "ListBox";
};

class StandIn {
public:
    // Starts the stand-in and waits for its window; `ok()` tells whether it came up.
    StandIn(const Window& w, const std::string& logPath);
    ~StandIn();
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;

    bool ok() const { return list_ != 0; }
    unsigned long frame() const { return frame_; }
    unsigned long list() const { return list_; }
    std::vector<std::string> Lines() const;
    // Waits until a line starting with `prefix` has been logged after line `from`.
    bool WaitFor(const std::string& prefix, std::size_t from, int timeoutMs) const;
    void Stop();

private:
    std::string log_;
    pid_t pid_ = -1;
    unsigned long frame_ = 0;
    unsigned long list_ = 0;
};

// Empty when the Wine pieces the tests need are all there, else what is missing.
std::string MissingPieces();

}  // namespace ombrevale::standin
