// The Sprites page: the sprite list, the remap and delta choices and the picture.
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeWidget>

#include "pixels/paletteusage.h"
#include "style/hooks.h"
#include "style/moddeclares.h"
#include "style/palettebases.h"
#include "workbench/allremapswindow.h"
#include "workbench/carrecordpanel.h"
#include "workbench/fontchoice.h"
#include "workbench/frmsty2.h"
#include "workbench/picturebox.h"
#include "workbench/twips.h"
#include "workbench/zoomlens.h"

using modDeclares::STYCarInfo;
using ombrevale::twips::Place;

namespace {

// Row k from 1 stands for delta k - 1 of the sprite; the spelling is the program's own.
const char* const kDeltaNames[20] = {"(none)",
                                     "Rear Right Dent",
                                     "Rear Left Dent",
                                     "Front Left Dent",
                                     "Front Right Dent",
                                     "Damaged Windsreen",
                                     "Left Brake Light",
                                     "Left Headlight",
                                     "Left Front Door 1",
                                     "Left Front Door 2",
                                     "Left Front Door 3",
                                     "Left Front Door 4",
                                     "Left Back Door/FBI Light 1",
                                     "Left Back Door/FBI Light 2",
                                     "Left Back Door/FBI Light 3",
                                     "Left Back Door/FBI Light 4",
                                     "Emergency/Roof Light/Decal",
                                     "Emergency Light",
                                     "Right Rear Emergency Light",
                                     "Left Rear Emergency Light"};

constexpr int kOtherInfoPage = 1;

void BuildSpritePanes(frmSTY2& f) {
    QWidget* image = f.SprTab->widget(0);
    f.cmbDeltas = new QComboBox(image);
    Place(f.cmbDeltas, 150, 420, 3360, 315);
    for (const char* name : kDeltaNames) f.cmbDeltas->addItem(QString::fromLatin1(name));
    f.cmbDeltas->setCurrentIndex(-1);
    f.picSprite = new PictureBox(image);
    Place(f.picSprite, 150, 810, 1980, 1980);
    f.lblSSize = new QLabel(image);
    f.lblSSize->setFont(QFont(QStringLiteral("Tahoma"), 9));
    f.lblSSize->move(ombrevale::twips::ToPx(180), ombrevale::twips::ToPx(2850));
    f.lblSSize->adjustSize();
    f.Label7 = new QLabel(QStringLiteral("Remaps:"), image);
    f.Label7->move(ombrevale::twips::ToPx(4890), ombrevale::twips::ToPx(390));
    f.Label7->adjustSize();
    f.lstRemaps = new QListWidget(image);
    Place(f.lstRemaps, 4890, 630, 1575, 3180);

    f.lstInfo = new QTreeWidget(f.SprTab->widget(kOtherInfoPage));
    Place(f.lstInfo, 120, 390, 6330, 3615);
    f.lstInfo->setRootIsDecorated(false);
    f.lstInfo->setHeaderLabels({QStringLiteral("Name"), QStringLiteral("Value")});
    f.lstInfo->setColumnWidth(0, ombrevale::twips::ToPx(4035));
    f.lstInfo->setColumnWidth(1, ombrevale::twips::ToPx(630));

    // A write of the current row raises the event inside the write, like a ListIndex write.
    QObject::connect(f.lstSprites, &QListWidget::currentRowChanged, &f, [&f] { f.lstSprites_Click(); });
    // A click on the row already chosen starts that sprite afresh as well.
    QObject::connect(f.lstSprites, &QListWidget::itemClicked, &f, [&f](QListWidgetItem* item) {
        if (f.lstSprites->row(item) == f.lstSprites->currentRow()) f.lstSprites_Click();
    });
    QObject::connect(f.lstRemaps, &QListWidget::currentRowChanged, &f, [&f] { f.ShowSprite(); });
    QObject::connect(f.cmbDeltas, &QComboBox::currentIndexChanged, &f, [&f] { f.ShowSprite(); });
}
}  // namespace

