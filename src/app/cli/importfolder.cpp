// import: a folder as export writes it, back into the style, written once.
#include <cstdio>

#include "clierror.h"
#include "commands.h"
#include "folderimport/folderimport.h"
#include "style/clssty.h"

namespace ombrevale::cli {

int RunImportFolder(const Args& args) {
    const std::string& style = args.words[0];
    const std::string& dir = args.words[1];
    clsSTY doc;
    LoadStyle(doc, style);
    if (args.nearest && args.newPalette) throw UsageError("--nearest and --new-palette exclude each other");
    const auto colours = args.newPalette ? folderimport::Colours::OwnPalette
                         : args.nearest  ? folderimport::Colours::Nearest
                                         : folderimport::Colours::Exact;
    const folderimport::Plan plan = folderimport::Read(doc, dir, colours);
    for (const auto& change : plan.changes) std::printf("changed %s\n", folderimport::Describe(change).c_str());
    for (const auto& refusal : plan.refusals)
        std::fprintf(stderr, "ombrevale-cli: %s: %s\n", refusal.file.c_str(), refusal.why.c_str());
    const bool write = plan.refusals.empty() || (args.skipRefused && !plan.changes.empty());
    const std::string summary = std::to_string(plan.changes.size()) + " changed, " + std::to_string(plan.unchanged) +
                                " unchanged, " + std::to_string(plan.refusals.size()) + " refused";
    if (!write) {
        std::fprintf(stderr, "ombrevale-cli: %s; nothing written%s\n", summary.c_str(),
                     plan.changes.empty() ? "" : " (--skip-refused writes the rest)");
        return kExitFailed;
    }
    folderimport::Apply(doc, plan);
    SaveStyle(doc, args.words[2]);
    std::printf("%s; written %s\n", summary.c_str(), args.words[2].c_str());
    return kExitOk;
}

}  // namespace ombrevale::cli
