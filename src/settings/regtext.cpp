// Names, escapes and the per-value lines of Wine's registry files.
#include <cstdio>

#include "settings/regfile.h"

namespace ombrevale::regfile {

namespace {

char16_t Upper(char16_t c) {
    if (c >= u'a' && c <= u'z') return static_cast<char16_t>(c - 32);
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return static_cast<char16_t>(c - 32);
    return c;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Wine writes only ASCII, but a hand-edited file may hold UTF-8.
char16_t ReadUtf8(const std::string& s, std::size_t& pos) {
    auto b = static_cast<unsigned char>(s[pos++]);
    if (b < 0x80) return b;
    int extra = (b & 0xE0) == 0xC0 ? 1 : (b & 0xF0) == 0xE0 ? 2 : 0;
    unsigned value = extra == 1 ? (b & 0x1Fu) : (b & 0x0Fu);
    if (extra == 0) return u'?';
    for (int i = 0; i < extra; ++i) {
        if (pos >= s.size() || (static_cast<unsigned char>(s[pos]) & 0xC0) != 0x80) return u'?';
        value = (value << 6) | (static_cast<unsigned char>(s[pos++]) & 0x3Fu);
    }
    return static_cast<char16_t>(value);
}

}  // namespace

int CompareNames(const Text& a, const Text& b) {
    std::size_t n = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < n; ++i) {
        char16_t x = Upper(a[i]), y = Upper(b[i]);
        if (x != y) return x < y ? -1 : 1;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

bool SameName(const Text& a, const Text& b) { return a.size() == b.size() && CompareNames(a, b) == 0; }

std::string Escape(const Text& s, bool keyPath) {
    static const char kEscapes[33] = ".......abtnvfr.............e....";
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        char16_t c = s[i];
        bool nextIsDigit = i + 1 < s.size() && s[i + 1] < 128 && HexDigit(static_cast<char>(s[i + 1])) >= 0;
        char buf[16];
        if (c > 127) {
            std::snprintf(buf, sizeof buf, nextIsDigit ? "\\x%04x" : "\\x%x", static_cast<unsigned>(c));
            out += buf;
        } else if (c < 32) {
            bool nextIsOctal = i + 1 < s.size() && s[i + 1] >= u'0' && s[i + 1] <= u'7';
            if (kEscapes[c] != '.') {
                out += '\\';
                out += kEscapes[c];
            } else {
                std::snprintf(buf, sizeof buf, nextIsOctal ? "\\%03o" : "\\%o", static_cast<unsigned>(c));
                out += buf;
            }
        } else {
            // In a key path the separator stays a separator: written as "\\".
            if (c == u'\\' || (keyPath ? (c == u'[' || c == u']') : c == u'"')) out += '\\';
            out += static_cast<char>(c);
        }
    }
    return out;
}

bool Unescape(const std::string& line, std::size_t& pos, char endChar, Text& out) {
    out.clear();
    while (pos < line.size() && line[pos] != endChar) {
        if (line[pos] != '\\') {
            out += ReadUtf8(line, pos);
            continue;
        }
        if (++pos >= line.size()) return false;
        char c = line[pos];
        switch (c) {
            case 'a':
                out += u'\a';
                ++pos;
                break;
            case 'b':
                out += u'\b';
                ++pos;
                break;
            case 'e':
                out += u'\x1b';
                ++pos;
                break;
            case 'f':
                out += u'\f';
                ++pos;
                break;
            case 'n':
                out += u'\n';
                ++pos;
                break;
            case 'r':
                out += u'\r';
                ++pos;
                break;
            case 't':
                out += u'\t';
                ++pos;
                break;
            case 'v':
                out += u'\v';
                ++pos;
                break;
            case 'x': {
                ++pos;
                unsigned v = 0;
                for (int i = 0; i < 4 && pos < line.size() && HexDigit(line[pos]) >= 0; ++i)
                    v = v * 16 + static_cast<unsigned>(HexDigit(line[pos++]));
                out += static_cast<char16_t>(v);
                break;
            }
            default:
                if (c >= '0' && c <= '7') {
                    unsigned v = 0;
                    for (int i = 0; i < 3 && pos < line.size() && line[pos] >= '0' && line[pos] <= '7'; ++i)
                        v = v * 8 + static_cast<unsigned>(line[pos++] - '0');
                    out += static_cast<char16_t>(v);
                } else {
                    out += ReadUtf8(line, pos);
                }
        }
    }
    return pos < line.size();
}

// The "A" calls see Latin-1 text; a character beyond it turns into '?', as a
// code page conversion of the platform would.
Text Widen(const std::string& s) {
    Text out;
    out.reserve(s.size());
    for (char c : s) out += static_cast<char16_t>(static_cast<unsigned char>(c));
    return out;
}

std::string Narrow(const Text& s) {
    std::string out;
    out.reserve(s.size());
    for (char16_t c : s) out += c < 256 ? static_cast<char>(static_cast<unsigned char>(c)) : '?';
    return out;
}

static std::string NamePart(const Value& v) {
    return v.name.empty() ? std::string("@=") : "\"" + Escape(v.name, false) + "\"=";
}

std::string FormatValue(const Value& v) {
    std::string out = NamePart(v);
    char buf[32];
    const auto& d = v.data;
    bool stringType = v.type == 1 || v.type == 2 || v.type == 7;
    if (stringType && d.size() >= 2 && d.size() % 2 == 0 && d[d.size() - 1] == 0 && d[d.size() - 2] == 0) {
        if (v.type != 1) {
            std::snprintf(buf, sizeof buf, "str(%x):", v.type);
            out += buf;
        }
        Text units;
        for (std::size_t i = 0; i + 2 < d.size(); i += 2) units += static_cast<char16_t>(d[i] | (d[i + 1] << 8));
        return out + "\"" + Escape(units, false) + "\"\n";
    }
    if (v.type == 4 && d.size() == 4) {
        unsigned dw = static_cast<unsigned>(d[0]) | (static_cast<unsigned>(d[1]) << 8) |
                      (static_cast<unsigned>(d[2]) << 16) | (static_cast<unsigned>(d[3]) << 24);
        std::snprintf(buf, sizeof buf, "dword:%08x\n", dw);
        return out + buf;
    }
    if (v.type == 3) {
        out += "hex:";
    } else {
        std::snprintf(buf, sizeof buf, "hex(%x):", v.type);
        out += buf;
    }
    // Wine counts the name part too before it wraps a line.
    std::size_t count = out.size();
    for (std::size_t i = 0; i < d.size(); ++i) {
        std::snprintf(buf, sizeof buf, "%02x", d[i]);
        out += buf;
        count += 2;
        if (i + 1 < d.size()) {
            out += ',';
            if (++count > 76) {
                out += "\\\n  ";
                count = 2;
            }
        }
    }
    return out + "\n";
}

static bool ParseHexNumber(const std::string& s, std::size_t& pos, std::uint32_t& v, std::size_t maxDigits) {
    std::size_t start = pos;
    v = 0;
    while (pos < s.size() && pos - start < maxDigits && HexDigit(s[pos]) >= 0)
        v = v * 16 + static_cast<std::uint32_t>(HexDigit(s[pos++]));
    return pos > start;
}

static bool RestIsBlank(const std::string& s, std::size_t pos) {
    for (; pos < s.size(); ++pos)
        if (s[pos] != ' ' && s[pos] != '\t' && s[pos] != '\r') return false;
    return true;
}

static void StringData(const Text& t, std::vector<std::uint8_t>& data) {
    data.clear();
    for (char16_t c : t) {
        data.push_back(static_cast<std::uint8_t>(c & 0xFF));
        data.push_back(static_cast<std::uint8_t>(c >> 8));
    }
    data.push_back(0);
    data.push_back(0);
}

bool ParseValue(const std::string& s, Value& v) {
    std::size_t pos = 0;
    v = Value{};
    if (s.rfind("@=", 0) == 0) {
        pos = 2;
    } else if (!s.empty() && s[0] == '"') {
        pos = 1;
        if (!Unescape(s, pos, '"', v.name)) return false;
        if (s.compare(pos, 2, "\"=") != 0) return false;
        pos += 2;
    } else {
        return false;
    }
    std::uint32_t type = 1;
    if (s.compare(pos, 4, "str(") == 0) {
        pos += 4;
        if (!ParseHexNumber(s, pos, type, 8) || s.compare(pos, 2, "):") != 0) return false;
        pos += 2;
    }
    if (pos < s.size() && s[pos] == '"') {
        Text t;
        ++pos;
        if (!Unescape(s, pos, '"', t) || !RestIsBlank(s, pos + 1)) return false;
        v.type = type;
        StringData(t, v.data);
        return true;
    }
    if (type != 1) return false;  // str(x): without a quoted text
    if (s.compare(pos, 6, "dword:") == 0) {
        pos += 6;
        std::uint32_t dw = 0;
        if (!ParseHexNumber(s, pos, dw, 8) || !RestIsBlank(s, pos)) return false;
        v.type = 4;
        v.data = {static_cast<std::uint8_t>(dw), static_cast<std::uint8_t>(dw >> 8),
                  static_cast<std::uint8_t>(dw >> 16), static_cast<std::uint8_t>(dw >> 24)};
        return true;
    }
    if (s.compare(pos, 4, "hex:") == 0) {
        pos += 4;
        v.type = 3;
    } else if (s.compare(pos, 4, "hex(") == 0) {
        pos += 4;
        if (!ParseHexNumber(s, pos, v.type, 8) || s.compare(pos, 2, "):") != 0) return false;
        pos += 2;
    } else {
        return false;
    }
    while (pos < s.size()) {
        while (pos < s.size() && (s[pos] == ' ' || s[pos] == '\t' || s[pos] == '\r')) ++pos;
        if (pos >= s.size()) break;
        std::uint32_t b = 0;
        std::size_t start = pos;
        if (!ParseHexNumber(s, pos, b, 2) || pos - start != 2) return false;
        v.data.push_back(static_cast<std::uint8_t>(b));
        while (pos < s.size() && (s[pos] == ' ' || s[pos] == '\t' || s[pos] == '\r')) ++pos;
        if (pos < s.size() && s[pos] != ',') return false;
        if (pos < s.size()) ++pos;
    }
    return true;
}

bool SplitPath(const Text& path, std::vector<Text>& parts) {
    parts.clear();
    if (path.empty()) return true;
    Text cur;
    for (char16_t c : path) {
        if (c == u'\\') {
            if (cur.empty()) return false;
            parts.push_back(cur);
            cur.clear();
        } else {
            cur += c;
        }
    }
    // A trailing separator names the same key.
    if (!cur.empty()) parts.push_back(cur);
    return true;
}

}  // namespace ombrevale::regfile
