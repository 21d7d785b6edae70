#pragma once
// How the command line fails: one line on stderr and an exit code.

#include <stdexcept>
#include <string>

#include "style/hooks.h"

namespace ombrevale::cli {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;

// A file that cannot be read, is no style file or is damaged, or a number out of range.
class Failure : public std::runtime_error {
public:
    Failure(std::string file, const std::string& what) : std::runtime_error(what), file_(std::move(file)) {}
    const std::string& file() const { return file_; }

private:
    std::string file_;
};

// Wrong arguments: the caller prints the usage.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Wrong arguments that one line explains better than the usage would.
class ArgumentRefusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Collects what the pixel engine says through the message hook, so that a
// refusal becomes one line of ours. main installs one for the whole run, so the
// document and the pixel engine never print a line of their own.
class DocumentVoice {
public:
    DocumentVoice();
    ~DocumentVoice();
    DocumentVoice(const DocumentVoice&) = delete;
    DocumentVoice& operator=(const DocumentVoice&) = delete;

    // The first message since the last call, or a fallback if there was none.
    static std::string Take(const std::string& fallback);

private:
    ScopedDocumentHooks hooks_;
};

}  // namespace ombrevale::cli
