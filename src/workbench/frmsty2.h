#pragma once
// frmSTY2: the main window. Owns the style document, fills the panes' lists,
// draws the tile sheet and hands a selected tile to the game editor.

#include <QList>
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
class QAction;
namespace ombrevale::workbench {
class AllRemapsWindow;
class CarRecordPanel;
class FontChoice;
class GoToFind;
class KeptCopy;
class KeptEditsView;
class MapSheet;
class PaletteUsageWindow;
class StyleEdits;
class SurfaceView;
struct WholeDocument;
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

    // ---- The tile sheet (frmsty2_sheet.cpp) ----
    void RenderSheet();
    void picMain_MouseUp(int Button, int Shift, double X, double Y);
    void vScroll_Change();
    void Form_KeyDown(int KeyCode, int Shift);
    void Form_Resize();
    void cmdGen_Click();
    // vScroll.Max as set, which may be below 0 when the sheet fits the view.
    int vScrollMax() const { return vScrollMax_; }
    int Cols() const;
    struct RenderStats {
        qint64 ns = 0;          // the whole render
        qint64 tileRoadNs = 0;  // of it, in RenderTile (the "temp.bmp" road)
        int tilesDrawn = 0;     // tiles that reached the sheet
    };
    const RenderStats& LastRender() const { return lastRender_; }
    // Scrolls tile t into view and selects it as a click on its cell does; says why not when it cannot.
    void GoToTile(int t);

    // ---- The panes of the other pages (frmsty2_sprites/_carinfo/_palettes/_font/_recycle.cpp) ----
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

    // ---- The tool bar (frmsty2_toolbar.cpp) ----
    void tlbMain_ButtonClick(const QString& Key);
    // Its commands, in the order of their buttons; Import folder is in Import's menu.
    struct ToolbarActions {
        QAction *open, *save, *saveAs, *trans, *exportPicture, *import, *copy, *paste, *undo, *redo, *importFolder;
    };
    const ToolbarActions& Actions() const { return actions_; }
    // Opens file as Open does after its dialog (a file dropped on the window too).
    void OpenStyle(const QString& file);
    // The file that "save" writes: the last one opened, loaded or saved as.
    std::string CurrentStylePath() const { return panesStylePath_; }
    // The last load took: Save and Save As have a style to write.
    bool StyleLoaded() const { return styleLoaded_; }
    // Over the sheet when it has nothing to show: what to do, or that the style has no tiles.
    QLabel* lblSheetNote = nullptr;

    // ---- Edits (frmsty2_edits.cpp, frmsty2_colours.cpp, frmsty2_folder.cpp) ----
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
    // A folder as the export writes it, back into the style as one step.
    void ImportFolder();
    QUndoStack* UndoStack() const;

    // ---- Kept edits (frmsty2_kept.cpp) ----
    // A load, a render or a save runs: commands that change or write the
    // document, or start another job, are passed over until it ends.
    bool JobRunning() const { return busy_; }
    // Writes the edits not yet kept and waits for the disk: before the process ends.
    void KeepEditsNow();
    ombrevale::workbench::KeptCopy* Kept() const { return kept_; }
    ombrevale::workbench::KeptEditsView* KeptView() const { return keptView_; }

