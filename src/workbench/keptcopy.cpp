#include "workbench/keptcopy.h"

#include <QDateTime>
#include <QUndoStack>

#include "style/clssty.h"
#include "workbench/edithistory.h"

namespace ombrevale::workbench {
namespace {
// Edits made in a quick run are kept once, and still well within a second.
constexpr int kSettleMs = 250;
}  // namespace

KeptCopy::KeptCopy(QUndoStack* history, std::function<const clsSTY&()> document, std::function<bool()> busy,
                   QObject* parent)
    : QObject(parent),
      history_(history),
      document_(std::move(document)),
      busy_(std::move(busy)),
      writer_(keptedits::Store(), [this](const std::string& why) {
          QMetaObject::invokeMethod(this, [this, text = QString::fromStdString(why)] {
              if (told_.insert(text).second) emit Problem(text);
          });
      }) {
    soon_.setSingleShot(true);
    soon_.setInterval(kSettleMs);
    connect(&soon_, &QTimer::timeout, this, [this] { Keep(); });
    connect(history_, &QUndoStack::indexChanged, this, [this] { Changed(); });
}

void KeptCopy::Loaded(const std::string& path) {
    soon_.stop();
    quiet_ = true;
    history_->clear();
    quiet_ = false;
    origin_ = keptedits::OriginOf(path);
    restored_ = false;
    restoredEdits_.clear();
    emit UnsavedChanged(false, 0);
}

void KeptCopy::Restored(const keptedits::Entry& entry) {
    Loaded(entry.from.path);
    origin_ = entry.from;
    restored_ = true;
    restoredEdits_ = entry.edits;
    offered_ = false;
    emit UnsavedChanged(true, EditCount());
}

void KeptCopy::Saved(const std::string& path) {
    soon_.stop();
    // The edits are in a file of the user's now, under either name.
    if (!origin_.path.empty()) writer_.Discard(origin_.path);
    writer_.Discard(path);
    origin_ = keptedits::OriginOf(path);
    restored_ = false;
    restoredEdits_.clear();
    offered_ = false;
    quiet_ = true;
    history_->setClean();
    quiet_ = false;
    emit UnsavedChanged(false, 0);
}

void KeptCopy::SetOffered(bool offered) {
    offered_ = offered;
    if (!offered_ && Unsaved()) soon_.start();
}

bool KeptCopy::Unsaved() const { return restored_ || !history_->isClean(); }

int KeptCopy::EditCount() const { return static_cast<int>(restoredEdits_.size()) + history_->index(); }

void KeptCopy::Changed() {
    // A history that drops its oldest steps is rebuilt: no change of the document.
    if (quiet_ || EditHistory::Of(history_).Trimming()) return;
    emit UnsavedChanged(Unsaved(), EditCount());
    if (origin_.path.empty()) return;
    if (Unsaved()) {
        soon_.start();
        return;
    }
    // Undone down to the saved point: nothing is left to keep.
    soon_.stop();
    writer_.Discard(origin_.path);
}

void KeptCopy::Keep() {
    if (!Unsaved() || origin_.path.empty() || offered_) return;
    // The stores are half made during a load: try again once it is over.
    if (busy_()) {
        soon_.start();
        return;
    }
    writer_.Keep(EntryNow(), document_().SavedBytes());
}

void KeptCopy::WriteNow() {
    if (soon_.isActive() && !busy_()) {
        soon_.stop();
        Keep();
    }
    writer_.Flush();
}

keptedits::Entry KeptCopy::EntryNow() const {
    keptedits::Entry e{origin_, QDateTime::currentMSecsSinceEpoch(), restoredEdits_};
    for (int i = 0; i < history_->index(); ++i) e.edits.push_back(history_->text(i).toStdString());
    return e;
}

}  // namespace ombrevale::workbench
