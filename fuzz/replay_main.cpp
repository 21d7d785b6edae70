// Without libFuzzer: feed every file named on the command line (or found in a
// folder named there) to the target, then a fixed number of seeded mutations
// of each, so the test run exercises the same code paths on every build.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::uint8_t> Mutate(std::vector<std::uint8_t> bytes, std::mt19937& rng) {
    if (bytes.empty()) return bytes;
    std::uniform_int_distribution<std::size_t> where(0, bytes.size() - 1);
    switch (rng() % 4) {
        case 0:
            bytes.resize(where(rng));
            break;  // cut short
        case 1:
            bytes[where(rng)] = static_cast<std::uint8_t>(rng());
            break;  // one byte
        case 2: {   // a hostile size
            const std::size_t at = where(rng);
            for (std::size_t i = at; i < at + 4 && i < bytes.size(); ++i) bytes[i] = 0xFF;
            break;
        }
        default:
            bytes.insert(bytes.begin() + static_cast<long>(where(rng)), static_cast<std::uint8_t>(rng()));
            break;
    }
    return bytes;
}

// Files as named, and the files of named folders in name order; dot files are skipped.
std::vector<std::filesystem::path> Inputs(int argc, char** argv) {
    namespace fs = std::filesystem;
    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) {
        const fs::path p = fs::absolute(argv[i]);
        if (!fs::is_directory(p)) {
            files.push_back(p);
            continue;
        }
        std::vector<fs::path> inside;
        for (const auto& e : fs::directory_iterator(p))
            if (e.is_regular_file() && e.path().filename().string()[0] != '.') inside.push_back(e.path());
        std::sort(inside.begin(), inside.end());
        files.insert(files.end(), inside.begin(), inside.end());
    }
    return files;
}

}  // namespace

int main(int argc, char** argv) {
    const auto inputs = Inputs(argc, argv);  // before the target moves to its scratch folder
    LLVMFuzzerInitialize(&argc, &argv);
    const int rounds = std::getenv("OMBREVALE_FUZZ_ROUNDS") ? std::atoi(std::getenv("OMBREVALE_FUZZ_ROUNDS")) : 300;
    std::mt19937 rng(20261123);
    for (const auto& path : inputs) {
        std::ifstream f(path, std::ios::binary);
        if (!f) {
            std::cerr << "replay: cannot read " << path << "\n";
            return 1;
        }
        const std::vector<std::uint8_t> seed{std::istreambuf_iterator<char>(f), {}};
        LLVMFuzzerTestOneInput(seed.data(), seed.size());
        for (int r = 0; r < rounds; ++r) {
            const auto m = Mutate(seed, rng);
            LLVMFuzzerTestOneInput(m.data(), m.size());
        }
    }
    if (inputs.empty()) {
        std::cerr << "replay: no inputs\n";
        return 1;
    }
    std::cout << "replayed " << inputs.size() << " inputs with " << rounds << " mutations each\n";
    return 0;
}
