#include "mapview/maplegend.h"

#include <set>

#include "map/describe.h"
#include "mapdraw/mapframe.h"
#include "mapdraw/overlays.h"
#include "style/surfaces.h"

namespace ombrevale::mapview {
namespace {

QString Row(const QColor& c, const QString& name) {
    return QStringLiteral("<tr><td style=\"background-color:%1\">&nbsp;&nbsp;&nbsp;&nbsp;</td><td>%2</td></tr>")
        .arg(c.name(), name.toHtmlEscaped());
}

QString Heading(const QString& text) {
    return QStringLiteral("<tr><td colspan=\"2\"><b>%1</b></td></tr>").arg(text.toHtmlEscaped());
}

}  // namespace

MapLegend::MapLegend(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::RichText);
    setAlignment(Qt::AlignTop | Qt::AlignLeft);
    setMargin(6);
}

bool MapLegend::Show(const map::Map* m, const Layers& layers, const std::function<QColor(int)>& surfaceTint) {
    QString rows;
    if (layers.zones && m) {
        rows += Heading(QStringLiteral("Zones"));
        std::set<int> types;
        for (const map::Zone& z : m->zones) types.insert(z.type);
        for (const int t : types) rows += Row(mapdraw::ZoneColour(t), QString::fromStdString(map::ZoneTypeName(t)));
    }
    if (layers.arrows) {
        rows += Heading(QStringLiteral("Arrows"));
        rows += Row(mapdraw::kGreenArrow, QStringLiteral("green: traffic"));
        rows += Row(mapdraw::kRedArrow, QStringLiteral("red"));
    }
    if (layers.surfaces && surfaceTint) {
        rows += Heading(QStringLiteral("Surface types"));
        for (int t = 2; t <= surfaces::kTypes; ++t) {
            QColor c = surfaceTint(t);
            c.setAlpha(255);
            rows += Row(c, QString::fromLatin1(surfaces::kTypeNames[static_cast<std::size_t>(t - 1)].data()));
        }
    }
    if (layers.shade) {
        rows += Heading(QStringLiteral("Light level"));
        for (int level = 0; level < 4; ++level) {
            const int v = 255 * mapdraw::LightFactor(level) / 256;
            rows += Row(QColor(v, v, v), QString::number(level));
        }
    }
    setText(QStringLiteral("<table cellspacing=\"2\">%1</table>").arg(rows));
    adjustSize();
    return !rows.isEmpty();
}

}  // namespace ombrevale::mapview
