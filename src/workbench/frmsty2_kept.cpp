// The kept edits in the window: the copy kept after every change and its
// view (the offer after a load, the badge of unsaved edits).
#include <QAction>
#include <QCloseEvent>

#include "workbench/frmsty2.h"
#include "workbench/keptcopy.h"
#include "workbench/keptview.h"

void frmSTY2::WireKeptEdits() {
    using ombrevale::workbench::KeptEditsView;
    kept_ = new ombrevale::workbench::KeptCopy(
        UndoStack(), [this]() -> const clsSTY& { return Sty(); }, [this] { return busy_; }, this);
    KeptEditsView::Window window;
    window.path = [this] { return panesStylePath_; };
    window.busy = [this] { return busy_; };
    window.load = [this](const std::string& file, LoadReport& report, ombrevale::workbench::WholeDocument& previous) {
        return LoadAfresh(file, report, &previous);
    };
    const auto refill = [this] {
        causesTold_.clear();
        RefillAfterOpen();
    };
    window.swap = [this, refill](ombrevale::workbench::WholeDocument& other) {
        std::swap(Sty(), other.doc);
        modDeclares::SharedStores shared = modDeclares::TakeSharedStores();
        modDeclares::RestoreSharedStores(std::move(other.shared));
        other.shared = std::move(shared);
        refill();
    };
    window.refill = refill;
    keptView_ = new KeptEditsView(kept_, std::move(window), picCont,
                                  qobject_cast<QWidget*>(actions_.save->associatedObjects().value(0)), this);
}

void frmSTY2::KeepEditsNow() { kept_->WriteNow(); }

void frmSTY2::closeEvent(QCloseEvent* event) {
    KeepEditsNow();
    QWidget::closeEvent(event);
}
