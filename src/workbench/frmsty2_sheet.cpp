// The tile sheet: drawing it, selecting a cell, scrolling, keys.
#include <QElapsedTimer>
#include <QLabel>
#include <QScrollBar>
#include <QTabWidget>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>
#include <optional>

#include "editorlink/modcontrolwin.h"
#include "settings/wineprefix.h"
#include "style/hooks.h"
#include "style/moddeclares.h"
#include "style/palettebases.h"
#include "workbench/frmsty2.h"
#include "workbench/gotofind.h"
#include "workbench/keycodes.h"
#include "workbench/mapsheet.h"
#include "workbench/picturebox.h"
#include "workbench/sheetgeometry.h"
#include "workbench/styleedits.h"
#include "workbench/surfaceoverlay.h"

using ombrevale::sheet::kCell;

namespace {

// What a message is about, whichever tile it names: its text with the numbers taken out.
std::string Cause(const std::string& text) {
    std::string cause;
    std::copy_if(text.begin(), text.end(), std::back_inserter(cause), [](char c) { return c < '0' || c > '9'; });
    return cause;
}

// A message given during a render; those of tiles that cannot be drawn are
// counted by cause, the first one's text kept.
struct Gathered {
    std::string text, title, cause;
    MsgIcon icon;
    bool ofTile;
    int times;
};

}  // namespace

bool frmSTY2::FirstTelling(const std::string& text) {
    std::string cause = Cause(text);
    if (std::find(causesTold_.begin(), causesTold_.end(), cause) != causesTold_.end()) return false;
    causesTold_.push_back(std::move(cause));
    return true;
}

int frmSTY2::Cols() const { return ombrevale::sheet::Columns(picMain->Width()); }

void frmSTY2::SetScrollMax(int max) {
    // The bar itself cannot go below its minimum; a sheet that fits keeps the negative figure here.
    vScrollMax_ = max;
    vScroll->setMaximum(std::max(vScroll->minimum(), max));
}

void frmSTY2::RenderSheet() {
    // A render started from inside another's event run would draw into the same sheet: drop it.
    if (doc_->Busy()) return;
    auto job = std::make_unique<ombrevale::workbench::StyleDocument::Job>(*doc_);
    rendering_ = true;
    QElapsedTimer whole;
    whole.start();
    qint64 road = 0;
    clsSTY& sty = Sty();
    const int n = sty.GetNumOfTiles();
    ProgressStart(0, n - 1, "Please Wait...");
    picMain->resize(std::max(1, picCont->width() - vScroll->width()), picMain->height());
    const int cols = Cols();
    // The sheet takes its final height before the wipe, so its picture is made
    // once at that size rather than made at the old one and grown afterwards.
    picMain->resize(picMain->width(), (cols > 0 ? n / cols + 1 : 1) * kCell);
    picMain->Cls();
    boxCell_.reset();  // the wipe takes the box with it
    picMain->hide();
    int column = 0, row = 0, tilesDrawn = 0;
    // One style may lack the palettes of thousands of tiles: a box a tile would
    // never end, so the messages wait for the end of the render, one a cause.
    std::vector<Gathered> gathered;
    bool inTile = false;
    DocumentHooks gathering = InstalledDocumentHooks();
    gathering.msgBox = [&](const std::string& text, const std::string& title, MsgIcon icon) {
        const std::string cause = Cause(text);
        const auto same = std::find_if(gathered.begin(), gathered.end(), [&](const Gathered& g) {
            return inTile && g.ofTile && g.title == title && g.cause == cause;
        });
        if (same != gathered.end())
            ++same->times;
        else
            gathered.push_back({text, title, cause, icon, inTile, 1});
    };
    std::optional<ScopedDocumentHooks> scoped(std::in_place, std::move(gathering));
    for (int t = 0; t < n; ++t) {
        ProgressStep(t, "Rendering...");
        // A load run from the event loop may have shrunk the store meanwhile.
        if (t >= sty.GetNumOfTiles()) break;
        QElapsedTimer tile;
        tile.start();
        inTile = true;
        const bool drawn = cols > 0 && sty.RenderTile(t, *picTTmp);
        inTile = false;
        road += tile.nsecsElapsed();
        if (drawn) {
            picMain->BitBlt(column * kCell, row * kCell, kCell, kCell, *picTTmp, 0, 0);
            ++tilesDrawn;
        }
        if (cols > 0 && ++column == cols) {
            column = 0;
            ++row;
        }
    }
    scoped.reset();
    ++row;
    picMain->resize(picMain->width(), row * kCell);
    SetScrollMax(picMain->Height() - picCont->height());
    rendering_ = false;
    picMain->show();
    ProgressEnd();
    picMain->update();
    lastRender_ = {whole.nsecsElapsed(), road, tilesDrawn};
    for (const Gathered& g : gathered) {
        if (g.ofTile && !FirstTelling(g.text)) continue;
        std::string text = g.text;
        if (g.times > 1)
            text += " " + std::to_string(g.times - 1) + (g.times == 2 ? " more tile has" : " more tiles have") +
                    " the same problem. The cells of these " + std::to_string(g.times) + " tiles are left blank.";
        MsgBox(text, g.title, g.icon);
    }
    job.reset();
    ShowSheetNote();
    // A reload may bring other lists and another number of tiles.
    if (views_->surfaces->Shown()) views_->ShowSurfaces(true);
    views_->map->SheetDrawn();
    modControlWin::FindEditorList();
}

