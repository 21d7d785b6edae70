// info: the document's counts and tables as one JSON object.
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>
#include <string>

#include "clierror.h"
#include "commands.h"
#include "style/carrecord.h"
#include "style/clssty.h"
#include "style/surfaces.h"

namespace ombrevale::cli {
namespace {

template <typename T>
QJsonArray List(const T& values, std::size_t count) {
    QJsonArray out;
    for (std::size_t i = 0; i < count && i < values.size(); ++i) out.append(static_cast<qint64>(values[i]));
    return out;
}

QJsonArray Sections(const clsSTY& doc) {
    QJsonArray out;
    for (int i = 0; i < kSectionCount; ++i)
        if (doc.IsPresent(static_cast<Section>(i)))
            out.append(QString::fromLatin1(kSectionTags[static_cast<std::size_t>(i)]));
    return out;
}

// Type name to its tiles; a damaged list adds its problem to the warnings.
QJsonObject Surfaces(const clsSTY& doc, QJsonArray& warnings) {
    const auto map = surfaces::ReadSurfaces(doc.STYSurfaceSpec, doc.GetNumOfTiles());
    std::array<QJsonArray, surfaces::kTypes> tiles;
    for (std::size_t t = 0; t < map.type.size(); ++t) tiles[map.type[t] - 1u].append(static_cast<qint64>(t));
    QJsonObject out;
    for (std::size_t k = 0; k < tiles.size(); ++k)
        out.insert(
            QString::fromLatin1(surfaces::kTypeNames[k].data(), static_cast<qsizetype>(surfaces::kTypeNames[k].size())),
            tiles[k]);
    if (!map.problem.empty()) warnings.append(QString::fromStdString(map.problem));
    return out;
}

}  // namespace

QJsonObject CarJson(const modDeclares::CarRecord& r) {
    // The offsets as the record means them: signed pixels, as the doors are printed.
    QJsonObject o;
    for (const auto& f : cars::Fields())
        if (f.field != cars::Field::Flags && f.field != cars::Field::Flags2)
            o.insert(QString::fromLatin1(f.key.data(), static_cast<qsizetype>(f.key.size())), cars::Get(r, f.field));
    o.insert("remaps", List(r.remaps, r.numRemaps));
    o.insert("doors", r.numDoors);
    return o;
}

int RunInfo(const Args& args) {
    clsSTY doc;
    const LoadReport report = LoadStyle(doc, args.words[0]);
    using namespace modDeclares;
    QJsonArray deltas, cars, warnings;
    for (const auto& e : STYDeltaIndex)
        deltas.append(QJsonObject{{"sprite", e.sprite}, {"sizes", List(e.deltaSizes, e.deltaCount)}});
    for (const auto& r : STYCarInfo) cars.append(CarJson(r));
    for (const auto& w : report.warnings) warnings.append(QString::fromStdString(w));
    const QJsonObject surfaceTiles = Surfaces(doc, warnings);
    const std::size_t recycleEntries = STYRecycle.empty() ? 0 : STYRecycle.size() - 1;
    const std::size_t fontEntries = STYFontBase.count > 0 ? static_cast<std::size_t>(STYFontBase.count) : 0;
    const QJsonObject info{{"sections", Sections(doc)},
                           {"tiles", doc.GetNumOfTiles()},
                           {"palettes", doc.GetNumOfPals()},
                           {"palx", doc.GetNumOfPalx()},
                           {"sprites", doc.GetNumOfSprx()},
                           {"sprite_base", List(STYSpriteBase, 6)},
                           {"pal_base", List(STYPalBase, 8)},
                           {"font_base", List(STYFontBase.base, fontEntries)},
                           {"deltas", deltas},
                           {"cars", cars},
                           {"recycle", List(STYRecycle, recycleEntries)},
                           {"sprite_data_bytes", static_cast<qint64>(doc.STYSpriteData.size())},
                           {"delta_data_bytes", static_cast<qint64>(STYDeltaStore.size())},
                           {"object_info_bytes", static_cast<qint64>(doc.STYObjectInfo.size())},
                           {"surface_spec_bytes", static_cast<qint64>(doc.STYSurfaceSpec.size())},
                           {"surfaces", surfaceTiles},
                           {"warnings", warnings}};
    const QByteArray out = QJsonDocument(info).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(out.constData(), 1, static_cast<std::size_t>(out.size()), stdout);
    return std::fflush(stdout) == 0 ? 0 : 1;
}

int RunSave(const Args& args) {
    clsSTY doc;
    LoadStyle(doc, args.words[0]);
    SaveStyle(doc, args.words[1]);
    return 0;
}

}  // namespace ombrevale::cli
