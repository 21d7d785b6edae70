// registry-check.exe <write key> <read key> (<name> <value>)...: cRegistry's
// Win32 side, run under Wine by the settings Wine test. Each value is a line
// of settings/regwire.h ("value <type> text|number|bytes <data>"). Writes each
// value into the first key and makes its subkeys Beta and alpha; prints how
// each name reads from the second key, then both keys' listings.
#include <cstdio>
#include <string>

#include "settings/cregistry.h"
#include "settings/regwire.h"

namespace {

cRegistry At(const std::string& key, const std::string& name = "") {
    cRegistry r;
    r.ClassKey(HKEY_CURRENT_USER_);
    r.SectionKey(key);
    r.ValueKey(name);
    return r;
}

void PrintListing(const char* what, bool ok, std::int32_t count, const std::vector<std::string>& names) {
    std::printf("%s %d %ld", what, ok ? 1 : 0, static_cast<long>(count));
    for (const auto& n : names) std::printf(" [%s]", n.c_str());
    std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3 || argc % 2 != 1) return 2;
    const std::string written = argv[1], read = argv[2];
    for (int i = 3; i < argc; i += 2) {
        bool found = false;
        std::int32_t type = 0;
        RegValue v;
        if (!regwire::ParseValueAnswer(argv[i + 1], found, type, v)) return 2;
        cRegistry r = At(written, argv[i]);
        r.ValueType(type);
        r.Value(v);
    }
    At(written + "\\Beta").CreateKey();
    At(written + "\\alpha").CreateKey();
    for (int i = 3; i < argc; i += 2) {
        cRegistry r = At(read, argv[i]);
        r.ValueType(-1);  // no type is negative: still so, nothing was read
        RegValue v = r.Value();
        std::printf("%s\n", regwire::ValueAnswer(r.ValueType() != -1, r.ValueType(), v).c_str());
    }
    for (const std::string& key : {written, read}) {
        std::vector<std::string> names;
        std::int32_t count = -1;
        bool ok = At(key).EnumerateValues(names, count);
        PrintListing("values", ok, count, names);
        ok = At(key).EnumerateSections(names, count);
        PrintListing("sections", ok, count, names);
    }
    return 0;
}
