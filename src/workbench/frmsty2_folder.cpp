// Import folder: a folder as the export writes it, back into the style as one
// step of the history, with the progress window while it is read and a report.
#include <QAction>
#include <QDir>
#include <QMenu>
#include <QToolButton>
#include <QUndoStack>
#include <algorithm>
#include <memory>

#include "folderimport/folderimport.h"
#include "style/hooks.h"
#include "workbench/edithistory.h"
#include "workbench/frmsty2.h"
#include "workbench/panes_dialogs.h"

namespace {

namespace fi = ombrevale::folderimport;
using ombrevale::editparts::Part;

// The whole import as one step: every part it touched, before and after.
class FolderStep : public ombrevale::workbench::EditStep {
public:
    FolderStep(frmSTY2* window, const QString& text, std::vector<Part> before, std::vector<Part> after,
               bool narrow = true)
        : EditStep(text), window_(window), before_(std::move(before)), after_(std::move(after)) {
        for (std::size_t i = 0; narrow && i < before_.size(); ++i) ombrevale::editparts::Narrow(before_[i], after_[i]);
    }
    void undo() override {
        for (auto part = before_.rbegin(); part != before_.rend(); ++part) Show(*part);
    }
    void redo() override {
        // The import has been made when the step is recorded.
        if (std::exchange(first_, false)) return;
        for (const Part& part : after_) Show(part);
    }
    std::size_t Bytes() const override {
        std::size_t bytes = sizeof(*this);
        for (std::size_t i = 0; i < before_.size(); ++i)
            bytes += ombrevale::editparts::StepBytes(before_[i], after_[i]);
        return bytes;
    }
    std::unique_ptr<EditStep> Moved() override {
        return std::make_unique<FolderStep>(window_, text(), std::move(before_), std::move(after_), false);
    }

private:
    void Show(const Part& part) {
        ombrevale::editparts::Put(window_->Sty(), part);
        window_->ShowEdited(part.kind, part.number);
    }
    frmSTY2* window_;
    std::vector<Part> before_;
    std::vector<Part> after_;
    bool first_ = true;
};

// The plan in lines a user reads: what changes, what cannot go in and why.
QString Report(const fi::Plan& plan) {
    constexpr std::size_t kShown = 15;
    QStringList lines;
    for (const auto& r : plan.refusals)
        lines << QStringLiteral("refused %1: %2").arg(QString::fromStdString(r.file), QString::fromStdString(r.why));
    for (const auto& c : plan.changes) lines << QStringLiteral("changed ") + QString::fromStdString(fi::Describe(c));
    const auto more = lines.size() > qsizetype(kShown) ? lines.size() - qsizetype(kShown) : 0;
    lines = lines.mid(0, qsizetype(kShown));
    if (more > 0) lines << QStringLiteral("... and %1 more").arg(more);
    return QStringLiteral("%1 changed, %2 unchanged, %3 refused.\n\n")
               .arg(plan.changes.size())
               .arg(plan.unchanged)
               .arg(plan.refusals.size()) +
           lines.join(QLatin1Char('\n'));
}

}  // namespace

void frmSTY2::WireFolderImport() {
    auto* action = new QAction(QStringLiteral("Import folder..."), this);
    action->setObjectName(QStringLiteral("importfolder"));
    action->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_I));
    action->setShortcutContext(Qt::WindowShortcut);
    action->setToolTip(QStringLiteral("Import folder (%1)").arg(action->shortcut().toString(QKeySequence::NativeText)));
    addAction(action);
    connect(action, &QAction::triggered, this, [this] { ImportFolder(); });
    // The tool bar's Import holds it in its menu: press and hold, as a browser's Back button lists pages.
    for (auto* button : tlbMain->findChildren<QToolButton*>()) {
        if (button->defaultAction()->objectName() != QLatin1String("import")) continue;
        auto* menu = new QMenu(button);
        menu->addAction(QStringLiteral("Import picture or palette..."), button->defaultAction(), &QAction::trigger);
        menu->addAction(action);
        button->setMenu(menu);
        button->setPopupMode(QToolButton::DelayedPopup);
    }
}

void frmSTY2::ImportFolder() {
    using ombrevale::panesdialogs::FileMode;
    if (busy_ || !MayReplaceKeptEdits()) return;
    const QString dir = ombrevale::panesdialogs::FileDialog(this, FileMode::Folder, QStringLiteral("Import Folder"),
                                                            QString(), DialogFolder());
    if (dir.isEmpty()) return;
    // Reading is a job: nothing that changes the style runs meanwhile.
    busy_ = true;
    fi::Plan plan = fi::Read(Sty(), dir.toStdString(), fi::Colours::Nearest, [](int done, int total) {
        if (done == 0) ProgressStart(0, total, "Please Wait...");
        ProgressStep(done, "Reading the folder...");
    });
    ProgressEnd();
    busy_ = false;
    const auto mapped =
        std::count_if(plan.changes.begin(), plan.changes.end(), [](const fi::Change& c) { return c.mapped > 0; });
    if (mapped > 0 &&
        !ombrevale::panesdialogs::Question(
            this, QStringLiteral("%1 pictures of %2 have colours their palettes do not hold.\n\nImport them with the "
                                 "nearest colour of their palette in their place? (No leaves them out.)")
                      .arg(mapped)
                      .arg(dir))) {
        for (const auto& c : plan.changes)
            if (c.mapped > 0) plan.refusals.push_back({c.file, "has colours its palette does not hold"});
        std::erase_if(plan.changes, [](const fi::Change& c) { return c.mapped > 0; });
    }
    const QString report = Report(plan);
    if (plan.changes.empty()) {
        MsgBox(QStringLiteral("Nothing of %1 was imported: %2").arg(dir, report).toStdString(), "Ombrevale",
               plan.refusals.empty() ? MsgIcon::Information : MsgIcon::Exclamation);
        return;
    }
    if (!plan.refusals.empty() &&
        !ombrevale::panesdialogs::Question(
            this, QStringLiteral("Some files of %1 cannot go in: %2\n\nImport the changes that can?").arg(dir, report)))
        return;
    std::vector<Part> before = fi::Touched(Sty(), plan);
    fi::Apply(Sty(), plan);
    std::vector<Part> after = fi::Touched(Sty(), plan);
    for (const Part& part : after) ShowEdited(part.kind, part.number);
    const QString name = QDir(dir).dirName();
    ombrevale::workbench::EditHistory::Of(undoStack).Push(std::make_unique<FolderStep>(
        this, QStringLiteral("import folder %1").arg(name), std::move(before), std::move(after)));
    MsgBox(QStringLiteral("Imported from %1: %2").arg(dir, report).toStdString(), "Ombrevale", MsgIcon::Information);
}
