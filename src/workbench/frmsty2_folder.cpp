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
#include "workbench/frmsty2.h"
#include "workbench/keptview.h"
#include "workbench/panes_dialogs.h"
#include "workbench/styleedits.h"

namespace {

namespace fi = ombrevale::folderimport;
using ombrevale::editparts::Part;

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
    actions_.importFolder = action;
    action->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_I));
    action->setShortcutContext(Qt::WindowShortcut);
    action->setToolTip(QStringLiteral("Import folder (%1)").arg(action->shortcut().toString(QKeySequence::NativeText)));
    addAction(action);
    connect(action, &QAction::triggered, this, [this] { ImportFolder(); });
    // The tool bar's Import holds it in its menu: press and hold, as a browser's Back button lists pages.
    if (auto* button = qobject_cast<QToolButton*>(actions_.import->associatedObjects().value(0))) {
        auto* menu = new QMenu(button);
        menu->addAction(QStringLiteral("Import picture or palette..."), actions_.import, &QAction::trigger);
        menu->addAction(action);
        button->setMenu(menu);
        button->setPopupMode(QToolButton::DelayedPopup);
        actions_.import->setToolTip(QStringLiteral("Import (hold for Import folder, %1)")
                                        .arg(action->shortcut().toString(QKeySequence::NativeText)));
    }
}

void frmSTY2::ImportFolder() {
    using ombrevale::panesdialogs::FileMode;
    if (busy_ || !keptView_->MayReplace()) return;
    const QString dir = ombrevale::panesdialogs::FileDialog(this, FileMode::Folder, QStringLiteral("Import Folder"),
                                                            QString(), DialogFolder());
    if (dir.isEmpty()) return;
    // Reading is a job: nothing that changes the style runs meanwhile.
    SetBusy(true);
    fi::Plan plan = fi::Read(Sty(), dir.toStdString(), fi::Colours::Nearest, [](int done, int total) {
        if (done == 0) ProgressStart(0, total, "Please Wait...");
        ProgressStep(done, "Reading the folder...");
    });
    ProgressEnd();
    SetBusy(false);
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
    edits_->Push(QStringLiteral("import folder %1").arg(name), std::move(before), std::move(after));
    MsgBox(QStringLiteral("Imported from %1: %2").arg(dir, report).toStdString(), "Ombrevale", MsgIcon::Information);
}
