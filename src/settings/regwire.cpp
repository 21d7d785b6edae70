// The registry read's line format, shared by both ends.
#include "settings/regwire.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <vector>

namespace ombrevale::regwire {

std::string Hex(const std::string& bytes) {
    static const char kDigits[] = "0123456789abcdef";
    std::string out;
    for (char c : bytes) {
        auto u = static_cast<unsigned char>(c);
        out += kDigits[u >> 4];
        out += kDigits[u & 15];
    }
    // An empty text still takes one word on the line.
    return out.empty() ? "-" : out;
}

bool Unhex(const std::string& hex, std::string& bytes) {
    bytes.clear();
    if (hex == "-") return true;
    if (hex.size() % 2 != 0) return false;
    auto digit = [](char c) {
        if (c >= '0' && c <= '9') return c - '0';
        if (c >= 'a' && c <= 'f') return c - 'a' + 10;
        if (c >= 'A' && c <= 'F') return c - 'A' + 10;
        return -1;
    };
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        int hi = digit(hex[i]), lo = digit(hex[i + 1]);
        if (hi < 0 || lo < 0) return false;
        bytes += static_cast<char>(hi * 16 + lo);
    }
    return true;
}

std::string ValueRequest(std::int32_t hive, const std::string& key, const std::string& name) {
    return "regvalue " + std::to_string(hive) + " " + Hex(key) + " " + Hex(name);
}

bool ParseValueRequest(const std::string& line, std::int32_t& hive, std::string& key, std::string& name) {
    std::istringstream in(line);
    std::string word, hexKey, hexName;
    long long h = 0;
    if (!(in >> word >> h >> hexKey >> hexName) || word != "regvalue") return false;
    hive = static_cast<std::int32_t>(h);
    return Unhex(hexKey, key) && Unhex(hexName, name);
}

std::string ValueAnswer(bool found, std::int32_t type, const RegValue& value) {
    if (!found) return "none";
    std::string head = "value " + std::to_string(type) + " ";
    if (const auto* n = std::get_if<std::int32_t>(&value)) return head + "number " + std::to_string(*n);
    if (const auto* b = std::get_if<std::vector<std::uint8_t>>(&value))
        return head + "bytes " + Hex(std::string(b->begin(), b->end()));
    return head + "text " + Hex(RegValueText(value));
}

bool ParseValueAnswer(const std::string& line, bool& found, std::int32_t& type, RegValue& value) {
    found = false;
    if (line == "none") return true;
    std::istringstream in(line);
    std::string word, kind, data;
    long long t = 0;
    if (!(in >> word >> t >> kind >> data) || word != "value") return false;
    type = static_cast<std::int32_t>(t);
    if (kind == "number") {
        char* end = nullptr;
        long long n = std::strtoll(data.c_str(), &end, 10);
        if (*end != '\0') return false;
        value = static_cast<std::int32_t>(n);
    } else {
        std::string bytes;
        if ((kind != "text" && kind != "bytes") || !Unhex(data, bytes)) return false;
        if (kind == "text")
            value = bytes;
        else
            value = std::vector<std::uint8_t>(bytes.begin(), bytes.end());
    }
    found = true;
    return true;
}

}  // namespace ombrevale::regwire
