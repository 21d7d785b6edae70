#include "style/spritesearch.h"

#include <cctype>
#include <string>

namespace ombrevale::spritesearch {
namespace {

constexpr std::array<std::string_view, 6> kGroups = {"car", "ped", "code object", "map object", "user", "font"};

// Lower case, ':' dropped, runs of spaces as one, trimmed.
std::string Normal(std::string_view text) {
    std::string out;
    for (char ch : text) {
        const auto c = static_cast<unsigned char>(ch);
        if (c == ':') continue;
        if (std::isspace(c)) {
            if (!out.empty() && out.back() != ' ') out += ' ';
            continue;
        }
        out += static_cast<char>(std::tolower(c));
    }
    if (!out.empty() && out.back() == ' ') out.pop_back();
    return out;
}

std::optional<long> Number(std::string_view digits) {
    if (digits.empty() || digits.size() > 6) return std::nullopt;
    long v = 0;
    for (char ch : digits) {
        if (ch < '0' || ch > '9') return std::nullopt;
        v = v * 10 + (ch - '0');
    }
    return v;
}

}  // namespace

std::optional<int> FindSprite(std::string_view text, const std::array<std::int16_t, 6>& groupCounts) {
    const std::string s = Normal(text);
    long first = 0, total = 0;
    for (auto c : groupCounts) total += std::max<long>(0, c);
    if (const auto n = Number(s)) {
        if (*n < total) return static_cast<int>(*n);
        return std::nullopt;
    }
    for (std::size_t g = 0; g < kGroups.size(); ++g) {
        const long count = std::max<long>(0, groupCounts[g]);
        const std::string_view word = kGroups[g];
        // "code 2" and "map 5" are enough for the two object groups.
        const std::string_view shortWord = word.substr(0, word.find(' '));
        for (std::string_view w : {word, shortWord}) {
            if (s.size() <= w.size() + 1 || s.compare(0, w.size(), w) != 0 || s[w.size()] != ' ') continue;
            const auto n = Number(std::string_view(s).substr(w.size() + 1));
            if (n && *n >= 1 && *n <= count) return static_cast<int>(first + *n - 1);
            return std::nullopt;
        }
        first += count;
    }
    return std::nullopt;
}

}  // namespace ombrevale::spritesearch
