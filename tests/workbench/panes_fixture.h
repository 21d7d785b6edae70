#pragma once
// What the panes' tests share: the window on the bundled sample style, read-outs
// of the stores made here rather than through the pixel engine.

#include <QImage>
#include <QListWidget>
#include <memory>

#include "style/moddeclares.h"
#include "support/tempdir.h"
#include "workbench/frmsty2.h"

namespace panestest {

// The current directory becomes a temp folder, so "temp.bmp" lands there.
struct SampleWindow {
    testsupport::TempDir dir;
    testsupport::ScopedCurrentDir cwd{dir.path()};
    std::unique_ptr<frmSTY2> w = std::make_unique<frmSTY2>(std::string(OMBREVALE_SAMPLE));
};

// Colour c of physical palette p straight from the store.
inline QRgb StoreColour(int p, int c) {
    const auto& pal = modDeclares::STYPalData.at(static_cast<std::size_t>(p));
    const auto at = static_cast<std::size_t>(c) * 4;
    return qRgb(pal[at + 2], pal[at + 1], pal[at]) & 0xFFFFFFu;
}

// Colour number at (x, y) of sprite s, from the sprite store's rows of 256.
inline int SpriteByte(const clsSTY& doc, int s, int x, int y) {
    const auto& rec = doc.STYSpriteIndex.at(static_cast<std::size_t>(s));
    return doc.STYSpriteData.at(static_cast<std::size_t>(rec.offset + y * 256 + x));
}

inline QRgb Pixel(const QImage& img, int x, int y) { return img.pixel(x, y) & 0xFFFFFFu; }

}  // namespace panestest
