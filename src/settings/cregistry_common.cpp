// What the registry backends share: the % test, byte order, value conversions.
#include <string>

#include "settings/cregistry_impl.h"

std::string RegValueText(const RegValue& v) { return ombrevale::cregistry_impl::ValueAsText(v); }

namespace ombrevale::cregistry_impl {

bool IsExpandableText(const std::string& s) {
    std::size_t first = s.find('%');
    return first != std::string::npos && s.find('%', first + 2) != std::string::npos;
}

std::int32_t SwapEndian(std::int32_t l) {
    auto u = static_cast<std::uint32_t>(l);
    u = (u >> 24) | ((u >> 8) & 0xFF00u) | ((u << 8) & 0xFF0000u) | (u << 24);
    return static_cast<std::int32_t>(u);
}

std::string ValueAsText(const RegValue& v) {
    if (const auto* s = std::get_if<std::string>(&v)) return *s;
    if (const auto* n = std::get_if<std::int32_t>(&v)) return std::to_string(*n);
    if (const auto* b = std::get_if<std::vector<std::uint8_t>>(&v)) return std::string(b->begin(), b->end());
    return {};
}

bool ValueAsNumber(const RegValue& v, std::int32_t& n) {
    const auto* p = std::get_if<std::int32_t>(&v);
    if (!p) return false;
    n = *p;
    return true;
}

std::int32_t NumberFromBytes(const std::uint8_t* p, std::size_t n) {
    std::uint32_t u = 0;
    for (std::size_t i = 0; i < 4 && i < n; ++i) u |= static_cast<std::uint32_t>(p[i]) << (8 * i);
    return static_cast<std::int32_t>(u);
}

}  // namespace ombrevale::cregistry_impl
