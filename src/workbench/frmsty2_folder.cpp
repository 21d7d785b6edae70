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
#include "pixels/editparts.h"
#include "style/hooks.h"
#include "style/moddeclares.h"
#include "workbench/frmsty2.h"
#include "workbench/holdmenu.h"
#include "workbench/keptview.h"
#include "workbench/offthread.h"
#include "workbench/palettename.h"
#include "workbench/panes_dialogs.h"

namespace {

namespace fi = ombrevale::folderimport;
using ombrevale::editparts::Part;

// The plan in lines a user reads: what changes, what cannot go in and why.
QString Report(const fi::Plan& plan) {
    constexpr std::size_t kShown = 15;
    QStringList lines;
    for (const auto& r : plan.refusals)
        lines << QStringLiteral("refused %1: %2").arg(QString::fromStdString(r.file), QString::fromStdString(r.why));
    for (const auto& c : plan.changes)
        lines << QStringLiteral("changed ") + (c.mapped > 0 && !c.ownPalette
                                                   ? QStringLiteral("%1: %2 pixels took the nearest colour of %3")
                                                         .arg(QString::fromStdString(c.file))
                                                         .arg(c.mapped)
                                                         .arg(ombrevale::workbench::PaletteName(c.palette))
                                                   : QString::fromStdString(fi::Describe(c)));
    const auto more = lines.size() > qsizetype(kShown) ? lines.size() - qsizetype(kShown) : 0;
    lines = lines.mid(0, qsizetype(kShown));
    if (more > 0) lines << QStringLiteral("... and %1 more").arg(more);
    return QStringLiteral("%1 changed, %2 unchanged, %3 refused.\n\n")
               .arg(plan.changes.size())
               .arg(plan.unchanged)
               .arg(plan.refusals.size()) +
           lines.join(QLatin1Char('\n'));
}

// "1 picture of DIR has colours its palette does not hold: tiles/tile-0005.png. ..."
QString UnheldQuestion(const QStringList& files, const QString& dir) {
    constexpr qsizetype kNamed = 10;
    QString names = files.mid(0, kNamed).join(QStringLiteral(", "));
    if (files.size() > kNamed) names += QStringLiteral(" and %1 more").arg(files.size() - kNamed);
    if (files.size() == 1)
        return QStringLiteral(
                   "1 picture of %1 has colours its palette does not hold: %2.\n\nImport it with the "
                   "nearest colours of its palette, with a palette of its own, or leave it out?")
            .arg(dir, names);
    return QStringLiteral(
               "%1 pictures of %2 have colours their palettes do not hold: %3.\n\nImport them with the "
               "nearest colours of their palettes, with palettes of their own, or leave them out?")
        .arg(QString::number(files.size()), dir, names);
}

// Palettes of their own change the palette count, palettes and PALX entries
// that no file names: found by what differs after the import, and put
// first, the count before the palettes it makes room for.
class OwnPaletteParts {
public:
    explicit OwnPaletteParts(const clsSTY& doc)
        : count_(doc.iPalCount), palettes_(modDeclares::STYPalData), entries_(modDeclares::STYPalIndex) {}

    void Add(const clsSTY& doc, std::vector<Part>& before, std::vector<Part>& after) const {
        using ombrevale::editparts::Kind;
        std::vector<Part> was, now;
        if (doc.iPalCount != count_) {
            Part p;
            p.kind = Kind::PaletteCount;
            p.value = count_;
            was.push_back(p);
            now.push_back(ombrevale::editparts::Take(doc, Kind::PaletteCount, 0));
        }
        const auto& pals = modDeclares::STYPalData;
        for (std::size_t i = 0; i < pals.size(); ++i) {
            if (i < palettes_.size() && pals[i] == palettes_[i]) continue;
            Part p;
            p.kind = Kind::Palette;
            p.number = static_cast<std::int32_t>(i);
            if (i < palettes_.size()) p.bytes.assign(palettes_[i].begin(), palettes_[i].end());
            was.push_back(p);
            now.push_back(ombrevale::editparts::Take(doc, Kind::Palette, p.number));
        }
        const auto& index = modDeclares::STYPalIndex;
        for (std::size_t i = 0; i < index.size() && i < entries_.size(); ++i) {
            if (index[i] == entries_[i]) continue;
            Part p;
            p.kind = Kind::PaletteEntry;
            p.number = static_cast<std::int32_t>(i);
            p.value = entries_[i];
            was.push_back(p);
            now.push_back(ombrevale::editparts::Take(doc, Kind::PaletteEntry, p.number));
        }
        before.insert(before.begin(), was.begin(), was.end());
        after.insert(after.begin(), now.begin(), now.end());
    }

private:
    std::int16_t count_;
    std::vector<modDeclares::Palette> palettes_;
    std::vector<std::int16_t> entries_;
};

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
        ombrevale::workbench::MenuOnHold(button, menu);
        actions_.import->setToolTip(QStringLiteral("Import (hold for Import folder, %1)")
                                        .arg(action->shortcut().toString(QKeySequence::NativeText)));
    }
}

void frmSTY2::ImportFolder() {
    using ombrevale::panesdialogs::FileMode;
    if (doc_->Busy() || !views_->kept->MayReplace()) return;
    const QString dir = ombrevale::panesdialogs::FileDialog(this, FileMode::Folder, QStringLiteral("Import Folder"),
                                                            QString(), DialogFolder());
    if (dir.isEmpty()) return;
    const auto read = [&](fi::Colours colours) {
        // Reading is a job: nothing that changes the style runs meanwhile.
        const ombrevale::workbench::StyleDocument::Job job(*doc_);
        // The read tries each file on the stores and puts them back; the map holds its frame meanwhile.
        clsSTY& style = Sty();
        fi::Plan plan = ombrevale::workbench::OffThread([&style, folder = dir.toStdString(), colours] {
            return fi::Read(style, folder, colours, [](int done, int total) {
                ombrevale::workbench::OnUiThread([done, total] {
                    if (done == 0) ProgressStart(0, total, "Please Wait...");
                    ProgressStep(done, "Reading the folder...");
                });
            });
        });
        ProgressEnd();
        return plan;
    };
    fi::Plan plan = read(fi::Colours::Nearest);
    QStringList unheld;
    for (const auto& c : plan.changes)
        if (c.mapped > 0) unheld << QString::fromStdString(c.file);
    if (!unheld.isEmpty()) {
        const int answer = ombrevale::panesdialogs::Choose(
            this, UnheldQuestion(unheld, dir),
            {QStringLiteral("&Nearest colours"), QStringLiteral("&Own palettes"), QStringLiteral("&Leave out")});
        if (answer < 0) return;
        if (answer == 1) {
            plan = read(fi::Colours::OwnPalette);
        } else if (answer == 2) {
            for (const auto& c : plan.changes)
                if (c.mapped > 0) plan.refusals.push_back({c.file, "has colours its palette does not hold"});
            std::erase_if(plan.changes, [](const fi::Change& c) { return c.mapped > 0; });
        }
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
    const OwnPaletteParts own(Sty());
    std::vector<Part> before = fi::Touched(Sty(), plan);
    fi::Apply(Sty(), plan);
    std::vector<Part> after = fi::Touched(Sty(), plan);
    own.Add(Sty(), before, after);
    const QString name = QDir(dir).dirName();
    doc_->Push(QStringLiteral("import folder %1").arg(name), std::move(before), std::move(after));
    MsgBox(QStringLiteral("Imported from %1: %2").arg(dir, report).toStdString(), "Ombrevale", MsgIcon::Information);
}
