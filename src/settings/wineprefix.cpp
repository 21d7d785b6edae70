// The Wine prefix and its drives.
#include "settings/wineprefix.h"

#include <cctype>
#include <cstdlib>
#include <filesystem>

#include "settings/cregistry.h"

namespace fs = std::filesystem;

namespace ombrevale::winepath {

namespace {

bool SameNoCase(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

// The entry of `dir` that Windows would open for `name`: the exact one first.
std::string MatchEntry(const fs::path& dir, const std::string& name) {
    std::error_code ec;
    if (fs::exists(dir / name, ec)) return name;
    for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec)) {
        std::string entry = it->path().filename().string();
        if (SameNoCase(entry, name)) return entry;
    }
    return name;
}

}  // namespace

std::string PrefixDir() {
    std::string dir;
    if (const char* p = std::getenv("WINEPREFIX"); p && *p) {
        dir = p;
    } else if (const char* home = std::getenv("HOME"); home && *home) {
        dir = std::string(home) + "/.wine";
    }
    std::error_code ec;
    if (dir.empty() || !fs::is_directory(dir, ec)) return {};
    return dir;
}

std::string MapWindowsPath(const std::string& prefix, const std::string& sWindowsPath) {
    const std::string& s = sWindowsPath;
    if (prefix.empty() || s.size() < 2 || s[1] != ':' || !std::isalpha(static_cast<unsigned char>(s[0]))) return s;
    std::string drive(1, static_cast<char>(std::tolower(static_cast<unsigned char>(s[0]))));
    fs::path path = fs::path(prefix) / "dosdevices" / (drive + ":");
    std::size_t pos = 2;
    while (pos < s.size()) {
        std::size_t next = s.find_first_of("\\/", pos);
        if (next == std::string::npos) next = s.size();
        std::string part = s.substr(pos, next - pos);
        if (!part.empty() && part != ".") path /= MatchEntry(path, part);
        pos = next + 1;
    }
    return path.string();
}

}  // namespace ombrevale::winepath

std::string LocalPathForStylePath(const std::string& sWindowsPath) {
#ifdef _WIN32
    return sWindowsPath;
#else
    return ombrevale::winepath::MapWindowsPath(ombrevale::winepath::PrefixDir(), sWindowsPath);
#endif
}
