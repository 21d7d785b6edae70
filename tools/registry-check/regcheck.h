#pragma once
// What the settings tests and registry-check.exe (built with mingw, run under
// Wine) do alike, so that their lines compare: one place in HKEY_CURRENT_USER,
// a read as a settings/regwire.h line, a listing as a line.
#include <string>
#include <vector>

#include "settings/cregistry.h"
#include "settings/regwire.h"

inline cRegistry At(const std::string& key, const std::string& name = "") {
    cRegistry r;
    r.ClassKey(HKEY_CURRENT_USER_);
    r.SectionKey(key);
    r.ValueKey(name);
    return r;
}

inline std::string Answer(const std::string& key, const std::string& name) {
    cRegistry r = At(key, name);
    r.ValueType(-1);  // no type is negative: still so, nothing was read
    const RegValue v = r.Value();
    return ombrevale::regwire::ValueAnswer(r.ValueType() != -1, r.ValueType(), v);
}

// "values|sections <ok> <count> [name]...", the unused name 0 included.
inline std::string Listing(const std::string& key, bool sections) {
    std::vector<std::string> names;
    std::int32_t count = -1;
    const bool ok = sections ? At(key).EnumerateSections(names, count) : At(key).EnumerateValues(names, count);
    std::string s = std::string(sections ? "sections " : "values ") + (ok ? "1 " : "0 ") + std::to_string(count);
    for (const auto& n : names) s += " [" + n + "]";
    return s;
}
