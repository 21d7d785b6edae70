// cRegistry on Windows (and in ombrevale-link.exe under Wine): the Reg*A calls.
#include <windows.h>

#include "settings/cregistry.h"
#include "settings/cregistry_impl.h"

using namespace ombrevale::cregistry_impl;

namespace {

constexpr REGSAM kRead = 1;       // KEY_QUERY_VALUE
constexpr REGSAM kEnumerate = 8;  // KEY_ENUMERATE_SUB_KEYS
constexpr REGSAM kAll = 63;       // query, set, create subkey, enumerate, notify, create link

HKEY Hive(std::int32_t classKey) {
    // The predefined handles are the sign-extended 32-bit numbers.
    return reinterpret_cast<HKEY>(static_cast<std::intptr_t>(classKey));
}

class OpenKey {
public:
    OpenKey(std::int32_t classKey, const std::string& section, REGSAM rights) {
        ok_ = RegOpenKeyExA(Hive(classKey), section.c_str(), 0, rights, &key_) == ERROR_SUCCESS;
    }
    OpenKey(std::int32_t classKey, const std::string& section) {
        DWORD disposition = 0;
        ok_ = RegCreateKeyExA(Hive(classKey), section.c_str(), 0, nullptr, 0, kAll, nullptr, &key_, &disposition) ==
              ERROR_SUCCESS;
    }
    ~OpenKey() {
        if (ok_) RegCloseKey(key_);
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    bool ok() const { return ok_; }
    HKEY get() const { return key_; }

private:
    HKEY key_ = nullptr;
    bool ok_ = false;
};

std::string ExpandEnvStr(const std::string& s) {
    DWORD c = ExpandEnvironmentStringsA(s.c_str(), nullptr, 0);
    if (c <= 1) return {};
    std::string out(c, '\0');
    DWORD got = ExpandEnvironmentStringsA(s.c_str(), out.data(), c);
    if (got == 0 || got > c) return {};
    out.resize(c - 1);
    return out;
}

}  // namespace

bool cRegistry::KeyExists() const { return OpenKey(classKey_, sectionKey_, kRead).ok(); }

bool cRegistry::CreateKey() { return OpenKey(classKey_, sectionKey_).ok(); }

bool cRegistry::DeleteKey() { return RegDeleteKeyA(Hive(classKey_), sectionKey_.c_str()) == ERROR_SUCCESS; }

bool cRegistry::DeleteValue() {
    OpenKey key(classKey_, sectionKey_, kAll);
    return key.ok() && RegDeleteValueA(key.get(), valueKey_.c_str()) == ERROR_SUCCESS;
}

RegValue cRegistry::Value() const {
    OpenKey key(classKey_, sectionKey_, kRead);
    if (!key.ok()) return default_;
    DWORD type = 0, size = 0;
    LONG r = RegQueryValueExA(key.get(), valueKey_.c_str(), nullptr, &type, nullptr, &size);
    if (r != ERROR_SUCCESS && r != ERROR_MORE_DATA) return default_;
    valueType_ = static_cast<std::int32_t>(type);
    std::vector<std::uint8_t> data(size);
    if (size > 0) {
        DWORD got = size;
        RegQueryValueExA(key.get(), valueKey_.c_str(), nullptr, nullptr, data.data(), &got);
    }
    switch (type) {
        case REG_SZ:
        case REG_EXPAND_SZ:
        case REG_MULTI_SZ: {
            std::string text(data.begin(), data.end());
            if (!text.empty()) text.pop_back();
            return type == REG_EXPAND_SZ ? RegValue(ExpandEnvStr(text)) : RegValue(text);
        }
        case REG_DWORD:
            return NumberFromBytes(data.data(), data.size());
        case REG_DWORD_BIG_ENDIAN:
            return SwapEndian(NumberFromBytes(data.data(), data.size()));
        default:
            return data;
    }
}

void cRegistry::Value(const RegValue& vValue) {
    OpenKey key(classKey_, sectionKey_);
    if (!key.ok()) return;
    if (valueType_ == REG_SZ_ || valueType_ == REG_EXPAND_SZ_) {
        std::string text = ValueAsText(vValue);
        DWORD type = IsExpandableText(text) ? REG_EXPAND_SZ : REG_SZ;
        RegSetValueExA(key.get(), valueKey_.c_str(), 0, type, reinterpret_cast<const BYTE*>(text.c_str()),
                       static_cast<DWORD>(text.size() + 1));
    } else if (valueType_ == REG_BINARY_) {
        if (const auto* bytes = std::get_if<std::vector<std::uint8_t>>(&vValue))
            RegSetValueExA(key.get(), valueKey_.c_str(), 0, REG_BINARY, bytes->data(),
                           static_cast<DWORD>(bytes->size()));
    } else if (valueType_ == REG_DWORD_ || valueType_ == REG_DWORD_BIG_ENDIAN_) {
        std::int32_t n = 0;
        if (ValueAsNumber(vValue, n)) {
            auto u = static_cast<std::uint32_t>(n);
            BYTE b[4] = {static_cast<BYTE>(u), static_cast<BYTE>(u >> 8), static_cast<BYTE>(u >> 16),
                         static_cast<BYTE>(u >> 24)};
            RegSetValueExA(key.get(), valueKey_.c_str(), 0, REG_DWORD, b, 4);
        }
    }
}

bool cRegistry::EnumerateValues(std::vector<std::string>& sKeyNames, std::int32_t& iKeyCount) const {
    iKeyCount = 0;
    sKeyNames.clear();
    OpenKey key(classKey_, sectionKey_, kRead);
    if (!key.ok()) return true;
    DWORD longest = 0;
    RegQueryInfoKeyA(key.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &longest, nullptr,
                     nullptr, nullptr);
    for (DWORD index = 0;; ++index) {
        std::string name(longest + 1, '\0');
        DWORD len = longest + 1;
        if (RegEnumValueA(key.get(), index, name.data(), &len, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            break;
        name.resize(len);
        if (sKeyNames.empty()) sKeyNames.emplace_back();
        sKeyNames.push_back(name);
        ++iKeyCount;
    }
    return true;
}

bool cRegistry::EnumerateSections(std::vector<std::string>& sSect, std::int32_t& iSectCount) const {
    iSectCount = 0;
    sSect.clear();
    OpenKey key(classKey_, sectionKey_, kEnumerate);
    if (!key.ok()) return true;
    for (DWORD index = 0;; ++index) {
        char buf[255] = {};
        LONG r = RegEnumKeyA(key.get(), index, buf, sizeof buf);
        if (r == ERROR_NO_MORE_ITEMS) return true;
        if (r != ERROR_SUCCESS) return false;
        if (sSect.empty()) sSect.emplace_back();
        sSect.emplace_back(buf);
        ++iSectCount;
    }
}
