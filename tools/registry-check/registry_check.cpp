// registry-check.exe <write key> <read key> (<name> <value>)...: cRegistry's
// Win32 side for the settings Wine test. Each value is a settings/regwire.h
// line. Writes each value into the first key and makes its subkeys Beta and
// alpha; prints how each name reads from the second key, then both keys'
// listings.
#include <cstdio>

#include "regcheck.h"

int main(int argc, char** argv) {
    if (argc < 3 || argc % 2 != 1) return 2;
    const std::string written = argv[1], read = argv[2];
    for (int i = 3; i < argc; i += 2) {
        bool found = false;
        std::int32_t type = 0;
        RegValue v;
        if (!ombrevale::regwire::ParseValueAnswer(argv[i + 1], found, type, v)) return 2;
        cRegistry r = At(written, argv[i]);
        r.ValueType(type);
        r.Value(v);
    }
    At(written + "\\Beta").CreateKey();
    At(written + "\\alpha").CreateKey();
    for (int i = 3; i < argc; i += 2) std::printf("%s\n", Answer(read, argv[i]).c_str());
    for (const std::string& key : {written, read})
        std::printf("%s\n%s\n", Listing(key, false).c_str(), Listing(key, true).c_str());
    return 0;
}
