// Any bytes as a JASC-PAL file. An import that fails changes nothing; one
// that succeeds changes only the colours of its own palette, never a fourth
// byte, and the palette written out as JASC-PAL imports back to itself.

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz_common.h"
#include "style/clssty.h"

using namespace modDeclares;

namespace {

constexpr std::int32_t kPalettes = 4;

void FreshPalettes() {
    STYPalData.assign(kPalettes, Palette{});
    for (std::size_t p = 0; p < STYPalData.size(); ++p)
        for (std::size_t i = 0; i < STYPalData[p].size(); ++i)
            STYPalData[p][i] = static_cast<std::uint8_t>(p * 61 + i * 7);
}

std::string AsJasc(const Palette& pal) {
    std::string text = "JASC-PAL\r\n0100\r\n256\r\n";
    for (std::size_t c = 0; c < 256; ++c)
        text += std::to_string(pal[c * 4 + 2]) + " " + std::to_string(pal[c * 4 + 1]) + " " +
                std::to_string(pal[c * 4]) + "\r\n";
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    ombrevale::fuzzing::EnterScratchFolder();
    ombrevale::fuzzing::SilenceDocument();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ResetSharedStores();
    FreshPalettes();
    clsSTY doc;
    // The first byte picks the palette, a few of them missing ones.
    const std::int32_t target = size == 0 ? 0 : static_cast<std::int32_t>(data[0] % (kPalettes + 3)) - 1;
    ombrevale::fuzzing::WriteFile("in.pal", size == 0 ? data : data + 1, size == 0 ? 0 : size - 1);

    const auto before = STYPalData;
    const bool imported = doc.ImportPalette("in.pal", target);
    if (!imported) {
        if (STYPalData != before) ombrevale::fuzzing::Broken("a refused import changed a palette");
        return 0;
    }
    if (target < 0 || target >= kPalettes) ombrevale::fuzzing::Broken("an import into a missing palette succeeded");
    for (std::int32_t p = 0; p < kPalettes; ++p) {
        const auto& now = STYPalData[static_cast<std::size_t>(p)];
        const auto& was = before[static_cast<std::size_t>(p)];
        for (std::size_t i = 0; i < now.size(); ++i) {
            const bool mayChange = p == target && i % 4 != 3;
            if (!mayChange && now[i] != was[i])
                ombrevale::fuzzing::Broken("an import changed a byte outside its colours");
        }
    }

    const std::string text = AsJasc(STYPalData[static_cast<std::size_t>(target)]);
    ombrevale::fuzzing::WriteFile("round.pal", reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    const std::int32_t other = (target + 1) % kPalettes;
    if (!doc.ImportPalette("round.pal", other))
        ombrevale::fuzzing::Broken("a palette written as JASC-PAL did not import");
    const auto& a = STYPalData[static_cast<std::size_t>(target)];
    const auto& b = STYPalData[static_cast<std::size_t>(other)];
    for (std::size_t i = 0; i < a.size(); ++i)
        if (i % 4 != 3 && a[i] != b[i]) ombrevale::fuzzing::Broken("a palette did not come back through JASC-PAL");
    return 0;
}
