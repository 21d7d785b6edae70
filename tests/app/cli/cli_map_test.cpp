// map-info and map: counts that a map maker can check by hand on a map of a
// few blocks, pictures whose blocks are their tiles' pixels, and bad input
// answered with one line, a non-zero exit and no file.
#include <gtest/gtest.h>

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <filesystem>

#include "cliprocess.h"
#include "mapwriter/mapwriter.h"
#include "stylewriter/stylewriter.h"

namespace {

namespace fs = std::filesystem;
namespace mw = ombrevale::mapwriter;
namespace sw = ombrevale::stylewriter;
using namespace ombrevale::clitest;

class CliMap : public ::testing::Test {
protected:
    void SetUp() override {
        mw::Grid g;
        // Tile 1 as a roof over two walled levels; tile 2 turned once on the road beside it.
        for (int z = 1; z <= 2; ++z) g.at(0, 0, z) = {mw::Side(4), mw::Side(4), mw::Side(5), 0, 0, 0, 0};
        g.at(0, 0, 2).lid = mw::Lid(1);
        g.at(1, 0, 1).lid = mw::Lid(2, 0, false, false, 1);
        g.at(2, 0, 3).lid = mw::Lid(1023);
        map_ = dir_.File("town.gmp");
        sw::WriteFile(map_, mw::MapBytes()
                                .Add("DMAP", mw::DmapPayload(g))
                                .Add("ZONE", mw::ZonePayload({{7, 1, 0, 1, 1, "bus1"}, {0, 0, 0, 4, 4, "docks"}}))
                                .Add("ANIM", mw::AnimPayload({{2, 4, 0, {2, 3}}}))
                                .Add("EDIT", {1, 2, 3})
                                .bytes());
        style_ = dir_.File("style.sty");
        sw::WriteFile(style_, sw::MakeFullStyle().file.bytes());
    }
    QJsonObject Info(const std::vector<std::string>& more = {}) {
        std::vector<std::string> args = {"map-info", map_};
        args.insert(args.end(), more.begin(), more.end());
        const auto r = RunCli(args);
        EXPECT_EQ(r.exitCode, 0) << r.err;
        return QJsonDocument::fromJson(QByteArray::fromStdString(r.out)).object();
    }

