#include "workbench/keptcopy.h"

#include <QDateTime>
#include <QFileInfo>
#include <QLockFile>
#include <QUndoStack>
#include <algorithm>

#include "workbench/edithistory.h"

namespace ombrevale::workbench {
namespace {
// Edits made in a quick run are kept once, and still well within a second.
constexpr int kSettleMs = 250;

// A Restore: the window's document traded for the kept one, and back on undo.
class RestoreStep : public EditStep {
public:
    RestoreStep(std::vector<std::string> edits, WholeDocument other, std::function<void(WholeDocument&)> swap,
                std::size_t bytes)
        : EditStep(QStringLiteral("restore kept edits")),
          edits_(std::move(edits)),
          other_(std::move(other)),
          swap_(std::move(swap)),
          bytes_(bytes) {}
    void undo() override { swap_(other_); }
    void redo() override {
        // The kept document is in place when the step is recorded.
        if (std::exchange(first_, false)) return;
        swap_(other_);
    }
    std::size_t Bytes() const override { return sizeof(*this) + bytes_; }
    std::unique_ptr<EditStep> Moved() override {
        return std::make_unique<RestoreStep>(std::move(edits_), std::move(other_), swap_, bytes_);
    }
    const std::vector<std::string>& Edits() const { return edits_; }

private:
    std::vector<std::string> edits_;
    WholeDocument other_;
    std::function<void(WholeDocument&)> swap_;
    std::size_t bytes_;
    bool first_ = true;
};

bool SameFile(const std::string& a, const std::string& b) {
    return a == b || QFileInfo(QString::fromStdString(a)) == QFileInfo(QString::fromStdString(b));
}

}  // namespace

KeptCopy::KeptCopy(QUndoStack* history, std::function<const clsSTY&()> document, std::function<bool()> busy,
                   QObject* parent)
    : QObject(parent),
      history_(history),
      document_(std::move(document)),
      busy_(std::move(busy)),
      writer_(keptedits::Store(), [this](const Outcome& problem) {
          QMetaObject::invokeMethod(this, [this, text = problem ? QString::fromStdString(problem->text) : QString()] {
              const bool was = keeping_;
              keeping_ = text.isEmpty();
              if (!keeping_ && told_.insert(text).second) emit Problem(text);
              if (was != keeping_) emit UnsavedChanged(Unsaved(), EditCount());
          });
      }) {
    soon_.setSingleShot(true);
    soon_.setInterval(kSettleMs);
    connect(&soon_, &QTimer::timeout, this, [this] { Keep(); });
    connect(history_, &QUndoStack::indexChanged, this, [this] { Changed(); });
}

KeptCopy::~KeptCopy() = default;

void KeptCopy::Own(const std::string& path) {
    own_.reset();
    if (!path.empty()) own_ = writer_.store().Own(path);
}

bool KeptCopy::OwnedElsewhere() const { return own_ && own_->error() == QLockFile::LockFailedError; }

void KeptCopy::Reset() {
    soon_.stop();
    quiet_ = true;
    history_->clear();
    quiet_ = false;
}

void KeptCopy::Loaded(const std::string& path) {
    Reset();
    Own(path);
    origin_ = keptedits::OriginOf(path);
    offered_ = false;
    emit UnsavedChanged(false, 0);
}

void KeptCopy::Restored(const keptedits::Entry& entry, WholeDocument previous,
                        std::function<void(WholeDocument&)> swap) {
    Reset();
    origin_ = entry.from;
    offered_ = false;
    const std::size_t bytes = document_().SavedBytes().size();
    EditHistory::Of(history_).Push(
        std::make_unique<RestoreStep>(entry.edits, std::move(previous), std::move(swap), bytes));
}

void KeptCopy::Saved(const std::string& path) {
    soon_.stop();
    // Our own entry goes, its edits are in a file of the user's now; an earlier
    // session's on offer stays for Restore or Discard to settle.
    if (!offered_ && !origin_.path.empty() && !OwnedElsewhere()) writer_.Discard(origin_.path);
    if (!SameFile(origin_.path, path)) {
        // The entry on offer is of the other file, and stays on disk for it.
        if (std::exchange(offered_, false)) emit OfferGone();
        Own(path);
    }
    origin_ = keptedits::OriginOf(path);
    quiet_ = true;
    history_->setClean();
    quiet_ = false;
    emit UnsavedChanged(false, 0);
}

void KeptCopy::SetOffered(bool offered) {
    offered_ = offered;
    if (!offered_ && Unsaved()) soon_.start();
}

bool KeptCopy::Unsaved() const { return !history_->isClean(); }

std::vector<std::string> KeptCopy::EditsSinceSaved() const {
    const int now = history_->index();
    // A saved point dropped with the oldest steps: every step there is counts.
    const int saved = std::max(history_->cleanIndex(), 0);
    std::vector<std::string> edits;
    for (int i = std::min(now, saved); i < std::max(now, saved); ++i) {
        const QString prefix = i < now ? QString() : QStringLiteral("undo ");
        if (const auto* restore = dynamic_cast<const RestoreStep*>(history_->command(i)))
            for (const std::string& text : restore->Edits()) edits.push_back(prefix.toStdString() + text);
        else
            edits.push_back((prefix + history_->text(i)).toStdString());
    }
    return edits;
}

void KeptCopy::Changed() {
    // A history that drops its oldest steps is rebuilt: no change of the document.
    if (quiet_ || EditHistory::Of(history_).Trimming()) return;
    emit UnsavedChanged(Unsaved(), EditCount());
    if (origin_.path.empty() || OwnedElsewhere()) return;
    if (offered_) {
        // The user let an edit take the place of the entry on offer, and it has been made.
        offered_ = false;
        writer_.Discard(origin_.path);
        emit OfferGone();
    }
    if (Unsaved()) {
        soon_.start();
        return;
    }
    // Undone down to the saved point: nothing is left to keep.
    soon_.stop();
    writer_.Discard(origin_.path);
}

void KeptCopy::Keep() {
    if (!Unsaved() || origin_.path.empty() || offered_ || OwnedElsewhere()) return;
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
    return {origin_, QDateTime::currentMSecsSinceEpoch(), EditsSinceSaved()};
}

}  // namespace ombrevale::workbench
