// All remaps at once: a car sprite in its own palette and in each remap of
// its record, side by side in a small window; a click chooses that remap.
#include <QListWidget>
#include <QTabWidget>

#include "workbench/frmsty2.h"
#include "workbench/picturebox.h"

void frmSTY2::ShowAllRemaps() {
    if (!lstAllRemaps) {
        lstAllRemaps = new QListWidget(this);
        lstAllRemaps->setWindowFlags(Qt::Tool);
        lstAllRemaps->setViewMode(QListView::IconMode);
        lstAllRemaps->setMovement(QListView::Static);
        lstAllRemaps->setResizeMode(QListView::Adjust);
        lstAllRemaps->setSpacing(4);
        lstAllRemaps->resize(480, 200);
        picRemapTmp_ = new PictureBox(this);
        picRemapTmp_->hide();
        // Row i of the strip is row i of lstRemaps: a click there is a click here.
        connect(lstAllRemaps, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
            MainTab->setCurrentIndex(1);
            lstRemaps->setCurrentRow(lstAllRemaps->row(item));
        });
    }
    FillAllRemaps();
    lstAllRemaps->show();
    lstAllRemaps->raise();
}

void frmSTY2::FillAllRemaps() {
    if (!lstAllRemaps) return;
    lstAllRemaps->clear();
    const int s = lstSprites->currentRow();
    if (s < 0 || !lstRemaps->isEnabled() || lstRemaps->count() == 0) {
        lstAllRemaps->setWindowTitle(QStringLiteral("All remaps: choose a car sprite"));
        return;
    }
    lstAllRemaps->setWindowTitle(QStringLiteral("All remaps: %1").arg(lstSprites->item(s)->text()));
    const int w = Sty().GetSpriteWidth(s), h = Sty().GetSpriteHeight(s);
    QSize biggest(1, 1);
    for (int row = 0; row < lstRemaps->count(); ++row) {
        std::int16_t pal = -1;
        QString label = QStringLiteral("own");
        if (row > 0) {
            const long m = lstRemaps->item(row)->text().toLong();
            label = QStringLiteral("remap %1").arg(m);
            const long v = static_cast<long>(modDeclares::STYPalBase[0]) + modDeclares::STYPalBase[1] + m;
            const auto& index = modDeclares::STYPalIndex;
            pal = v >= 0 && static_cast<std::size_t>(v) < index.size() ? index[static_cast<std::size_t>(v)] : -2;
        }
        QPixmap picture(std::max(1, w), std::max(1, h));
        picture.fill(Qt::transparent);
        // A remap without a palette gets an empty cell rather than the car's own colours.
        picRemapTmp_->resize(std::max(1, w), std::max(1, h));
        if (pal != -2 && Sty().RenderSprite(s, *picRemapTmp_, pal))
            picture = QPixmap::fromImage(picRemapTmp_->image().copy(0, 0, w, h));
        lstAllRemaps->addItem(new QListWidgetItem(QIcon(picture), label));
        biggest = biggest.expandedTo(picture.size());
    }
    lstAllRemaps->setIconSize(biggest);
}
