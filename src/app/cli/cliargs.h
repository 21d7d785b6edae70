#pragma once
// The command line, parsed: a command, its positional words and its options.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ombrevale::cli {

struct Args {
    std::string command;
    std::vector<std::string> words;  // positional, after the command
    std::optional<std::int64_t> pal;
    std::optional<std::int64_t> columns;
    bool png = false;
    bool transparent = false;
    // Colours a palette does not hold may take its nearest.
    bool nearest = false;
    // The picture gets a palette of its own.
    bool newPalette = false;
    bool discard = false;
    // Writes the files that can go in when others are refused.
    bool skipRefused = false;
    // A style's own font, from 1; none: the fixed rule.
    std::optional<std::int64_t> font;
    // FIELD=VALUE, in the order given.
    std::vector<std::string> sets;
    // The map commands: the style a map-info counts against, and how map draws.
    std::optional<std::string> style;
    std::optional<std::string> area;
    std::optional<std::int64_t> level;
    std::optional<std::int64_t> scale;
    bool shade = false, zones = false, arrows = false;
};

// --pal as the document takes it: -1 for the sprite's own palette.
inline std::int16_t PalOption(const Args& args) { return static_cast<std::int16_t>(args.pal.value_or(-1)); }

// Throws UsageError for an unknown command, a wrong number of words, an
// option the command does not take, or a number that is not a decimal number.
Args ParseArgs(const std::vector<std::string>& argv);

// A decimal whole number, sign allowed; throws UsageError naming `what` otherwise.
std::int64_t ParseNumber(const std::string& text, const std::string& what);

// The usage of every command, printed after a usage error: lines of at most
// 80 columns, commands separated by " |".
std::string Usage();
// --help: every command with what it does.
std::string Help();
// help COMMAND: that command's usage; throws UsageError for an unknown one.
std::string CommandHelp(const std::string& name);

}  // namespace ombrevale::cli
