// The Recycling page: the car model numbers of the recycling list.
#include <QListWidget>

#include "style/hooks.h"
#include "style/moddeclares.h"
#include "workbench/frmsty2.h"
#include "workbench/panes_dialogs.h"

namespace {
constexpr int kMaxEntries = 64;
}  // namespace

void frmSTY2::cmdRecyAdd_Click() {
    if (lstRecy->count() >= kMaxEntries) {
        MsgBox("No more entries allowed.");
        return;
    }
    const auto reply = ombrevale::panesdialogs::InputBox(this, QStringLiteral("Model Number?"));
    if (!reply) return;
    bool ok = false;
    const int model = reply->trimmed().toInt(&ok, 10);
    if (!ok || model < 0 || model > 255) {
        MsgBox("\"" + reply->toStdString() + "\" is no model number: give a whole number from 0 to 255.", "Ombrevale",
               MsgIcon::Exclamation);
        return;
    }
    doc_->Record({{ombrevale::editparts::Kind::Recycling, 0}}, QStringLiteral("add %1 to recycling").arg(model), [&] {
        lstRecy->addItem(QString::asprintf("%03d", model));
        SyncRecycle();
        return true;
    });
}

void frmSTY2::cmdRecyRemove_Click() {
    const int row = lstRecy->currentRow();
    if (row < 0 || !lstRecy->item(row)->isSelected()) return;
    const QString model = lstRecy->item(row)->text();
    doc_->Record({{ombrevale::editparts::Kind::Recycling, 0}}, QStringLiteral("remove %1 from recycling").arg(model),
                 [&] {
                     delete lstRecy->takeItem(row);
                     // The list would move the selection to the next row, and a second press would remove that one too.
                     lstRecy->setCurrentItem(nullptr);
                     lstRecy->clearSelection();
                     SyncRecycle();
                     return true;
                 });
}

void frmSTY2::FillRecycleList() {
    lstRecy->clear();
    // Every entry but the closing one; with no recycling data the list stays empty.
    const auto& recy = modDeclares::STYRecycle;
    for (std::size_t i = 0; i + 1 < recy.size(); ++i)
        lstRecy->addItem(QString::asprintf("%03d", static_cast<int>(recy[i])));
}

void frmSTY2::SyncRecycle() {
    const int n = lstRecy->count();
    auto& recy = modDeclares::STYRecycle;
    recy.assign(static_cast<std::size_t>(n) + 1, 255);
    for (int i = 0; i < n; ++i)
        recy[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(lstRecy->item(i)->text().toInt());
}
