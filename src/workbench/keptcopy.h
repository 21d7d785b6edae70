#pragma once
// The window's side of the kept edits: after every change to the document
// (an edit, an undo, a redo) the edited document goes to the state folder a
// moment later, on the writer's thread, and it goes away once the document
// is back at its saved state. A load, Esc, the close button or a signal
// leave it for the next start to offer.

#include <QObject>
#include <QTimer>
#include <functional>
#include <optional>
#include <set>
#include <string>

#include "keptedits/keptedits.h"

class QUndoStack;
class clsSTY;

namespace ombrevale::workbench {

class KeptCopy : public QObject {
    Q_OBJECT
public:
    // busy: a load, a render or a save runs, and the stores may be half made.
    KeptCopy(QUndoStack* history, std::function<const clsSTY&()> document, std::function<bool()> busy, QObject* parent);

    // A style was loaded from path: the history starts anew and edits are edits of it.
    void Loaded(const std::string& path);
    // The kept document of entry was put in place: unsaved from the start, its edits named first.
    void Restored(const keptedits::Entry& entry);
    // The document was written to path: it is that file now, with nothing to keep.
    void Saved(const std::string& path);
    // Writes a change not yet kept, and waits until everything is on disk.
    void WriteNow();
    // An earlier session's entry for the style in the window is being offered;
    // new edits are kept only once the user has restored or discarded it.
    void SetOffered(bool offered);
    bool Offered() const { return offered_; }

    bool Unsaved() const;
    int EditCount() const;
    const keptedits::Store& store() const { return writer_.store(); }
    void Discard(const std::string& path) { writer_.Discard(path); }

signals:
    void UnsavedChanged(bool unsaved, int edits);
    // Once for each reason the copy could not be written.
    void Problem(const QString& text);

private:
    void Changed();
    void Keep();
    keptedits::Entry EntryNow() const;

    QUndoStack* history_;
    std::function<const clsSTY&()> document_;
    std::function<bool()> busy_;
    keptedits::Writer writer_;
    QTimer soon_;
    keptedits::Origin origin_;
    std::vector<std::string> restoredEdits_;
    bool restored_ = false;
    bool offered_ = false;
    bool quiet_ = false;
    std::set<QString> told_;
};

}  // namespace ombrevale::workbench
