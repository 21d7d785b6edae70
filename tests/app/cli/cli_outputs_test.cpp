// What ombrevale-cli writes, against the document's own members (whose bytes
// tests/style and tests/pixels pin): the command line only has to reach them
// with the right numbers and put the result where it was asked to.
#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <filesystem>
#include <functional>

#include "cliprocess.h"
#include "pixels/paletteusage.h"
#include "style/clssty.h"
#include "style/palettebases.h"
#include "style/surfaces.h"
#include "stylewriter/stylewriter.h"

namespace fs = std::filesystem;
namespace sw = ombrevale::stylewriter;
using namespace ombrevale::clitest;

namespace {

class Cli : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        modDeclares::ResetSharedStores();
        doc_ = new clsSTY;
        ASSERT_TRUE(doc_->LoadSTY(kSample));
    }
    static void TearDownTestSuite() { delete doc_; }
    std::string Run(std::vector<std::string> args) {
        const auto r = RunCli(Place(std::move(args), kSample, dir_));
        EXPECT_EQ(r.exitCode, 0) << r.err;
        return r.err;
    }
    static clsSTY* doc_;
    ombrevale::testsupport::TempDir dir_;
};
clsSTY* Cli::doc_ = nullptr;

struct PictureCase {
    const char* name;
    std::vector<std::string> args;
    std::function<bool(const clsSTY&, const std::string&)> expected;
};

class CliPicture : public Cli, public ::testing::WithParamInterface<PictureCase> {};

TEST_P(CliPicture, IsWhatTheDocumentWrites) {
    Run(GetParam().args);
    ASSERT_TRUE(GetParam().expected(*doc_, dir_.File("mine.bmp")));
    EXPECT_EQ(sw::ReadFile(dir_.File("OUT.bmp")), sw::ReadFile(dir_.File("mine.bmp")));
}

std::function<bool(const clsSTY&, const std::string&)> Sprite(int s, std::int16_t pal) {
    return [=](const clsSTY& d, const std::string& f) {
        std::int16_t p = pal;
        return d.SaveSprite(f, s, p);
    };
}

INSTANTIATE_TEST_SUITE_P(
    Members, CliPicture,
    ::testing::Values(PictureCase{"LastTile",
                                  {"tile", "STYLE", "991", "OUT.bmp"},
                                  [](const clsSTY& d, const std::string& f) { return d.SaveTile(f, 991); }},
                      PictureCase{"GlyphInItsOwnPalette", {"sprite", "STYLE", "1815", "OUT.bmp"}, Sprite(1815, -1)},
                      PictureCase{"CarInARemap", {"sprite", "STYLE", "3", "OUT.bmp", "--pal", "120"}, Sprite(3, 120)},
                      PictureCase{"DeltaInARemap",
                                  {"delta", "STYLE", "1", "4", "OUT.bmp", "--pal", "115"},
                                  [](const clsSTY& d, const std::string& f) {
                                      std::int16_t pal = 115;
                                      return d.SaveDelta(f, 4, 1, pal);
                                  }}),
    [](const auto& row) { return std::string(row.param.name); });

std::size_t FilesIn(const fs::path& p) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(p), fs::directory_iterator()));
}

