// Edits of the style and their undo: pictures imported into a tile, a sprite
// or a delta, and the steps the other panes record (colour writes, palette
// imports, recycling entries).
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
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
#include "workbench/carrecordpanel.h"
#include "workbench/edithistory.h"
#include "workbench/frmsty2.h"
#include "workbench/keptcopy.h"
#include "workbench/panes_dialogs.h"
#include "workbench/picturebox.h"
#include "workbench/zoomlens.h"

using ombrevale::editparts::Kind;
using ombrevale::editparts::Part;

namespace {

constexpr int kCell = 64;

// One step of the history: the parts of the stores it changed, before and after.
class StyleEdit : public ombrevale::workbench::EditStep {
public:
    StyleEdit(frmSTY2* window, const QString& text, std::vector<Part> before, std::vector<Part> after)
        : EditStep(text), window_(window), before_(std::move(before)), after_(std::move(after)) {
        // Else a delta step would hold the whole delta store twice.
        for (std::size_t i = 0; i < before_.size() && i < after_.size(); ++i)
            ombrevale::editparts::Narrow(before_[i], after_[i]);
    }
    // Redo puts the parts in turn, undo backwards.
    void undo() override { Show(before_.rbegin(), before_.rend()); }
    void redo() override {
        // The edit itself has already been made when the step is recorded.
        if (std::exchange(first_, false)) return;
        Show(after_.begin(), after_.end());
    }
    std::size_t Bytes() const override {
        std::size_t n = sizeof(*this);
        for (std::size_t i = 0; i < before_.size() && i < after_.size(); ++i)
            n += ombrevale::editparts::StepBytes(before_[i], after_[i]);
        return n;
    }
    std::unique_ptr<EditStep> Moved() override {
        return std::make_unique<StyleEdit>(window_, text(), std::move(before_), std::move(after_));
    }

private:
    template <typename It>
    void Show(It first, It last) {
        for (It p = first; p != last; ++p) ombrevale::editparts::Put(window_->Sty(), *p);
        for (It p = first; p != last; ++p) window_->ShowEdited(p->kind, p->number);
    }
    frmSTY2* window_;
    std::vector<Part> before_;
    std::vector<Part> after_;
    bool first_ = true;
};

}  // namespace

void frmSTY2::WireEdits() {
    undoStack = new QUndoStack(this);
    for (const char* key : {"undo", "redo"}) {
        auto* a = tlbMain->findChild<QAction*>(QString::fromLatin1(key));
        const bool undo = key[0] == 'u';
        a->setEnabled(false);
        connect(undoStack, undo ? &QUndoStack::canUndoChanged : &QUndoStack::canRedoChanged, a, &QAction::setEnabled);
        connect(undoStack, undo ? &QUndoStack::undoTextChanged : &QUndoStack::redoTextChanged, a,
                [a, undo](const QString& text) {
                    const QString verb = undo ? QStringLiteral("Undo") : QStringLiteral("Redo");
                    a->setToolTip(text.isEmpty() ? verb : verb + QLatin1Char(' ') + text);
                });
    }
    // The menus of the sheet and of the sprite picture offer the same as the tool bar.
    picMain->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(picMain, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) { SheetMenu(at); });
    auto* importSprite = new QAction(QStringLiteral("Import picture..."), this);
    auto* exportSprite = new QAction(QStringLiteral("Export picture..."), this);
    connect(importSprite, &QAction::triggered, this, [this] { tlbMain_ButtonClick(QStringLiteral("import")); });
    connect(exportSprite, &QAction::triggered, this, [this] { tlbMain_ButtonClick(QStringLiteral("export")); });
    picSpriteZoom->SetMoreActions(QList<QAction*>{importSprite, exportSprite} + carPanel_->Actions());
}

void frmSTY2::SheetMenu(const QPoint& at) {
    const int cols = Cols();
    if (cols <= 0 || at.x() < 0 || at.y() < 0 || at.x() / kCell >= cols) return;
    // The menu is about the tile under the pointer: it is chosen as a click chooses it.
    const int t = at.y() / kCell * cols + at.x() / kCell;
    if (sSelKind != "t" || picMain->Tag.toInt() != t) picMain_MouseUp(Qt::RightButton, 0, at.x(), at.y());
    if (sSelKind != "t" || picMain->Tag.toInt() != t) return;
    QMenu menu;
    menu.addAction(QStringLiteral("Import picture into tile %1...").arg(t), this, [this] { ImportPicture(); });
    menu.addAction(QStringLiteral("Export tile %1...").arg(t), this,
                   [this] { tlbMain_ButtonClick(QStringLiteral("export")); });
    menu.exec(picMain->mapToGlobal(at));
}

