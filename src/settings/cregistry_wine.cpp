// cRegistry on Linux: the Wine prefix's registry files, read and written in
// Wine's text format. Wine's server keeps the registry in memory while it runs
// and writes the files only now and then and when it stops, so a read of a
// value goes through ombrevale-link.exe's RegQueryValueExA whenever that is up
// (and with it the prefix's server).
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "settings/cregistry.h"
#include "settings/cregistry_impl.h"
#include "settings/linkhelper.h"
#include "settings/regfile.h"
#include "settings/regwire.h"
#include "settings/wineprefix.h"

using ombrevale::regfile::Text;
using namespace ombrevale::cregistry_impl;

namespace {

struct Hive {
    std::string path;
    Text root;  // where the hive's keys start inside the file
    ombrevale::regfile::File file;
};

std::uint64_t Now() {
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch()).count());
}

// False when there is no prefix or no registry file for this hive.
bool OpenHive(std::int32_t classKey, Hive& hive) {
    std::string prefix = ombrevale::winepath::PrefixDir();
    if (prefix.empty()) return false;
    if (classKey == HKEY_CURRENT_USER_) {
        hive.path = prefix + "/user.reg";
    } else if (classKey == HKEY_LOCAL_MACHINE_) {
        hive.path = prefix + "/system.reg";
    } else if (classKey == HKEY_CLASSES_ROOT_) {
        hive.path = prefix + "/system.reg";
        hive.root = u"Software\\Classes";
    } else {
        return false;
    }
    std::ifstream in(hive.path, std::ios::binary);
    if (!in) return false;
    std::ostringstream text;
    text << in.rdbuf();
    hive.file.Parse(text.str());
    return true;
}

// A file that did not parse in full is never written: that would lose what was not understood.
bool SaveHive(const Hive& hive) {
    std::string text;
    if (!hive.file.Serialize(text)) return false;
    std::string tmp = hive.path + ".ombrevale-new";
    {
        std::ofstream out(tmp, std::ios::binary | std::ios::trunc);
        if (!out) return false;
        out.write(text.data(), static_cast<std::streamsize>(text.size()));
        if (!out.flush()) return false;
    }
    std::error_code ec;
    auto perms = std::filesystem::status(hive.path, ec).permissions();
    if (!ec) std::filesystem::permissions(tmp, perms, ec);
    std::filesystem::rename(tmp, hive.path, ec);
    if (ec) std::filesystem::remove(tmp, ec);
    return !ec;
}

Text KeyPath(const Hive& hive, const std::string& section) {
    Text sub = ombrevale::regfile::Widen(section);
    if (hive.root.empty()) return sub;
    return sub.empty() ? hive.root : hive.root + u"\\" + sub;
}

// Makes the key's entry if the file has none; false when it may not be written.
bool EnsureKey(Hive& hive, const Text& path, bool& changed) {
    changed = false;
    if (hive.file.FindKey(path)) return true;
    std::vector<Text> parts;
    if (!ombrevale::regfile::SplitPath(path, parts) || parts.empty()) return false;
    if (hive.file.Problem()) return false;
    changed = hive.file.AddKey(path, Now());
    return changed;
}

std::string ExpandEnvStr(const std::string& s) {
    std::string out;
    std::size_t pos = 0;
    while (pos < s.size()) {
        std::size_t open = s.find('%', pos);
        std::size_t close = open == std::string::npos ? open : s.find('%', open + 1);
        if (close == std::string::npos) {
            out += s.substr(pos);
            break;
        }
        out += s.substr(pos, open - pos);
        std::string name = s.substr(open + 1, close - open - 1);
        const char* value = name.empty() ? nullptr : std::getenv(name.c_str());
        if (value) {
            out += value;
            pos = close + 1;
        } else {
            // Unknown names stay as written; the closing mark may open the next name.
            out += s.substr(open, close - open);
            pos = close;
        }
    }
    return out;
}

std::string StringOf(const std::vector<std::uint8_t>& data) {
    ombrevale::regfile::Text units;
    for (std::size_t i = 0; i + 1 < data.size(); i += 2) units += static_cast<char16_t>(data[i] | (data[i + 1] << 8));
    return ombrevale::regfile::Narrow(units);
}

std::vector<std::uint8_t> DataOf(const std::string& text) {
    std::vector<std::uint8_t> data;
    for (char16_t c : ombrevale::regfile::Widen(text)) {
        data.push_back(static_cast<std::uint8_t>(c & 0xFF));
        data.push_back(static_cast<std::uint8_t>(c >> 8));
    }
    data.push_back(0);
    data.push_back(0);
    return data;
}

}  // namespace

bool cRegistry::KeyExists() const {
    Hive hive;
    return OpenHive(classKey_, hive) && hive.file.KeyExists(KeyPath(hive, sectionKey_));
}

bool cRegistry::CreateKey() {
    Hive hive;
    if (!OpenHive(classKey_, hive)) return false;
    Text path = KeyPath(hive, sectionKey_);
    if (hive.file.KeyExists(path)) return true;
    bool changed = false;
    return EnsureKey(hive, path, changed) && SaveHive(hive);
}

bool cRegistry::DeleteKey() {
    Hive hive;
    if (!OpenHive(classKey_, hive) || hive.file.Problem()) return false;
    if (sectionKey_.empty()) return false;
    return hive.file.RemoveKey(KeyPath(hive, sectionKey_), Now()) && SaveHive(hive);
}

