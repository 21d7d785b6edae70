#pragma once
// The window's edits of the style as undo steps: each step holds the parts of
// the stores it changed, before and after, and shows them again when undone
// or redone. One history a document: a load starts it afresh.

#include <QObject>
#include <QString>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "pixels/editparts.h"

class clsSTY;
class QAction;
class QUndoStack;

namespace ombrevale::workbench {

class StyleEdits : public QObject {
    Q_OBJECT
public:
    using PartList = std::vector<std::pair<editparts::Kind, std::int32_t>>;
    // doc: the document edited; shown: redraws what shows a part just put back.
    StyleEdits(std::function<clsSTY&()> doc, std::function<void(editparts::Kind, std::int32_t)> shown, QObject* parent);

    QUndoStack* Stack() const { return stack_; }
    // Undo and Redo with the platform's keys, their tips naming the step and the key.
    QAction* UndoAction() const { return undo_; }
    QAction* RedoAction() const { return redo_; }
    // While a job runs, Undo and Redo are passed over: a part put into half-made stores would be lost.
    void Pause(bool paused);

    // Makes change one step, parts in the order redo puts them back, undo
    // going backwards. False when change changed nothing and has said why; a
    // change that leaves every part as it was is no step.
    bool Record(const PartList& parts, const QString& text, const std::function<bool()>& change);
    // A change already made, its parts taken before and after it.
    void Push(const QString& text, std::vector<editparts::Part> before, std::vector<editparts::Part> after);

private:
    QAction* MakeAction(bool undo);
    std::function<clsSTY&()> doc_;
    std::function<void(editparts::Kind, std::int32_t)> shown_;
    QUndoStack* stack_;
    QAction* undo_;
    QAction* redo_;
};

}  // namespace ombrevale::workbench
