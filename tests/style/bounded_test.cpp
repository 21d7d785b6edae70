// What a style file costs to load is bounded by its real size, never by the
// sizes and counts it claims. This program counts every byte allocated through
// operator new, so the peak of one load can be held against the file's length.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "style/clssty.h"
#include "stylewriter/stylewriter.h"
#include "support/hookrecorder.h"
#include "support/tempdir.h"

namespace {

std::atomic<std::size_t> gLive{0};
std::atomic<std::size_t> gPeak{0};
constexpr std::size_t kHead = alignof(std::max_align_t);

void* Take(std::size_t n) {
    auto* p = static_cast<unsigned char*>(std::malloc(n + kHead));
    if (!p) throw std::bad_alloc();
    *reinterpret_cast<std::size_t*>(p) = n;
    const std::size_t live = gLive += n;
    for (std::size_t peak = gPeak; live > peak && !gPeak.compare_exchange_weak(peak, live);) {
    }
    return p + kHead;
}

void Give(void* q) noexcept {
    if (!q) return;
    auto* p = static_cast<unsigned char*>(q) - kHead;
    gLive -= *reinterpret_cast<std::size_t*>(p);
    std::free(p);
}

}  // namespace

void* operator new(std::size_t n) { return Take(n); }
void* operator new[](std::size_t n) { return Take(n); }
void operator delete(void* p) noexcept { Give(p); }
void operator delete[](void* p) noexcept { Give(p); }
void operator delete(void* p, std::size_t) noexcept { Give(p); }
void operator delete[](void* p, std::size_t) noexcept { Give(p); }

namespace {

using namespace ombrevale::testsupport;
using namespace ombrevale::stylewriter;

struct BoundCase {
    const char* name;
    Bytes (*make)();
    bool loads;
    // Bytes allocated at the peak for each byte of the file.
    double perFileByte = 32;
};

void PrintTo(const BoundCase& c, std::ostream* os) { *os << c.name; }

constexpr std::int64_t kHuge = 0x7FFFFFFF;

std::vector<BoundCase> Cases() {
    return {
        {"EverySectionClaimsTwoGigabytes",
         [] {
             StyleBytes s;
             for (const char* tag : {"TILE", "PPAL", "PALX", "SPRX", "SPRG", "DELS", "OBJI", "RECY", "SPEC"})
                 s.AddWithSize(tag, kHuge, Bytes(64, 0));
             return s.bytes();
         },
         false},
        // Equal tiles share one block.
        {"Tiles32764", [] { return StyleBytes().Add("TILE", Bytes(32764ULL * 4096, 3)).bytes(); }, true, 0.01},
        // Read in pieces: the stores, not the stores beside the whole file.
        {"Tiles32764Distinct",
         [] {
             Bytes tiles(32764ULL * 4096);
             // Each 64-byte row of the file starts with its own number.
             for (std::size_t i = 0; i < tiles.size(); ++i) {
                 const std::size_t row = i / 64, at = i % 64;
                 tiles[i] = static_cast<std::uint8_t>(at < 3 ? row >> (8 * at) : i * 131);
             }
             return StyleBytes().Add("TILE", tiles).bytes();
         },
         true, 1.05},
        // A 4-byte delta record becomes a 32-byte entry.
        {"DeltaRecords40000",
         [] {
             Bytes delx;
             for (int i = 0; i < 40000; ++i) delx.insert(delx.end(), {1, 0, 0, 0});
             return StyleBytes().Add("DELX", delx).bytes();
         },
         true},
    };
}

class Bounded : public ::testing::TestWithParam<BoundCase> {
protected:
    void SetUp() override { modDeclares::ResetSharedStores(); }
    void TearDown() override { modDeclares::ResetSharedStores(); }
};

TEST_P(Bounded, LoadCostsMemoryInProportionToTheRealFile) {
    TempDir dir;
    const std::string path = dir.File("claims.sty");
    std::size_t fileBytes = 0;
    {
        const Bytes bytes = GetParam().make();
        fileBytes = bytes.size();
        WriteFile(path, bytes);
    }
    HookRecorder quiet;
    clsSTY doc;
    const std::size_t before = gLive;
    gPeak = before;
    const auto start = std::chrono::steady_clock::now();
    const bool loaded = doc.LoadSTY(path);
    const double ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    const std::size_t peak = gPeak - before;

    EXPECT_EQ(loaded, GetParam().loads);
    // The file read whole and the stores built from it. The factor is the
    // smallest record's growth: a 4-byte delta record becomes a 32-byte entry,
    // and a growing list briefly holds two copies. No claimed size enters it.
    const auto bound = static_cast<std::size_t>(GetParam().perFileByte * static_cast<double>(fileBytes)) + 64 * 1024;
    EXPECT_LE(peak, bound) << "peak " << peak << " for a file of " << fileBytes;
    std::printf("%s: %zu-byte file, peak %zu bytes allocated, %.1f ms\n", GetParam().name, fileBytes, peak, ms);
}

INSTANTIATE_TEST_SUITE_P(Claims, Bounded, ::testing::ValuesIn(Cases()),
                         [](const auto& p) { return std::string(p.param.name); });

}  // namespace