TEST_F(Cli, ExportWritesEveryPictureAndPaletteAndPngHoldsTheBmpsColours) {
    std::size_t deltas = 0;
    for (const auto& e : modDeclares::STYDeltaIndex) deltas += e.deltaCount;
    for (const char* kind : {"bmp", "png"}) {
        const bool png = kind[0] == 'p';
        const std::string err = Run(png ? std::vector<std::string>{"export", "STYLE", "OUTpng", "--png"}
                                        : std::vector<std::string>{"export", "STYLE", "OUTbmp"});
        EXPECT_TRUE(err.empty()) << "no progress bar when stderr is no terminal";
        const fs::path out = dir_.File(std::string("OUT") + kind);
        EXPECT_EQ(FilesIn(out / "tiles"), static_cast<std::size_t>(doc_->GetNumOfTiles()));
        EXPECT_EQ(FilesIn(out / "sprites"), static_cast<std::size_t>(doc_->GetNumOfSprx()));
        EXPECT_EQ(FilesIn(out / "deltas"), deltas);
        EXPECT_EQ(FilesIn(out / "palettes"), static_cast<std::size_t>(doc_->GetNumOfPals()));
    }
    ASSERT_TRUE(doc_->SaveTile(dir_.File("t.bmp"), 300));
    EXPECT_EQ(sw::ReadFile(dir_.File("OUTbmp/tiles/tile-0300.bmp")), sw::ReadFile(dir_.File("t.bmp")));
    for (const std::string name : {"tiles/tile-0991", "sprites/sprite-1815", "deltas/sprite-0001-delta-22"}) {
        const QImage bmp(QString::fromStdString(dir_.File("OUTbmp/" + name + ".bmp")));
        const QImage png(QString::fromStdString(dir_.File("OUTpng/" + name + ".png")));
        ASSERT_FALSE(bmp.isNull()) << name;
        EXPECT_EQ(bmp.convertToFormat(QImage::Format_RGB32), png.convertToFormat(QImage::Format_RGB32)) << name;
    }
    // The index names the palette each sprite is drawn in.
    QFile csv(QString::fromStdString(dir_.File("OUTbmp/index.csv")));
    ASSERT_TRUE(csv.open(QIODevice::ReadOnly));
    const QStringList row = QString(csv.readAll()).split('\n').filter("sprites/sprite-1815.bmp,");
    ASSERT_EQ(row.size(), 1);
    EXPECT_EQ(row[0].section(',', 4, 4).toInt(), *ombrevale::palettebases::SpritePalette(1815)) << row[0].toStdString();
    const auto& p = modDeclares::STYPalData[70];
    const auto bytes = sw::ReadFile(dir_.File("OUTbmp/palettes/palette-070.pal"));
    const std::string pal(bytes.begin(), bytes.end());
    EXPECT_EQ(pal.rfind("JASC-PAL\r\n0100\r\n256\r\n", 0), 0u);
    EXPECT_NE(pal.find("\r\n" + std::to_string(p[5 * 4 + 2]) + " " + std::to_string(p[5 * 4 + 1]) + " " +
                       std::to_string(p[5 * 4]) + "\r\n"),
              std::string::npos);
}

TEST_F(Cli, ImportPaletteGivesWhatTheDocumentsImportGives) {
    std::string text = "JASC-PAL\r\n0100\r\n256\r\n";
    for (int i = 0; i < 256; ++i) text += std::to_string(i) + " " + std::to_string(255 - i) + " 7 99\r\n";
    sw::WriteFile(dir_.File("p.pal"), sw::Text(text));
    Run({"import-palette", "STYLE", "70", dir_.File("p.pal"), "OUT.sty"});
    clsSTY mine;
    ASSERT_TRUE(mine.LoadSTY(kSample));
    ASSERT_TRUE(mine.ImportPalette(dir_.File("p.pal"), 70));
    ASSERT_TRUE(mine.SaveSTY(dir_.File("mine.sty")));
    EXPECT_EQ(sw::ReadFile(dir_.File("OUT.sty")), sw::ReadFile(dir_.File("mine.sty")));
    EXPECT_NE(sw::ReadFile(dir_.File("OUT.sty")), sw::ReadFile(kSample));
    ASSERT_TRUE(doc_->LoadSTY(kSample));
}

TEST(CliImportPalette, ABadPaletteFileIsNamedAndNoStyleWritten) {
    const std::pair<const char*, const char*> files[] = {{"0 0 0\r\n", "not a JASC-PAL file"},
                                                         {"JASC-PAL \r\n0100\r\n256\r\n", "not a JASC-PAL file"},
                                                         {"JASC-PAL\r\n0100\r\n256\r\n10 20\r\n", "line 4"},
                                                         {"", "cannot be opened"}};
    for (const auto& [text, says] : files) {
        ombrevale::testsupport::TempDir dir;
        const std::string pal = dir.File("p.pal");
        if (*text) sw::WriteFile(pal, sw::Text(text));
        const auto r = RunCli({"import-palette", kSample, "3", pal, dir.File("o.sty")});
        EXPECT_EQ(r.exitCode, 1);
        ASSERT_EQ(r.ErrLines().size(), 1u) << r.err;
        EXPECT_EQ(r.ErrLines()[0].rfind("ombrevale-cli: " + pal + ": ", 0), 0u) << r.err;
        EXPECT_NE(r.err.find(says), std::string::npos) << r.err;
        EXPECT_FALSE(fs::exists(dir.File("o.sty")));
    }
}

