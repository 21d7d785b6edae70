#include "folderimport/folderimport.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <optional>
#include <set>
#include <tuple>

#include "pictureio/picturereader.h"
#include "pixels/checks.h"
#include "pixels/ownpalette.h"
#include "pixels/pictureimport.h"
#include "quantise/reduce.h"
#include "style/hooks.h"
#include "style/moddeclares.h"

namespace ombrevale::folderimport {
namespace {

using editparts::Kind;
using exportnames::Name;
namespace imp = pictureimport;

constexpr const char* kFolders[] = {"deltas", "sprites", "tiles", "palettes"};

// Whatever the engine tells through the message hook while a file is tried
// becomes that file's reason, not a box of its own.
class Told {
public:
    Told()
        : hooks_([this] {
              DocumentHooks h = InstalledDocumentHooks();
              h.msgBox = [this](const std::string& text, const std::string&, MsgIcon) { last_ = text; };
              return h;
          }()) {}
    std::string Last(const std::string& fallback) {
        std::string text = std::exchange(last_, {});
        return text.empty() ? fallback : text;
    }

private:
    std::string last_;
    ScopedDocumentHooks hooks_;
};

std::optional<std::string> DeltaMissing(std::int32_t sprite, std::int32_t delta) {
    for (const auto& entry : modDeclares::STYDeltaIndex)
        if (entry.sprite == sprite)
            return delta < entry.deltaCount
                       ? std::nullopt
                       : std::optional<std::string>("sprite " + std::to_string(sprite) + " has " +
                                                    std::to_string(entry.deltaCount) + " deltas, not a delta " +
                                                    std::to_string(delta));
    return "sprite " + std::to_string(sprite) + " has no deltas";
}

// The file against what the style draws now: nothing when it is the same,
// else the change, or the reason it cannot go in.
struct Tried {
    bool same = false;
    std::optional<Change> change;
    std::string why;
};

Tried Picture(clsSTY& doc, const Name& name, const std::string& path, Colours colours, Told& told) {
    const bool tile = name.kind == exportnames::Kind::Tile;
    const std::int32_t n = name.number;
    if (tile ? n >= doc.GetNumOfTiles() : n >= doc.GetNumOfSprx())
        return {false, std::nullopt,
                std::string("the style has no ") + (tile ? "tile " : "sprite ") + std::to_string(n)};
    if (name.kind == exportnames::Kind::Delta)
        if (auto missing = DeltaMissing(n, name.delta)) return {false, std::nullopt, *missing};
    const auto pal = tile ? pixelchecks::TilePalette(doc, n) : pixelchecks::SpritePalette(doc, n, -1);
    if (!pal) return {false, std::nullopt, told.Last("it has no palette")};
    picturefile::Picture pic;
    if (auto problem = pictureio::ReadPicture(path, pic)) return {false, std::nullopt, problem->text};
    const std::string target = (tile ? "tile " : "sprite ") + std::to_string(n);
    if (auto problem = imp::CheckSize(pic, tile ? kTileSide : doc.GetSpriteWidth(n),
                                      tile ? kTileSide : doc.GetSpriteHeight(n), target))
        return {false, std::nullopt, problem->text};
    const auto delta = static_cast<std::int16_t>(name.kind == exportnames::Kind::Delta ? name.delta : -1);
    const ByteString present = tile ? imp::TileNumbers(doc, n) : imp::SpriteNumbers(doc, n, delta);
    const imp::Fitted fitted = imp::Fit(pic, *pal, present);
    if (fitted.changed > 0 && colours == Colours::OwnPalette) {
        const ownpalette::Target own{tile         ? ownpalette::TargetKind::Tile
                                     : delta >= 0 ? ownpalette::TargetKind::Delta
                                                  : ownpalette::TargetKind::Sprite,
                                     n, delta};
        const auto plan = ownpalette::PlanFor(doc, own);
        if (!plan.place) return {false, std::nullopt, plan.refusal};
        return {false, Change{name, {}, {}, 0, *pal, true, path}, {}};
    }
    if (fitted.changed > 0 && colours == Colours::Exact)
        return {false, std::nullopt,
                std::to_string(fitted.changed) + " of " + std::to_string(pic.colours.size()) +
                    " pixels have colours that palette " + std::to_string(*pal) + " does not hold"};
    if (fitted.numbers == present) return {true, std::nullopt, {}};
    // Tried on the stores and put back: what the engine would refuse is refused now.
    const Kind kind = tile ? Kind::Tile : delta >= 0 ? Kind::Deltas : Kind::Sprite;
    const editparts::Part before = editparts::Take(doc, kind, n);
    const auto problem = tile         ? imp::IntoTile(doc, n, fitted.numbers)
                         : delta >= 0 ? imp::IntoDelta(doc, static_cast<std::int16_t>(n), delta, fitted.numbers)
                                      : imp::IntoSprite(doc, n, fitted.numbers);
    editparts::Put(doc, before);
    if (problem) return {false, std::nullopt, problem->text};
    return {false, Change{name, {}, fitted.numbers, fitted.changed, *pal, false, {}}, {}};
}

Tried PaletteFile(clsSTY& doc, const Name& name, const std::string& path, Told& told) {
    if (name.number >= doc.GetNumOfPals())
        return {false, std::nullopt, "the style has no palette " + std::to_string(name.number)};
    const editparts::Part before = editparts::Take(doc, Kind::Palette, name.number);
    const bool read = doc.ImportPalette(path, name.number);
    const editparts::Part after = editparts::Take(doc, Kind::Palette, name.number);
    editparts::Put(doc, before);
    if (!read) return {false, std::nullopt, told.Last("it is not a JASC-PAL palette file")};
    if (after.bytes == before.bytes) return {true, std::nullopt, {}};
    return {false, Change{name, {}, after.bytes, 0, static_cast<std::int16_t>(name.number), false, {}}, {}};
}

int Order(exportnames::Kind kind) {
    switch (kind) {
        case exportnames::Kind::Delta:
            return 0;
        case exportnames::Kind::Sprite:
            return 1;
        case exportnames::Kind::Tile:
            return 2;
        case exportnames::Kind::Palette:
            return 3;
    }
    return 4;
}

}  // namespace

Plan Read(clsSTY& doc, const std::string& dir, Colours colours, const std::function<void(int, int)>& step) {
    Plan plan;
    const QDir root(QString::fromStdString(dir));
    if (!QFileInfo(root.path()).isDir()) {
        plan.refusals.push_back({dir, "is not a folder"});
        return plan;
    }
    // Links and what is no regular file are listed too, so that they are refused by name.
    std::vector<std::string> files;
    for (const char* sub : kFolders)
        for (const QString& entry :
             QDir(root.filePath(QString::fromLatin1(sub)))
                 .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name))
            files.push_back(std::string(sub) + "/" + entry.toStdString());
    if (files.empty()) {
        plan.refusals.push_back({dir, "holds no file of an export (tiles/, sprites/, deltas/, palettes/)"});
        return plan;
    }
    Told told;
    std::set<std::tuple<int, std::int32_t, std::int32_t>> seen;
    int done = 0;
    for (const std::string& file : files) {
        if (step) step(done++, static_cast<int>(files.size()));
        const QFileInfo info(root.filePath(QString::fromStdString(file)));
        const auto name = exportnames::Parse(file);
        std::string why;
        if (info.isSymLink())
            why = "is a link; only the export's own files are read";
        else if (!info.isFile())
            why = info.isDir() ? "is a folder" : "is not a regular file";
        else if (!name)
            why = "is not a name the export gives its files";
        else if (!seen.insert({static_cast<int>(name->kind), name->number, name->delta}).second)
            why = "stands for the same picture as another file of the folder";
        if (!why.empty()) {
            plan.refusals.push_back({file, why});
            continue;
        }
        const std::string path = info.absoluteFilePath().toStdString();
        Tried tried = name->kind == exportnames::Kind::Palette ? PaletteFile(doc, *name, path, told)
                                                               : Picture(doc, *name, path, colours, told);
        if (tried.same) {
            ++plan.unchanged;
        } else if (tried.change) {
            tried.change->file = file;
            plan.changes.push_back(std::move(*tried.change));
        } else {
            plan.refusals.push_back({file, tried.why});
        }
    }
    std::stable_sort(plan.changes.begin(), plan.changes.end(),
                     [](const Change& a, const Change& b) { return Order(a.name.kind) < Order(b.name.kind); });
    return plan;
}

