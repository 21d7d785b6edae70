#include <algorithm>
#include <cctype>
#include <optional>
#include <string_view>
#include <vector>

#include "style/bytecursor.h"
#include "style/carrecord.h"
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

// A section that loads but leaves its table empty is not taken for sound.
std::optional<std::string> EmptyWarning(const clsSTY& doc, Section section) {
    switch (section) {
        case Section::TILE:
            if (doc.iTileCount == 0) return "the TILE section holds no tiles";
            break;
        case Section::PPAL:
            if (doc.iPalCount == 0) return "the PPAL section holds no palettes";
            break;
        case Section::PALX:
            if (doc.iPalxCount == 0) return "the PALX section holds no palette entries";
            break;
        case Section::SPRX:
            if (doc.iSprxCount == 0) return "the SPRX section holds no sprite records";
            break;
        case Section::RECY:
            if (modDeclares::STYRecycle.empty()) return "the RECY section holds no recycling list";
            break;
        case Section::FONB:
            if (modDeclares::STYFontBase.count == 0) return "the FONB section holds no fonts";
            break;
        case Section::CARI:
            return ombrevale::cars::LoadWarning(modDeclares::STYCarInfo);
        default:
            break;
    }
    return std::nullopt;
}

// Unknown sections are passed over by their size, known ones read by their own rules.
// Returns the problem that stopped the loop, or empty text.
std::string ReadSections(clsSTY& doc, ByteCursor& in, std::vector<std::string>& warnings) {
    while (!in.AtEnd()) {
        if (in.Remaining() < 4) {
            // Too short to be a head: a tool padded the file. Everything before it is whole.
            const auto n = static_cast<std::int64_t>(in.Remaining());
            warnings.push_back(GroupedNumber(n) + (n == 1 ? " stray byte" : " stray bytes") +
                               " after the last section " + (n == 1 ? "was" : "were") + " passed over");
            break;
        }
        const auto tagBytes = in.Take(4);
        const std::string tag(tagBytes.begin(), tagBytes.end());
        ProgressStep(static_cast<double>(in.Position()), "Loading Section " + tag + "...");
        if (in.Remaining() < 4) return "it ends inside the head of the section " + PrintableTag(tag);
        const std::int32_t size = in.I32();
        const auto section = KnownSection(tag);
        if (!section) {
            if (size < 0 || static_cast<std::size_t>(size) > in.Remaining())
                return "the section " + PrintableTag(tag) + " claims " + GroupedNumber(size) + " bytes but only " +
                       GroupedNumber(static_cast<std::int64_t>(in.Remaining())) + " remain";
            in.Skip(static_cast<std::size_t>(size));
            continue;
        }
        if (auto problem = ombrevale::styleload::ReadSection(doc, *section, size, in)) return problem->text;
        doc.Present[static_cast<std::size_t>(*section)] = true;
        if (auto w = EmptyWarning(doc, *section)) warnings.push_back(std::move(*w));
    }
    return {};
}

using Kind = ombrevale::Problem::Kind;

bool Fail(LoadReport& report, Kind kind, std::string problem, bool sectionsKept) {
    report.problem = ombrevale::Problem{kind, std::move(problem)};
    report.sectionsKept = sectionsKept;
    return false;
}

}  // namespace

bool clsSTY::LoadSTY(const std::string& Sprg, LoadReport& report) {
    report = {};
    ombrevale::styleio::InputFile file;
    if (auto problem = file.Open(Sprg)) {
        report.problem = std::move(problem);
        return false;
    }
    const std::size_t length = file.Length();
    ProgressStart(1, static_cast<double>(length), "Loading...");

    // Read in pieces as the sections come: the file is never held whole beside its stores.
    ByteCursor in(file, length);
    const auto magic = in.Take(std::min(length, kMagic.size()));
    if (magic.size() < kMagic.size() || !std::equal(kMagic.begin(), kMagic.end(), magic.begin())) {
        // The progress window stays: the caller renders the sheet next, and that closes it.
        if (in.Failed()) return Fail(report, Kind::Unreadable, "reading it failed", false);
        return Fail(report, Kind::NotAStyle, "it does not begin with GBST", false);
    }
    if (length < kHeadBytes) {
        ProgressEnd();
        return Fail(report, Kind::Damaged, "it ends inside its 6-byte head", false);
    }

    in.Skip(kHeadBytes - kMagic.size());
    const std::string fatal = ReadSections(*this, in, report.warnings);
    ProgressEnd();

    if (in.Failed()) return Fail(report, Kind::CutShort, "reading it failed part-way", true);
    if (!fatal.empty()) return Fail(report, Kind::Damaged, fatal, true);
    return true;
}

bool clsSTY::LoadSTY(const std::string& Sprg) {
    LoadReport report;
    if (LoadSTY(Sprg, report)) {
        if (!report.warnings.empty()) MsgBox(LoadWarningText(Sprg, report), "Ombrevale", MsgIcon::Information);
        return true;
    }
    MsgBox(LoadFailureText(Sprg, report, "The sections before that point were loaded; the rest of the file was not."),
           "ERROR", MsgIcon::Exclamation);
    return false;
}

std::string LoadFailureText(const std::string& file, const LoadReport& report, const std::string& whatWasKept) {
    if (!report.problem) return {};
    const std::string& problem = report.problem->text;
    std::string text;
    switch (report.problem->kind) {
        case Kind::NotAStyle:
            return "ERROR Invalid File";
        case Kind::Unreadable:
            return "The style file " + file + " cannot be read: " + problem + ".";
        case Kind::CutShort:
            text = "The style file " + file + " could not be read to its end: " + problem + ".";
            break;
        case Kind::Damaged:
        case Kind::Unwritable:
            text = "The style file " + file + " is damaged: " + problem + ".";
            break;
    }
    if (report.sectionsKept && !whatWasKept.empty()) text += " " + whatWasKept;
    return text;
}

std::string LoadWarningText(const std::string& file, const LoadReport& report) {
    std::string text = "The style file " + file + " was loaded, but ";
    for (std::size_t i = 0; i < report.warnings.size(); ++i) text += (i ? "; " : "") + report.warnings[i];
    return text + ".";
}
