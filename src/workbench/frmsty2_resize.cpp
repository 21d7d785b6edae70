// Form_Resize: keeps the "Tiles" page filling the window. Each step stands
// alone; a size the widgets cannot take is passed over and the next step runs.
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>

#include "workbench/frmsty2.h"
#include "workbench/picturebox.h"
#include "workbench/topmost.h"
#include "workbench/twips.h"

using ombrevale::twips::kTpp;
using ombrevale::twips::ToPx;
using ombrevale::twips::ToTw;

void frmSTY2::resizeEvent(QResizeEvent*) { Form_Resize(); }

void frmSTY2::Form_Resize() {
    const int scaleW = ToTw(width());
    const int scaleH = ToTw(height());
    const int tabHeight = ToTw(MainTab->tabBar()->sizeHint().height());
    // 1, 2
    if (scaleH >= 0) MainTab->resize(MainTab->width(), ToPx(scaleH));
    if (scaleW + 60 >= 0) MainTab->resize(ToPx(scaleW + 60), MainTab->height());
    const int tabW = ToTw(MainTab->width());
    const int tabH = ToTw(MainTab->height());
    // 3, 4: the scroll bar's width in pixels comes off a width in twips as it is.
    if (tabH - tabHeight >= 0) picCont->resize(picCont->width(), ToPx(tabH - tabHeight));
    int w = vScroll->width();
    if (tabW - w >= 0) picCont->resize(ToPx(tabW - w), picCont->height());
    const int contW = ToTw(picCont->width());
    const int contH = ToTw(picCont->height());
    // 5, 6
    w = vScroll->width();
    vScroll->move(contW / kTpp - w - 2, vScroll->y());
    if (contH / kTpp - 4 >= 0) vScroll->resize(vScroll->width(), contH / kTpp - 4);
    // 7, 8: a view under two rows has no page step to give.
    const int r = vScroll->height() / 64 - 1;
    if (r * 64 >= 1) vScroll->setPageStep(r * 64);
    // 9
    SetScrollMax(picMain->Height() - contH / kTpp);
    // 10, 11
    const int genH = ToTw(cmdGen->height());
    const int genW = ToTw(cmdGen->width());
    cmdGen->move(ToPx(tabW - genW - 30), ToPx(tabH - genH - 15));
    // 12
    ombrevale::workbench::SetTopMost(this, !isVisible());
}
