// A picture whose colours the target's palette lacks: the choice between the
// palette's nearest colours and a palette of the target's own, and how the
// window follows a palette entry or the palette count when they change.
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <functional>

#include "pixels/ownpalette.h"
#include "pixels/pictureimport.h"
#include "quantise/reduce.h"
#include "style/hooks.h"
#include "style/moddeclares.h"
#include "workbench/colourchoice.h"
#include "workbench/frmsty2.h"
#include "workbench/offthread.h"
#include "workbench/palettename.h"
#include "workbench/panes_dialogs.h"
#include "workbench/picturebox.h"
#include "workbench/spritename.h"

using ombrevale::editparts::Kind;
namespace own = ombrevale::ownpalette;
using ombrevale::picturefile::Rgba;

namespace {

constexpr QRgb kKey = 0xFFFF00FF;

// The numbers as the target will show them: colour 0 in the key colour, as the sheet draws it.
QImage Drawn(const ByteString& numbers, int w, int h, const std::function<QRgb(int)>& colour) {
    QImage out(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const int n = numbers[static_cast<std::size_t>(y * w + x)];
            out.setPixel(x, y, n == 0 ? kKey : colour(n));
        }
    return out;
}

QRgb PaletteColour(std::int16_t pal, int n) {
    const auto& p = modDeclares::STYPalData[static_cast<std::size_t>(pal)];
    const auto at = static_cast<std::size_t>(n) * 4;
    return qRgb(p[at + 2], p[at + 1], p[at]);
}

// How close the drawing comes to the picture; clear pixels do not count.
double Closeness(const ombrevale::picturefile::Picture& pic, const QImage& drawn) {
    std::vector<Rgba> shown;
    shown.reserve(pic.colours.size());
    for (int i = 0; i < pic.width * pic.height; ++i) {
        const QRgb c = drawn.pixel(i % pic.width, i / pic.width);
        shown.push_back({static_cast<std::uint8_t>(qRed(c)), static_cast<std::uint8_t>(qGreen(c)),
                         static_cast<std::uint8_t>(qBlue(c)), 255});
    }
    return ombrevale::picturefile::Psnr(pic, shown);
}

QString Where(const own::Place& place, bool newPage, const std::string& target) {
    const QString name = QString::fromStdString(target);
    using ombrevale::workbench::PaletteName;
    if (place.inPlace) return QStringLiteral("Rewrites %1: it is %2's alone.").arg(PaletteName(place.palette), name);
    const QString kept = QStringLiteral(" The others that use %1 keep it as it is.").arg(PaletteName(place.from));
    if (newPage)
        return QStringLiteral("A new %1, on a page of 64 palettes added to the style.")
                   .arg(PaletteName(place.palette)) +
               kept;
    return QStringLiteral("Takes %1, which nothing uses.").arg(PaletteName(place.palette)) + kept;
}

}  // namespace

void frmSTY2::ImportFitted(const ombrevale::picturefile::Picture& pic, const ombrevale::pictureimport::Fitted& fitted,
                           std::int16_t pal, const own::Target& target, const QString& path) {
    namespace imp = ombrevale::pictureimport;
    const std::string name = ombrevale::workbench::TargetName(target).toStdString();
    std::optional<own::Place> place;
    std::optional<own::Reduced> reduced;
    if (fitted.changed > 0) {
        const own::Plan plan = own::PlanFor(Sty(), target);
        if (plan.place) {
            const ombrevale::workbench::StyleDocument::Job job(*doc_);
            reduced = ombrevale::workbench::OffThread([&] { return ombrevale::quantise::Reduce(pic); });
        }
        ombrevale::workbench::ColourWay nearest, mine;
        nearest.picture = Drawn(fitted.numbers, pic.width, pic.height, [pal](int n) { return PaletteColour(pal, n); });
        nearest.psnr = Closeness(pic, nearest.picture);
        nearest.note =
            QStringLiteral("The nearest colours of %1, as it is.").arg(ombrevale::workbench::PaletteName(pal));
        if (reduced) {
            mine.picture = Drawn(reduced->numbers, pic.width, pic.height, [&](int n) {
                const Rgba& c = reduced->colours[static_cast<std::size_t>(n - 1)];
                return qRgb(c.r, c.g, c.b);
            });
            mine.psnr = Closeness(pic, mine.picture);
            mine.note = Where(*plan.place, plan.place->countAfter != Sty().GetNumOfPals(), name);
        } else {
            mine.note = plan.place ? QStringLiteral("The picture could not be reduced to 255 colours.")
                        : target.kind == own::TargetKind::Delta
                            ? QStringLiteral("A delta has no palette of its own: it is drawn in its sprite's palette.")
                            : QString::fromStdString(plan.refusal);
        }
        const QLocale locale;
        ombrevale::workbench::ColourChoice dialog(
            QStringLiteral("%1 of %2 pixels of %3 have colours that %4 does not hold. Import it into %5 with:")
                .arg(locale.toString(fitted.changed), locale.toString(pic.width * pic.height), path,
                     ombrevale::workbench::PaletteName(pal), QString::fromStdString(name)),
            nearest, mine, this);
        const auto answer = ombrevale::panesdialogs::ChooseColours(dialog);
        if (answer == ombrevale::workbench::ColourAnswer::Cancel) return;
        if (answer == ombrevale::workbench::ColourAnswer::OwnPalette && reduced) place = plan.place;
    }
    const QString text = QStringLiteral("import into %1").arg(QString::fromStdString(name));
    const bool tile = target.kind == own::TargetKind::Tile;
    // A refusal in one box, as the engine's own refusals are told.
    const auto told = [](const ombrevale::Outcome& problem) {
        if (problem) MsgBox(problem->text, "Ombrevale", MsgIcon::Exclamation);
        return !problem;
    };
    if (place) {
        // A page added comes first, so that the palette written next is there on redo.
        std::vector<std::pair<Kind, std::int32_t>> parts;
        if (place->countAfter != Sty().GetNumOfPals()) parts.push_back({Kind::PaletteCount, 0});
        parts.push_back({Kind::Palette, place->palette});
        parts.push_back({Kind::PaletteEntry, place->entry});
        parts.push_back({tile ? Kind::Tile : Kind::Sprite, target.number});
        doc_->Record(parts, text + QStringLiteral(" with a palette of its own"),
                     [&] { return told(own::Apply(Sty(), target, *place, *reduced)); });
        return;
    }
    const Kind kind = tile ? Kind::Tile : target.kind == own::TargetKind::Delta ? Kind::Deltas : Kind::Sprite;
    doc_->Record({{kind, target.number}}, text, [&] {
        if (kind == Kind::Tile) return told(imp::IntoTile(Sty(), target.number, fitted.numbers));
        if (kind == Kind::Sprite) return told(imp::IntoSprite(Sty(), target.number, fitted.numbers));
        return told(imp::IntoDelta(Sty(), static_cast<std::int16_t>(target.number), target.delta, fitted.numbers));
    });
}
