// Go to a tile on the Tiles page, find a sprite on the Sprites page.
#include <QListWidget>
#include <QScrollBar>
#include <QTabWidget>

#include "style/hooks.h"
#include "style/moddeclares.h"
#include "style/spritesearch.h"
#include "workbench/frmsty2.h"
#include "workbench/panes_dialogs.h"
#include "workbench/picturebox.h"

namespace {
constexpr int kCell = 64;
}  // namespace

void frmSTY2::GoToTile(int t) {
    const int cols = Cols();
    if (cols <= 0 || t < 0 || t >= Sty().GetNumOfTiles()) {
        MsgBox("There is no tile " + std::to_string(t) + " in this style: its tiles are 0 to " +
                   std::to_string(Sty().GetNumOfTiles() - 1) + ".",
               "Ombrevale", MsgIcon::Exclamation);
        return;
    }
    MainTab->setCurrentIndex(0);
    const int column = t % cols, row = t / cols;
    // The cell's row in the middle of the view, as far as the bar goes.
    const int wanted = row * kCell - (picCont->height() - kCell) / 2;
    vScroll->setValue(std::clamp(wanted, vScroll->minimum(), vScroll->maximum()));
    vScroll_Change();
    // From here on the same road as a click in the middle of the cell.
    picMain_MouseUp(1, 0, column * kCell + kCell / 2, row * kCell + kCell / 2);
}

void frmSTY2::AskGoToTile() {
    const auto reply =
        ombrevale::panesdialogs::InputBox(this, QStringLiteral("Go to tile (0 to %1):").arg(Sty().GetNumOfTiles() - 1));
    if (!reply) return;
    bool ok = false;
    const int t = reply->trimmed().toInt(&ok);
    if (!ok) {
        MsgBox("\"" + reply->toStdString() + "\" is not a tile number.", "Ombrevale", MsgIcon::Exclamation);
        return;
    }
    GoToTile(t);
}

void frmSTY2::AskFindSprite() {
    const auto reply = ombrevale::panesdialogs::InputBox(
        this, QStringLiteral("Find sprite (\"car 12\", \"ped 3\", \"font 40\" or a sprite number):"));
    if (!reply) return;
    const auto s = ombrevale::spritesearch::FindSprite(reply->toStdString(), modDeclares::STYSpriteBase);
    if (!s || *s >= lstSprites->count()) {
        MsgBox("No sprite of this style is \"" + reply->toStdString() + "\".", "Ombrevale", MsgIcon::Exclamation);
        return;
    }
    MainTab->setCurrentIndex(1);
    lstSprites->setCurrentRow(*s);
    lstSprites->scrollToItem(lstSprites->item(*s));
}
