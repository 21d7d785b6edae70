#pragma once
// The car record on the Sprites page beyond its table: drawn over the
// picture on request (Ctrl+K), and edited in a dialog (Ctrl+E, the picture's
// menu, a double-click on the table). It reaches the window only through
// the host's three calls.

#include <QList>
#include <QObject>
#include <QSize>
#include <functional>

#include "style/moddeclares.h"

class PictureBox;
class QAction;
class QTreeWidget;
class QWidget;

namespace ombrevale::workbench {

class CarRecordLegend;
class CarRecordOverlay;
class ZoomLens;

struct CarRecordHost {
    // The record of the car sprite shown, or -1.
    std::function<int()> record;
    // The size of the sprite shown.
    std::function<QSize()> sprite;
    // Record r becomes the edited one as one step of the history; false when it did not.
    std::function<bool(int r, const modDeclares::CarRecord& edited)> edit;
};

class CarRecordPanel : public QObject {
    Q_OBJECT
public:
    // The legend goes on page, right of the picture.
    CarRecordPanel(CarRecordHost host, PictureBox* picture, ZoomLens* lens, QTreeWidget* table, QWidget* page,
                   QWidget* window);
    // Shown in the picture's menu.
    QList<QAction*> Actions() const;
    void ToggleOverlay();
    bool OverlayShown() const;
    // The dialog for the record shown.
    void Edit();
    // The sprite shown or its record changed.
    void Refresh();
    CarRecordOverlay* Overlay() const { return overlay_; }

private:
    CarRecordHost host_;
    CarRecordOverlay* overlay_;
    CarRecordLegend* legend_;
    QAction* show_;
    QAction* edit_;
    QWidget* window_;
};

}  // namespace ombrevale::workbench