bool cRegistry::DeleteValue() {
    Hive hive;
    if (!OpenHive(classKey_, hive) || hive.file.Problem()) return false;
    ombrevale::regfile::Key* key = hive.file.FindKey(KeyPath(hive, sectionKey_));
    return key && ombrevale::regfile::File::RemoveValue(*key, ombrevale::regfile::Widen(valueKey_), Now()) &&
           SaveHive(hive);
}

RegValue cRegistry::Value() const {
    const std::string prefix = ombrevale::winepath::PrefixDir();
    std::vector<std::string> answer;
    bool found = false;
    std::int32_t type = 0;
    RegValue live;
    if (!prefix.empty() && ombrevale::linkhelper::ReadyPrefix() == prefix &&
        ombrevale::linkhelper::Request(ombrevale::regwire::ValueRequest(classKey_, sectionKey_, valueKey_), answer) &&
        ombrevale::regwire::ParseValueAnswer(answer[0], found, type, live)) {
        if (!found) return default_;
        valueType_ = type;
        return live;
    }
    Hive hive;
    if (!OpenHive(classKey_, hive)) return default_;
    const ombrevale::regfile::Key* key = hive.file.FindKey(KeyPath(hive, sectionKey_));
    const ombrevale::regfile::Value* v =
        key ? ombrevale::regfile::File::FindValue(*key, ombrevale::regfile::Widen(valueKey_)) : nullptr;
    if (!v) return default_;
    valueType_ = static_cast<std::int32_t>(v->type);
    switch (v->type) {
        case REG_SZ_:
        case REG_EXPAND_SZ_:
        case REG_MULTI_SZ_: {
            // The "A" size counts the terminating zero; the text is one shorter.
            std::string text = StringOf(v->data);
            if (!text.empty()) text.pop_back();
            return v->type == REG_EXPAND_SZ_ ? RegValue(ExpandEnvStr(text)) : RegValue(text);
        }
        case REG_DWORD_:
            return NumberFromBytes(v->data.data(), v->data.size());
        case REG_DWORD_BIG_ENDIAN_:
            return SwapEndian(NumberFromBytes(v->data.data(), v->data.size()));
        default:
            return v->data;
    }
}

void cRegistry::Value(const RegValue& vValue) {
    Hive hive;
    if (!OpenHive(classKey_, hive) || hive.file.Problem()) return;
    Text path = KeyPath(hive, sectionKey_);
    bool changed = false;
    if (!EnsureKey(hive, path, changed)) return;
    ombrevale::regfile::Value v;
    v.name = ombrevale::regfile::Widen(valueKey_);
    bool store = true;
    if (valueType_ == REG_SZ_ || valueType_ == REG_EXPAND_SZ_) {
        std::string text = ValueAsText(vValue);
        v.type = IsExpandableText(text) ? REG_EXPAND_SZ_ : REG_SZ_;
        v.data = DataOf(text);
    } else if (valueType_ == REG_BINARY_) {
        const auto* bytes = std::get_if<std::vector<std::uint8_t>>(&vValue);
        store = bytes != nullptr;
        v.type = REG_BINARY_;
        if (bytes) v.data = *bytes;
    } else if (valueType_ == REG_DWORD_ || valueType_ == REG_DWORD_BIG_ENDIAN_) {
        std::int32_t n = 0;
        store = ValueAsNumber(vValue, n);
        auto u = static_cast<std::uint32_t>(n);
        v.type = REG_DWORD_;
        v.data = {static_cast<std::uint8_t>(u), static_cast<std::uint8_t>(u >> 8), static_cast<std::uint8_t>(u >> 16),
                  static_cast<std::uint8_t>(u >> 24)};
    } else {
        store = false;
    }
    if (store) ombrevale::regfile::File::SetValue(*hive.file.FindKey(path), std::move(v), Now());
    if (store || changed) SaveHive(hive);
}

bool cRegistry::EnumerateValues(std::vector<std::string>& sKeyNames, std::int32_t& iKeyCount) const {
    iKeyCount = 0;
    sKeyNames.clear();
    Hive hive;
    if (!OpenHive(classKey_, hive)) return true;
    const ombrevale::regfile::Key* key = hive.file.FindKey(KeyPath(hive, sectionKey_));
    if (!key || key->values.empty()) return true;
    sKeyNames.emplace_back();
    for (const auto& v : key->values) {
        sKeyNames.push_back(ombrevale::regfile::Narrow(v.name));
        ++iKeyCount;
    }
    return true;
}

bool cRegistry::EnumerateSections(std::vector<std::string>& sSect, std::int32_t& iSectCount) const {
    iSectCount = 0;
    sSect.clear();
    Hive hive;
    if (!OpenHive(classKey_, hive)) return true;
    Text path = KeyPath(hive, sectionKey_);
    if (!hive.file.KeyExists(path)) return true;
    for (const auto& name : hive.file.SubKeys(path)) {
        // RegEnumKeyA is given 255 characters, terminator included.
        if (name.size() >= 255) return false;
        if (sSect.empty()) sSect.emplace_back();
        sSect.push_back(ombrevale::regfile::Narrow(name));
        ++iSectCount;
    }
    return true;
}
