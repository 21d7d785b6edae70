#pragma once
// The undo history kept under a memory budget. QUndoStack can only limit the
// number of its commands, and only while it is empty; a delta step and a
// palette step differ a thousandfold in size, so the oldest steps go by bytes.

#include <QObject>
#include <QUndoCommand>
#include <cstddef>
#include <memory>

class QUndoStack;

namespace ombrevale::workbench {

// A step the history can weigh and, when older ones go, push again.
class EditStep : public QUndoCommand {
public:
    using QUndoCommand::QUndoCommand;
    // The memory the step holds, in bytes.
    virtual std::size_t Bytes() const = 0;
    // A new step holding this one's parts, moved out of it, whose first redo
    // changes nothing: it stands for an edit that is in the stores already.
    virtual std::unique_ptr<EditStep> Moved() = 0;
};

class EditHistory : public QObject {
    Q_OBJECT
public:
    static constexpr std::size_t kBudget = std::size_t{256} << 20;

    // Keeps the history of stack, as a child of it, within budget bytes.
    explicit EditHistory(QUndoStack* stack, std::size_t budget = kBudget);
    // The history of stack, made with the default budget on first use.
    static EditHistory& Of(QUndoStack* stack);

    // Pushes the step, which the stack redoes at once, then drops the oldest
    // steps while the whole is over budget; the newest always stays.
    void Push(std::unique_ptr<EditStep> step);
    std::size_t HeldBytes() const;
    // True while the stack is rebuilt without its oldest steps: its signals
    // then tell of no change of the document or of its saved state.
    bool Trimming() const { return trimming_; }

private:
    void Trim();
    QUndoStack* stack_;
    std::size_t budget_;
    bool trimming_ = false;
};

}  // namespace ombrevale::workbench
