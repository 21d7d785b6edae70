#pragma once
// Palette usage: the tiles, sprites and car remaps a physical palette
// colours, in a small window beside the main one; a click goes to one.

#include <functional>
#include <vector>

#include "workbench/toolwindow.h"

namespace ombrevale::workbench {

class PaletteUsageWindow : public ToolListWindow {
    Q_OBJECT
public:
    struct Source {
        std::function<int()> palette;  // the palette chosen, from 0; -1 for none
        std::function<int()> tiles;
        std::function<int()> sprites;
        std::function<QString(int)> spriteCaption;
    };
    PaletteUsageWindow(Source source, StyleDocument& doc, QWidget* owner);

signals:
    void TileChosen(int tile);
    // remapPosition: the remap's place in its record's list, -1 for the sprite's own palette.
    void SpriteChosen(int sprite, int remapPosition);

protected:
    void Fill() override;
    QSize Wanted() const override;

private:
    void Choose(QListWidgetItem* item);
    struct Row {
        enum Kind { Tile, Sprite, Remap } kind;
        int number;    // tile or sprite
        int position;  // of the remap in its record's list
    };
    Source source_;
    std::vector<Row> rows_;
};

}  // namespace ombrevale::workbench
