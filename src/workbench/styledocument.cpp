#include "workbench/styledocument.h"

#include <QUndoStack>

#include "style/hooks.h"
#include "style/moddeclares.h"
#include "workbench/keptcopy.h"
#include "workbench/styleedits.h"

namespace ombrevale::workbench {

StyleDocument::StyleDocument(QObject* parent)
    : QObject(parent),
      edits_(new StyleEdits([this]() -> clsSTY& { return sty_; },
                            [this](editparts::Kind kind, std::int32_t number) { emit PartChanged(kind, number); },
                            this)),
      kept_(new KeptCopy(
          edits_->Stack(), [this]() -> const clsSTY& { return sty_; }, [this] { return Busy(); }, this)) {}

StyleDocument::~StyleDocument() {
    KeepNow();
    // Gone before the history it watches, whose end would otherwise read as an undo to the saved point.
    delete kept_;
}

QUndoStack* StyleDocument::UndoStack() const { return edits_->Stack(); }

void StyleDocument::KeepNow() { kept_->WriteNow(); }

void StyleDocument::SetBusy(int step) {
    const bool was = Busy();
    jobs_ += step;
    if (was == Busy()) return;
    edits_->Pause(Busy());
    emit BusyChanged(Busy());
}

void StyleDocument::Started(const std::string& path, LoadKind kind) {
    path_ = path;
    // A history of another document means nothing: every load starts a new one.
    kept_->Loaded(path);
    emit Loaded(kind);
}

bool StyleDocument::Reload(const std::string& path, LoadKind kind) {
    if (path.empty()) return false;
    // The edits a reload drops stay on disk, offered again once it is done.
    KeepNow();
    {
        Job job(*this);
        hasStyle_ = sty_.LoadSTY(path);
    }
    Started(path, kind);
    return hasStyle_;
}

bool StyleDocument::Open(const std::string& file, LoadReport& report) {
    KeepNow();
    if (!ReadAfresh(file, report, nullptr)) return false;
    Started(file, LoadKind::Open);
    return true;
}

bool StyleDocument::ReadAfresh(const std::string& file, LoadReport& report, WholeDocument* previous) {
    // The file is read into an empty document, as at a start on it; one that
    // does not load puts back the style in memory, unsaved changes and all.
    clsSTY before = std::move(sty_);
    modDeclares::SharedStores shared = modDeclares::TakeSharedStores();
    sty_ = clsSTY();
    modDeclares::ResetSharedStores();
    bool loaded = false;
    {
        Job job(*this);
        loaded = sty_.LoadSTY(file, report);
    }
    if (loaded) {
        hasStyle_ = true;
        if (previous) *previous = {std::move(before), std::move(shared)};
        return true;
    }
    sty_ = std::move(before);
    modDeclares::RestoreSharedStores(std::move(shared));
    // No render follows to close the progress window.
    ProgressEnd();
    return false;
}

void StyleDocument::Swap(WholeDocument& other) {
    std::swap(sty_, other.doc);
    modDeclares::SharedStores shared = modDeclares::TakeSharedStores();
    modDeclares::RestoreSharedStores(std::move(other.shared));
    other.shared = std::move(shared);
    emit Loaded(LoadKind::Restore);
}

bool StyleDocument::Restore(const keptedits::Entry& entry, LoadReport& report) {
    if (Busy()) return false;
    WholeDocument previous;
    if (!ReadAfresh(kept_->store().DocumentPath(path_), report, &previous)) return false;
    emit Loaded(LoadKind::Restore);
    kept_->Restored(entry, std::move(previous), [this](WholeDocument& other) { Swap(other); });
    return true;
}

bool StyleDocument::Save(const std::string& path) {
    // An edit made just now is kept before the save starts: an end during the
    // save finds the pending copy busy and cannot write it.
    KeepNow();
    bool saved = false;
    {
        Job job(*this);
        saved = sty_.SaveSTY(path);
    }
    if (!saved) return false;
    path_ = path;
    kept_->Saved(path);
    emit Saved(QString::fromStdString(path));
    return true;
}

bool StyleDocument::MayEdit(const QString& text) {
    if (Busy()) {
        // The change may hold on to what its caller had: it cannot wait for the job, so it is refused aloud.
        MsgBox(
            ("The style is being loaded, drawn or saved, so " + text + " was not made. Make it again when that ends.")
                .toStdString(),
            "Ombrevale", MsgIcon::Exclamation);
        return false;
    }
    return !mayEdit_ || mayEdit_();
}

bool StyleDocument::Record(const PartList& parts, const QString& text, const std::function<bool()>& change) {
    return MayEdit(text) && edits_->Record(parts, text, change);
}

void StyleDocument::Push(const QString& text, std::vector<editparts::Part> before, std::vector<editparts::Part> after) {
    for (const editparts::Part& part : after) emit PartChanged(part.kind, part.number);
    edits_->Push(text, std::move(before), std::move(after));
}

}  // namespace ombrevale::workbench
