// info reports the document as loaded; save writes it back byte for byte.
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <filesystem>

#include "runprogram.h"
#include "style/clssty.h"
#include "stylewriter/stylewriter.h"
#include "support/tempdir.h"

namespace {

QJsonObject InfoOf(const std::string& style) {
    const auto r = clitest::RunCli({"info", style});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_TRUE(r.err.empty());
    QJsonParseError error{};
    const auto doc = QJsonDocument::fromJson(QByteArray::fromStdString(r.out), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << r.out;
    return doc.object();
}

template <typename T>
void ExpectArray(const QJsonValue& v, const T& values, std::size_t count, const char* what) {
    const QJsonArray a = v.toArray();
    ASSERT_EQ(static_cast<std::size_t>(a.size()), count) << what;
    for (std::size_t i = 0; i < count; ++i) EXPECT_EQ(a[static_cast<int>(i)].toInt(), values[i]) << what << " " << i;
}

TEST(CliInfo, KeysAreExactlyThese) {
    const QStringList keys = {
        "cars",  "delta_data_bytes", "deltas",   "font_base",   "object_info_bytes", "pal_base", "palettes",
        "palx",  "recycle",          "sections", "sprite_base", "sprite_data_bytes", "sprites",  "surface_spec_bytes",
        "tiles", "warnings"};
    const QJsonObject info = InfoOf(clitest::kSample);
    EXPECT_EQ(info.keys(), keys);
    EXPECT_EQ(info["warnings"].toArray(), QJsonArray());
    const QJsonObject car = info["cars"].toArray()[0].toObject();
    QStringList carKeys = car.keys();
    carKeys.sort();
    EXPECT_EQ(carKeys,
              QStringList({"doors", "front_wheel_offset", "front_window_offset", "height", "model", "passengers",
                           "rating", "rear_wheel_offset", "rear_window_offset", "remaps", "sprite", "width", "wreck"}));
    EXPECT_EQ(info["deltas"].toArray()[0].toObject().keys(), QStringList({"sizes", "sprite"}));
}

TEST(CliInfo, ReportsWhatTheDocumentLoaded) {
    modDeclares::ResetSharedStores();
    clsSTY doc;
    ASSERT_TRUE(doc.LoadSTY(clitest::kSample));
    const QJsonObject info = InfoOf(clitest::kSample);
    using namespace modDeclares;
    EXPECT_EQ(info["tiles"].toInt(), doc.GetNumOfTiles());
    EXPECT_EQ(info["palettes"].toInt(), doc.GetNumOfPals());
    EXPECT_EQ(info["palx"].toInt(), doc.GetNumOfPalx());
    EXPECT_EQ(info["sprites"].toInt(), doc.GetNumOfSprx());
    ExpectArray(info["sprite_base"], STYSpriteBase, 6, "sprite_base");
    ExpectArray(info["pal_base"], STYPalBase, 8, "pal_base");
    ExpectArray(info["font_base"], STYFontBase.base, static_cast<std::size_t>(STYFontBase.count), "font_base");
    ExpectArray(info["recycle"], STYRecycle, STYRecycle.size() - 1, "recycle");
    const QJsonArray deltas = info["deltas"].toArray();
    ASSERT_EQ(static_cast<std::size_t>(deltas.size()), STYDeltaIndex.size());
    for (std::size_t i = 0; i < STYDeltaIndex.size(); ++i) {
        EXPECT_EQ(deltas[static_cast<int>(i)]["sprite"].toInt(), STYDeltaIndex[i].sprite);
        ExpectArray(deltas[static_cast<int>(i)]["sizes"], STYDeltaIndex[i].deltaSizes, STYDeltaIndex[i].deltaCount,
                    "sizes");
    }
    const QJsonArray cars = info["cars"].toArray();
    ASSERT_EQ(static_cast<std::size_t>(cars.size()), STYCarInfo.size());
    for (std::size_t i = 0; i < STYCarInfo.size(); ++i) {
        const auto& c = STYCarInfo[i];
        const QJsonObject o = cars[static_cast<int>(i)].toObject();
        EXPECT_EQ(o["model"].toInt(), c.model);
        EXPECT_EQ(o["width"].toInt(), c.width);
        EXPECT_EQ(o["rear_window_offset"].toInt(), c.rearWindowOffset);
        EXPECT_EQ(o["doors"].toInt(), c.numDoors);
        ExpectArray(o["remaps"], c.remaps, c.numRemaps, "remaps");
    }
    EXPECT_EQ(info["sprite_data_bytes"].toInt(), static_cast<int>(doc.STYSpriteData.size()));
    EXPECT_EQ(info["delta_data_bytes"].toInt(), static_cast<int>(STYDeltaStore.size()));
    EXPECT_EQ(info["object_info_bytes"].toInt(), static_cast<int>(doc.STYObjectInfo.size()));
    EXPECT_EQ(info["surface_spec_bytes"].toInt(), static_cast<int>(doc.STYSurfaceSpec.size()));
}

TEST(CliInfo, SectionsFollowThePresentFlagsNotTheFileOrder) {
    testsupport::TempDir dir;
    const std::string style = dir.File("small.sty");
    ombrevale::stylewriter::WriteFile(style, ombrevale::stylewriter::StyleBytes()
                                      .Add("spec", {2, 0, 0, 0})
                                      .Add("RECY", {3, 1, 255})
                                      .Add("PALX", ombrevale::stylewriter::LE16(0))
                                      .Raw({0})
                                      .bytes());
    const QJsonObject info = InfoOf(style);
    EXPECT_EQ(info["sections"].toArray(), QJsonArray({"PALX", "RECY", "SPEC"}));
    // Loaded with its warnings, not refused.
    EXPECT_EQ(info["warnings"].toArray(), QJsonArray({"1 stray byte after the last section was passed over"}));
    EXPECT_EQ(info["recycle"].toArray(), QJsonArray({3, 1}));
    EXPECT_EQ(info["tiles"].toInt(), 0);
    EXPECT_EQ(info["surface_spec_bytes"].toInt(), 4);
}

TEST(CliSave, RoundTripOfTheSampleGivesIdenticalBytesAndABackupOnTheSecondSave) {
    testsupport::TempDir dir;
    const std::string out = dir.File("copy.sty");
    auto r = clitest::RunCli({"save", clitest::kSample, out});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_TRUE(r.out.empty() && r.err.empty());
    const auto sample = ombrevale::stylewriter::ReadFile(clitest::kSample);
    EXPECT_TRUE(ombrevale::stylewriter::ReadFile(out) == sample);
    EXPECT_FALSE(std::filesystem::exists(out + ".bak"));
    ombrevale::stylewriter::WriteFile(out, {'o', 'l', 'd'});
    r = clitest::RunCli({"save", clitest::kSample, out});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_TRUE(ombrevale::stylewriter::ReadFile(out) == sample);
    EXPECT_EQ(ombrevale::stylewriter::ReadFile(out + ".bak"), (ombrevale::stylewriter::Bytes{'o', 'l', 'd'}));
}

TEST(CliSave, AnOutputThatCannotBeWrittenFailsWithOneLineAndLeavesNoFile) {
    testsupport::TempDir dir;
    const std::string out = dir.File("no-such-folder/copy.sty");
    const auto r = clitest::RunCli({"save", clitest::kSample, out});
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.ErrLines().size(), 1u) << r.err;
    EXPECT_EQ(r.ErrLines()[0].rfind("ombrevale-cli: " + out + ": ", 0), 0u);
    EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
}

}  // namespace
