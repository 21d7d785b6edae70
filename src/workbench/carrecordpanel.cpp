#include "workbench/carrecordpanel.h"

#include <QAction>
#include <QTreeWidget>

#include "style/carrecord.h"
#include "style/hooks.h"
#include "workbench/carrecorddialog.h"
#include "workbench/carrecordoverlay.h"
#include "workbench/picturebox.h"
#include "workbench/twips.h"

namespace ombrevale::workbench {
namespace {

std::optional<modDeclares::CarRecord> RecordAt(int r) {
    if (r < 0 || static_cast<std::size_t>(r) >= modDeclares::STYCarInfo.size()) return std::nullopt;
    return modDeclares::STYCarInfo[static_cast<std::size_t>(r)];
}

}  // namespace

CarRecordPanel::CarRecordPanel(CarRecordHost host, PictureBox* picture, ZoomLens* lens, QTreeWidget* table,
                               QWidget* page, QWidget* window)
    : QObject(window),
      host_(std::move(host)),
      overlay_(new CarRecordOverlay(picture, lens)),
      legend_(new CarRecordLegend(page)),
      show_(new QAction(QStringLiteral("Show car record\tCtrl+K"), this)),
      edit_(new QAction(QStringLiteral("Edit car record...\tCtrl+E"), this)),
      window_(window) {
    overlay_->hide();
    legend_->move(picture->geometry().topRight() + QPoint(ombrevale::twips::ToPx(120), 0));
    show_->setCheckable(true);
    connect(show_, &QAction::toggled, this, [this] { Refresh(); });
    connect(edit_, &QAction::triggered, this, [this] { Edit(); });
    connect(table, &QTreeWidget::itemDoubleClicked, this, [this] { Edit(); });
}

QList<QAction*> CarRecordPanel::Actions() const { return {show_, edit_}; }

bool CarRecordPanel::OverlayShown() const { return show_->isChecked(); }

void CarRecordPanel::ToggleOverlay() { show_->toggle(); }

void CarRecordPanel::Refresh() {
    auto record = RecordAt(host_.record());
    edit_->setEnabled(record.has_value());
    overlay_->SetRecord(record, host_.sprite());
    legend_->SetRecord(record);
    overlay_->setVisible(OverlayShown() && record);
    legend_->setVisible(OverlayShown());
}

void CarRecordPanel::Edit() {
    const int r = host_.record();
    if (!RecordAt(r)) {
        MsgBox("The sprite shown is no car with a record of its own.", "Ombrevale", MsgIcon::Information);
        return;
    }
    CarRecordDialog dialog(modDeclares::STYCarInfo, static_cast<std::size_t>(r), cars::RemapRoom(), window_);
    if (dialog.exec() != QDialog::Accepted) return;
    host_.edit(r, dialog.Edited());
}

}  // namespace ombrevale::workbench
