#pragma once
// Hands one kind of event of a widget to a function, for controls whose Qt
// class has no signal for it (a label's click, a pointer move over a picture).

#include <QEvent>
#include <QObject>
#include <functional>

class PanesEventTap : public QObject {
public:
    PanesEventTap(QObject* target, QEvent::Type type, std::function<void(QEvent*)> fn)
        : QObject(target), type_(type), fn_(std::move(fn)) {
        target->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == type_) fn_(event);
        return false;
    }

private:
    QEvent::Type type_;
    std::function<void(QEvent*)> fn_;
};
