#include "support/tempdir.h"

#include <atomic>
#include <chrono>
#include <random>
#include <system_error>

namespace ombrevale::testsupport {

TempDir::TempDir() {
    static std::atomic<unsigned> counter{0};
    const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    path_ = std::filesystem::temp_directory_path() /
            ("ombrevale-test-" + std::to_string(stamp) + "-" + std::to_string(std::random_device{}()) + "-" +
             std::to_string(counter++));
    std::filesystem::create_directories(path_);
}

TempDir::~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
}

ScopedCurrentDir::ScopedCurrentDir(const std::filesystem::path& dir) : previous_(std::filesystem::current_path()) {
    std::filesystem::current_path(dir);
}

ScopedCurrentDir::~ScopedCurrentDir() {
    std::error_code ec;
    std::filesystem::current_path(previous_, ec);
}

}  // namespace ombrevale::testsupport
