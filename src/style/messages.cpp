#include "style/messages.h"

#include <cstdio>

std::string GroupedNumber(std::int64_t value) {
    const bool negative = value < 0;
    // Magnitude without overflow for the most negative value.
    const auto magnitude = negative ? static_cast<std::uint64_t>(-(value + 1)) + 1 : static_cast<std::uint64_t>(value);
    const std::string digits = std::to_string(magnitude);
    std::string out;
    const auto n = digits.size();
    for (std::size_t i = 0; i < n; ++i) {
        out += digits[i];
        const auto left = n - i - 1;
        if (left > 0 && left % 3 == 0) out += ',';
    }
    return negative ? "-" + out : out;
}

std::string PrintableTag(std::string_view tag) {
    std::string out;
    for (const char c : tag) {
        const auto b = static_cast<unsigned char>(c);
        if (b >= 0x20 && b < 0x7F) {
            out += c;
        } else {
            char buf[8];
            std::snprintf(buf, sizeof buf, "\\x%02X", b);
            out += buf;
        }
    }
    return out;
}
