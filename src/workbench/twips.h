#pragma once
// The layout tables are in twips; the screen has 15 of them to a pixel.

#include <QRect>
#include <QWidget>

namespace ombrevale::twips {

inline constexpr int kTpp = 15;  // Screen.TwipsPerPixelY, used for both axes

constexpr int ToPx(int tw) { return tw / kTpp; }
constexpr int ToTw(int px) { return px * kTpp; }

inline void Place(QWidget* w, int left, int top, int width, int height) {
    w->setGeometry(ToPx(left), ToPx(top), ToPx(width), ToPx(height));
}

}  // namespace ombrevale::twips
