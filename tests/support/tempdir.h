#pragma once
// A fresh folder for one test, removed with everything in it afterwards.

#include <filesystem>
#include <string>

namespace ombrevale::testsupport {

class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::string File(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

// Makes the temp folder the current directory for a scope ("temp.bmp" lands there).
class ScopedCurrentDir {
public:
    explicit ScopedCurrentDir(const std::filesystem::path& dir);
    ~ScopedCurrentDir();
    ScopedCurrentDir(const ScopedCurrentDir&) = delete;
    ScopedCurrentDir& operator=(const ScopedCurrentDir&) = delete;

private:
    std::filesystem::path previous_;
};

}  // namespace ombrevale::testsupport
