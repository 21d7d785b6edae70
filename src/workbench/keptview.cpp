#include "workbench/keptview.h"

#include <QKeySequence>
#include <QLabel>
#include <algorithm>

#include "keptedits/keptedits.h"
#include "style/hooks.h"
#include "workbench/keptcopy.h"
#include "workbench/keptoffer.h"
#include "workbench/panes_dialogs.h"
#include "workbench/panes_events.h"
#include "workbench/styledocument.h"

namespace ombrevale::workbench {

namespace {

void TellOwnedElsewhere(const std::string& path) {
    MsgBox(path +
               " is open in another Ombrevale window, which keeps its unsaved edits. Edits made here are not "
               "kept on disk until you save them.",
           "Ombrevale", MsgIcon::Information);
}

}  // namespace

KeptEditsView::KeptEditsView(StyleDocument& doc, QWidget* sheetPage, QWidget* saveButton, QWidget* parent)
    : QObject(parent),
      doc_(doc),
      kept_(doc.Kept()),
      parent_(parent),
      offer_(new KeptOffer(sheetPage)),
      badge_(new QLabel(saveButton)) {
    connect(offer_, &KeptOffer::Restore, this, [this] { Restore(); });
    connect(offer_, &KeptOffer::Discard, this, [this] { Discard(); });
    // A badge on the Save button with the count, as editors mark unsaved
    // work: it takes no room from the laid-out row of tabs and buttons.
    badge_->setObjectName(QStringLiteral("lblUnsaved"));
    badge_->setAlignment(Qt::AlignCenter);
    badge_->setStyleSheet(QStringLiteral(
        "QLabel { background: #c8102e; color: white; border-radius: 6px; font-size: 8px; font-weight: bold; }"));
    badge_->hide();
    connect(kept_, &KeptCopy::UnsavedChanged, this, [this](bool unsaved, int edits) { ShowUnsaved(unsaved, edits); });
    connect(kept_, &KeptCopy::OfferGone, offer_, &QWidget::hide);
    new PanesEventTap(saveButton, QEvent::Resize,
                      [this](QEvent*) { ShowUnsaved(kept_->Unsaved(), kept_->EditCount()); });
    connect(kept_, &KeptCopy::Problem, this, [](const QString& why) {
        MsgBox("Unsaved edits cannot be kept on disk: " + why.toStdString() +
                   ". Save your work with Save or Save As to keep it.",
               "Ombrevale", MsgIcon::Exclamation);
    });
    connect(&doc_, &StyleDocument::Loaded, this, [this](StyleDocument::LoadKind kind) {
        if (kind != StyleDocument::LoadKind::Restore) Offer(doc_.Path());
    });
    doc_.SetEditCheck([this] { return MayReplace(); });
    // Saved as a file another window holds: that window keeps the edits of it, not this one.
    connect(&doc_, &StyleDocument::Saved, this, [this](const QString& path) {
        if (kept_->OwnedElsewhere()) TellOwnedElsewhere(path.toStdString());
    });
}

void KeptEditsView::ShowUnsaved(bool unsaved, int edits) {
    badge_->setVisible(unsaved);
    if (!unsaved) return;
    badge_->setText(edits > 99 ? QStringLiteral("99+") : QString::number(edits));
    badge_->setToolTip((edits == 1 ? QStringLiteral("1 unsaved edit") : QStringLiteral("%1 unsaved edits").arg(edits)) +
                       (kept_->Keeping() ? QStringLiteral(", kept on disk until saved (%1)")
                                         : QStringLiteral(", not kept on disk: save them (%1)"))
                           .arg(QKeySequence(QKeySequence::Save).toString(QKeySequence::NativeText)));
    const int side = 12;
    badge_->resize(std::max(side, badge_->fontMetrics().horizontalAdvance(badge_->text()) + 6), side);
    const QWidget* save = badge_->parentWidget();
    badge_->move(save->width() - badge_->width(), 0);
    badge_->raise();
}

void KeptEditsView::Offer(const std::string& path) {
    if (kept_->OwnedElsewhere()) {
        kept_->SetOffered(false);
        offer_->hide();
        TellOwnedElsewhere(path);
        return;
    }
    const auto entry = kept_->store().Find(path);
    kept_->SetOffered(entry.has_value());
    if (!entry) {
        offer_->hide();
        return;
    }
    QString text = QString::fromStdString(keptedits::Describe(*entry));
    if (keptedits::ChangedSince(*entry)) text += QStringLiteral(" The file has changed on disk since.");
    offer_->Offer(text);
}

void KeptEditsView::Withdraw() {
    offer_->hide();
    kept_->SetOffered(false);
}

void KeptEditsView::Restore() {
    if (doc_.Busy()) return;
    const std::string path = doc_.Path();
    const auto entry = kept_->store().Find(path);
    if (!entry) return Withdraw();
    if (keptedits::ChangedSince(*entry) &&
        !panesdialogs::Question(
            parent_, QStringLiteral("%1 has changed on disk since these edits were made. Restoring puts the edited "
                                    "copy in the window; saving it then replaces what the file holds now.\n\n"
                                    "Restore the edits?")
                         .arg(QString::fromStdString(path))))
        return;
    LoadReport report;
    if (!doc_.Restore(*entry, report)) {
        if (report.problem)
            MsgBox("The kept edits of " + path + " cannot be read: " + report.problem->text + ". Nothing was changed.",
                   "Ombrevale", MsgIcon::Exclamation);
        return;
    }
    offer_->hide();
}

void KeptEditsView::Discard() {
    const std::string path = doc_.Path();
    if (!panesdialogs::Question(
            parent_, QStringLiteral("Discard the unsaved edits of %1 for good?").arg(QString::fromStdString(path))))
        return;
    kept_->Discard(path);
    Withdraw();
}

bool KeptEditsView::MayReplace() {
    if (!kept_->Offered()) return true;
    if (!panesdialogs::Question(
            parent_,
            QStringLiteral("%1\n\nA new edit is kept in their place. Discard those earlier edits and make this "
                           "one? (No leaves them on offer: Restore brings them back first.)")
                .arg(offer_->Text())))
        return false;
    return true;
}

}  // namespace ombrevale::workbench