// Four tiles in palettes 0, 5, 5 and `last`; tile 1 holds colour 0; sprite 0
// is 2 x 1 pixels and sprite 1 has none.
std::string SmallStyle(const ombrevale::testsupport::TempDir& dir, int last) {
    std::vector<sw::TilePixels> tiles(4);
    for (std::size_t t = 0; t < 4; ++t)
        for (std::size_t i = 0; i < 4096; ++i)
            tiles[t][i] = t == 1 && i % 3 == 0 ? 0 : static_cast<std::uint8_t>(t * 10 + i % 7 + 1);
    std::vector<sw::PaletteBytes> pals(64);
    for (std::size_t p = 0; p < 64; ++p)
        for (std::size_t c = 0; c < 256; ++c)
            pals[p][c * 4] = static_cast<std::uint8_t>(c), pals[p][c * 4 + 1] = static_cast<std::uint8_t>(p * 3),
                        pals[p][c * 4 + 2] = static_cast<std::uint8_t>(255 - c);
    using sw::LE16, sw::LE32;
    const std::string path = dir.File("small.sty");
    sw::WriteFile(path,
                  sw::StyleBytes()
                      .Add("TILE", sw::TilePayload(tiles))
                      .Add("PPAL", sw::PalettePayload(pals))
                      .Add("PALX", sw::Cat({LE16(0), LE16(5), LE16(5), LE16(last), LE16(0), LE16(0)}))
                      .Add("SPRX", sw::Cat({LE32(0), {2, 1}, LE16(0), LE32(0), {0, 0}, LE16(0)}))
                      .Add("SPRG", sw::Bytes(256, 9))
                      .Add("PALB", sw::Cat({LE16(4), LE16(2), LE16(0), LE16(0), LE16(0), LE16(0), LE16(0), LE16(0)}))
                      .bytes());
    return path;
}

TEST(CliSheet, DrawsEveryTileInItsCellWithOneSpareRow) {
    ombrevale::testsupport::TempDir dir;
    const std::string style = SmallStyle(dir, 63);
    const int palOf[4] = {0, 5, 5, 63};
    for (const auto& [columns, transparent, height] :
         {std::tuple{9, false, 64}, std::tuple{2, true, 192}, std::tuple{3, false, 128}}) {
        std::vector<std::string> args = {"sheet", style, dir.File("sheet.png")};
        if (columns != 9) args.insert(args.end(), {"--columns", std::to_string(columns)});
        if (transparent) args.push_back("--transparent");
        ASSERT_EQ(RunCli(args).exitCode, 0);
        const QImage sheet(QString::fromStdString(dir.File("sheet.png")));
        ASSERT_EQ(sheet.size(), QSize(columns * 64, height)) << columns;
        for (int t = 0; t < 4; ++t)
            for (const int i : {0, 3 * 64 + 7, 4095}) {
                const int v = t == 1 && i % 3 == 0 ? 0 : t * 10 + i % 7 + 1;
                const QRgb want = v == 0 && transparent ? qRgb(255, 0, 255) : qRgb(255 - v, palOf[t] * 3, v);
                EXPECT_EQ(sheet.pixel(t % columns * 64 + i % 64, t / columns * 64 + i / 64), want) << t << " " << i;
            }
    }
    EXPECT_FALSE(fs::exists(dir.File("temp.bmp")));
}

TEST(CliExport, PngLeavesOutASpriteOfNoPixelsAndSaysSo) {
    ombrevale::testsupport::TempDir dir;
    const std::string style = SmallStyle(dir, 63);
    for (const bool png : {false, true}) {
        const std::string out = dir.File(png ? "png" : "bmp"), ext = png ? ".png" : ".bmp";
        const auto r = RunCli(png ? std::vector<std::string>{"export", style, out, "--png"}
                                  : std::vector<std::string>{"export", style, out});
        ASSERT_EQ(r.exitCode, 0) << r.err;
        EXPECT_TRUE(fs::exists(out + "/sprites/sprite-0000" + ext));
        EXPECT_EQ(fs::exists(out + "/sprites/sprite-0001" + ext), !png);
        EXPECT_EQ(r.ErrLines().size(), png ? 1u : 0u) << r.err;
        EXPECT_EQ(r.err.find("sprite 1 is 0x0 pixels") != std::string::npos, png) << r.err;
    }
}

