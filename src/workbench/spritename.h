#pragma once
// A sprite or a car named as the Sprites list captions it ("Car: 4"), with
// the number behind the caption after it, so a question agrees with the list.

#include <QString>
#include <cstddef>

#include "pixels/exportnames.h"
#include "pixels/ownpalette.h"
#include "style/carrecord.h"
#include "style/moddeclares.h"

namespace ombrevale::workbench {

// "Car: 4 (sprite 3)"; a sprite past the groups is named by its number alone.
inline QString SpriteName(int sprite) {
    const QString caption = QString::fromStdString(exportnames::SpriteCaption(modDeclares::STYSpriteBase, sprite));
    return caption.startsWith(QLatin1String("Sprite: ")) ? QStringLiteral("sprite %1").arg(sprite)
                                                         : QStringLiteral("%1 (sprite %2)").arg(caption).arg(sprite);
}

// "Car: 12 (record 11, model 11)".
inline QString CarName(const std::vector<modDeclares::CarRecord>& all, std::size_t record) {
    const QString caption = QString::fromStdString(
        exportnames::SpriteCaption(modDeclares::STYSpriteBase, cars::SpriteOfRecord(all, record)));
    return QStringLiteral("%1 (record %2, model %3)").arg(caption).arg(record).arg(all.at(record).model);
}

// "tile 7", "Car: 4 (sprite 3)", "delta 2 of Car: 4 (sprite 3)".
inline QString TargetName(const ownpalette::Target& target) {
    switch (target.kind) {
        case ownpalette::TargetKind::Tile:
            return QStringLiteral("tile %1").arg(target.number);
        case ownpalette::TargetKind::Sprite:
            return SpriteName(target.number);
        case ownpalette::TargetKind::Delta:
            break;
    }
    return QStringLiteral("delta %1 of %2").arg(target.delta).arg(SpriteName(target.number));
}

}  // namespace ombrevale::workbench
