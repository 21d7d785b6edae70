#include "workbench/styleedits.h"

#include <QAction>
#include <QKeySequence>
#include <QUndoStack>

#include "workbench/edithistory.h"

namespace ombrevale::workbench {
namespace {

using editparts::Part;

class PartsStep : public EditStep {
public:
    PartsStep(std::function<clsSTY&()> doc, std::function<void(editparts::Kind, std::int32_t)> shown,
              const QString& text, std::vector<Part> before, std::vector<Part> after, bool narrow = true)
        : EditStep(text),
          doc_(std::move(doc)),
          shown_(std::move(shown)),
          before_(std::move(before)),
          after_(std::move(after)) {
        // Else a delta step would hold the whole delta store twice.
        for (std::size_t i = 0; narrow && i < before_.size() && i < after_.size(); ++i)
            editparts::Narrow(before_[i], after_[i]);
    }
    void undo() override { Show(before_.rbegin(), before_.rend()); }
    void redo() override {
        // The edit itself has been made when the step is recorded.
        if (std::exchange(first_, false)) return;
        Show(after_.begin(), after_.end());
    }
    std::size_t Bytes() const override {
        std::size_t n = sizeof(*this);
        for (std::size_t i = 0; i < before_.size() && i < after_.size(); ++i)
            n += editparts::StepBytes(before_[i], after_[i]);
        return n;
    }
    std::unique_ptr<EditStep> Moved() override {
        return std::make_unique<PartsStep>(doc_, shown_, text(), std::move(before_), std::move(after_), false);
    }

private:
    // Every part goes in before any is shown: a palette's tiles need the palette.
    template <typename It>
    void Show(It first, It last) {
        for (It p = first; p != last; ++p) editparts::Put(doc_(), *p);
        for (It p = first; p != last; ++p) shown_(p->kind, p->number);
    }
    std::function<clsSTY&()> doc_;
    std::function<void(editparts::Kind, std::int32_t)> shown_;
    std::vector<Part> before_;
    std::vector<Part> after_;
    bool first_ = true;
};

}  // namespace

StyleEdits::StyleEdits(std::function<clsSTY&()> doc, std::function<void(editparts::Kind, std::int32_t)> shown,
                       QObject* parent)
    : QObject(parent), doc_(std::move(doc)), shown_(std::move(shown)), stack_(new QUndoStack(this)) {
    undo_ = MakeAction(true);
    redo_ = MakeAction(false);
}

QAction* StyleEdits::MakeAction(bool undo) {
    QAction* a = undo ? stack_->createUndoAction(this, QStringLiteral("Undo"))
                      : stack_->createRedoAction(this, QStringLiteral("Redo"));
    auto keys = QKeySequence::keyBindings(undo ? QKeySequence::Undo : QKeySequence::Redo);
    // Ctrl+Y as well wherever the platform's redo is only Ctrl+Shift+Z.
    if (!undo && !keys.contains(QKeySequence(Qt::CTRL | Qt::Key_Y))) keys.append(QKeySequence(Qt::CTRL | Qt::Key_Y));
    a->setShortcuts(keys);
    a->setShortcutContext(Qt::WindowShortcut);
    const auto tip = [a] {
        a->setToolTip(a->text() + QStringLiteral(" (") + a->shortcut().toString(QKeySequence::NativeText) +
                      QLatin1Char(')'));
    };
    tip();
    connect(a, &QAction::changed, this, [a, tip] {
        // setToolTip itself raises changed: only a new text needs a new tip.
        if (!a->toolTip().startsWith(a->text() + QStringLiteral(" ("))) tip();
    });
    return a;
}

void StyleEdits::Pause(bool paused) {
    undo_->setEnabled(!paused && stack_->canUndo());
    redo_->setEnabled(!paused && stack_->canRedo());
}

bool StyleEdits::Record(const PartList& parts, const QString& text, const std::function<bool()>& change) {
    std::vector<Part> before, after;
    for (const auto& [kind, number] : parts) before.push_back(editparts::Take(doc_(), kind, number));
    if (!change()) return false;
    for (const auto& [kind, number] : parts) after.push_back(editparts::Take(doc_(), kind, number));
    for (const auto& [kind, number] : parts) shown_(kind, number);
    if (after != before) Push(text, std::move(before), std::move(after));
    return true;
}

void StyleEdits::Push(const QString& text, std::vector<Part> before, std::vector<Part> after) {
    EditHistory::Of(stack_).Push(std::make_unique<PartsStep>(doc_, shown_, text, std::move(before), std::move(after)));
}

}  // namespace ombrevale::workbench
