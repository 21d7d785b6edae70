#pragma once
// The map window: one GTA2 map drawn from above with the loaded style's
// tiles, its layers, a level cut, a status line for the block under the
// mouse, and the way back to the sheet: a click hands the block's lid tile
// over as a click on the sheet does.

#include <QMainWindow>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "map/gbmp.h"
#include "map/usage.h"
#include "mapview/mapcanvas.h"

class clsSTY;
class QAction;
class QLabel;
class QSpinBox;
class QMenu;

namespace ombrevale::mapdraw {
class TilePyramid;
}

namespace ombrevale::mapview {

class MapLegend;

class MapWindow : public QMainWindow {
    Q_OBJECT
public:
    struct Host {
        std::function<const clsSTY&()> style;
        // Selects a tile as a click on its cell of the sheet does.
        std::function<void(int tile)> chooseTile;
        std::function<std::vector<std::uint8_t>()> surfaceTypes;  // one a tile
        std::function<QColor(int type)> surfaceTint;
        std::function<void(const QString& text)> tell;  // one message box
        // Shows the window where the desktop has room for it, and raises it.
        std::function<void()> present;
    };
    MapWindow(Host host, QWidget* owner);
    ~MapWindow() override;

    // Reads path; a map that cannot be read is told and the one shown stays.
    bool Open(const QString& path);
    const map::Map* Current() const { return map_.get(); }
    const map::TileUsage& Usage() const { return usage_; }
    QString Path() const { return path_; }
    MapCanvas* Canvas() const { return canvas_; }

    // The style was loaded anew, or one of its tiles or palettes changed.
    void StyleLoaded();
    void TileChanged(int tile);
    void PalettesChanged();
    // Marks the columns that show tile, as lid or side, and goes to the first.
    void ShowTile(int tile);
    // The next (+1) or previous (-1) marked column, centred.
    void StepShown(int step);
    int ShownCount() const { return static_cast<int>(shown_.size()); }
    QString StatusText() const;
    // Puts action (Open map of the main window) at the top of the Map menu.
    void AddMapAction(QAction* action);

signals:
    void MapOpened();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildMenus();
    void ApplyLayers();
    void TellMissingOnce();
    void Hover(int x, int y);
    void Click(int x, int y);
    void Menu(int x, int y, const QPoint& global);

    Host host_;
    std::unique_ptr<map::Map> map_;
    std::unique_ptr<mapdraw::TilePyramid> tiles_;
    map::TileUsage usage_;
    QString path_;
    MapCanvas* canvas_;
    QLabel* status_;
    QLabel* found_;
    MapLegend* legend_;
    QSpinBox* level_;
    struct LayerActions {
        QAction *shade, *zones, *arrows, *grid, *surfaces;
    } layers_{};
    std::vector<map::Column> shown_;
    int shownTile_ = -1;
    int shownAt_ = -1;
    QMenu* mapMenu_ = nullptr;
    std::vector<int> missingTold_;
};

}  // namespace ombrevale::mapview
