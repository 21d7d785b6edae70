// Damaged and hostile files: every one must end the load in order, with one
// message, without touching the store of the damaged section.

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "style/clssty.h"
#include "stylefiletest.h"
#include "stylewriter/stylewriter.h"
#include "support/hookrecorder.h"
#include "support/storesnapshot.h"

using namespace ombrevale::testsupport;
using namespace ombrevale::stylewriter;

namespace {

using Damaged = StyleFileTest;

// Cut the full file at every section head, inside each head and inside each
// payload. A cut right at a head leaves a whole, smaller file; one that leaves
// less than a tag behind it is a whole file with stray bytes.
TEST_F(Damaged, TruncatedAnywhereLoadsTheWholeSectionsBeforeTheCut) {
    const auto full = ombrevale::stylewriter::MakeFullStyle();
    const Bytes& bytes = full.file.bytes();
    const auto& heads = full.file.boundaries();
    for (std::size_t i = 0; i < heads.size(); ++i) {
        const std::size_t end = i + 1 < heads.size() ? heads[i + 1] : bytes.size();
        for (const std::size_t cut : {heads[i], heads[i] + 2, heads[i] + 4, heads[i] + 7, heads[i] + 9, end - 1}) {
            if (cut >= end) continue;
            SCOPED_TRACE("cut at byte " + std::to_string(cut) + " of section " + std::to_string(i));
            modDeclares::ResetSharedStores();
            clsSTY cutDoc;
            HookRecorder hooks;
            const bool ok = Load(Bytes(bytes.begin(), bytes.begin() + static_cast<long>(cut)), cutDoc);
            const bool atHead = cut == heads[i];
            EXPECT_EQ(ok, cut - heads[i] < 4);
            EXPECT_EQ(hooks.messages().size(), atHead ? 0u : 1u);
            EXPECT_EQ(hooks.calls().front().rfind("start 1 ", 0), 0u);
            EXPECT_TRUE(std::find(hooks.calls().begin(), hooks.calls().end(), "end") != hooks.calls().end());
            int present = 0;
            for (int s = 0; s < kSectionCount; ++s) present += cutDoc.IsPresent(static_cast<Section>(s)) ? 1 : 0;
            EXPECT_EQ(present, static_cast<int>(i));
        }
    }
}

struct HostileCase {
    std::string name;
    Bytes file;
};

class Hostile : public Damaged, public ::testing::WithParamInterface<HostileCase> {};

TEST_P(Hostile, IsRefusedWithOneMessageAndNoStoreChanges) {
    ASSERT_TRUE(Load(ombrevale::stylewriter::MakeFullStyle().file.bytes()));
    const StoreSnapshot before = TakeSnapshot(doc);
    HookRecorder hooks;
    EXPECT_FALSE(Load(GetParam().file));
    const auto messages = hooks.messages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].rfind("msg ERROR|The style file ", 0), 0u) << messages[0];
    // Only a file past its head has sections before the damage.
    EXPECT_EQ(messages[0].find("were loaded") != std::string::npos, GetParam().file.size() > 6) << messages[0];
    EXPECT_EQ(TakeSnapshot(doc), before);
}

Bytes Section(const std::string& tag, std::int64_t size, const Bytes& payload = Bytes(8, 0)) {
    return StyleBytes().AddWithSize(tag, size, payload).bytes();
}

constexpr std::int64_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kMin = std::numeric_limits<std::int32_t>::min();

