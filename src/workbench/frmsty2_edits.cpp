// Edits of the style and their undo: pictures imported into a tile, a sprite
// or a delta, and the steps the other panes record (colour writes, palette
// imports, recycling entries).
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QUndoStack>

#include "pictureio/picturereader.h"
#include "pixels/checks.h"
#include "pixels/ownpalette.h"
#include "pixels/pictureimport.h"
#include "style/hooks.h"
#include "style/moddeclares.h"
#include "workbench/frmsty2.h"
#include "workbench/offthread.h"
#include "workbench/panes_dialogs.h"
#include "workbench/picturebox.h"
#include "workbench/sheetgeometry.h"
#include "workbench/spritename.h"

using ombrevale::editparts::Kind;
using ombrevale::editparts::Part;

using ombrevale::sheet::kCell;

void frmSTY2::ShowEdited(Kind kind, std::int32_t number) {
    // The panes show the stores as they are now, and what the user has chosen stays chosen.
    const std::string kind0 = sSelKind;
    const std::int16_t num0 = iSelNum;
    switch (kind) {
        case Kind::Tile:
            RedrawTile(number);
            break;
        case Kind::PaletteEntry:
            if (number < Sty().GetNumOfTiles()) {
                RedrawTile(number);
                // The label names the selected tile's palette.
                if (sSelKind == "t" && picMain->Tag.toInt() == number)
                    lblIdx->setText(QStringLiteral("Index: %1 Palette: %2")
                                        .arg(number)
                                        .arg(modDeclares::STYPalIndex[static_cast<std::size_t>(number)]));
                lblIdx->adjustSize();
            } else if (lstSprites->currentRow() >= 0 && !picSprite->image().isNull()) {
                ShowSprite();
            }
            break;
        case Kind::PaletteCount: {
            const int count = Sty().GetNumOfPals();
            while (lstPalettes->count() > count) delete lstPalettes->takeItem(lstPalettes->count() - 1);
            while (lstPalettes->count() < count)
                lstPalettes->addItem(QStringLiteral("Palette: %1").arg(lstPalettes->count() + 1));
            break;
        }
        case Kind::Palette:
            for (std::int32_t t = 0; t < Sty().GetNumOfTiles(); ++t)
                if (static_cast<std::size_t>(t) < modDeclares::STYPalIndex.size() &&
                    modDeclares::STYPalIndex[static_cast<std::size_t>(t)] == number)
                    RedrawTile(t);
            if (lstPalettes->currentRow() == number) lstPalettes_Click();
            [[fallthrough]];
        case Kind::Sprite:
        case Kind::Deltas:
            if (lstSprites->currentRow() >= 0 && !picSprite->image().isNull()) ShowSprite();
            break;
        case Kind::Recycling:
            FillRecycleList();
            break;
        case Kind::Car:
            // A sprite byte may move every later car onto another record: choose the sprite afresh.
            if (lstSprites->currentRow() >= 0) {
                const int remap = lstRemaps->currentRow(), delta = cmbDeltas->currentIndex();
                lstSprites_Click();
                if (remap < lstRemaps->count()) lstRemaps->setCurrentRow(remap);
                if (cmbDeltas->isEnabled()) cmbDeltas->setCurrentIndex(delta);
            }
            break;
    }
    sSelKind = kind0;
    iSelNum = num0;
}

void frmSTY2::RedrawTile(std::int32_t t) {
    const int cols = Cols();
    if (cols <= 0 || t < 0 || t >= lastRender_.tilesDrawn || !Sty().RenderTile(t, *picTTmp)) return;
    const QRect cell = ombrevale::sheet::CellRect(t, cols);
    // The box is drawn by inverting and reaches past the cell on two sides: it
    // comes off before the cell is drawn anew and goes on again after, else
    // the edges outside the cell would be inverted back.
    const bool boxed = boxCell_ && *boxCell_ == ombrevale::sheet::CellOf(t, cols);
    const auto invert = [&] { picMain->InvertBox(cell.x(), cell.y(), cell.x() + kCell, cell.y() + kCell); };
    if (boxed) invert();
    picMain->BitBlt(cell.x(), cell.y(), kCell, kCell, *picTTmp, 0, 0);
    if (boxed) invert();
    picMain->update();
}

void frmSTY2::ImportPicture() {
    namespace imp = ombrevale::pictureimport;
    const bool tile = sSelKind == "t";
    const std::int32_t n = iSelNum;
    const std::int16_t delta = static_cast<std::int16_t>(cmbDeltas->currentIndex() - 1);
    namespace own = ombrevale::ownpalette;
    const own::Target target{tile              ? own::TargetKind::Tile
                             : sSelKind == "d" ? own::TargetKind::Delta
                                               : own::TargetKind::Sprite,
                             n, delta};
    const auto pal = tile ? ombrevale::pixelchecks::TilePalette(Sty(), n)
                          : ombrevale::pixelchecks::SpritePalette(Sty(), n, ShownRemapPalette());
    if (!pal) return;
    const QString path = ombrevale::panesdialogs::FileDialog(
        this, ombrevale::panesdialogs::FileMode::Open, QStringLiteral("Import Picture"),
        QStringLiteral("Pictures (*.bmp *.png);;All files (*)"), DialogFolder());
    if (path.isEmpty()) return;
    const std::string file = path.toStdString();
    ombrevale::picturefile::Picture pic;
    auto problem = [&] {
        // A large picture takes a while to decode; the window goes on drawing meanwhile.
        const ombrevale::workbench::StyleDocument::Job job(*doc_);
        return ombrevale::workbench::OffThread([&] { return ombrevale::pictureio::ReadPicture(file, pic); });
    }();
    if (!problem)
        problem = imp::CheckSize(
            pic, tile ? kCell : Sty().GetSpriteWidth(n), tile ? kCell : Sty().GetSpriteHeight(n),
            (tile ? QStringLiteral("tile %1").arg(n) : ombrevale::workbench::SpriteName(n)).toStdString());
    if (problem) {
        MsgBox("The picture " + file + " " + problem->text + ". Nothing was changed.", "Ombrevale",
               MsgIcon::Exclamation);
        return;
    }
    const ByteString present =
        tile ? imp::TileNumbers(Sty(), n) : imp::SpriteNumbers(Sty(), n, sSelKind == "d" ? delta : std::int16_t{-1});
    const imp::Fitted fitted = imp::Fit(pic, *pal, present);
    ImportFitted(pic, fitted, *pal, target, path);
}