void frmSTY2::WirePanes() {
    BuildSpritePanes(*this);
    BuildPalettePane(*this);
    BuildToolbar();
    connect(cmdCreateText, &QPushButton::clicked, this, [this] { cmdCreateText_Click(); });
    // A font chosen shows the text in it at once; Create is for the text typed.
    connect(views_->fontChoice->combo(), &QComboBox::activated, this, [this] {
        if (!txtText->text().isEmpty()) cmdCreateText_Click();
    });
    connect(cmdRecyAdd, &QPushButton::clicked, this, [this] { cmdRecyAdd_Click(); });
    connect(cmdRecyRemove, &QPushButton::clicked, this, [this] { cmdRecyRemove_Click(); });
}

void frmSTY2::lstSprites_Click() {
    // Also when the list empties: no sprite, no record over it.
    if (views_->car) views_->car->Refresh();
    const int row = lstSprites->currentRow();
    if (row < 0) return;
    iSelNum = static_cast<std::int16_t>(row);
    lstRemaps->clear();
    lstRemaps->setCurrentRow(-1);
    const int r = iSelNum < modDeclares::STYSpriteBase[0] ? ombrevale::paletteusage::CarRecordOfSprite(iSelNum) : -1;
    if (iSelNum >= modDeclares::STYSpriteBase[0]) {
        SprTab->setTabEnabled(kOtherInfoPage, false);
        cmbDeltas->setEnabled(false);
        lstRemaps->setEnabled(false);
    } else {
        // A car sprite that no record reaches still has its deltas, but no remaps and no table.
        SprTab->setTabEnabled(kOtherInfoPage, r >= 0);
        cmbDeltas->setEnabled(true);
        cmbDeltas->setCurrentIndex(0);
        lstRemaps->setEnabled(true);
        lstRemaps->addItem(QStringLiteral("(none)"));
        if (r >= 0)
            for (std::uint8_t m : STYCarInfo[static_cast<std::size_t>(r)].remaps)
                lstRemaps->addItem(QString::number(m));
        lstRemaps->setCurrentRow(0);
        if (r >= 0) ShowCarInfo(static_cast<std::int16_t>(r));
    }
    ShowSprite();
    lblSSize->setText(
        QStringLiteral("Size: %1x%2").arg(Sty().GetSpriteWidth(iSelNum)).arg(Sty().GetSpriteHeight(iSelNum)));
    lblSSize->adjustSize();
    sSelKind = "s";
    views_->allRemaps->Follow();
}

void frmSTY2::ShowSprite() {
    const int s = lstSprites->currentRow();
    if (s < 0) return;
    iSelNum = static_cast<std::int16_t>(s);
    views_->spriteZoom->SetPictureSize(QSize(Sty().GetSpriteWidth(s), Sty().GetSpriteHeight(s)));
    const int remapRow = lstRemaps->currentRow();
    std::int16_t p = 0;
    if (remapRow <= 0) {
        p = ombrevale::palettebases::SpritePalette(s).value_or(-1);
        std::int16_t own = -1;
        Sty().RenderSprite(s, *picSprite, own);
    } else {
        const long m = lstRemaps->item(remapRow)->text().toLong();
        p = ombrevale::palettebases::RemapPalette(m).value_or(-1);
        if (p < 0) {
            // -1 would mean the sprite's own palette: say so rather than show the wrong colours.
            MsgBox("Remap " + std::to_string(m) + " has no palette in this style's palette table.", "Ombrevale",
                   MsgIcon::Exclamation);
            return;
        }
        std::int16_t pal = p;
        Sty().RenderSprite(s, *picSprite, pal);
    }
    const int deltaRow = cmbDeltas->currentIndex();
    if (deltaRow <= 0) {
        sSelKind = "s";
        return;
    }
    sSelKind = "d";
    Sty().RenderDelta(static_cast<std::int16_t>(deltaRow - 1), iSelNum, *picSprite, p);
}
