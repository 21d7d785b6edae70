#pragma once
// frmSTY2: the main window. Owns the style document, fills the panes' lists,
// draws the tile sheet and hands a selected tile to the game editor.

#include <QPointer>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "pixels/editparts.h"
#include "style/clssty.h"

class QLabel;
class QListWidget;
class QPushButton;
class QScrollBar;
class QTabWidget;
class QGroupBox;
class QLineEdit;
class PictureBox;
class QComboBox;
class QTreeWidget;
class QListWidgetItem;
class QUndoStack;
class QKeyEvent;
namespace ombrevale::workbench {
class CarRecordPanel;
class FontChoice;
class KeptCopy;
class KeptOffer;
class SurfaceOverlay;
class SurfaceLegend;
class ZoomLens;
}  // namespace ombrevale::workbench
namespace ombrevale::picturefile {
struct Picture;
}
namespace ombrevale::pictureimport {
struct Fitted;
}
namespace ombrevale::ownpalette {
struct Target;
}

class frmSTY2 : public QWidget {
    Q_OBJECT
public:
    // stylePath, when given, is loaded instead of the registry's value.
    explicit frmSTY2(std::optional<std::string> stylePath = std::nullopt, QWidget* parent = nullptr);
    ~frmSTY2() override;

    clsSTY& Sty();
    std::string sSelKind;
    std::int16_t iSelNum = 0;

    void RenderSheet();
    void picMain_MouseUp(int Button, int Shift, double X, double Y);
    void vScroll_Change();
    void Form_KeyDown(int KeyCode, int Shift);
    void Form_Resize();
    void cmdGen_Click();

    // vScroll.Max as set, which may be below 0 when the sheet fits the view.
    int vScrollMax() const { return vScrollMax_; }
    int Cols() const;
    // Time the last render took, and the part of it spent in RenderTile (the "temp.bmp" road).
    qint64 LastRenderNs() const { return lastRenderNs_; }
    qint64 LastTileRoadNs() const { return lastTileRoadNs_; }
    // Tiles of the last render that reached the sheet.
    int LastTilesDrawn() const { return lastTilesDrawn_; }

    QTabWidget* MainTab = nullptr;
    QWidget* picCont = nullptr;
    PictureBox* picMain = nullptr;
    QScrollBar* vScroll = nullptr;
    PictureBox* picTTmp = nullptr;
    PictureBox* picTemp = nullptr;
    QPushButton* cmdGen = nullptr;
    QLabel* lblIdx = nullptr;
    QListWidget* lstSprites = nullptr;
    QGroupBox* frMain = nullptr;
    QTabWidget* SprTab = nullptr;
    QListWidget* lstPalettes = nullptr;
    PictureBox* picPalette = nullptr;
    QLineEdit* txtText = nullptr;
    QPushButton* cmdCreateText = nullptr;
    PictureBox* picFont = nullptr;
    QListWidget* lstRecy = nullptr;
    QPushButton* cmdRecyAdd = nullptr;
    QPushButton* cmdRecyRemove = nullptr;

    // ---- Panes of the Sprites, Palettes, Font and Recycling pages and the tool bar ----
    // (frmsty2_sprites/_carinfo/_palettes/_font/_recycle/_toolbar.cpp)
    // Makes the controls these panes add to the pages and connects their events.
    void WirePanes();
    void lstSprites_Click();
    void ShowSprite();
    void ShowCarInfo(std::int16_t r);
    void lstPalettes_Click();
    void picPalette_MouseMove(double Y);
    void picPalette_MouseUp(double Y);
    void lblColour_Click();
    void cmdCreateText_Click();
    void cmdRecyAdd_Click();
    void cmdRecyRemove_Click();
    void SyncRecycle();
    void tlbMain_ButtonClick(const QString& Key);
    // ---- Views the user asks for; none shows at start (frmsty2_surfaces/_goto.cpp) ----
    // The surface types tinted over the sheet, with a legend and a tip a cell.
    void ShowSurfaces(bool on);
    bool SurfacesShown() const { return surfacesShown_; }
    // Tile number, palette and surface type of the cell at sheet pixel (x, y); empty off the tiles.
    QString CellTip(int x, int y);
    // Scrolls tile t into view and selects it as a click on its cell does.
    void GoToTile(int t);
    void AskGoToTile();
    void AskFindSprite();
    // The tiles, sprites and remaps of the chosen palette, in a window of their own (frmsty2_usage.cpp).
    void ShowPaletteUsage();
    QListWidget* lstUsage = nullptr;
    // The chosen car sprite in its own palette and every remap, in a window of their own (frmsty2_remapstrip.cpp).
    void ShowAllRemaps();
    QListWidget* lstAllRemaps = nullptr;
    // Magnifiers of the sprite picture and the font text (zoomlens.h).
    ombrevale::workbench::ZoomLens* picSpriteZoom = nullptr;
    ombrevale::workbench::ZoomLens* picFontZoom = nullptr;

    // ---- Edits and their history (frmsty2_edits.cpp) ----
    // Makes change (false: it changed nothing and has said why) one step that Undo takes back.
    bool RecordEdit(ombrevale::editparts::Kind kind, std::int32_t number, const QString& text,
                    const std::function<bool()>& change);
    // The same for an edit of several parts, in the order redo puts them; undo goes backwards.
    bool RecordEdits(const std::vector<std::pair<ombrevale::editparts::Kind, std::int32_t>>& parts, const QString& text,
                     const std::function<bool()>& change);
    // Redraws what shows the part just changed or put back: its cell, the sprite, the strip, the list.
    void ShowEdited(ombrevale::editparts::Kind kind, std::int32_t number);
    // A picture into the selected tile, sprite or delta.
    void ImportPicture();
    // A folder as the export writes it, back into the style as one step (frmsty2_folder.cpp).
    void ImportFolder();
    QUndoStack* undoStack = nullptr;

