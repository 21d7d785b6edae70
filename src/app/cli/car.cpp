// car: one car record as JSON, or the style saved with fields of it changed.
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cctype>
#include <cstdio>

#include "clierror.h"
#include "commands.h"
#include "pixels/exportnames.h"
#include "pixels/paletteusage.h"
#include "style/carrecord.h"
#include "style/clssty.h"
#include "style/moddeclares.h"
#include "style/spritesearch.h"

namespace ombrevale::cli {
namespace {

using modDeclares::CarRecord;

constexpr const char* kRemaps = "remaps";
constexpr const char* kDoors = "door_positions";

// info's fields, then what info leaves out: the flags and where the doors are, as stored.
QJsonObject Whole(const CarRecord& r, int remapRoom, std::size_t index) {
    QJsonObject o = CarJson(r);
    o.insert("info_flags", r.infoFlags);
    o.insert("info_flags2", r.infoFlags2);
    QJsonArray doors;
    for (std::size_t i = 0; i < r.numDoors && i < r.doors.size(); ++i)
        doors.append(QJsonArray{static_cast<int>(static_cast<std::int8_t>(r.doors[i] & 0xFF)),
                                static_cast<int>(static_cast<std::int8_t>(r.doors[i] >> 8))});
    o.insert(kDoors, doors);
    // The row the window's Sprites list gives the car, so both name it alike.
    o.insert("caption", QString::fromStdString(exportnames::SpriteCaption(
                            modDeclares::STYSpriteBase, cars::SpriteOfRecord(modDeclares::STYCarInfo, index))));
    QJsonArray warnings;
    if (auto why = cars::RecordRefusal(r, index, modDeclares::STYCarInfo, remapRoom))
        warnings.append(QString::fromStdString(*why));
    o.insert("warnings", warnings);
    return o;
}

std::string FieldNames() {
    std::string names;
    for (const auto& f : cars::Fields()) names += std::string(f.key) + ", ";
    return names + kRemaps + ", " + kDoors;
}

// One FIELD=VALUE into r; a value the field cannot hold fails naming the style.
void Apply(CarRecord& r, const std::string& set, const std::string& style, int remapRoom) {
    const auto eq = set.find('=');
    if (eq == std::string::npos) throw UsageError("--set takes FIELD=VALUE, not \"" + set + "\"");
    const std::string key = set.substr(0, eq), value = set.substr(eq + 1);
    const auto fail = [&](const std::string& why) { throw Failure(style, why); };
    if (key == kRemaps) {
        const auto m = cars::ParseRemaps(value, remapRoom);
        if (const auto* why = std::get_if<std::string>(&m)) fail(*why);
        r.remaps = std::get<std::vector<std::uint8_t>>(m);
    } else if (key == kDoors) {
        const auto d = cars::ParseDoors(value);
        if (const auto* why = std::get_if<std::string>(&d)) fail(*why);
        r.doors = std::get<std::vector<std::uint16_t>>(d);
    } else if (const cars::FieldSpec* spec = cars::FindField(key)) {
        const auto v = cars::ParseValue(*spec, value);
        if (const auto* why = std::get_if<std::string>(&v)) fail(*why);
        cars::Set(r, spec->field, std::get<int>(v));
    } else {
        throw UsageError("--set: no field \"" + key + "\"; the fields are " + FieldNames());
    }
}

// "car:12", "car 12" or "Car: 12": the record of the sprite the Sprites list captions so.
int RecordOfCaption(const std::string& style, std::string text) {
    std::replace(text.begin(), text.end(), ':', ' ');
    const auto sprite = spritesearch::FindSprite(text, modDeclares::STYSpriteBase);
    std::string lower = text;
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (lower.rfind("car ", 0) != 0)
        throw UsageError("car takes a model number or a car as the Sprites list names it (car:N), not \"" + text +
                         "\"");
    const auto number = text.find_first_not_of(' ', 4);
    const std::string caption = "Car: " + (number == std::string::npos ? std::string() : text.substr(number));
    if (!sprite) throw Failure(style, "has no " + caption);
    const int record = paletteusage::CarRecordOfSprite(*sprite);
    if (record < 0) throw Failure(style, caption + " shares the car record of the car before it");
    return record;
}

}  // namespace

int RunCar(const Args& args) {
    const std::string& style = args.words[0];
    const std::string& which = args.words[1];
    const bool byCaption = !which.empty() && (std::isalpha(static_cast<unsigned char>(which[0])) != 0);
    const std::int64_t model = byCaption ? 0 : ParseNumber(which, "MODEL");
    clsSTY doc;
    LoadStyle(doc, style);
    int index = -1;
    if (byCaption) {
        index = RecordOfCaption(style, which);
    } else {
        CheckRange(style, "model", model, 0, 255);
        index = cars::FindModel(static_cast<int>(model));
        if (index < 0) throw Failure(style, "has no car record of model " + std::to_string(model));
    }
    const auto at = static_cast<std::size_t>(index);
    const int room = cars::RemapRoom();
    if (args.sets.empty()) {
        const QByteArray out =
            QJsonDocument(Whole(modDeclares::STYCarInfo[at], room, at)).toJson(QJsonDocument::Compact) + '\n';
        std::fwrite(out.constData(), 1, static_cast<std::size_t>(out.size()), stdout);
        return std::fflush(stdout) == 0 ? kExitOk : kExitFailed;
    }
    CarRecord r = modDeclares::STYCarInfo[at];
    for (const std::string& set : args.sets) Apply(r, set, style, room);
    if (auto why = cars::RecordRefusal(r, at, modDeclares::STYCarInfo, room)) throw Failure(style, *why);
    cars::Replace(at, std::move(r));
    SaveStyle(doc, args.words[2]);
    return kExitOk;
}

}  // namespace ombrevale::cli
