#pragma once
// What every fuzz target shares: a scratch folder of its own as the current
// directory (the renders write "temp.bmp" there), silent document hooks, and a
// picture control that only checks what it is given.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

#include "pixels/picturecontrol.h"
#include "style/hooks.h"

namespace ombrevale::fuzzing {

// A finding the sanitizers cannot see: the code broke one of its own promises.
[[noreturn]] inline void Broken(const char* what) {
    std::fprintf(stderr, "promise broken: %s\n", what);
    std::abort();
}

// Memory-backed when the machine has /dev/shm, so file writes cost little.
inline void EnterScratchFolder() {
    namespace fs = std::filesystem;
    const fs::path root = fs::exists("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path();
    const fs::path dir = root / ("ombrevale-fuzz-" + std::to_string(::getpid()));
    fs::create_directories(dir);
    fs::current_path(dir);
    static const std::string toRemove = dir.string();
    std::atexit([] {
        std::error_code ec;
        std::filesystem::remove_all(toRemove, ec);
    });
}

inline void SilenceDocument() {
    DocumentHooks hooks;
    hooks.msgBox = [](const std::string&, const std::string&, MsgIcon) {};
    InstallDocumentHooks(hooks);
}

inline void WriteFile(const std::string& path, const std::uint8_t* data, std::size_t size) {
    std::ofstream f(path, std::ios::binary | std::ios::trunc);
    f.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
}

inline std::string ReadFile(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(f), {}};
}

// Reads each picture back as the window would see its bytes, and holds the
// renders to pixels inside the picture they loaded.
class CheckingPicture : public PictureControl {
public:
    void Cls() override {}
    bool LoadPicture(const std::string& sPath) override {
        const std::string bmp = ReadFile(sPath);
        if (bmp.size() < 54 || bmp.compare(0, 2, "BM") != 0) Broken("a render loaded something that is not a BMP");
        width_ = Le32(bmp, 18);
        height_ = Le32(bmp, 22);
        return true;
    }
    void SetPixelV(int x, int y, std::int32_t colour) override {
        if (colour < 0 || colour > 0xFFFFFF) Broken("a pixel colour outside 24 bits");
        (void)x;
        (void)y;
    }
    int Width() const override { return width_; }
    int Height() const override { return height_; }

private:
    static int Le32(const std::string& b, std::size_t at) {
        std::uint32_t v = 0;
        for (std::size_t i = 0; i < 4; ++i)
            v |= static_cast<std::uint32_t>(static_cast<std::uint8_t>(b[at + i])) << (8 * i);
        return static_cast<int>(v);
    }
    int width_ = 64;
    int height_ = 64;
};

}  // namespace ombrevale::fuzzing