    // The file that "save" writes: the last one opened, loaded or saved as.
    std::string CurrentStylePath() const { return panesStylePath_; }

    // ---- Kept edits (frmsty2_kept.cpp) ----
    // A load, a render or a save runs: commands that change or write the
    // document, or start another job, are passed over until it ends.
    bool JobRunning() const { return busy_; }
    // Writes the edits not yet kept and waits for the disk: before the process ends.
    void KeepEditsNow();
    ombrevale::workbench::KeptCopy* Kept() const { return kept_; }
    ombrevale::workbench::KeptOffer* KeptEditsOffer() const { return keptOffer_; }
    ombrevale::workbench::FontChoice* FontChoiceView() const { return fontChoice_; }
    QLabel* lblUnsaved = nullptr;

    PictureBox* picSprite = nullptr;
    QLabel* lblSSize = nullptr;
    QComboBox* cmbDeltas = nullptr;
    QLabel* Label7 = nullptr;
    QListWidget* lstRemaps = nullptr;
    QTreeWidget* lstInfo = nullptr;
    QLabel* lblPalInfo = nullptr;
    QLineEdit* txtIdx = nullptr;
    QLineEdit* txtRed = nullptr;
    QLineEdit* txtGreen = nullptr;
    QLineEdit* txtBlue = nullptr;
    QLabel* lblColour = nullptr;
    QLabel* Label8 = nullptr;
    QWidget* tlbMain = nullptr;

private:
    void BuildSpritePanes();
    void BuildPalettePane();
    void BuildToolbar();
    void ToolbarOpen();
    void ToolbarSave(bool askName);
    void ToolbarExport();
    void ToolbarImport();
    // Reads file into an empty document; one that does not load leaves the window's as it was.
    bool LoadAfresh(const std::string& file, LoadReport& report);
    void RefillAfterOpen();
    // Every pane as a start shows it, once the lists are filled anew.
    void ResetPanes();
    // Where file dialogs start: the folder of the style in the window.
    QString DialogFolder() const;
    void ShowSaved(const std::string& path);
    // The palette the sprite pane shows the sprite in: a remap's, or -1 for its own.
    std::int16_t ShownRemapPalette() const;
    void WireEdits();
    // A history of another document means nothing: every load starts a new one.
    void ForgetEdits();
    void RedrawTile(std::int32_t t);
    // A fitted picture into its target: as fitted, or, when the palette lacks
    // colours, the way the user chooses: nearest colours or a palette of the
    // target's own (frmsty2_colours.cpp).
    void ImportFitted(const ombrevale::picturefile::Picture& pic, const ombrevale::pictureimport::Fitted& fitted,
                      std::int16_t pal, const ombrevale::ownpalette::Target& target, const QString& path);
    void ShowPaletteEntry(std::int32_t entry);
    void ShowPaletteCount();
    bool EditKey(const QKeyEvent* key);
    void SheetMenu(const QPoint& at);
    void FillRecycleList();
    std::string panesStylePath_;
    // ---- end of the panes' block ----
    // A key of the added views, Ctrl held; true when it was one.
    bool ViewKey(int key);
    bool SheetToolTip(QEvent* event);
    void WireViews();
    void FillPaletteUsage();
    void UsageGoTo(QListWidgetItem* item);
    void FillAllRemaps();
    PictureBox* picRemapTmp_ = nullptr;
    // What each row of lstUsage stands for.
    struct UsageRow {
        enum Kind { Tile, Sprite, Remap } kind;
        int number;    // tile or sprite
        int position;  // of the remap in its record's list
    };
    std::vector<UsageRow> usageRows_;
    ombrevale::workbench::SurfaceOverlay* surfaceOverlay_ = nullptr;
    ombrevale::workbench::SurfaceLegend* surfaceLegend_ = nullptr;
    bool surfacesShown_ = false;
    // A fault of the file is told once a load, not at every render: the causes
    // told (messages with their numbers taken out), until the next load.
    std::vector<std::string> causesTold_;
    // True, and the cause kept, when text's cause has not been told since the load.
    bool FirstTelling(const std::string& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildControls();
    void BuildTilesPage();
    void BuildOtherPages();
    void Form_Load();
    void FillLists();
    std::string StylePath() const;
    void SetScrollMax(int max);
    void HandOverToEditor();
    void WireKeptEdits();
    void WireFolderImport();
    // After a load of path: the kept edits of that style, if any, are offered.
    void OfferKeptEdits(const std::string& path);
    void RestoreKeptEdits();
    void DiscardKeptEdits();
    // An edit while earlier kept edits are on offer would take their place on
    // disk: the user says first whether they may go. False: the edit waits.
    bool MayReplaceKeptEdits();
    void ShowUnsaved(bool unsaved, int edits);
    ombrevale::workbench::KeptCopy* kept_ = nullptr;
    ombrevale::workbench::FontChoice* fontChoice_ = nullptr;
    ombrevale::workbench::CarRecordPanel* carPanel_ = nullptr;
    ombrevale::workbench::KeptOffer* keptOffer_ = nullptr;

    std::unique_ptr<clsSTY> oSty;
    std::optional<std::string> commandLinePath_;
    int vScrollMax_ = 8895;
    // Where the box stands on the sheet now, as drawn; none after a render.
    std::optional<QPoint> boxCell_;
    bool busy_ = false;
    bool rendering_ = false;
    qint64 lastRenderNs_ = 0;
    qint64 lastTileRoadNs_ = 0;
    int lastTilesDrawn_ = 0;
    const QEvent* lastKey_ = nullptr;
    QPointer<QWidget> lastKeyTarget_;
};
