#pragma once
// frmSTY2: the main window. Drives the style document (styledocument.h),
// fills the panes' lists, draws the tile sheet and hands a selected tile to
// the game editor.

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
#include "workbench/addedviews.h"
#include "workbench/styledocument.h"

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
class SurfaceView;
class ZoomLens;

// The tool bar's commands, in the order of their buttons; Import folder is in Import's menu.
struct ToolbarActions {
    QAction *open, *save, *saveAs, *trans, *exportPicture, *import, *copy, *paste, *undo, *redo, *importFolder;
};

struct SheetRenderStats {
    qint64 ns = 0;          // the whole render
    qint64 tileRoadNs = 0;  // of it, in RenderTile (the "temp.bmp" road)
    int tilesDrawn = 0;     // tiles that reached the sheet
};
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

    clsSTY& Sty() { return doc_->Sty(); }
    ombrevale::workbench::StyleDocument& Document() const { return *doc_; }
    ombrevale::workbench::AddedViews& Views() const { return *views_; }
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
    const ombrevale::workbench::SheetRenderStats& LastRender() const { return lastRender_; }
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
    const ombrevale::workbench::ToolbarActions& Actions() const { return actions_; }
    // Opens file as Open does after its dialog (a file dropped on the window too).
    void OpenStyle(const QString& file);
    // Over the sheet when it has nothing to show: what to do, or that the style has no tiles.
    QLabel* lblSheetNote = nullptr;

    // ---- Edits (frmsty2_edits.cpp, frmsty2_colours.cpp, frmsty2_folder.cpp) ----
    // Redraws what shows the part just changed or put back: its cell, the sprite, the strip, the list.
    void ShowEdited(ombrevale::editparts::Kind kind, std::int32_t number);
    // A picture into the selected tile, sprite or delta.
    void ImportPicture();
    // A folder as the export writes it, back into the style as one step.
    void ImportFolder();

    // The physical palette of the remap in row (from 1) of lstRemaps; none when the table lacks it.
    std::optional<std::int16_t> RemapPalette(int row) const;
    // A fault of the file is told once a load, not at every render: true, and
    // the cause kept, when text's cause has not been told since the load.
    bool FirstTelling(const std::string& text);

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

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    // Building and loading (frmsty2.cpp)
    void BuildControls();
    void BuildOtherPages();
    void Form_Load();
    void FillLists();
    // Every pane as a start shows it, once the lists are filled anew.
    void ResetPanes();
    std::string StylePath() const;
    // Every pane shows the document just loaded, as what brought it in asks.
    void DocumentLoaded(ombrevale::workbench::StyleDocument::LoadKind kind);
    // The panes' controls and events (frmsty2_sprites/_palettes.cpp)
    void WirePanes();
    void FillRecycleList();
    // The sheet (frmsty2_sheet.cpp)
    void SetScrollMax(int max);
    void HandOverToEditor();
    void RedrawTile(std::int32_t t);
    // The tool bar (frmsty2_toolbar.cpp)
    void BuildToolbar();
    void ToolbarSave(bool askName);
    void ToolbarExport();
    void ToolbarImport();
    // Where file dialogs start: the folder of the style in the window.
    QString DialogFolder() const;
    // The palette the sprite pane shows the sprite in: a remap's, or -1 for its own.
    std::int16_t ShownRemapPalette() const;
    // Edits (frmsty2_edits.cpp, frmsty2_colours.cpp, frmsty2_folder.cpp)
    void WireFolderImport();
    // A fitted picture into its target: as fitted, or, when the palette lacks
    // colours, the way the user chooses: nearest colours or a palette of the
    // target's own.
    void ImportFitted(const ombrevale::picturefile::Picture& pic, const ombrevale::pictureimport::Fitted& fitted,
                      std::int16_t pal, const ombrevale::ownpalette::Target& target, const QString& path);
    // The sheet's note and the save commands, as the document now stands.
    void ShowSheetNote();

    ombrevale::workbench::StyleDocument* doc_;
    std::optional<std::string> commandLinePath_;
    int vScrollMax_ = 8895;
    // Where the box stands on the sheet now, as drawn; none after a render.
    std::optional<QPoint> boxCell_;
    bool rendering_ = false;
    ombrevale::workbench::SheetRenderStats lastRender_;
    const QEvent* lastKey_ = nullptr;
    QPointer<QWidget> lastKeyTarget_;
    std::vector<std::string> causesTold_;
    ombrevale::workbench::ToolbarActions actions_{};
    ombrevale::workbench::AddedViews* views_;
};

// The Palettes page's colour boxes and the events of its list and strip (frmsty2_palettes.cpp).
void BuildPalettePane(frmSTY2& form);