// A palette number in the file that names no palette: refused before anything is written.
TEST(CliFileNumbers, APaletteTheStyleLacksIsNamed) {
    ombrevale::testsupport::TempDir dir;
    const std::string style = SmallStyle(dir, 64);
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"tile", "STYLE", "3", "OUT"}, std::vector<std::string>{"export", "STYLE", "OUT"},
          std::vector<std::string>{"sheet", "STYLE", "OUT"}}) {
        const auto r = RunCli(Place(args, style, dir));
        EXPECT_EQ(r.exitCode, 1);
        EXPECT_EQ(r.ErrLines(), std::vector<std::string>{"ombrevale-cli: " + style +
                                                         ": tile 3 uses palette 64 but the style has 64 palettes"});
        EXPECT_FALSE(fs::exists(dir.File("OUT")));
    }
}

QJsonObject InfoOf(const std::string& style) {
    const auto r = RunCli({"info", style});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    return QJsonDocument::fromJson(QByteArray::fromStdString(r.out)).object();
}

QJsonArray Ints(const auto& values, std::size_t count) {
    QJsonArray a;
    for (std::size_t i = 0; i < count; ++i) a.append(static_cast<int>(values[i]));
    return a;
}

TEST_F(Cli, InfoReportsWhatTheDocumentLoaded) {
    using namespace modDeclares;
    const QJsonObject info = InfoOf(kSample);
    QJsonArray road;  // type 3
    const auto types = ombrevale::surfaces::ReadSurfaces(doc_->STYSurfaceSpec, doc_->GetNumOfTiles()).type;
    for (std::size_t t = 0; t < types.size(); ++t)
        if (types[t] == 3) road.append(static_cast<int>(t));
    EXPECT_EQ(info["surfaces"].toObject()["road"].toArray(), road);
    EXPECT_EQ(info["tiles"].toInt(), doc_->GetNumOfTiles());
    EXPECT_EQ(info["palettes"].toInt(), doc_->GetNumOfPals());
    EXPECT_EQ(info["palx"].toInt(), doc_->GetNumOfPalx());
    EXPECT_EQ(info["sprites"].toInt(), doc_->GetNumOfSprx());
    EXPECT_EQ(info["sprite_base"].toArray(), Ints(STYSpriteBase, 6));
    EXPECT_EQ(info["pal_base"].toArray(), Ints(STYPalBase, 8));
    EXPECT_EQ(info["font_base"].toArray(), Ints(STYFontBase.base, static_cast<std::size_t>(STYFontBase.count)));
    EXPECT_EQ(info["recycle"].toArray(), Ints(STYRecycle, STYRecycle.size() - 1));
    const QJsonObject delta = info["deltas"].toArray()[1].toObject();
    EXPECT_EQ(delta["sprite"].toInt(), STYDeltaIndex[1].sprite);
    EXPECT_EQ(delta["sizes"].toArray(), Ints(STYDeltaIndex[1].deltaSizes, STYDeltaIndex[1].deltaCount));
    const auto& car = STYCarInfo.back();
    const QJsonObject o = info["cars"].toArray().last().toObject();
    EXPECT_EQ(info["cars"].toArray().size(), static_cast<int>(STYCarInfo.size()));
    for (const auto& [key, value] : {std::pair{"model", int(car.model)}, std::pair{"sprite", int(car.sprite)},
                                     std::pair{"width", int(car.width)}, std::pair{"height", int(car.height)},
                                     std::pair{"passengers", int(car.passengers)}, std::pair{"wreck", int(car.wreck)},
                                     std::pair{"rating", int(car.rating)}, std::pair{"doors", int(car.numDoors)},
                                     std::pair{"front_wheel_offset", int(std::int8_t(car.frontWheelOffset))},
                                     std::pair{"rear_wheel_offset", int(std::int8_t(car.rearWheelOffset))},
                                     std::pair{"front_window_offset", int(std::int8_t(car.frontWindowOffset))},
                                     std::pair{"rear_window_offset", int(std::int8_t(car.rearWindowOffset))}})
        EXPECT_EQ(o[key].toInt(), value) << key;
    EXPECT_EQ(o["remaps"].toArray(), Ints(car.remaps, car.numRemaps));
    EXPECT_EQ(info["sprite_data_bytes"].toInt(), static_cast<int>(doc_->STYSpriteData.size()));
    EXPECT_EQ(info["delta_data_bytes"].toInt(), static_cast<int>(STYDeltaStore.size()));
    EXPECT_EQ(info["object_info_bytes"].toInt(), static_cast<int>(doc_->STYObjectInfo.size()));
    EXPECT_EQ(info["surface_spec_bytes"].toInt(), static_cast<int>(doc_->STYSurfaceSpec.size()));
}

