// ombrevale-cli: the style document without windows, for scripts and batch work.
#include <cstdio>
#include <exception>
#include <map>
#include <string>
#include <vector>

#include "cliargs.h"
#include "clierror.h"
#include "commands.h"

int main(int argc, char** argv) {
    using namespace ombrevale::cli;
    const std::vector<std::string> words(argv + 1, argv + argc);
    const DocumentVoice voice;
    try {
        if (!words.empty() && (words[0] == "--help" || words[0] == "-h" || words[0] == "help")) {
            if (words.size() > 2) throw UsageError("help takes at most one command");
            std::fputs((words.size() == 2 ? CommandHelp(words[1]) : Help()).c_str(), stdout);
            return kExitOk;
        }
        if (words.size() == 1 && words[0] == "--version") {
            std::puts("ombrevale-cli " OMBREVALE_VERSION "\nLicence: GPL-3.0-or-later");
            return kExitOk;
        }
        const Args args = ParseArgs(words);
        static const std::map<std::string, int (*)(const Args&)> run = {
            {"info", RunInfo},
            {"car", RunCar},
            {"save", RunSave},
            {"tile", RunTile},
            {"sprite", RunSprite},
            {"delta", RunDelta},
            {"import-palette", RunImportPalette},
            {"export", RunExport},
            {"sheet", RunSheet},
            {"import-tile", RunImportTile},
            {"import-sprite", RunImportSprite},
            {"import-delta", RunImportDelta},
            {"recover", RunRecover},
            {"text", RunText},
            {"import", RunImportFolder},
            {"map-info", RunMapInfo},
            {"map", RunMap},
        };
        return run.at(args.command)(args);
    } catch (const UsageError& e) {
        std::fprintf(stderr, "ombrevale-cli: %s\n%s\n", e.what(), Usage().c_str());
        return kExitUsage;
    } catch (const ArgumentRefusal& e) {
        std::fprintf(stderr, "ombrevale-cli: %s\n", e.what());
        return kExitUsage;
    } catch (const Failure& e) {
        std::fprintf(stderr, "ombrevale-cli: %s: %s\n", e.file().c_str(), e.what());
        return kExitFailed;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "ombrevale-cli: %s\n", e.what());
        return kExitFailed;
    }
}
