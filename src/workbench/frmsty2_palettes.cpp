// The Palettes page: a physical palette as a strip of 256 bands, its read-out,
// and the change of one colour in the store.
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QTabWidget>

#include "style/hooks.h"
#include "style/moddeclares.h"
#include "workbench/frmsty2.h"
#include "workbench/palettename.h"
#include "workbench/paletteusagewindow.h"
#include "workbench/panes_events.h"
#include "workbench/picturebox.h"
#include "workbench/twips.h"

using modDeclares::STYPalData;
using ombrevale::twips::Place;

namespace {

constexpr int kColours = 256;

// The strip's user scale: 256 units from top to bottom, one a colour.
double UserY(const PictureBox& pic, double yPx) { return yPx * kColours / std::max(1, pic.height()); }

// Colour i of a palette as the channel bytes, or nothing when either number names nothing.
struct Rgb {
    int red, green, blue;
};
std::optional<Rgb> ColourAt(int pal, int i) {
    if (pal < 0 || static_cast<std::size_t>(pal) >= STYPalData.size() || i < 0 || i >= kColours) return std::nullopt;
    const auto& p = STYPalData[static_cast<std::size_t>(pal)];
    const auto at = static_cast<std::size_t>(i) * 4;
    return Rgb{p[at + 2], p[at + 1], p[at]};
}

// A whole number from 0 to 255, or nothing.
std::optional<int> ByteValue(const QString& text) {
    bool ok = false;
    const int v = text.trimmed().toInt(&ok, 10);
    if (!ok || v < 0 || v > 255) return std::nullopt;
    return v;
}

QLabel* Caption(QWidget* page, const QString& text, int left, int top) {
    auto* l = new QLabel(text, page);
    l->move(ombrevale::twips::ToPx(left), ombrevale::twips::ToPx(top));
    l->adjustSize();
    return l;
}

QLineEdit* Box(QWidget* page, int left, int top) {
    auto* t = new QLineEdit(page);
    Place(t, left, top, 615, 315);
    return t;
}

}  // namespace

void BuildPalettePane(frmSTY2& f) {
    QWidget* page = f.lstPalettes->parentWidget();
    f.lblPalInfo = Caption(page, QString(), 3240, 105);
    Caption(page, QStringLiteral("Index:"), 3240, 420);
    f.txtIdx = Box(page, 3810, 360);
    f.txtIdx->setReadOnly(true);
    Caption(page, QStringLiteral("Red:"), 3240, 750);
    f.txtRed = Box(page, 3810, 690);
    Caption(page, QStringLiteral("Green:"), 3240, 1080);
    f.txtGreen = Box(page, 3810, 1020);
    Caption(page, QStringLiteral("Blue:"), 3240, 1410);
    f.txtBlue = Box(page, 3810, 1350);
    f.lblColour = new QLabel(page);
    Place(f.lblColour, 4485, 360, 1320, 1320);
    f.lblColour->setAutoFillBackground(true);
    f.lblColour->setFrameShape(QFrame::Box);
    f.Label8 = new QLabel(QStringLiteral("To change a color, select the palette from the list , then select the colour "
                                         "from the picture, then click on the big box of colour."),
                          page);
    Place(f.Label8, 3270, 1815, 3840, 2130);
    f.Label8->setWordWrap(true);
    f.Label8->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    f.picPalette->setMouseTracking(true);
    QObject::connect(f.lstPalettes, &QListWidget::currentRowChanged, &f, [&f] { f.lstPalettes_Click(); });
    new PanesEventTap(f.picPalette, QEvent::MouseMove, [&f](QEvent* e) {
        f.picPalette_MouseMove(UserY(*f.picPalette, static_cast<QMouseEvent*>(e)->position().y()));
    });
    QObject::connect(f.picPalette, &PictureBox::MouseUp, &f,
                     [&f](Qt::MouseButton, Qt::KeyboardModifiers, double, double y) {
                         f.picPalette_MouseUp(UserY(*f.picPalette, y));
                     });
    new PanesEventTap(f.lblColour, QEvent::MouseButtonRelease, [&f](QEvent*) { f.lblColour_Click(); });
}

void frmSTY2::lstPalettes_Click() {
    const int p = lstPalettes->currentRow();
    if (p < 0) return;
    iSelNum = static_cast<std::int16_t>(p);
    const int w = picPalette->width(), h = std::max(1, picPalette->height());
    for (int y = 0; y < h; ++y) {
        const auto c = ColourAt(p, y * kColours / h);
        if (!c) continue;
        const std::int32_t colour = c->red + c->green * 256 + c->blue * 65536;
        for (int x = 0; x < w; ++x) picPalette->SetPixelV(x, y, colour);
    }
    sSelKind = "p";
    views_->usage->Follow();
}

void frmSTY2::picPalette_MouseMove(double Y) {
    const int p = lstPalettes->currentRow();
    const int i = static_cast<int>(std::floor(Y));
    const auto c = ColourAt(p, i);
    // Dragged beyond the strip: the read-out keeps the last colour under the pointer.
    if (!c) return;
    lblPalInfo->setText(
        QStringLiteral("Index: %1 Red: %2 Green: %3 Blue: %4").arg(i).arg(c->red).arg(c->green).arg(c->blue));
    lblPalInfo->adjustSize();
}

void frmSTY2::picPalette_MouseUp(double Y) {
    const int p = lstPalettes->currentRow();
    const int i = static_cast<int>(std::floor(Y));
    const auto c = ColourAt(p, i);
    if (!c) return;
    txtIdx->setText(QString::number(i));
    txtRed->setText(QString::number(c->red));
    txtGreen->setText(QString::number(c->green));
    txtBlue->setText(QString::number(c->blue));
    QPalette pal = lblColour->palette();
    pal.setColor(QPalette::Window, QColor(c->red, c->green, c->blue));
    lblColour->setPalette(pal);
}

void frmSTY2::lblColour_Click() {
    const int p = lstPalettes->currentRow();
    if (p < 0 || static_cast<std::size_t>(p) >= STYPalData.size()) return;
    const auto i = ByteValue(txtIdx->text());
    if (!i) {
        MsgBox("Take a colour from the strip first: click on one of its bands.", "Ombrevale", MsgIcon::Exclamation);
        return;
    }
    const auto red = ByteValue(txtRed->text()), green = ByteValue(txtGreen->text()), blue = ByteValue(txtBlue->text());
    if (!red || !green || !blue) {
        MsgBox("Red, Green and Blue must each be a whole number from 0 to 255. The colour was not changed.",
               "Ombrevale", MsgIcon::Exclamation);
        return;
    }
    doc_->Record({{ombrevale::editparts::Kind::Palette, p}},
                 QStringLiteral("colour %1 of %2").arg(*i).arg(ombrevale::workbench::PaletteName(p)), [&] {
                     // Blue, green, red in the store; the fourth byte stays.
                     auto& pal = STYPalData[static_cast<std::size_t>(p)];
                     const auto at = static_cast<std::size_t>(*i) * 4;
                     pal[at + 2] = static_cast<std::uint8_t>(*red);
                     pal[at + 1] = static_cast<std::uint8_t>(*green);
                     pal[at] = static_cast<std::uint8_t>(*blue);
                     return true;
                 });
    lstPalettes_Click();
}