void frmSTY2::ShowSheetNote() {
    actions_.save->setEnabled(doc_->HasStyle());
    actions_.saveAs->setEnabled(doc_->HasStyle());
    QString note;
    if (!doc_->HasStyle()) {
        const std::string path = StylePath();
        note = QStringLiteral(
            "No style is loaded. Open one with Ctrl+O or the Open button, or drop a style file "
            "on the window.\n\n");
        if (!path.empty()) {
            note += QStringLiteral("The style %1 could not be read.").arg(QString::fromStdString(path));
        } else {
            // Where Refresh looks, so the user can tell why it found nothing.
            const std::string prefix = ombrevale::winepath::PrefixDir();
            const QString key = QStringLiteral(
                "\"App Style File\" under HKEY_CURRENT_USER\\Software\\DMA Design LTd\\Gta2 Editor\\App Defaults");
            note += prefix.empty()
                        ? QStringLiteral(
                              "Refresh loads the style the GTA2 editor uses, named by %1 in "
                              "its Wine prefix; there is no prefix at %2.")
                              .arg(key, qEnvironmentVariableIsSet("WINEPREFIX") ? qEnvironmentVariable("WINEPREFIX")
                                                                                : QStringLiteral("~/.wine"))
                        : QStringLiteral(
                              "Refresh loads the style the GTA2 editor uses, named by %1 in "
                              "%2/user.reg; it names none.")
                              .arg(key, QString::fromStdString(prefix));
        }
    } else if (Sty().GetNumOfTiles() == 0) {
        note = QStringLiteral("This style has no tiles. Its sprites, palettes and fonts are on the other pages.");
    }
    lblSheetNote->setText(note);
    lblSheetNote->setVisible(!note.isEmpty());
    if (!note.isEmpty()) lblSheetNote->raise();
}

void frmSTY2::picMain_MouseUp(int /*Button*/, int /*Shift*/, double X, double Y) {
    // The sheet is hidden while it is drawn and takes no click then.
    if (rendering_) return;
    const int cols = Cols();
    // Only whole cells count: the strip right of the last column and anything above or left select nothing.
    if (X < 0 || Y < 0) return;
    const auto at = ombrevale::sheet::TileAt(static_cast<int>(std::lround(X)), static_cast<int>(std::lround(Y)), cols);
    if (!at || *at > ombrevale::sheet::kLastSelectable) return;
    const long t = *at;
    const long column = t % cols, row = t / cols;

    if (boxCell_) {
        picMain->InvertBox(boxCell_->x() * kCell, boxCell_->y() * kCell, (boxCell_->x() + 1) * kCell,
                           (boxCell_->y() + 1) * kCell);
        boxCell_.reset();
    }
    sSelKind = "t";
    picMain->Tag = QString::number(t);
    iSelNum = static_cast<std::int16_t>(t);
    const auto own = ombrevale::palettebases::TilePalette(t);
    const QString pal = own ? QString::number(*own) : QStringLiteral("none");
    lblIdx->setText(QStringLiteral("Index: ") + picMain->Tag + QStringLiteral(" Palette: ") + pal);
    lblIdx->adjustSize();
    const int c = static_cast<int>(column), r = static_cast<int>(row);
    picMain->InvertBox(c * kCell, r * kCell, (c + 1) * kCell, (r + 1) * kCell);
    boxCell_ = QPoint(c, r);
    HandOverToEditor();
}

void frmSTY2::HandOverToEditor() {
    std::int32_t item = picMain->Tag.toInt() - 1;
    if (item == -1) item = 0;
    modControlWin::FindEditorList();
    modControlWin::clickListboxItem(modControlWin::hWndEditorList, item);
}

void frmSTY2::vScroll_Change() { picMain->move(0, -vScroll->value()); }

void frmSTY2::Form_KeyDown(int KeyCode, int /*Shift*/) {
    const int maxV = std::max(vScroll->minimum(), vScrollMax_);
    const int minV = vScroll->minimum();
    int value = vScroll->value();
    switch (KeyCode) {
        case ombrevale::keycodes::vbKeyEscape:
            close();
            return;
        case ombrevale::keycodes::vbKeyDown:
            value = std::min(value + vScroll->singleStep(), maxV);
            break;
        case ombrevale::keycodes::vbKeyUp:
            value = std::max(value - vScroll->singleStep(), minV);
            break;
        case ombrevale::keycodes::vbKeyPageDown:
            value = std::min(value + vScroll->pageStep(), maxV);
            break;
        case ombrevale::keycodes::vbKeyPageUp:
            value = std::max(value - vScroll->pageStep(), minV);
            break;
        default:
            return;
    }
    vScroll->setValue(value);
}

void frmSTY2::GoToTile(int t) {
    if (const auto why = ombrevale::workbench::GoToFind::WhyNotTile(t, Sty().GetNumOfTiles())) {
        MsgBox(*why, "Ombrevale", MsgIcon::Exclamation);
        return;
    }
    const int cols = Cols();
    if (cols <= 0) return;
    MainTab->setCurrentIndex(0);
    const QRect cell = ombrevale::sheet::CellRect(t, cols);
    // The cell's row in the middle of the view, as far as the bar goes.
    const int wanted = cell.y() - (picCont->height() - kCell) / 2;
    vScroll->setValue(std::clamp(wanted, vScroll->minimum(), vScroll->maximum()));
    vScroll_Change();
    // From here on the same road as a click in the middle of the cell.
    picMain_MouseUp(1, 0, cell.center().x(), cell.center().y());
}
