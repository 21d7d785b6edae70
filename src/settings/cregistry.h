#pragma once
// cRegistry: one place in the registry (hive, key path, value name); every
// operation opens the key, does one thing and closes it again.
// Windows: the Win32 registry. Linux: the current user's registry of the Wine
// prefix ($WINEPREFIX, else ~/.wine), read and written in Wine's text format.

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

// A value as read: empty (nothing there), text, a 32-bit number or bytes.
using RegValue = std::variant<std::monostate, std::string, std::int32_t, std::vector<std::uint8_t>>;

// Text of a value the way the program compares it: empty for nothing.
std::string RegValueText(const RegValue& v);

inline constexpr std::int32_t HKEY_CLASSES_ROOT_ = static_cast<std::int32_t>(0x80000000u);
inline constexpr std::int32_t HKEY_CURRENT_USER_ = static_cast<std::int32_t>(0x80000001u);
inline constexpr std::int32_t HKEY_LOCAL_MACHINE_ = static_cast<std::int32_t>(0x80000002u);
inline constexpr std::int32_t HKEY_USERS_ = static_cast<std::int32_t>(0x80000003u);

inline constexpr std::int32_t REG_NONE_ = 0;
inline constexpr std::int32_t REG_SZ_ = 1;
inline constexpr std::int32_t REG_EXPAND_SZ_ = 2;
inline constexpr std::int32_t REG_BINARY_ = 3;
inline constexpr std::int32_t REG_DWORD_ = 4;
inline constexpr std::int32_t REG_DWORD_BIG_ENDIAN_ = 5;
inline constexpr std::int32_t REG_MULTI_SZ_ = 7;

class cRegistry {
public:
    bool KeyExists() const;
    bool CreateKey();
    bool DeleteKey();
    bool DeleteValue();
    RegValue Value() const;              // read; Default when there is nothing to read
    void Value(const RegValue& vValue);  // write, as ValueType says
    // Arrays are 1-based as designed: index 0 is an unused empty string.
    bool EnumerateValues(std::vector<std::string>& sKeyNames, std::int32_t& iKeyCount) const;
    bool EnumerateSections(std::vector<std::string>& sSect, std::int32_t& iSectCount) const;

    std::int32_t ValueType() const { return valueType_; }
    void ValueType(std::int32_t v) { valueType_ = v; }
    std::int32_t ClassKey() const { return classKey_; }
    void ClassKey(std::int32_t v) { classKey_ = v; }
    const std::string& SectionKey() const { return sectionKey_; }
    void SectionKey(std::string v) { sectionKey_ = std::move(v); }
    const std::string& ValueKey() const { return valueKey_; }
    void ValueKey(std::string v) { valueKey_ = std::move(v); }
    const RegValue& Default() const { return default_; }
    void Default(RegValue v) { default_ = std::move(v); }

private:
    std::int32_t classKey_ = 0;
    std::string sectionKey_;
    std::string valueKey_;
    RegValue default_;
    mutable std::int32_t valueType_ = 0;
};

// The registry's style path is a Windows path. On Linux it names a file of the
// Wine prefix (dosdevices/c: and the other drive links, names matched without
// regard to case); this turns it into a path that can be opened here. A path
// that is not a Windows path, and any path on Windows, comes back unchanged.
std::string LocalPathForStylePath(const std::string& sWindowsPath);