bool frmSTY2::EditKey(const QKeyEvent* key) {
    // A text box keeps Ctrl+Z for its own text.
    if (qobject_cast<QLineEdit*>(QApplication::focusWidget())) return false;
    // Undo in the middle of a load would put an old part into half-made stores.
    if (busy_) return false;
    const auto mods = key->modifiers();
    const bool undo = mods == Qt::ControlModifier && key->key() == Qt::Key_Z;
    const bool redo = (mods == (Qt::ControlModifier | Qt::ShiftModifier) && key->key() == Qt::Key_Z) ||
                      (mods == Qt::ControlModifier && key->key() == Qt::Key_Y);
    if (undo) undoStack->undo();
    if (redo) undoStack->redo();
    return undo || redo;
}

bool frmSTY2::RecordEdit(Kind kind, std::int32_t number, const QString& text, const std::function<bool()>& change) {
    return RecordEdits({{kind, number}}, text, change);
}

bool frmSTY2::RecordEdits(const std::vector<std::pair<Kind, std::int32_t>>& parts, const QString& text,
                          const std::function<bool()>& change) {
    if (busy_ || !MayReplaceKeptEdits()) return false;
    std::vector<Part> before, after;
    for (const auto& [kind, number] : parts) before.push_back(ombrevale::editparts::Take(Sty(), kind, number));
    if (!change()) return false;
    for (const auto& [kind, number] : parts) after.push_back(ombrevale::editparts::Take(Sty(), kind, number));
    for (const auto& [kind, number] : parts) ShowEdited(kind, number);
    // A step that changed nothing would only make the user press Undo twice.
    if (after != before)
        ombrevale::workbench::EditHistory::Of(undoStack).Push(
            std::make_unique<StyleEdit>(this, text, std::move(before), std::move(after)));
    return true;
}

void frmSTY2::ForgetEdits() {
    kept_->Loaded(panesStylePath_);
    // What was told of the last style may hold again for this one.
    causesTold_.clear();
}

void frmSTY2::ShowEdited(Kind kind, std::int32_t number) {
    // The panes show the stores as they are now, and what the user has chosen stays chosen.
    const std::string kind0 = sSelKind;
    const std::int16_t num0 = iSelNum;
    switch (kind) {
        case Kind::Tile:
            RedrawTile(number);
            break;
        case Kind::PaletteEntry:
            ShowPaletteEntry(number);
            break;
        case Kind::PaletteCount:
            ShowPaletteCount();
            break;
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
    if (cols <= 0 || t < 0 || t >= LastTilesDrawn() || !Sty().RenderTile(t, *picTTmp)) return;
    const int x = t % cols * kCell, y = t / cols * kCell;
    picMain->BitBlt(x, y, kCell, kCell, *picTTmp, 0, 0);
    // The box is drawn by inverting, so a fresh picture under it needs it again.
    if (boxCell_ && *boxCell_ == QPoint(t % cols, t / cols)) picMain->InvertBox(x, y, x + kCell, y + kCell);
    picMain->update();
}

void frmSTY2::ImportPicture() {
    namespace imp = ombrevale::pictureimport;
    const bool tile = sSelKind == "t";
    const std::int32_t n = iSelNum;
    const std::int16_t delta = static_cast<std::int16_t>(cmbDeltas->currentIndex() - 1);
    const std::string name = tile              ? "tile " + std::to_string(n)
                             : sSelKind == "d" ? "delta " + std::to_string(delta) + " of sprite " + std::to_string(n)
                                               : "sprite " + std::to_string(n);
    const auto pal = tile ? ombrevale::pixelchecks::TilePalette(Sty(), n)
                          : ombrevale::pixelchecks::SpritePalette(Sty(), n, ShownRemapPalette());
    if (!pal) return;
    const QString path = ombrevale::panesdialogs::FileDialog(
        this, ombrevale::panesdialogs::FileMode::Open, QStringLiteral("Import Picture"),
        QStringLiteral("Pictures (*.bmp *.png);;All files (*)"), DialogFolder());
    if (path.isEmpty()) return;
    const std::string file = path.toStdString();
    ombrevale::picturefile::Picture pic;
    auto problem = ombrevale::pictureio::ReadPicture(file, pic);
    if (!problem)
        problem = imp::CheckSize(pic, tile ? kCell : Sty().GetSpriteWidth(n), tile ? kCell : Sty().GetSpriteHeight(n),
                                 tile ? name : "sprite " + std::to_string(n));
    if (problem) {
        MsgBox("The picture " + file + " " + problem->text + ". Nothing was changed.", "Ombrevale",
               MsgIcon::Exclamation);
        return;
    }
    const ByteString present =
        tile ? imp::TileNumbers(Sty(), n) : imp::SpriteNumbers(Sty(), n, sSelKind == "d" ? delta : std::int16_t{-1});
    const imp::Fitted fitted = imp::Fit(pic, *pal, present);
    namespace own = ombrevale::ownpalette;
    const own::Target target{tile              ? own::TargetKind::Tile
                             : sSelKind == "d" ? own::TargetKind::Delta
                                               : own::TargetKind::Sprite,
                             n, delta};
    ImportFitted(pic, fitted, *pal, target, path);
}