QJsonObject CarOf(const std::string& style, int model) {
    const auto r = RunCli({"car", style, std::to_string(model)});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    return QJsonDocument::fromJson(QByteArray::fromStdString(r.out)).object();
}

// car prints what info prints of that model and where its doors are; --set
// changes that record as asked, the offsets' bytes either way, and no other.
TEST_F(Cli, CarPrintsARecordAndSetsItsFields) {
    const QJsonObject info = InfoOf(kSample);
    const QJsonObject car = CarOf(kSample, 5);
    QJsonObject want = info["cars"].toArray()[5].toObject();
    ASSERT_EQ(want["model"].toInt(), 5);
    for (const QString& key : want.keys()) EXPECT_EQ(car[key], want[key]) << key.toStdString();
    EXPECT_EQ(car["door_positions"].toArray().size(), want["doors"].toInt());
    EXPECT_EQ(car["warnings"], QJsonValue(QJsonArray{})) << "a sound record";

    Run({"car", "STYLE", "5", "--set", "width=20", "--set", "remaps=1, 2", "--set", "door_positions=-3:4", "--set",
         "front_wheel_offset=-2", "OUT.sty"});
    want["width"] = 20;
    want["remaps"] = QJsonArray{1, 2};
    want["doors"] = 1;
    want["front_wheel_offset"] = -2;  // signed, as the doors beside it
    const QJsonObject changed = CarOf(dir_.File("OUT.sty"), 5);
    for (const QString& key : want.keys()) EXPECT_EQ(changed[key], want[key]) << key.toStdString();
    EXPECT_EQ(changed["door_positions"], (QJsonArray{QJsonArray{-3, 4}}));
    QJsonArray others = InfoOf(dir_.File("OUT.sty"))["cars"].toArray();
    others[5] = info["cars"].toArray()[5];
    EXPECT_EQ(others, info["cars"].toArray());

    // A record the file holds wider than the game takes is shown, and why it could not be set so.
    sw::Bytes bytes = sw::ReadFile(kSample);
    const auto cari = std::search(bytes.begin(), bytes.end(), std::begin("CARI"), std::end("CARI") - 1) + 8;
    ASSERT_LT(cari, bytes.end());
    cari[2] = 200;
    sw::WriteFile(dir_.File("wide.sty"), bytes);
    EXPECT_EQ(CarOf(dir_.File("wide.sty"), cari[0])["warnings"].toArray().size(), 1);
}

// car:N takes the car the Sprites list captions "Car: N", however it is spelt;
// a bare number stays the model.
class CliCarCaption : public Cli, public ::testing::WithParamInterface<const char*> {};

TEST_P(CliCarCaption, TakesTheRecordOfTheListsCar) {
    // The last car that starts a record, so that record, model and caption differ.
    int sprite = modDeclares::STYSpriteBase[0] - 1;
    while (sprite >= 0 && ombrevale::paletteusage::CarRecordOfSprite(sprite) < 0) --sprite;
    ASSERT_GT(sprite, 0);
    const auto& record = modDeclares::STYCarInfo.at(std::size_t(ombrevale::paletteusage::CarRecordOfSprite(sprite)));
    const std::string word = QString::fromLatin1(GetParam()).arg(sprite + 1).toStdString();
    const auto r = RunCli({"car", kSample, word});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject car = QJsonDocument::fromJson(QByteArray::fromStdString(r.out)).object();
    EXPECT_EQ(car, CarOf(kSample, record.model));
    EXPECT_EQ(car["caption"].toString(), QStringLiteral("Car: %1").arg(sprite + 1));
}

