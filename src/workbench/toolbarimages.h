#pragma once
// The tool bar's pictures and the window's icon, drawn here rather than
// looked up in the desktop's icon theme: a theme search reads thousands of
// paths and pulls in the image plug-ins, and costs more than the sheet.

#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QString>

namespace imgToolBar {

constexpr int kSide = 16;

// The 16 x 16 picture under an image key: "open", "save", "trans", "export",
// "import", "copy", "paste" or "cut". Any other key gives a null pixmap.
QPixmap Picture(const QString& key);

// The main window's icon: a few tiles of a sheet, the top-left one selected.
QIcon WindowIcon();
// The same picture at any size; tools/make-icon writes the installed icons from it.
QImage WindowIconImage(int side);

}  // namespace imgToolBar
