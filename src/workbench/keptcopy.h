#pragma once
// The window's side of the kept edits: after every change to the document
// (an edit, an undo, a redo) the edited document goes to the state folder a
// moment later, on the writer's thread, and it goes away once the document
// is back at its saved state. A load, Esc, the close button or a signal
// leave it for the next start to offer. The window owns the entry of the
// style it holds; a style open in another window is neither kept nor offered.

#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "keptedits/keptedits.h"
#include "style/clssty.h"
#include "style/moddeclares.h"

class QLockFile;
class QUndoStack;

namespace ombrevale::workbench {

// A document with the stores it shares, as a load leaves them.
struct WholeDocument {
    clsSTY doc;
    modDeclares::SharedStores shared;
};

class KeptCopy : public QObject {
    Q_OBJECT
public:
    // busy: a load, a render or a save runs, and the stores may be half made.
    KeptCopy(QUndoStack* history, std::function<const clsSTY&()> document, std::function<bool()> busy, QObject* parent);
    ~KeptCopy() override;

    // A style was loaded from path: the history starts anew and edits are edits of it.
    void Loaded(const std::string& path);
    // The kept document of entry has taken the place of previous: one step, the
    // edits it stands for named first; swap trades the window's document with
    // the one it is given, both ways.
    void Restored(const keptedits::Entry& entry, WholeDocument previous, std::function<void(WholeDocument&)> swap);
    // The document was written to path: it is that file now, with nothing of its own to keep.
    void Saved(const std::string& path);
    // Writes a change not yet kept, and waits until everything is on disk.
    void WriteNow();
    // An earlier session's entry for the style in the window is being offered;
    // new edits are kept only once the user has restored it or made an edit in its place.
    void SetOffered(bool offered);
    bool Offered() const { return offered_; }
    // Another running Ombrevale owns the entry of the style in the window.
    bool OwnedElsewhere() const;
    // Whether the last write reached the disk and the entry is this window's.
    bool Keeping() const { return keeping_ && !OwnedElsewhere(); }

    bool Unsaved() const;
    // The edits between the saved point and now, oldest first, as an entry names them.
    std::vector<std::string> EditsSinceSaved() const;
    int EditCount() const { return static_cast<int>(EditsSinceSaved().size()); }
    const keptedits::Store& store() const { return writer_.store(); }
    void Discard(const std::string& path) { writer_.Discard(path); }

signals:
    void UnsavedChanged(bool unsaved, int edits);
    // Once for each reason the copy could not be written.
    void Problem(const QString& text);
    // The entry on offer is gone: an edit took its place, or the window holds another file.
    void OfferGone();

private:
    void Changed();
    void Keep();
    void Own(const std::string& path);
    void Reset();
    keptedits::Entry EntryNow() const;

    QUndoStack* history_;
    std::function<const clsSTY&()> document_;
    std::function<bool()> busy_;
    keptedits::Writer writer_;
    QTimer soon_;
    keptedits::Origin origin_;
    std::unique_ptr<QLockFile> own_;
    bool offered_ = false;
    bool quiet_ = false;
    bool keeping_ = true;
    std::set<QString> told_;
};

}  // namespace ombrevale::workbench