std::vector<HostileCase> HostileCases() {
    std::vector<HostileCase> cases;
    for (const char* tag : {"TILE", "PPAL", "PALX", "SPRX", "SPRG", "DELS", "DELX", "CARI", "OBJI", "RECY", "SPEC"}) {
        for (const auto& [what, size] : {std::pair{"Huge", kMax}, std::pair{"Negative", std::int64_t{-1}},
                                         std::pair{"Lowest", kMin}, std::pair{"PastEnd", std::int64_t{65536 * 4}}}) {
            cases.push_back({std::string(tag) + what, Section(tag, size)});
        }
    }
    const std::vector<std::pair<std::string, Bytes>> special = {
        {"UnknownHuge", Section("ZZZZ", kMax)},
        {"TileNotWholeStrips", Section("TILE", 4096, Bytes(4096, 1))},
        {"PalettesNotWholePages", Section("PPAL", 1024, Bytes(1024, 1))},
        {"SpriteIndexOverCount", Section("SPRX", 8 * 40000, Bytes(16, 0))},
        {"FontCountNegative", Section("FONB", 4, LE16(-1))},
        {"FontCountTooBig", Section("FONB", 4, LE16(16383))},
        {"FontEntriesMissing", Section("FONB", 10, Cat({LE16(4), LE16(1)}))},
        {"SpriteBaseShort", Section("SPRB", 12, Bytes(11, 0))},
        {"DeltaRecordCut", Section("DELX", 6, Cat({LE16(1), {255, 0}, LE16(3)}))},
        {"CarRemapsCut", Section("CARI", 15, {1, 1, 8, 8, 200, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1})},
        {"CarRecordCut", Section("CARI", 15, Bytes(8, 0))},
        {"CarDoorsCut", Section("CARI", 15, {1, 1, 8, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5, 1, 0})},
        // Two remaps carry the record past its section, into what follows.
        {"CarPastItsSection", Section("CARI", 15, {1, 1, 8, 8, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 40, 41, 0})},
        {"HeadCutInSize", Cat({Text("GBST"), LE16(600), Text("TILE"), {0, 1}})},
        {"MagicOnly", Text("GBST")},
    };
    for (const auto& [name, file] : special) cases.push_back({name, file});
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Sizes, Hostile, ::testing::ValuesIn(HostileCases()),
                         [](const auto& p) { return p.param.name; });

struct WarningCase {
    std::string name;
    StyleBytes file;
    std::vector<std::string> warnings;
};

class Warned : public Damaged, public ::testing::WithParamInterface<WarningCase> {};

// Such files load, and the one message after the load names every odd part.
TEST_P(Warned, LoadsAndTellsOnce) {
    HookRecorder hooks;
    const std::string path = dir.File("style.sty");
    WriteFile(path, GetParam().file.bytes());
    LoadReport report;
    EXPECT_TRUE(doc.LoadSTY(path, report));
    EXPECT_EQ(report.warnings, GetParam().warnings);
    EXPECT_TRUE(hooks.messages().empty());
    EXPECT_TRUE(doc.LoadSTY(path));
    ASSERT_EQ(hooks.messages().size(), 1u);
    EXPECT_EQ(hooks.messages()[0], "msg Ombrevale|" + LoadWarningText(path, report) + "|information");
}

INSTANTIATE_TEST_SUITE_P(
    Files, Warned,
    ::testing::Values(
        WarningCase{"EmptyTile", StyleBytes().Add("TILE", {}), {"the TILE section holds no tiles"}},
        WarningCase{"EmptyPalettes", StyleBytes().Add("PPAL", {}), {"the PPAL section holds no palettes"}},
        // No whole entry: the byte is read by nothing and stands after the section.
        WarningCase{
            "PaletteIndexOfOneByte",
            StyleBytes().Add("PALX", {7}),
            {"the PALX section holds no palette entries", "1 stray byte after the last section was passed over"}},
        WarningCase{"NoFonts", StyleBytes().Add("FONB", LE16(0)), {"the FONB section holds no fonts"}},
        WarningCase{"EmptySprites", StyleBytes().Add("SPRX", {}), {"the SPRX section holds no sprite records"}},
        WarningCase{"EmptyRecycling", StyleBytes().Add("RECY", {}), {"the RECY section holds no recycling list"}},
        WarningCase{"CarWithSixDoors",
                    StyleBytes().Add("CARI", Cat({{7, 1, 8, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 6}, Bytes(12, 0)})),
                    {"the car record of model 7 lists more than 5 doors, which the game does not take"}},
        WarningCase{"ThreeStrayBytes",
                    StyleBytes().Add("RECY", {1, 255}).Raw({1, 2, 3}),
                    {"3 stray bytes after the last section were passed over"}},
        WarningCase{"BothInOneMessage",
                    StyleBytes().Add("TILE", {}).Raw({0}),
                    {"the TILE section holds no tiles", "1 stray byte after the last section was passed over"}}),
    [](const auto& p) { return p.param.name; });

}  // namespace
