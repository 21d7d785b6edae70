#include "workbench/gotofind.h"

#include <QWidget>
#include <algorithm>

#include "style/hooks.h"
#include "style/moddeclares.h"
#include "style/spritesearch.h"
#include "workbench/panes_dialogs.h"
#include "workbench/sheetgeometry.h"

namespace ombrevale::workbench {
namespace {

void Tell(const std::string& text) { MsgBox(text, "Ombrevale", MsgIcon::Exclamation); }

}  // namespace

GoToFind::GoToFind(Target target, QWidget* parent) : QObject(parent), target_(std::move(target)), parent_(parent) {}

std::optional<std::string> GoToFind::WhyNotTile(long t, int tiles) {
    const std::string n = std::to_string(t);
    if (t < 0 || t >= tiles)
        return "There is no tile " + n + " in this style: its tiles are 0 to " + std::to_string(tiles - 1) + ".";
    if (t > sheet::kLastSelectable)
        return "Tile " + n + " is on the sheet, but only tiles 0 to " + std::to_string(sheet::kLastSelectable) +
               " can be selected and handed to the editor.";
    return std::nullopt;
}

void GoToFind::AskTile() {
    const int last = std::min(target_.tiles() - 1, sheet::kLastSelectable);
    const auto reply = panesdialogs::InputBox(parent_, QStringLiteral("Go to tile (0 to %1):").arg(last));
    if (!reply) return;
    bool ok = false;
    const int t = reply->trimmed().toInt(&ok);
    if (!ok) return Tell("\"" + reply->toStdString() + "\" is not a tile number.");
    if (const auto why = WhyNotTile(t, target_.tiles())) return Tell(*why);
    target_.goToTile(t);
}

void GoToFind::AskSprite() {
    const auto reply = panesdialogs::InputBox(
        parent_, QStringLiteral("Find sprite (\"car 12\", \"ped 3\", \"font 40\" or a sprite number):"));
    if (!reply) return;
    const auto s = spritesearch::FindSprite(reply->toStdString(), modDeclares::STYSpriteBase);
    if (!s || *s >= target_.sprites()) return Tell("No sprite of this style is \"" + reply->toStdString() + "\".");
    target_.chooseSprite(*s);
}

}  // namespace ombrevale::workbench
