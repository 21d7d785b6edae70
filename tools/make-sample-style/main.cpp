// make-sample-style OUT: writes the style file that Ombrevale ships as its sample.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>

#include "stylefile.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make-sample-style OUT.sty\n");
        return 2;
    }
    const std::string out = argv[1];
    try {
        const auto bytes = ombrevale::sample::BuildStyleFile();
        // Written beside the target first, so a failed run leaves no half file.
        const std::string temp = out + ".part";
        {
            std::ofstream f(temp, std::ios::binary | std::ios::trunc);
            f.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
            if (!f.flush()) throw std::runtime_error("cannot write " + temp);
        }
        std::filesystem::rename(temp, out);
        std::printf("%s: %zu bytes\n", out.c_str(), bytes.size());
    } catch (const std::exception& e) {
        std::fprintf(stderr, "make-sample-style: %s: %s\n", out.c_str(), e.what());
        std::error_code ec;
        std::filesystem::remove(out + ".part", ec);
        return 1;
    }
    return 0;
}
