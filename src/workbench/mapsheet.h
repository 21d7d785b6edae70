#pragma once
// The map beside the sheet: Open map, the map window, and what the open map
// tells the sheet: where a tile is used, and which tiles it never uses (greyed
// over the sheet, counted in each cell's tip).

#include <QAction>
#include <QObject>
#include <QWidget>
#include <functional>

#include "pixels/editparts.h"

class clsSTY;

namespace ombrevale::mapview {
class MapWindow;
}

namespace ombrevale::workbench {

class StyleDocument;
class UsageOverlay;

class MapSheet : public QObject {
    Q_OBJECT
public:
    struct Host {
        std::function<void(int tile)> goToTile;  // selects as a click on the sheet does
        std::function<int()> cols;
        std::function<std::vector<std::uint8_t>()> surfaceTypes;
        std::function<void(const QString&)> tell;
        std::function<QString(int x, int y)> surfaceTip;  // the surface view's tip, or empty
    };
    // The map follows every load and edit of doc; window and sheet are the main window and its tile sheet.
    MapSheet(Host host, StyleDocument& doc, QWidget* window, QWidget* sheet);

    QAction* OpenAction() const { return open_; }
    QAction* UsageAction() const { return usage_; }
    // What the sheet's menu offers about tile (none: -1).
    QList<QAction*> SheetActions(int tile);
    // Opens path as the one map; says why not.
    bool Open(const QString& path);
    void AskOpen();
    mapview::MapWindow* Window() const { return window_; }
    // The sheet was drawn anew: the grey of unused tiles goes on it again.
    void SheetDrawn();
    QString CellTip(int x, int y) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ShowUsage(bool on);
    QString UnusedList() const;

    void StyleLoaded();
    void Edited(editparts::Kind kind, std::int32_t number);
    Host host_;
    StyleDocument& doc_;
    QWidget* sheet_;
    mapview::MapWindow* window_;
    UsageOverlay* overlay_;
    QAction* open_;
    QAction* usage_;
    QAction* copyUnused_;
    // "Show tile N on map", for the tile the sheet's menu was opened on.
    QAction* showOnMap_;
    int showTile_ = -1;
};

}  // namespace ombrevale::workbench
