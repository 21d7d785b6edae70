#include "cliargs.h"

#include <charconv>

#include "clierror.h"

namespace ombrevale::cli {

namespace {

struct Shape {
    std::size_t words;
    bool pal = false, png = false, columns = false, transparent = false, nearest = false;
    std::vector<std::size_t> numbers = {};  // which words are numbers
    std::size_t orWords = 0;                // another number of words the command takes
    bool discard = false;
    bool font = false;
    bool skipRefused = false;
    bool set = false;
    bool newPalette = false;
    bool style = false;    // --style STYLE
    bool mapDraw = false;  // --area, --level, --scale, --shade, --zones, --arrows
};

struct Command {
    const char* name;
    const char* usage;  // the words after the name
    const char* what;
    Shape shape;
};

// In the order the usage and the help list them.
const std::vector<Command>& Commands() {
    static const std::vector<Command> commands = {
        {"info",
         "STYLE",
         "prints the style's sections, counts and tables as one JSON object",
         {1, false, false, false, false, false}},
        {"save",
         "STYLE OUT",
         "writes the style again as OUT; an OUT already there is kept as OUT.bak",
         {2, false, false, false, false, false}},
        {"car",
         "STYLE CAR [--set FIELD=VALUE... OUT]",
         "prints a car record as JSON. CAR is a model number (the record's own, which the window's record "
         "table shows as Model No.), or car:N for the car the Sprites list shows as \"Car: N\"; with --set, "
         "changes those fields and saves the style as OUT",
         {2, false, false, false, false, false, {}, 3, false, false, false, true}},
        {"tile",
         "STYLE N OUT.bmp",
         "writes tile N as a 64 x 64 BMP picture",
         {3, false, false, false, false, false, {1}}},
        {"sprite",
         "STYLE N OUT.bmp [--pal P]",
         "writes sprite N as a BMP picture, in palette P instead of its own",
         {3, true, false, false, false, false, {1}}},
        {"delta",
         "STYLE SPRITE D OUT.bmp [--pal P]",
         "writes delta D of sprite SPRITE as a BMP picture",
         {4, true, false, false, false, false, {1, 2}}},
        {"import-palette",
         "STYLE P FILE.pal OUT",
         "replaces palette P with a JASC-PAL file and saves the style as OUT",
         {4, false, false, false, false, false, {1}}},
        {"import-tile",
         "STYLE N PICTURE OUT [--nearest] [--new-palette]",
         "puts a 64 x 64 picture (BMP or PNG) into tile N and saves the style as OUT; --new-palette gives the "
         "tile a palette of its own made from the picture",
         {.words = 4, .nearest = true, .numbers = {1}, .newPalette = true}},
        {"import-sprite",
         "STYLE N PICTURE OUT [--pal P] [--nearest] [--new-palette]",
         "puts a picture of the sprite's size into sprite N, drawn in palette P instead of its own, or in a new "
         "palette of its own",
         {.words = 4, .pal = true, .nearest = true, .numbers = {1}, .newPalette = true}},
        {"import-delta",
         "STYLE SPRITE D PICTURE OUT [--pal P] [--nearest]",
         "makes delta D of sprite SPRITE from the difference between a picture and the sprite",
         {5, true, false, false, false, true, {1, 2}}},
        {"export",
         "STYLE DIR [--png]",
         "writes every tile, sprite, delta (BMP, or PNG) and palette (JASC-PAL) into DIR",
         {2, false, true, false, false, false}},
        {"sheet",
         "STYLE OUT.png [--columns N] [--transparent]",
         "writes every tile on one PNG sheet, N tiles a row (9 unless given)",
         {2, false, false, true, true, false}},
        {"import",
         "STYLE DIR OUT [--nearest] [--new-palette] [--skip-refused]",
         "takes back a folder as export writes it (any of its files) and saves the style once as OUT",
         {.words = 3, .nearest = true, .skipRefused = true, .newPalette = true}},
        {"text",
         "STYLE TEXT OUT.png [--font N]",
         "sets TEXT in the font sprites as the Font page does: sprite 1366 for \"!\", or the style's font N",
         {3, false, false, false, false, false, {}, 0, false, true}},
        {"map-info",
         "MAP [--style STYLE]",
         "prints a GTA2 map's blocks, tile counts, zones and chunks as one JSON object; with --style, also the "
         "style's tiles the map never uses",
         {.words = 1, .style = true}},
        {"map",
         "STYLE MAP OUT.png [--area X,Y,W,H] [--level Z] [--scale N] [--shade] [--zones] [--arrows]",
         "draws the map from above with the style's tiles, N pixels a block (16 for the whole map, 64 for an "
         "area), the levels up to Z",
         {.words = 3, .mapDraw = true}},
        {"recover",
         "[STYLE OUT] [--discard STYLE]",
         "lists the unsaved edits the window keeps, writes STYLE's edited document as OUT, or drops it",
         {0, false, false, false, false, false, {}, 2, true}},
    };
    return commands;
}

const Command& Find(const std::string& name) {
    for (const Command& c : Commands())
        if (name == c.name) return c;
    throw UsageError("unknown command \"" + name + "\"");
}

}  // namespace

std::string Usage() {
    // Broken only between commands, to fit a terminal of 80 columns. The
    // lines go on under the program's name: under the first command, the
    // longest command would not fit.
    constexpr std::size_t kWidth = 80;
    const std::string indent(std::string("usage: ").size(), ' ');
    std::string text = "usage: ombrevale-cli";
    std::size_t line = text.size();
    const auto put = [&](const std::string& piece, const std::string& lead) {
        if (line + 1 + piece.size() > kWidth) {
            text += "\n" + lead;
            line = lead.size();
        } else {
            text += ' ';
            ++line;
        }
        text += piece;
        line += piece.size();
    };
    for (const Command& c : Commands()) {
        const bool last = &c == &Commands().back();
        const std::string command = std::string(c.name) + " " + c.usage + (last ? "" : " |");
        if (indent.size() + command.size() <= kWidth) {
            put(command, indent);
            continue;
        }
        // A command longer than a line breaks between its options, the rest indented under it.
        std::size_t from = 0;
        for (std::size_t at = command.find(" ["); from < command.size(); at = command.find(" [", from)) {
            const std::size_t end = at == std::string::npos ? command.size() : at;
            put(command.substr(from, end - from), from == 0 ? indent : indent + "  ");
            from = end == command.size() ? end : end + 1;
        }
    }
    return text;
}

std::string Help() {
    std::string text =
        "usage: ombrevale-cli COMMAND ARGUMENTS...\n"
        "GTA2 style files (GBST) without a window, for scripts and batch work.\n\ncommands:\n";
    for (const Command& c : Commands()) text += "  " + std::string(c.name) + " " + c.usage + "\n      " + c.what + "\n";
    return text +
           "\n  help [COMMAND], --help   this text, or one command's usage\n"
           "  --version                the version\n\n"
           "Exit status: 0 done, 1 a file could not be read or written, 2 wrong arguments.\n";
}

std::string CommandHelp(const std::string& name) {
    const Command& c = Find(name);
    return "usage: ombrevale-cli " + std::string(c.name) + " " + c.usage + "\n" + c.what + "\n";
}

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
    const Shape& shape = Find(args.command).shape;
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
        } else if (a == "--nearest" && shape.nearest && !args.nearest) {
            args.nearest = true;
        } else if (a == "--new-palette" && shape.newPalette && !args.newPalette) {
            args.newPalette = true;
        } else if (a == "--skip-refused" && shape.skipRefused && !args.skipRefused) {
            args.skipRefused = true;
        } else if (a == "--font" && shape.font && !args.font) {
            args.font = ParseNumber(value(a), "--font");
        } else if (a == "--set" && shape.set) {
            if (i + 1 >= argv.size()) throw UsageError("--set needs FIELD=VALUE");
            args.sets.push_back(argv[++i]);
        } else if (a == "--style" && shape.style && !args.style) {
            if (i + 1 >= argv.size()) throw UsageError("--style needs a style file");
            args.style = argv[++i];
        } else if (a == "--area" && shape.mapDraw && !args.area) {
            if (i + 1 >= argv.size()) throw UsageError("--area needs X,Y,W,H");
            args.area = argv[++i];
        } else if (a == "--level" && shape.mapDraw && !args.level) {
            args.level = ParseNumber(value(a), "--level");
        } else if (a == "--scale" && shape.mapDraw && !args.scale) {
            args.scale = ParseNumber(value(a), "--scale");
        } else if (a == "--shade" && shape.mapDraw && !args.shade) {
            args.shade = true;
        } else if (a == "--zones" && shape.mapDraw && !args.zones) {
            args.zones = true;
        } else if (a == "--arrows" && shape.mapDraw && !args.arrows) {
            args.arrows = true;
        } else if (a == "--discard" && shape.discard && !args.discard) {
            args.discard = true;
        } else if (a == "--new-palette" && args.command == "import-delta") {
            throw ArgumentRefusal(
                "import-delta takes no --new-palette: a delta is drawn in its sprite's palette; import the whole "
                "sprite with import-sprite --new-palette instead");
        } else if (a.size() > 1 && a[0] == '-' && !(a[1] >= '0' && a[1] <= '9')) {
            throw UsageError("option " + a + " is not one of " + args.command + "'s, or is given twice");
        } else {
            args.words.push_back(a);
        }
    }
    std::string wanted = std::to_string(shape.words);
    bool fits = args.words.size() == shape.words;
    if (args.discard) {
        wanted = "1";
        fits = args.words.size() == 1;
    } else if (shape.orWords > 0) {
        wanted += " or " + std::to_string(shape.orWords);
        fits = fits || args.words.size() == shape.orWords;
    }
    if (!fits)
        throw UsageError(args.command + " takes " + wanted + " argument(s), not " + std::to_string(args.words.size()));
    // --set and OUT come together.
    if (shape.set && args.sets.empty() != (args.words.size() == shape.words))
        throw UsageError(args.sets.empty() ? args.command + " writes OUT only with --set" : "--set needs OUT");
    for (std::size_t i : shape.numbers) ParseNumber(args.words[i], "argument " + std::to_string(i + 1));
    return args;
}

}  // namespace ombrevale::cli
