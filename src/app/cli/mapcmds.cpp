// map-info and map: a GTA2 map counted, and drawn from above with a style's tiles.
#include <QGuiApplication>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QString>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "clierror.h"
#include "commands.h"
#include "map/gbmp.h"
#include "map/usage.h"
#include "mapdraw/mapframe.h"
#include "mapdraw/overlays.h"
#include "mapdraw/tilepyramid.h"
#include "style/clssty.h"

namespace ombrevale::cli {
namespace {

constexpr int kLargestPicture = 8192;

map::Map ReadMapFile(const std::string& path) {
    auto read = map::LoadMap(path);
    if (!read.map) throw std::runtime_error(read.error);
    return std::move(*read.map);
}

QJsonObject Counts(const std::array<std::int32_t, map::kTileNumbers>& counts) {
    QJsonObject o;
    for (int t = 0; t < map::kTileNumbers; ++t)
        if (counts[static_cast<std::size_t>(t)] > 0) o.insert(QString::number(t), counts[static_cast<std::size_t>(t)]);
    return o;
}

QJsonArray Zones(const map::Map& m) {
    QJsonArray zones;
    for (const map::Zone& z : m.zones)
        zones.append(QJsonObject{{"name", QString::fromLatin1(z.name.data(), static_cast<qsizetype>(z.name.size()))},
                                 {"type", z.type},
                                 {"x", z.x},
                                 {"y", z.y},
                                 {"w", z.w},
                                 {"h", z.h}});
    return zones;
}

struct Area {
    int x, y, w, h;
};

Area ParseArea(const std::string& text) {
    std::vector<std::int64_t> v;
    std::stringstream in(text);
    for (std::string part; std::getline(in, part, ',');) v.push_back(ParseNumber(part, "--area"));
    if (v.size() != 4) throw UsageError("--area takes X,Y,W,H, not \"" + text + "\"");
    if (v[0] < 0 || v[1] < 0 || v[2] < 1 || v[3] < 1 || v[0] + v[2] > map::kSide || v[1] + v[3] > map::kSide)
        throw UsageError("--area " + text + " must lie inside the map's 256 x 256 blocks");
    return {static_cast<int>(v[0]), static_cast<int>(v[1]), static_cast<int>(v[2]), static_cast<int>(v[3])};
}

}  // namespace

int RunMapInfo(const Args& args) {
    const map::Map m = ReadMapFile(args.words[0]);
    const map::TileUsage usage = map::CountTiles(m);
    QJsonArray chunks;
    for (const map::ChunkHead& c : m.chunks)
        chunks.append(
            QJsonObject{{"type", QString::fromLatin1(c.type.data(), 4)}, {"size", static_cast<qint64>(c.size)}});
    QJsonObject info{{"map", map::SourceName(m.source)},
                     {"blocks", m.CountBlocks()},
                     {"lids", Counts(usage.lids)},
                     {"sides", Counts(usage.sides)},
                     {"zones", Zones(m)},
                     {"lights", static_cast<qint64>(m.lights.size())},
                     {"animations", static_cast<qint64>(m.animations.size())},
                     {"objects", static_cast<qint64>(m.objects.size())},
                     {"chunks", chunks}};
    if (args.style) {
        clsSTY doc;
        LoadStyle(doc, *args.style);
        // A tile the map's animations show counts as used: its art is on screen in the game.
        QJsonArray unused;
        for (int t = 0; t < std::min<int>(doc.GetNumOfTiles(), map::kTileNumbers); ++t)
            if (!usage.Used(t)) unused.append(t);
        info.insert("unused", unused);
    }
    const QByteArray out = QJsonDocument(info).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(out.constData(), 1, static_cast<std::size_t>(out.size()), stdout);
    return 0;
}

int RunMap(const Args& args) {
    const std::string& style = args.words[0];
    const std::string out = std::filesystem::absolute(args.words[2]).string();
    const Area area = args.area ? ParseArea(*args.area) : Area{0, 0, map::kSide, map::kSide};
    const std::int64_t scale = args.scale.value_or(args.area ? 64 : 16);
    const std::int64_t level = args.level.value_or(map::kLevels - 1);
    CheckRange(style, "--scale", scale, 1, 64);
    CheckRange(style, "--level", level, 0, map::kLevels - 1);
    const std::int64_t w = area.w * scale, h = area.h * scale;
    if (w > kLargestPicture || h > kLargestPicture)
        throw UsageError("a picture of " + std::to_string(w) + " x " + std::to_string(h) + " pixels is larger than " +
                         std::to_string(kLargestPicture) + " x " + std::to_string(kLargestPicture) +
                         "; give a smaller --scale or --area");
    clsSTY doc;
    LoadStyle(doc, style);
    const map::Map m = ReadMapFile(args.words[1]);

    QImage picture(static_cast<int>(w), static_cast<int>(h), QImage::Format_ARGB32);
    if (picture.isNull()) throw Failure(out, "there is no memory for a picture of this size");
    mapdraw::TilePyramid tiles(doc);
    mapdraw::MapFrame frame;
    const mapdraw::View view{static_cast<double>(scale), static_cast<double>(area.x * scale),
                             static_cast<double>(area.y * scale)};
    mapdraw::DrawOptions options;
    options.levelCut = static_cast<int>(level);
    options.shade = args.shade;
    frame.Draw(m, tiles, view, options, reinterpret_cast<std::uint32_t*>(picture.bits()), picture.width(),
               picture.height(), static_cast<int>(picture.bytesPerLine() / 4));
    // The zones' names need fonts, and fonts an application object; it never shows a window.
    std::optional<QGuiApplication> fonts;
    if (args.zones && !QCoreApplication::instance()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "ombrevale-cli";
        static char* argv[] = {name, nullptr};
        // Qt's notes on the offscreen platform are not the command's to print.
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        fonts.emplace(argc, argv);
    }
    {
        QPainter p(&picture);
        mapdraw::DrawOverlays(p, m, view, {false, args.zones, args.arrows}, picture.width(), picture.height());
    }
    if (const auto missing = tiles.Missing(); !missing.empty())
        std::fprintf(
            stderr,
            "ombrevale-cli: %s: %zu tile number(s) of the map, the first %d, are not in the style; drawn hatched\n",
            style.c_str(), missing.size(), missing.front());
    WriteThrough(out, [&](const std::string& temp) { return picture.save(QString::fromStdString(temp), "PNG"); });
    return 0;
}

}  // namespace ombrevale::cli
