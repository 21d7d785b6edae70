#include "cliargs.h"

#include <charconv>
#include <map>

#include "clierror.h"

namespace cli {

const char* const kUsage =
    "usage: ombrevale-cli info STYLE | save STYLE OUT | tile STYLE N OUT.bmp | sprite STYLE N OUT.bmp [--pal P] | "
    "delta STYLE SPRITE D OUT.bmp [--pal P] | import-palette STYLE P FILE.pal OUT | export STYLE DIR [--png] | "
    "sheet STYLE OUT.png [--columns N] [--transparent]";

namespace {

struct Shape {
    std::size_t words;
    bool pal, png, columns, transparent;
    std::vector<std::size_t> numbers = {};  // which words are numbers
};

const std::map<std::string, Shape>& Commands() {
    static const std::map<std::string, Shape> commands = {
        {"info", {1, false, false, false, false}},         {"save", {2, false, false, false, false}},
        {"tile", {3, false, false, false, false, {1}}},    {"sprite", {3, true, false, false, false, {1}}},
        {"delta", {4, true, false, false, false, {1, 2}}}, {"import-palette", {4, false, false, false, false, {1}}},
        {"export", {2, false, true, false, false}},        {"sheet", {2, false, false, true, true}},
    };
    return commands;
}

}  // namespace

std::int64_t ParseNumber(const std::string& text, const std::string& what) {
    std::int64_t value = 0;
    const char* first = text.data();
    const char* last = text.data() + text.size();
    if (!text.empty() && text[0] == '+') ++first;
    const auto [end, ec] = std::from_chars(first, last, value);
    if (text.empty() || ec != std::errc() || end != last)
        throw UsageError(what + " must be a decimal number, not \"" + text + "\"");
    return value;
}

Args ParseArgs(const std::vector<std::string>& argv) {
    if (argv.empty()) throw UsageError("no command given");
    Args args;
    args.command = argv[0];
    const auto found = Commands().find(args.command);
    if (found == Commands().end()) throw UsageError("unknown command \"" + args.command + "\"");
    const Shape& shape = found->second;
    for (std::size_t i = 1; i < argv.size(); ++i) {
        const std::string& a = argv[i];
        auto value = [&](const std::string& name) -> const std::string& {
            if (i + 1 >= argv.size()) throw UsageError(name + " needs a number");
            return argv[++i];
        };
        if (a == "--pal" && shape.pal && !args.pal) {
            args.pal = ParseNumber(value(a), "--pal");
        } else if (a == "--columns" && shape.columns && !args.columns) {
            args.columns = ParseNumber(value(a), "--columns");
        } else if (a == "--png" && shape.png && !args.png) {
            args.png = true;
        } else if (a == "--transparent" && shape.transparent && !args.transparent) {
            args.transparent = true;
        } else if (a.size() > 1 && a[0] == '-' && !(a[1] >= '0' && a[1] <= '9')) {
            throw UsageError("option " + a + " is not one of " + args.command + "'s, or is given twice");
        } else {
            args.words.push_back(a);
        }
    }
    if (args.words.size() != shape.words)
        throw UsageError(args.command + " takes " + std::to_string(shape.words) + " argument(s), not " +
                         std::to_string(args.words.size()));
    for (std::size_t i : shape.numbers) ParseNumber(args.words[i], "argument " + std::to_string(i + 1));
    return args;
}

}  // namespace cli
