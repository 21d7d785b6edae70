// Parsing and writing whole Wine registry files, and the key operations on them.
#include "settings/regfile.h"

#include <algorithm>
#include <cstdio>

namespace ombrevale::regfile {

namespace {

constexpr const char* kMagic = "WINE REGISTRY Version 2";

bool JoinPathTo(const Text& path, Text& normal) {
    std::vector<Text> parts;
    if (!SplitPath(path, parts)) return false;
    normal.clear();
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i) normal += u'\\';
        normal += parts[i];
    }
    return true;
}

// True when `path` lies strictly below `parent`; `rest` gets what follows it.
bool Below(const Text& path, const Text& parent, Text& rest) {
    if (parent.empty()) {
        rest = path;
        return !path.empty();
    }
    if (path.size() <= parent.size() + 1 || path[parent.size()] != u'\\') return false;
    if (!SameName(path.substr(0, parent.size()), parent)) return false;
    rest = path.substr(parent.size() + 1);
    return true;
}

std::string KeyHead(const Key& key, std::uint64_t unixSeconds) {
    char buf[64];
    std::string out = "[" + Escape(key.path, true) + "] ";
    std::snprintf(buf, sizeof buf, "%llu\n", static_cast<unsigned long long>(unixSeconds));
    out += buf;
    unsigned long long fileTime = (unixSeconds + 11644473600ULL) * 10000000ULL;
    std::snprintf(buf, sizeof buf, "#time=%llx\n", fileTime);
    out += buf;
    for (const auto& m : key.meta) out += m + "\n";
    return out;
}

}  // namespace

void File::Parse(const std::string& text) {
    preamble_.clear();
    keys_.clear();
    problem_.reset();
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t nl = text.find('\n', start);
        if (nl == std::string::npos) nl = text.size();
        lines.push_back(text.substr(start, nl - start));
        start = nl + 1;
    }
    auto fail = [&](std::size_t i, const std::string& why) {
        if (!problem_)
            problem_ =
                ombrevale::Problem{ombrevale::Problem::Kind::Damaged, "line " + std::to_string(i + 1) + ": " + why};
    };
    if (lines.empty() || lines[0] != kMagic) fail(0, "not a Wine registry file");

    std::size_t i = 0;
    std::vector<std::string> pre;
    for (; i < lines.size() && (lines[i].empty() || lines[i][0] != '['); ++i) {
        const std::string& l = lines[i];
        if (!l.empty() && l[0] != ';' && l[0] != '#' && i != 0) fail(i, "a value outside any key");
        pre.push_back(l);
    }
    while (!pre.empty() && pre.back().empty()) pre.pop_back();
    for (const auto& l : pre) preamble_ += l + "\n";

    for (; i < lines.size(); ++i) {
        const std::string& l = lines[i];
        if (l.empty()) continue;
        if (l[0] == '[') {
            Key key;
            std::size_t pos = 1;
            if (!Unescape(l, pos, ']', key.path)) {
                fail(i, "a key line without its closing bracket");
                continue;
            }
            key.head = l + "\n";
            for (; i + 1 < lines.size() && !lines[i + 1].empty() && lines[i + 1][0] == '#'; ++i) {
                key.head += lines[i + 1] + "\n";
                if (lines[i + 1].rfind("#time=", 0) != 0) key.meta.push_back(lines[i + 1]);
            }
            keys_.push_back(std::move(key));
            continue;
        }
        if (l[0] == ';' || keys_.empty()) {
            if (keys_.empty()) {
                fail(i, "a line outside any key");
            } else if (keys_.back().values.empty()) {
                keys_.back().head += l + "\n";
            } else {
                keys_.back().values.back().raw += l + "\n";
            }
            continue;
        }
        std::string raw = l + "\n";
        std::string joined = l;
        // Only hex data runs on over lines ending in a backslash.
        std::size_t eq = l.find("=hex");
        if (eq != std::string::npos) {
            while (!joined.empty() && joined.back() == '\\' && i + 1 < lines.size()) {
                joined.pop_back();
                ++i;
                raw += lines[i] + "\n";
                joined += lines[i];
            }
        }
        Value v;
        if (!ParseValue(joined, v)) {
            fail(i, "a value Wine's format does not allow");
            continue;
        }
        v.raw = raw;
        keys_.back().values.push_back(std::move(v));
    }
}