    ombrevale::testsupport::TempDir dir_;
    std::string map_, style_;
};

TEST_F(CliMap, InfoCountsBlocksLidsSidesZonesAndChunks) {
    const QJsonObject info = Info();
    EXPECT_EQ(info["map"].toString(), "DMAP");
    EXPECT_EQ(info["blocks"].toInt(), 4);
    EXPECT_EQ(info["lids"].toObject(), (QJsonObject{{"1", 1}, {"2", 1}, {"1023", 1}}));
    EXPECT_EQ(info["sides"].toObject(), (QJsonObject{{"4", 4}, {"5", 2}}));
    const QJsonArray zones = info["zones"].toArray();
    ASSERT_EQ(zones.size(), 2);
    EXPECT_EQ(zones[0].toObject(),
              (QJsonObject{{"name", "bus1"}, {"type", 7}, {"x", 1}, {"y", 0}, {"w", 1}, {"h", 1}}));
    EXPECT_EQ(zones[1].toObject()["name"].toString(), "docks");
    EXPECT_EQ(info["animations"].toInt(), 1);
    EXPECT_EQ(info["lights"].toInt(), 0);
    QStringList chunks;
    for (const auto c : info["chunks"].toArray())
        chunks << c.toObject()["type"].toString() + ":" + QString::number(c.toObject()["size"].toInt());
    EXPECT_EQ(chunks.join(' ').toStdString().substr(0, 5), "DMAP:");
    EXPECT_TRUE(chunks.join(' ').endsWith("ZONE:21 ANIM:10 EDIT:3")) << chunks.join(' ').toStdString();
    EXPECT_FALSE(info.contains("unused"));
}

TEST_F(CliMap, InfoWithAStyleListsTheTilesNoLidSideOrAnimationUses) {
    // The full style has 8 tiles; 1 and 2 are lids, 4 and 5 sides, 2 and 3 animate.
    EXPECT_EQ(Info({"--style", style_})["unused"].toArray(), (QJsonArray{0, 6, 7}));
}

TEST_F(CliMap, AnAreaAtSixtyFourPixelsABlockIsItsTilesPixels) {
    const std::string out = dir_.File("area.png");
    const auto r = RunCli({"map", style_, map_, out, "--area", "0,0,2,1"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QImage got(QString::fromStdString(out));
    ASSERT_EQ(got.size(), QSize(128, 64));
    // The tiles as tile writes them.
    QImage tiles[3];
    for (const int t : {1, 2}) {
        const std::string bmp = dir_.File("tile" + std::to_string(t) + ".bmp");
        ASSERT_EQ(RunCli({"tile", style_, std::to_string(t), bmp}).exitCode, 0);
        tiles[t] = QImage(QString::fromStdString(bmp)).convertToFormat(QImage::Format_RGB32);
    }
    int wrong = 0;
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) {
            wrong += got.pixel(x, y) != tiles[1].pixel(x, y);
            // Turned a quarter clockwise: the tile's left column along the top.
            wrong += got.pixel(64 + x, y) != tiles[2].pixel(y, 63 - x);
        }
    EXPECT_EQ(wrong, 0);
}

TEST_F(CliMap, TheWholeMapAtOnePixelABlockWithLayers) {
    const std::string out = dir_.File("whole.png");
    const auto r = RunCli({"map", style_, map_, out, "--scale", "1", "--level", "1", "--shade", "--zones", "--arrows"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(QImage(QString::fromStdString(out)).size(), QSize(256, 256));
}

struct Bad {
    const char* name;
    std::vector<std::string> args;  // STYLE, MAP and OUT... put in place
    int exit;
    const char* says;
};

class CliMapRefuses : public CliMap, public ::testing::WithParamInterface<Bad> {};

TEST_P(CliMapRefuses, WithOneLineAndNoFile) {
    sw::WriteFile(dir_.File("bad.gmp"), mw::MapBytes().AddWithSize("DMAP", 9999, {1, 2}).bytes());
    std::vector<std::string> args;
    for (const auto& a : GetParam().args)
        args.push_back(a == "STYLE" ? style_
                       : a == "MAP" ? map_
                       : a == "BAD" ? dir_.File("bad.gmp")
                       : a == "OUT" ? dir_.File("out.png")
                                    : a);
    const auto r = RunCli(args);
    EXPECT_EQ(r.exitCode, GetParam().exit);
    EXPECT_NE(r.err.find(GetParam().says), std::string::npos) << r.err;
    if (GetParam().exit == 1) {
        EXPECT_EQ(r.ErrLines().size(), 1u) << r.err;
    }
    EXPECT_FALSE(fs::exists(dir_.File("out.png")));
}

INSTANTIATE_TEST_SUITE_P(
    Map, CliMapRefuses,
    ::testing::Values(
        Bad{"DamagedMap", {"map", "STYLE", "BAD", "OUT"}, 1, "past the end of the file"},
        Bad{"DamagedMapInfo", {"map-info", "BAD"}, 1, "past the end of the file"},
        Bad{"NoSuchMap", {"map-info", "nowhere.gmp"}, 1, "cannot be opened"},
        Bad{"StyleForMap", {"map", "MAP", "STYLE", "OUT"}, 1, "town.gmp"},
        Bad{"ScaleTooLarge", {"map", "STYLE", "MAP", "OUT", "--scale", "65"}, 1, "(1..64)"},
        Bad{"LevelTooHigh", {"map", "STYLE", "MAP", "OUT", "--level", "8"}, 1, "(0..7)"},
        Bad{"PictureTooLarge", {"map", "STYLE", "MAP", "OUT", "--scale", "64"}, 2, "larger than 8192 x 8192"},
        Bad{"AreaOffTheMap", {"map", "STYLE", "MAP", "OUT", "--area", "250,0,10,1"}, 2, "inside the map"},
        Bad{"AreaNotFourNumbers", {"map", "STYLE", "MAP", "OUT", "--area", "1,2,3"}, 2, "X,Y,W,H"},
        Bad{"StyleOptionOnMap", {"map", "STYLE", "MAP", "OUT", "--style", "STYLE"}, 2, "not one of map's"}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