INSTANTIATE_TEST_SUITE_P(Spellings, CliCarCaption, ::testing::Values("car:%1", "Car: %1", "car %1"));

TEST(CliInfo, SectionsFollowThePresentFlagsAndWarningsAreListed) {
    ombrevale::testsupport::TempDir dir;
    const std::string style = dir.File("small.sty");
    sw::WriteFile(
        style,
        sw::StyleBytes().Add("spec", {2, 0, 0, 0}).Add("RECY", {3, 1, 255}).Add("PALX", sw::LE16(0)).Raw({0}).bytes());
    const QJsonObject info = InfoOf(style);
    EXPECT_EQ(info["sections"].toArray(), QJsonArray({"PALX", "RECY", "SPEC"}));
    EXPECT_EQ(info["warnings"].toArray(),
              QJsonArray({"1 stray byte after the last section was passed over",
                          "The surface list (SPEC) is damaged: it ends after 1 of its 9 lists; 1 of its tile numbers "
                          "are beyond the style's 0 tiles. The types are shown as far as it is sound."}));
    EXPECT_EQ(info["recycle"].toArray(), QJsonArray({3, 1}));
}

}  // namespace

namespace {

// text on a style laid out as the game's font style, whose every sprite is
// as wide as 1 + its number mod 98: the picture's width tells the glyphs apart.
struct TextCase {
    const char* name;
    int font;  // 0: no --font
    int firstGlyph, glyphs;
};

class CliText : public ::testing::TestWithParam<TextCase> {};

TEST_P(CliText, SetsTheLineInTheChosenFont) {
    ombrevale::testsupport::TempDir dir;
    const std::string style = dir.File("fstyle.sty"), out = dir.File("line.png");
    sw::WriteFile(style, sw::MakeFontStyle().bytes());
    // The euro is past Latin-1: no font has it, and it is named on stderr, not set as "?".
    const std::u32string line = U"Go 2!\u20AC";
    std::vector<std::string> args = {"text", style, "Go 2!\u20AC", out};
    if (GetParam().font > 0) args.insert(args.end(), {"--font", std::to_string(GetParam().font)});
    const auto r = RunCli(args);
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const bool fixed = GetParam().font == 0;
    // A space is the font's narrowest glyph, a lacked glyph an empty box of its mean width.
    int sum = 0, narrowest = 99;
    for (int g = 0; g < GetParam().glyphs && !fixed; ++g) {
        sum += 1 + (GetParam().firstGlyph + g) % 98;
        narrowest = std::min(narrowest, 1 + (GetParam().firstGlyph + g) % 98);
    }
    const int box = fixed ? 0 : std::max(3, (sum + GetParam().glyphs / 2) / GetParam().glyphs);
    int width = 0, height = 0;  // the tallest glyph set
    for (const char32_t c : line) {
        const int offset = int(c) - '!';
        const bool has = c < 256 && (fixed || (offset >= 0 && offset < GetParam().glyphs));
        width += has ? 1 + (GetParam().firstGlyph + offset) % 98 : c == ' ' ? narrowest : box;
        if (has) height = std::max(height, 14 + (GetParam().firstGlyph + offset) % 7);
    }
    EXPECT_EQ(QImage(QString::fromStdString(out)).size(), QSize(width, height));
    EXPECT_NE(r.err.find("\u20AC\": "), std::string::npos) << r.err;
}

INSTANTIATE_TEST_SUITE_P(Fonts, CliText,
                         ::testing::Values(TextCase{"FixedRule", 0, 1366, 400}, TextCase{"FirstFont", 1, 44, 140},
                                           TextCase{"OneGlyphFont", 2, 184, 1}, TextCase{"LastFont", 14, 1622, 144}),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
