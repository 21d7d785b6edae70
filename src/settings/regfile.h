#pragma once
// Wine's registry files (user.reg, system.reg) in their own text format:
//   WINE REGISTRY Version 2
//   [Software\\Vendor\\App] 1700000000
//   #time=1d9...
//   "name"="text"   @="default"   "x"=str(2):"%PATH%"   "n"=dword:0000002a
//   "b"=hex:01,02,<backslash, newline, two spaces>03   "m"=hex(7):61,00,00,00
// Names compare without regard to case, as Windows does. Keys and values that
// are not changed are written back exactly as they were read.

#include <cstdint>
#include <string>
#include <vector>

#include "style/problem.h"

namespace ombrevale::regfile {

using Text = std::u16string;

struct Value {
    Text name;  // empty for the default value "@"
    std::uint32_t type = 0;
    std::vector<std::uint8_t> data;  // as Windows stores it: strings are UTF-16LE
    std::string raw;                 // the lines as read; empty once changed
};

struct Key {
    Text path;                      // "Software\Vendor\App", separators unescaped
    std::string head;               // "[...] secs" and its "#" lines as read; empty once changed
    std::vector<std::string> meta;  // "#" lines other than #time, kept on rewrite
    std::vector<Value> values;      // in Wine's order: sorted without regard to case
};

// Case-insensitive order and equality of names, the way Wine sorts them.
int CompareNames(const Text& a, const Text& b);
bool SameName(const Text& a, const Text& b);

// Text escapes of the format. `quote` is the character escaped besides '\'
// ('"' in values and names, ']' and '[' in key paths).
std::string Escape(const Text& s, bool keyPath);
// Reads an escaped text starting at pos up to `endChar`; pos is left on endChar.
// False when endChar never comes.
bool Unescape(const std::string& line, std::size_t& pos, char endChar, Text& out);

// Plain 8-bit text (the "A" side of the registry calls) and UTF-16.
Text Widen(const std::string& s);
std::string Narrow(const Text& s);

class File {
public:
    // Reads and parses `text`. Lines that do not fit the format make the file
    // damaged: it still reads, but Serialize refuses it. The problem names the
    // first such line.
    void Parse(const std::string& text);
    const Outcome& Problem() const { return problem_; }
    // Whole file text; empty optional is modelled by a false result.
    bool Serialize(std::string& out) const;

    // Key paths are relative to the file's root; "" is the root.
    Key* FindKey(const Text& path);
    const Key* FindKey(const Text& path) const;
    // A key exists when it has an entry or something below it does.
    bool KeyExists(const Text& path) const;
    std::vector<Text> SubKeys(const Text& path) const;
    // Adds an entry for path if it has none; true when something changed.
    bool AddKey(const Text& path, std::uint64_t unixSeconds);
    // False when the key is missing or has subkeys (Windows refuses those).
    bool RemoveKey(const Text& path, std::uint64_t unixSeconds);

    static Value* FindValue(Key& key, const Text& name);
    static const Value* FindValue(const Key& key, const Text& name);
    // Sets or replaces a value, keeping the sorted order; the key is rewritten.
    static void SetValue(Key& key, Value v, std::uint64_t unixSeconds);
    static bool RemoveValue(Key& key, const Text& name, std::uint64_t unixSeconds);
    static void Touch(Key& key, std::uint64_t unixSeconds);

    std::vector<Key>& Keys() { return keys_; }

private:
    std::string preamble_;
    std::vector<Key> keys_;
    Outcome problem_;
};

// One value's lines in Wine's layout (name, type prefix, hex wrapped at 76).
std::string FormatValue(const Value& v);
// Parses one value (its continuation lines already joined). False on anything unknown.
bool ParseValue(const std::string& joined, Value& v);

// Splits a path at '\'; false on an empty component ("a\\b").
bool SplitPath(const Text& path, std::vector<Text>& parts);

}  // namespace ombrevale::regfile
