#pragma once
// All remaps at once: a car sprite in its own palette and in each remap of
// its record, side by side in a small window; a click chooses that remap.

#include <QImage>
#include <functional>
#include <vector>

#include "workbench/toolwindow.h"

namespace ombrevale::workbench {

class AllRemapsWindow : public ToolListWindow {
    Q_OBJECT
public:
    struct Source {
        // The car sprite chosen and its caption; -1 when no car sprite with remaps is.
        std::function<int()> sprite;
        std::function<QString(int)> spriteCaption;
        // The remap numbers of its record; row 0 of the window is its own palette.
        std::function<std::vector<int>()> remaps;
        // The sprite in row's colours: row 0 its own, row k remap k's; null when that has no palette.
        std::function<QImage(int row)> picture;
    };
    AllRemapsWindow(Source source, StyleDocument& doc, QWidget* owner);

signals:
    // Row 0 is the sprite's own palette, row k the k-th remap of its record.
    void RemapChosen(int row);

protected:
    void Fill() override;
    QSize Wanted() const override;

private:
    Source source_;
};

}  // namespace ombrevale::workbench
