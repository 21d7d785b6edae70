// Any bytes as the name of a file in an export's folder. A name that parses
// names what the export would write under its own name, and that name parses
// back to the same thing; nothing past 32,767 is ever given out.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz_common.h"
#include "pixels/exportnames.h"

using ombrevale::fuzzing::Broken;

extern "C" int LLVMFuzzerInitialize(int*, char***) { return 0; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto name = ombrevale::exportnames::Parse(text);
    if (!name) return 0;
    if (name->number < 0 || name->number > 32767 || name->delta < 0 || name->delta > 32767) Broken("number range");
    const std::string written = ombrevale::exportnames::Path(*name);
    if (ombrevale::exportnames::Parse(written) != name) Broken("a written name parses back to something else");
    return 0;
}
