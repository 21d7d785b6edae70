// Any bytes as a Wine registry file, then a key and a value taken from the
// input written into it. A file that parses completely writes out text that
// parses to the same keys and values and writes out the same again; a value
// set in it reads back with its type and bytes; a path and a name survive
// their escapes.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz_common.h"
#include "settings/regfile.h"

using ombrevale::regfile::File;
using ombrevale::regfile::Key;
using ombrevale::regfile::Text;
using ombrevale::regfile::Value;

namespace {

struct Reader {
    const std::uint8_t* p;
    std::size_t n;
    std::uint8_t Byte() {
        if (n == 0) return 0;
        --n;
        return *p++;
    }
    Text Units(std::size_t count) {
        Text t;
        for (std::size_t i = 0; i < count && n; ++i) {
            const std::uint8_t lo = Byte();
            // Mostly plain characters, now and then a wide one.
            t += (lo & 0x80) != 0 ? static_cast<char16_t>(lo | (Byte() << 8)) : static_cast<char16_t>(lo);
        }
        return t;
    }
};

bool SameContents(const File& a, File& b) {
    File& x = const_cast<File&>(a);
    if (x.Keys().size() != b.Keys().size()) return false;
    for (std::size_t k = 0; k < x.Keys().size(); ++k) {
        const Key& ka = x.Keys()[k];
        const Key& kb = b.Keys()[k];
        if (ka.path != kb.path || ka.values.size() != kb.values.size()) return false;
        for (std::size_t v = 0; v < ka.values.size(); ++v) {
            const Value& va = ka.values[v];
            const Value& vb = kb.values[v];
            if (va.name != vb.name || va.type != vb.type || va.data != vb.data) return false;
        }
    }
    return true;
}

void CheckRewrite(const File& file) {
    std::string once;
    if (!file.Serialize(once)) ombrevale::fuzzing::Broken("a complete file did not write");
    File back;
    back.Parse(once);
    if (back.Problem())
        ombrevale::fuzzing::Broken(("what was written does not parse: " + back.Problem()->text).c_str());
    if (!SameContents(file, back)) ombrevale::fuzzing::Broken("what was written reads back different");
    std::string twice;
    if (!back.Serialize(twice) || twice != once) ombrevale::fuzzing::Broken("writing twice gave different text");
}

void CheckEscapes(const Text& s) {
    for (const bool keyPath : {false, true}) {
        const std::string escaped = ombrevale::regfile::Escape(s, keyPath);
        const std::string line = escaped + (keyPath ? "]" : "\"");
        std::size_t pos = 0;
        Text back;
        if (!ombrevale::regfile::Unescape(line, pos, keyPath ? ']' : '"', back) || back != s || pos != escaped.size())
            ombrevale::fuzzing::Broken("a text did not survive its escapes");
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) { return 0; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The file is everything up to the first zero byte; what follows picks the changes.
    std::size_t cut = 0;
    while (cut < size && data[cut] != 0) ++cut;
    File file;
    file.Parse(std::string(reinterpret_cast<const char*>(data), cut));
    Reader rest{data + std::min(cut + 1, size), size - std::min(cut + 1, size)};

    const Text keyName = rest.Units(rest.Byte() % 24);
    const Text valueName = rest.Units(rest.Byte() % 24);
    CheckEscapes(keyName);
    CheckEscapes(valueName);
    if (file.Problem()) {
        std::string refused;
        if (file.Serialize(refused)) ombrevale::fuzzing::Broken("an incomplete file was written");
        return 0;
    }
    CheckRewrite(file);

    Value v;
    v.name = valueName;
    v.type = rest.Byte() % 12;
    const std::size_t length = rest.Byte();
    for (std::size_t i = 0; i < length && rest.n; ++i) v.data.push_back(rest.Byte());

    const Text path = u"Software\\Fuzz\\" + keyName;
    file.AddKey(path, 1700000000);
    Key* key = file.FindKey(path);
    if (!key) return 0;  // an empty path part: no such key can exist
    File::SetValue(*key, v, 1700000001);
    CheckRewrite(file);

    std::string text;
    file.Serialize(text);
    File back;
    back.Parse(text);
    const Key* again = back.FindKey(path);
    const Value* got = again ? File::FindValue(*again, valueName) : nullptr;
    if (!got || got->type != v.type || got->data != v.data) ombrevale::fuzzing::Broken("a value set did not read back");
    return 0;
}