    // ---- The views a user asks for; none shows at start (frmsty2_views.cpp) ----
    ombrevale::workbench::FontChoice* FontChoiceView() const { return fontChoice_; }
    ombrevale::workbench::SurfaceView* Surfaces() const { return surfaces_; }
    ombrevale::workbench::PaletteUsageWindow* PaletteUsage() const { return usage_; }
    ombrevale::workbench::AllRemapsWindow* AllRemaps() const { return allRemaps_; }
    // Open map, the map window and the tiles' use on the map (mapsheet.h).
    ombrevale::workbench::MapSheet* Map() const { return mapSheet_; }
    // The surface types tinted over the sheet, read afresh from the style.
    void ShowSurfaces(bool on);
    // The keys of the window and its views, as F1 shows them.
    QString KeysText() const;

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
    // Magnifiers of the sprite picture and the font text (zoomlens.h).
    ombrevale::workbench::ZoomLens* picSpriteZoom = nullptr;
    ombrevale::workbench::ZoomLens* picFontZoom = nullptr;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    // Building and loading (frmsty2.cpp)
    void BuildControls();
    void BuildTilesPage();
    void BuildOtherPages();
    void Form_Load();
    void FillLists();
    // Every pane as a start shows it, once the lists are filled anew.
    void ResetPanes();
    std::string StylePath() const;
    // Marks a load, a render or a save running, or ended.
    void SetBusy(bool busy);
    // The panes' controls and events (frmsty2_sprites/_palettes.cpp)
    void WirePanes();
    void BuildSpritePanes();
    void BuildPalettePane();
    void ShowPaletteEntry(std::int32_t entry);
    void ShowPaletteCount();
    void FillRecycleList();
    // The sheet (frmsty2_sheet.cpp)
    void SetScrollMax(int max);
    void HandOverToEditor();
    void RedrawTile(std::int32_t t);
    void SheetMenu(const QPoint& at);
    // A fault of the file is told once a load, not at every render: true, and
    // the cause kept, when text's cause has not been told since the load.
    bool FirstTelling(const std::string& text);
    // The tool bar (frmsty2_toolbar.cpp)
    void BuildToolbar();
    void ToolbarOpen();
    void ToolbarSave(bool askName);
    void ToolbarExport();
    void ToolbarImport();
    // Reads file into an empty document; one that does not load leaves the window's as it was.
    // previous, if given, takes the document a load replaces.
    bool LoadAfresh(const std::string& file, LoadReport& report,
                    ombrevale::workbench::WholeDocument* previous = nullptr);
    void RefillAfterOpen();
    // Where file dialogs start: the folder of the style in the window.
    QString DialogFolder() const;
    void ShowSaved(const std::string& path);
    // The palette the sprite pane shows the sprite in: a remap's, or -1 for its own.
    std::int16_t ShownRemapPalette() const;
    // The physical palette of the remap in row (from 1) of lstRemaps; none when the table lacks it.
    std::optional<std::int16_t> RemapPalette(int row) const;
    // Edits (frmsty2_edits.cpp, frmsty2_colours.cpp, frmsty2_folder.cpp)
    void WireEdits();
    void WireFolderImport();
    // A history of another document means nothing: every load starts a new one.
    void ForgetEdits();
    // A fitted picture into its target: as fitted, or, when the palette lacks
    // colours, the way the user chooses: nearest colours or a palette of the
    // target's own.
    void ImportFitted(const ombrevale::picturefile::Picture& pic, const ombrevale::pictureimport::Fitted& fitted,
                      std::int16_t pal, const ombrevale::ownpalette::Target& target, const QString& path);
    // Kept edits (frmsty2_kept.cpp)
    void WireKeptEdits();
    // The views (frmsty2_views.cpp)
    void WireViews();
    void WireViewKeys();
    // The added windows follow the document: after every load they show it.
    void FollowDocument();
    // The sheet's note and the save commands, as the document now stands.
    void ShowSheetNote();
    void WireMap();

    std::unique_ptr<clsSTY> oSty;
    std::optional<std::string> commandLinePath_;
    std::string panesStylePath_;
    bool styleLoaded_ = false;
    int vScrollMax_ = 8895;
    // Where the box stands on the sheet now, as drawn; none after a render.
    std::optional<QPoint> boxCell_;
    bool busy_ = false;
    bool rendering_ = false;
    RenderStats lastRender_;
    const QEvent* lastKey_ = nullptr;
    QPointer<QWidget> lastKeyTarget_;
    std::vector<std::string> causesTold_;
    ToolbarActions actions_{};
    ombrevale::workbench::StyleEdits* edits_ = nullptr;
    ombrevale::workbench::KeptCopy* kept_ = nullptr;
    ombrevale::workbench::KeptEditsView* keptView_ = nullptr;
    ombrevale::workbench::FontChoice* fontChoice_ = nullptr;
    ombrevale::workbench::CarRecordPanel* carPanel_ = nullptr;
    ombrevale::workbench::SurfaceView* surfaces_ = nullptr;
    ombrevale::workbench::PaletteUsageWindow* usage_ = nullptr;
    ombrevale::workbench::AllRemapsWindow* allRemaps_ = nullptr;
    ombrevale::workbench::GoToFind* goToFind_ = nullptr;
    ombrevale::workbench::MapSheet* mapSheet_ = nullptr;
    // Go to and the surface tint, offered by the sheet's menu.
    QList<QAction*> sheetViews_;
};
