// registry-check.exe: cRegistry's Win32 side, run under Wine by the settings
// tests. Every answer is a line on stdout:
//   write <key>            writes one value of each kind and two subkeys
//   read <key> <names...>  "<name> <type> none|text|number|bytes <hex bytes or number>"
//   enum <key>             "values <ok> <count> [<index>=<name>...]", the same for "sections"
//   delete <key> <name>    "deletevalue <0|1>" then "deletekey <0|1>"
#include <cstdio>
#include <string>

#include "settings/cregistry.h"

namespace {

cRegistry At(const std::string& key, const std::string& name = "") {
    cRegistry r;
    r.ClassKey(HKEY_CURRENT_USER_);
    r.SectionKey(key);
    r.ValueKey(name);
    return r;
}

void Write(const std::string& key, const char* name, std::int32_t type, const RegValue& v) {
    cRegistry r = At(key, name);
    r.ValueType(type);
    r.Value(v);
}

std::string Hex(const std::string& s) {
    std::string out;
    char b[4];
    for (char c : s) {
        std::snprintf(b, sizeof b, "%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
        out += b;
    }
    return out.empty() ? "-" : out;
}

void PrintNames(const char* what, bool ok, std::int32_t count, const std::vector<std::string>& names) {
    std::printf("%s %d %ld", what, ok ? 1 : 0, static_cast<long>(count));
    for (std::size_t i = 0; i < names.size(); ++i) std::printf(" %zu=%s", i, names[i].c_str());
    std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) return 2;
    std::string cmd = argv[1], key = argv[2];
    if (cmd == "write") {
        Write(key, "Sz", REG_SZ_, std::string("C:\\GTA2\\data\\wil.sty"));
        Write(key, "Exp", REG_SZ_, std::string("%OMBREVALE_CHECK_DIR%\\x"));
        Write(key, "Dw", REG_DWORD_, std::int32_t{-2});
        Write(key, "Big", REG_DWORD_BIG_ENDIAN_, std::int32_t{0x01020304});
        Write(key, "Bin", REG_BINARY_, std::vector<std::uint8_t>{1, 2, 0xff, 0});
        Write(key, "Skipped", REG_DWORD_, std::string("not a number"));
        std::printf("created %d %d\n", At(key + "\\Beta").CreateKey() ? 1 : 0, At(key + "\\alpha").CreateKey() ? 1 : 0);
    } else if (cmd == "read") {
        for (int i = 3; i < argc; ++i) {
            cRegistry r = At(key, argv[i]);
            r.ValueType(99);
            RegValue v = r.Value();
            std::printf("%s %ld ", argv[i], static_cast<long>(r.ValueType()));
            if (const auto* s = std::get_if<std::string>(&v))
                std::printf("text %s\n", Hex(*s).c_str());
            else if (const auto* n = std::get_if<std::int32_t>(&v))
                std::printf("number %ld\n", static_cast<long>(*n));
            else if (const auto* b = std::get_if<std::vector<std::uint8_t>>(&v))
                std::printf("bytes %s\n", Hex(std::string(b->begin(), b->end())).c_str());
            else
                std::printf("none -\n");
        }
    } else if (cmd == "enum") {
        std::vector<std::string> names;
        std::int32_t count = -1;
        bool ok = At(key).EnumerateValues(names, count);
        PrintNames("values", ok, count, names);
        ok = At(key).EnumerateSections(names, count);
        PrintNames("sections", ok, count, names);
    } else if (cmd == "delete" && argc > 3) {
        std::printf("deletevalue %d\n", At(key, argv[3]).DeleteValue() ? 1 : 0);
        std::printf("deletekey %d\n", At(key).DeleteKey() ? 1 : 0);
    } else {
        return 2;
    }
    return 0;
}
