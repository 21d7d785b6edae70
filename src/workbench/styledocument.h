#pragma once
// The style a window works on: the document, the file Save writes, the jobs
// that load, save and restore it, the edit history and the kept copy. The
// window and every view watch its signals rather than one another, and an
// edit asked for while a job runs is refused aloud, never dropped.

#include <QObject>
#include <QString>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "pixels/editparts.h"
#include "style/clssty.h"

class QUndoStack;

namespace ombrevale::keptedits {
struct Entry;
}

namespace ombrevale::workbench {

class KeptCopy;
class StyleEdits;
struct WholeDocument;

class StyleDocument : public QObject {
    Q_OBJECT
public:
    // What brought the document in: the window's start, Refresh, Open, or kept
    // edits restored (or that step undone or redone).
    enum class LoadKind { Start, Refresh, Open, Restore };
    using PartList = std::vector<std::pair<editparts::Kind, std::int32_t>>;

    explicit StyleDocument(QObject* parent = nullptr);
    ~StyleDocument() override;

    clsSTY& Sty() { return sty_; }
    const clsSTY& Sty() const { return sty_; }
    // The file that Save writes: the last one opened, loaded or saved as.
    const std::string& Path() const { return path_; }
    // The last load took: there is a style to write.
    bool HasStyle() const { return hasStyle_; }
    bool Busy() const { return jobs_ > 0; }

    // A job of the window's own (a render, a folder read) for as long as it lives.
    class Job {
    public:
        explicit Job(StyleDocument& doc) : doc_(doc) { doc_.SetBusy(+1); }
        ~Job() { doc_.SetBusy(-1); }
        Job(const Job&) = delete;
        Job& operator=(const Job&) = delete;

    private:
        StyleDocument& doc_;
    };

    // Reads path over the document as a start or Refresh does; false: it did not load.
    bool Reload(const std::string& path, LoadKind kind);
    // Reads file into an empty document; one that does not load leaves this
    // one as it was, and report says why.
    bool Open(const std::string& file, LoadReport& report);
    // The kept document of entry takes the document's place, as one step of the history.
    bool Restore(const keptedits::Entry& entry, LoadReport& report);
    // Writes the document to path (the former file kept as .bak); the failure is told.
    bool Save(const std::string& path);

    // Makes change one step that Undo takes back (false: it changed nothing and has said why).
    bool Record(const PartList& parts, const QString& text, const std::function<bool()>& change);
    // A change already made, its parts taken before and after it.
    void Push(const QString& text, std::vector<editparts::Part> before, std::vector<editparts::Part> after);
    // Asked before every edit: false holds the edit back (kept edits on offer would be replaced).
    void SetEditCheck(std::function<bool()> mayEdit) { mayEdit_ = std::move(mayEdit); }
    // No job runs and the check lets an edit through; a job is told in a message.
    bool MayEdit(const QString& text);
    StyleEdits* Edits() const { return edits_; }
    QUndoStack* UndoStack() const;
    KeptCopy* Kept() const { return kept_; }
    // Writes the edits not yet kept and waits for the disk.
    void KeepNow();

signals:
    void Loaded(ombrevale::workbench::StyleDocument::LoadKind kind);
    // A part was changed, or put back by Undo or Redo.
    void PartChanged(ombrevale::editparts::Kind kind, std::int32_t number);
    void BusyChanged(bool busy);
    void Saved(const QString& path);

private:
    void SetBusy(int step);
    bool ReadAfresh(const std::string& file, LoadReport& report, WholeDocument* previous);
    void Swap(WholeDocument& other);
    void Started(const std::string& path, LoadKind kind);

    clsSTY sty_;
    std::string path_;
    bool hasStyle_ = false;
    int jobs_ = 0;
    StyleEdits* edits_;
    KeptCopy* kept_;
    std::function<bool()> mayEdit_;
};

}  // namespace ombrevale::workbench