bool File::Serialize(std::string& out) const {
    if (problem_) return false;
    out = preamble_;
    for (const auto& key : keys_) {
        out += "\n";
        out += key.head;
        for (const auto& v : key.values) out += v.raw.empty() ? FormatValue(v) : v.raw;
    }
    return true;
}

Key* File::FindKey(const Text& path) {
    Text normal;
    if (!JoinPathTo(path, normal)) return nullptr;
    for (auto& k : keys_)
        if (SameName(k.path, normal)) return &k;
    return nullptr;
}

const Key* File::FindKey(const Text& path) const { return const_cast<File*>(this)->FindKey(path); }

bool File::KeyExists(const Text& path) const {
    Text normal, rest;
    if (!JoinPathTo(path, normal)) return false;
    if (normal.empty()) return true;
    for (const auto& k : keys_)
        if (SameName(k.path, normal) || Below(k.path, normal, rest)) return true;
    return false;
}

std::vector<Text> File::SubKeys(const Text& path) const {
    std::vector<Text> names;
    Text normal, rest;
    if (!JoinPathTo(path, normal)) return names;
    for (const auto& k : keys_) {
        if (!Below(k.path, normal, rest)) continue;
        Text first = rest.substr(0, rest.find(u'\\'));
        bool seen = std::any_of(names.begin(), names.end(), [&](const Text& n) { return SameName(n, first); });
        if (!seen) names.push_back(first);
    }
    std::sort(names.begin(), names.end(), [](const Text& a, const Text& b) { return CompareNames(a, b) < 0; });
    return names;
}

bool File::AddKey(const Text& path, std::uint64_t unixSeconds) {
    Text normal;
    if (!JoinPathTo(path, normal) || normal.empty() || FindKey(normal)) return false;
    Key key;
    key.path = normal;
    key.head = KeyHead(key, unixSeconds);
    keys_.push_back(std::move(key));
    return true;
}

bool File::RemoveKey(const Text& path, std::uint64_t unixSeconds) {
    Text normal;
    if (!JoinPathTo(path, normal) || normal.empty()) return false;
    Key* key = FindKey(normal);
    if (!key || !SubKeys(normal).empty()) return false;
    keys_.erase(keys_.begin() + (key - keys_.data()));
    // The parent was there before and stays, even when nothing else kept it in the file.
    std::size_t cut = normal.rfind(u'\\');
    if (cut != Text::npos) {
        Text parent = normal.substr(0, cut);
        if (!FindKey(parent)) AddKey(parent, unixSeconds);
    }
    return true;
}

Value* File::FindValue(Key& key, const Text& name) {
    for (auto& v : key.values)
        if (SameName(v.name, name)) return &v;
    return nullptr;
}

const Value* File::FindValue(const Key& key, const Text& name) {
    for (const auto& v : key.values)
        if (SameName(v.name, name)) return &v;
    return nullptr;
}

void File::Touch(Key& key, std::uint64_t unixSeconds) { key.head = KeyHead(key, unixSeconds); }

void File::SetValue(Key& key, Value v, std::uint64_t unixSeconds) {
    v.raw.clear();
    if (Value* old = FindValue(key, v.name)) {
        v.name = old->name;  // Windows keeps the name as first written
        *old = std::move(v);
    } else {
        auto at = std::find_if(key.values.begin(), key.values.end(),
                               [&](const Value& x) { return CompareNames(x.name, v.name) > 0; });
        key.values.insert(at, std::move(v));
    }
    Touch(key, unixSeconds);
}

bool File::RemoveValue(Key& key, const Text& name, std::uint64_t unixSeconds) {
    Value* v = FindValue(key, name);
    if (!v) return false;
    key.values.erase(key.values.begin() + (v - key.values.data()));
    Touch(key, unixSeconds);
    return true;
}

}  // namespace ombrevale::regfile
