#pragma once
// The views a user asks for beside the window's pages: surface types, go to
// and find, palette usage, all remaps, the car record, the map, and the kept
// edits' offer and badge. None of them shows until asked, so the window
// starts as it always has. They watch the style document for loads and
// edits; the window is only where they stand and what is chosen in it.

#include <QList>
#include <QObject>
#include <QString>

class QAction;
class QPoint;
class frmSTY2;

namespace ombrevale::workbench {

class AllRemapsWindow;
class CarRecordPanel;
class FontChoice;
class GoToFind;
class KeptEditsView;
class MapSheet;
class PaletteUsageWindow;
class StyleDocument;
class SurfaceView;
class ZoomLens;

class AddedViews : public QObject {
public:
    AddedViews(frmSTY2& form, StyleDocument& doc);
    // Once the pages and the tool bar stand: makes the views and their keys and menus.
    void Build();

    FontChoice* fontChoice = nullptr;  // made with the Font page
    CarRecordPanel* car = nullptr;
    SurfaceView* surfaces = nullptr;
    PaletteUsageWindow* usage = nullptr;
    AllRemapsWindow* allRemaps = nullptr;
    GoToFind* goToFind = nullptr;
    // Open map, the map window and the tiles' use on the map (mapsheet.h).
    MapSheet* map = nullptr;
    KeptEditsView* kept = nullptr;
    // Magnifiers of the sprite picture and the font text (zoomlens.h).
    ZoomLens* spriteZoom = nullptr;
    ZoomLens* fontZoom = nullptr;

    // The surface types tinted over the sheet, read afresh from the style.
    void ShowSurfaces(bool on);
    // The keys of the window and its views, as F1 shows them.
    QString KeysText() const;

private:
    void BuildLists();
    void BuildKeys();
    void BuildMap();
    void BuildKept();
    void SheetMenu(const QPoint& at);
    frmSTY2& form_;
    StyleDocument& doc_;
    // Go to and the surface tint, offered by the sheet's menu.
    QList<QAction*> sheetViews_;
};

}  // namespace ombrevale::workbench
