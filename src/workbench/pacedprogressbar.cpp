#include "workbench/pacedprogressbar.h"

#include <QStyleOptionProgressBar>
#include <QStylePainter>
#include <algorithm>
#include <climits>

PacedProgressBar::PacedProgressBar(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void PacedProgressBar::setMinimum(int minimum) { setRange(minimum, std::max(maximum_, minimum)); }

void PacedProgressBar::setMaximum(int maximum) { setRange(std::min(minimum_, maximum), maximum); }

void PacedProgressBar::setRange(int minimum, int maximum) {
    if (minimum == minimum_ && maximum == maximum_) return;
    minimum_ = minimum;
    maximum_ = std::max(minimum, maximum);
    if (static_cast<qint64>(value_) < static_cast<qint64>(minimum_) - 1 || value_ > maximum_) value_ = Unset();
    Changed();
}

void PacedProgressBar::setValue(int value) {
    if (value == value_ || value < minimum_ || value > maximum_) return;
    value_ = value;
    Changed();
}

int PacedProgressBar::Unset() const { return minimum_ == INT_MIN ? INT_MIN : minimum_ - 1; }

void PacedProgressBar::reset() {
    value_ = Unset();
    Changed();
}

void PacedProgressBar::Changed() { pacer_.Changed(); }

QSize PacedProgressBar::sizeHint() const {
    QStyleOptionProgressBar opt;
    opt.initFrom(this);
    return style()->sizeFromContents(QStyle::CT_ProgressBar, &opt, QSize(100, fontMetrics().height() + 2), this);
}

void PacedProgressBar::paintEvent(QPaintEvent*) {
    pacer_.Painted();
    QStyleOptionProgressBar opt;
    opt.initFrom(this);
    opt.minimum = minimum_;
    opt.maximum = maximum_;
    opt.progress = value_;
    opt.textVisible = false;
    opt.state |= QStyle::State_Horizontal;
    QStylePainter(this).drawControl(QStyle::CE_ProgressBar, opt);
}
