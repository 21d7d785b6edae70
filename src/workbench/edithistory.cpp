#include "workbench/edithistory.h"

#include <QUndoStack>
#include <vector>

namespace ombrevale::workbench {
namespace {

// Every command on the stack was pushed through the history; the stack only hands them out as const.
EditStep* StepAt(const QUndoStack& stack, int i) {
    return dynamic_cast<EditStep*>(const_cast<QUndoCommand*>(stack.command(i)));
}

}  // namespace

EditHistory::EditHistory(QUndoStack* stack, std::size_t budget) : QObject(stack), stack_(stack), budget_(budget) {}

EditHistory& EditHistory::Of(QUndoStack* stack) {
    if (auto* history = stack->findChild<EditHistory*>(QString(), Qt::FindDirectChildrenOnly)) return *history;
    return *new EditHistory(stack);
}

void EditHistory::Push(std::unique_ptr<EditStep> step) {
    stack_->push(step.release());
    Trim();
}

std::size_t EditHistory::HeldBytes() const {
    std::size_t total = 0;
    for (int i = 0; i < stack_->count(); ++i)
        if (const EditStep* step = StepAt(*stack_, i)) total += step->Bytes();
    return total;
}

void EditHistory::Trim() {
    // Right after a push the index is at the end: every step on the stack is done.
    const int count = stack_->count();
    int keepFrom = count;
    std::size_t kept = 0;
    for (; keepFrom > 0; --keepFrom) {
        const EditStep* step = StepAt(*stack_, keepFrom - 1);
        if (!step) return;  // a command the history cannot push again: leave the stack whole
        if (keepFrom < count && kept + step->Bytes() > budget_) break;
        kept += step->Bytes();
    }
    if (keepFrom == 0) return;
    std::vector<std::unique_ptr<EditStep>> steps;
    for (int i = keepFrom; i < count; ++i) steps.push_back(StepAt(*stack_, i)->Moved());
    // Where the saved state stands among the steps kept; -1 when it went with the oldest.
    const int clean = stack_->cleanIndex() >= keepFrom ? stack_->cleanIndex() - keepFrom : -1;
    trimming_ = true;
    stack_->clear();
    for (std::size_t i = 0; i <= steps.size(); ++i) {
        if (static_cast<int>(i) == clean) stack_->setClean();
        if (i < steps.size()) stack_->push(steps[i].release());
    }
    if (clean < 0) stack_->resetClean();
    trimming_ = false;
}

}  // namespace ombrevale::workbench
