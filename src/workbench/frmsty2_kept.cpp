// The kept edits in the window: the copy kept after every change, the offer
// of an earlier session's edits after a load, and the mark of unsaved edits.
#include <QAction>
#include <QCloseEvent>
#include <QLabel>
#include <QTabWidget>
#include <QToolButton>
#include <QUndoStack>
#include <algorithm>

#include "style/hooks.h"
#include "workbench/frmsty2.h"
#include "workbench/keptcopy.h"
#include "workbench/keptoffer.h"
#include "workbench/panes_dialogs.h"
#include "workbench/panes_events.h"

using ombrevale::workbench::KeptCopy;
using ombrevale::workbench::KeptOffer;

void frmSTY2::WireKeptEdits() {
    kept_ = new KeptCopy(
        UndoStack(), [this]() -> const clsSTY& { return Sty(); }, [this] { return busy_; }, this);
    keptOffer_ = new KeptOffer(picCont);
    connect(keptOffer_, &KeptOffer::Restore, this, [this] { RestoreKeptEdits(); });
    connect(keptOffer_, &KeptOffer::Discard, this, [this] { DiscardKeptEdits(); });
    // A badge on the Save button with the count, as editors mark unsaved
    // work: it takes no room from the laid-out row of tabs and buttons.
    auto* save = qobject_cast<QWidget*>(actions_.save->associatedObjects().value(0));
    lblUnsaved = new QLabel(save);
    lblUnsaved->setObjectName(QStringLiteral("lblUnsaved"));
    lblUnsaved->setAlignment(Qt::AlignCenter);
    lblUnsaved->setStyleSheet(QStringLiteral(
        "QLabel { background: #c8102e; color: white; border-radius: 6px; font-size: 8px; font-weight: bold; }"));
    lblUnsaved->hide();
    connect(kept_, &KeptCopy::UnsavedChanged, this, [this](bool unsaved, int edits) { ShowUnsaved(unsaved, edits); });
    new PanesEventTap(save, QEvent::Resize, [this](QEvent*) { ShowUnsaved(kept_->Unsaved(), kept_->EditCount()); });
    connect(kept_, &KeptCopy::Problem, this, [this](const QString& why) {
        MsgBox("Unsaved edits cannot be kept on disk: " + why.toStdString() +
                   ". Save your work with Save or Save As to keep it.",
               "Ombrevale", MsgIcon::Exclamation);
    });
}

void frmSTY2::KeepEditsNow() { kept_->WriteNow(); }

void frmSTY2::closeEvent(QCloseEvent* event) {
    KeepEditsNow();
    QWidget::closeEvent(event);
}

void frmSTY2::ShowUnsaved(bool unsaved, int edits) {
    lblUnsaved->setVisible(unsaved);
    if (!unsaved) return;
    lblUnsaved->setText(edits > 99 ? QStringLiteral("99+") : QString::number(edits));
    lblUnsaved->setToolTip(
        (edits == 1 ? QStringLiteral("1 unsaved edit") : QStringLiteral("%1 unsaved edits").arg(edits)) +
        QStringLiteral(", kept on disk until saved (%1)")
            .arg(QKeySequence(QKeySequence::Save).toString(QKeySequence::NativeText)));
    const int side = 12;
    lblUnsaved->resize(std::max(side, lblUnsaved->fontMetrics().horizontalAdvance(lblUnsaved->text()) + 6), side);
    const QWidget* save = lblUnsaved->parentWidget();
    lblUnsaved->move(save->width() - lblUnsaved->width(), 0);
    lblUnsaved->raise();
}

void frmSTY2::OfferKeptEdits(const std::string& path) {
    const auto entry = kept_->store().Find(path);
    kept_->SetOffered(entry.has_value());
    if (!entry) {
        keptOffer_->hide();
        return;
    }
    QString text = QString::fromStdString(ombrevale::keptedits::Describe(*entry));
    if (ombrevale::keptedits::ChangedSince(*entry)) text += QStringLiteral(" The file has changed on disk since.");
    keptOffer_->Offer(text);
}

void frmSTY2::RestoreKeptEdits() {
    if (busy_) return;
    const std::string path = panesStylePath_;
    const auto entry = kept_->store().Find(path);
    if (!entry) {
        keptOffer_->hide();
        kept_->SetOffered(false);
        return;
    }
    if (ombrevale::keptedits::ChangedSince(*entry) &&
        !ombrevale::panesdialogs::Question(
            this, QStringLiteral("%1 has changed on disk since these edits were made. Restoring puts the edited "
                                 "copy in the window; saving it then replaces what the file holds now.\n\n"
                                 "Restore the edits?")
                      .arg(QString::fromStdString(path))))
        return;
    LoadReport report;
    if (!LoadAfresh(kept_->store().DocumentPath(path), report)) {
        MsgBox("The kept edits of " + path + " cannot be read: " + report.problem->text + ". Nothing was changed.",
               "Ombrevale", MsgIcon::Exclamation);
        return;
    }
    keptOffer_->hide();
    kept_->Restored(*entry);
    causesTold_.clear();
    RefillAfterOpen();
}

void frmSTY2::DiscardKeptEdits() {
    const std::string path = panesStylePath_;
    if (!ombrevale::panesdialogs::Question(
            this, QStringLiteral("Discard the unsaved edits of %1 for good?").arg(QString::fromStdString(path))))
        return;
    kept_->Discard(path);
    keptOffer_->hide();
    kept_->SetOffered(false);
}

bool frmSTY2::MayReplaceKeptEdits() {
    if (!kept_->Offered()) return true;
    if (!ombrevale::panesdialogs::Question(
            this, QStringLiteral("%1\n\nA new edit is kept in their place. Discard those earlier edits and make this "
                                 "one? (No leaves them on offer: Restore brings them back first.)")
                      .arg(keptOffer_->Text())))
        return false;
    kept_->Discard(panesStylePath_);
    keptOffer_->hide();
    kept_->SetOffered(false);
    return true;
}
