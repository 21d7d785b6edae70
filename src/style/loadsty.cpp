#include <algorithm>
#include <cctype>
#include <optional>
#include <string_view>
#include <vector>

#include "style/bytecursor.h"
#include "style/clssty.h"
#include "style/fileio.h"
#include "style/hooks.h"
#include "style/messages.h"
#include "style/sectionreaders.h"

namespace {

constexpr std::string_view kMagic = "GBST";
constexpr std::size_t kHeadBytes = 6;

// Tags are compared after folding to upper case; the magic is not.
std::optional<Section> KnownSection(std::string_view tag) {
    std::string upper(tag);
    for (auto& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    for (std::size_t i = 0; i < kSectionTags.size(); ++i) {
        if (kSectionTags[i] == upper) return static_cast<Section>(i);
    }
    return std::nullopt;
}

void TellDamage(const std::string& file, const std::string& problem, bool stopped) {
    std::string text = "The style file " + file + " is damaged: " + problem + ".";
    if (stopped) text += " The sections before that point were loaded; the rest of the file was not.";
    MsgBox(text, "ERROR", MsgIcon::Exclamation);
}

struct LoopOutcome {
    std::string fatal;
};

// Unknown sections are passed over by their size, known ones read by their own rules.
LoopOutcome ReadSections(clsSTY& doc, ByteCursor& in) {
    LoopOutcome out;
    while (!in.AtEnd()) {
        if (in.Remaining() < 4) {
            out.fatal = "it ends inside a section head";
            break;
        }
        const auto tagBytes = in.Take(4);
        const std::string tag(tagBytes.begin(), tagBytes.end());
        ProgressStep(static_cast<double>(in.Position()), "Loading Section " + tag + "...");
        if (in.Remaining() < 4) {
            out.fatal = "it ends inside the head of the section " + PrintableTag(tag);
            break;
        }
        const std::int32_t size = in.I32();
        const auto section = KnownSection(tag);
        if (!section) {
            if (size < 0 || static_cast<std::size_t>(size) > in.Remaining()) {
                out.fatal = "the section " + PrintableTag(tag) + " claims " + GroupedNumber(size) + " bytes but only " +
                            GroupedNumber(static_cast<std::int64_t>(in.Remaining())) + " remain";
                break;
            }
            in.Skip(static_cast<std::size_t>(size));
            continue;
        }
        const auto result = styleload::ReadSection(doc, *section, size, in);
        if (!result.ok) {
            out.fatal = result.problem;
            break;
        }
        doc.Present[static_cast<std::size_t>(*section)] = true;
    }
    return out;
}

}  // namespace

bool clsSTY::LoadSTY(const std::string& Sprg) {
    styleio::InputFile file;
    std::string why;
    if (!file.Open(Sprg, why)) {
        MsgBox("The style file " + Sprg + " cannot be read: " + why + ".", "ERROR", MsgIcon::Exclamation);
        return false;
    }
    const std::size_t length = file.Length();
    ProgressStart(1, static_cast<double>(length), "Loading...");

    // Read in pieces as the sections come: the file is never held whole beside its stores.
    ByteCursor in(file, length);
    const auto magic = in.Take(std::min(length, kMagic.size()));
    if (magic.size() < kMagic.size() || !std::equal(kMagic.begin(), kMagic.end(), magic.begin())) {
        // The caller renders the sheet next, and that closes the progress window.
        MsgBox(in.Failed() ? "The style file " + Sprg + " cannot be read: reading it failed." : "ERROR Invalid File",
               "ERROR", MsgIcon::Exclamation);
        return false;
    }
    if (length < kHeadBytes) {
        ProgressEnd();
        TellDamage(Sprg, "it ends inside its 6-byte head", false);
        return false;
    }

    in.Skip(kHeadBytes - kMagic.size());
    const LoopOutcome outcome = ReadSections(*this, in);
    ProgressEnd();

    if (in.Failed()) {
        MsgBox("The style file " + Sprg +
                   " could not be read to its end: reading it failed part-way. The sections before that point "
                   "were loaded; the rest of the file was not.",
               "ERROR", MsgIcon::Exclamation);
        return false;
    }
    if (!outcome.fatal.empty()) {
        TellDamage(Sprg, outcome.fatal, true);
        return false;
    }
    return true;
}
