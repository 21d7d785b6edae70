// The surface types over the Tiles page: the tint, its legend and the tip of a cell.
#include <QHelpEvent>
#include <QScrollBar>
#include <QToolTip>

#include "style/hooks.h"
#include "style/moddeclares.h"
#include "style/surfaces.h"
#include "workbench/frmsty2.h"
#include "workbench/picturebox.h"
#include "workbench/surfaceoverlay.h"

namespace {
constexpr int kCell = 64;
}  // namespace

void frmSTY2::ShowSurfaces(bool on) {
    using namespace ombrevale::workbench;
    if (!surfaceOverlay_) {
        surfaceOverlay_ = new SurfaceOverlay(picMain);
        surfaceOverlay_->hide();
        surfaceLegend_ = new SurfaceLegend(picCont, vScroll);
        surfaceLegend_->hide();
    }
    surfacesShown_ = on;
    surfaceOverlay_->setVisible(on);
    surfaceLegend_->setVisible(on);
    if (!on) return;
    const auto map = ombrevale::surfaces::ReadSurfaces(Sty().STYSurfaceSpec, Sty().GetNumOfTiles());
    surfaceOverlay_->SetTypes(map.type, Cols(), kCell);
    surfaceOverlay_->raise();
    surfaceLegend_->raise();
    // Every render shows the tint again; the damage is the file's, told once a load.
    if (!map.problem.empty() && FirstTelling(map.problem)) MsgBox(map.problem, "Ombrevale", MsgIcon::Exclamation);
}

QString frmSTY2::CellTip(int x, int y) {
    if (!surfaceOverlay_) return {};
    const int cols = Cols();
    if (cols <= 0 || x < 0 || y < 0 || x / kCell >= cols) return {};
    const long t = static_cast<long>(y / kCell) * cols + x / kCell;
    if (t >= Sty().GetNumOfTiles()) return {};
    const auto& palIndex = modDeclares::STYPalIndex;
    const QString pal = static_cast<std::size_t>(t) < palIndex.size()
                            ? QString::number(palIndex[static_cast<std::size_t>(t)])
                            : QStringLiteral("none");
    const auto& types = surfaceOverlay_->Types();
    const int type = static_cast<std::size_t>(t) < types.size() ? types[static_cast<std::size_t>(t)] : 1;
    const auto name = ombrevale::surfaces::kTypeNames[static_cast<std::size_t>(type - 1)];
    return QStringLiteral("Tile %1\nPalette: %2\nSurface: %3")
        .arg(t)
        .arg(pal)
        .arg(QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
}

bool frmSTY2::SheetToolTip(QEvent* event) {
    if (!surfacesShown_) return false;
    auto* help = static_cast<QHelpEvent*>(event);
    const QString tip = CellTip(help->pos().x(), help->pos().y());
    if (tip.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), tip, picMain);
    return true;
}