std::vector<editparts::Part> Touched(const clsSTY& doc, const Plan& plan) {
    std::vector<editparts::Part> parts;
    bool deltas = false;
    for (const Change& c : plan.changes) {
        switch (c.name.kind) {
            case exportnames::Kind::Tile:
                parts.push_back(editparts::Take(doc, Kind::Tile, c.name.number));
                break;
            case exportnames::Kind::Sprite:
                parts.push_back(editparts::Take(doc, Kind::Sprite, c.name.number));
                break;
            case exportnames::Kind::Delta:
                if (!std::exchange(deltas, true)) parts.push_back(editparts::Take(doc, Kind::Deltas, 0));
                break;
            case exportnames::Kind::Palette:
                parts.push_back(editparts::Take(doc, Kind::Palette, c.name.number));
                break;
        }
    }
    return parts;
}

void Apply(clsSTY& doc, const Plan& plan) {
    for (const Change& c : plan.changes) {
        const std::int32_t n = c.name.number;
        switch (c.name.kind) {
            case exportnames::Kind::Delta:
                imp::IntoDelta(doc, static_cast<std::int16_t>(n), static_cast<std::int16_t>(c.name.delta), c.bytes);
                break;
            case exportnames::Kind::Sprite:
            case exportnames::Kind::Tile:
                if (c.ownPalette) {
                    picturefile::Picture pic;
                    const bool tile = c.name.kind == exportnames::Kind::Tile;
                    if (!pictureio::ReadPicture(c.path, pic))
                        quantise::ImportOwnPalette(
                            doc, {tile ? ownpalette::TargetKind::Tile : ownpalette::TargetKind::Sprite, n, -1}, pic);
                } else if (c.name.kind == exportnames::Kind::Tile) {
                    imp::IntoTile(doc, n, c.bytes);
                } else {
                    imp::IntoSprite(doc, n, c.bytes);
                }
                break;
            case exportnames::Kind::Palette: {
                editparts::Part palette;
                palette.kind = Kind::Palette;
                palette.number = n;
                palette.bytes = c.bytes;
                editparts::Put(doc, palette);
            } break;
        }
    }
}

std::string Describe(const Change& change) {
    if (change.ownPalette) return change.file + ": a palette of its own";
    if (change.mapped == 0) return change.file;
    return change.file + ": " + std::to_string(change.mapped) + " pixels took the nearest colour of palette " +
           std::to_string(change.palette);
}

}  // namespace ombrevale::folderimport
