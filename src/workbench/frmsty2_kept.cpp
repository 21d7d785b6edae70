// The kept edits in the window: the copy kept after every change, the offer
// of an earlier session's edits after a load, and the mark of unsaved edits.
#include <QAction>
#include <QCloseEvent>
#include <QLabel>
#include <QTabWidget>
#include <QUndoStack>

#include "style/hooks.h"
#include "style/moddeclares.h"
#include "workbench/frmsty2.h"
#include "workbench/keptcopy.h"
#include "workbench/keptoffer.h"
#include "workbench/panes_dialogs.h"
#include "workbench/panes_events.h"

using ombrevale::workbench::KeptCopy;
using ombrevale::workbench::KeptOffer;

void frmSTY2::WireKeptEdits() {
    kept_ = new KeptCopy(
        undoStack, [this]() -> const clsSTY& { return Sty(); }, [this] { return busy_; }, this);
    keptOffer_ = new KeptOffer(picCont);
    connect(keptOffer_, &KeptOffer::Restore, this, [this] { RestoreKeptEdits(); });
    connect(keptOffer_, &KeptOffer::Discard, this, [this] { DiscardKeptEdits(); });
    // In the row of the page strip, left of the tool bar; shown only while there is something to save.
    lblUnsaved = new QLabel(MainTab);
    lblUnsaved->setObjectName(QStringLiteral("lblUnsaved"));
    lblUnsaved->hide();
    connect(kept_, &KeptCopy::UnsavedChanged, this, [this](bool unsaved, int edits) { ShowUnsaved(unsaved, edits); });
    new PanesEventTap(tlbMain, QEvent::Move, [this](QEvent*) { ShowUnsaved(kept_->Unsaved(), kept_->EditCount()); });
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
    lblUnsaved->setText(edits == 1 ? QStringLiteral("1 unsaved edit") : QStringLiteral("%1 unsaved edits").arg(edits));
    lblUnsaved->setToolTip(QStringLiteral("Kept on disk until saved. Save: %1")
                               .arg(QKeySequence(QKeySequence::Save).toString(QKeySequence::NativeText)));
    lblUnsaved->adjustSize();
    lblUnsaved->move(tlbMain->x() - lblUnsaved->width() - 6,
                     tlbMain->y() + (tlbMain->height() - lblUnsaved->height()) / 2);
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
    // Read as Open reads a file: one that does not load leaves the window as it was.
    clsSTY before = std::move(Sty());
    modDeclares::SharedStores shared = modDeclares::TakeSharedStores();
    Sty() = clsSTY();
    modDeclares::ResetSharedStores();
    LoadReport report;
    busy_ = true;
    const bool loaded = Sty().LoadSTY(kept_->store().DocumentPath(path), report);
    busy_ = false;
    if (!loaded) {
        Sty() = std::move(before);
        modDeclares::RestoreSharedStores(std::move(shared));
        ProgressEnd();
        MsgBox("The kept edits of " + path + " cannot be read: " + report.problem->text + ". Nothing was changed.",
               "Ombrevale", MsgIcon::Exclamation);
        return;
    }
    keptOffer_->hide();
    kept_->Restored(*entry);
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
