#pragma once
// The progress window's bar. It takes every value at once, as QProgressBar
// does, but draws at most once a frame: QProgressBar repaints on the spot, and
// each of those repaints waits for the display server, which for a sheet of a
// thousand tiles cost more than the tiles themselves.

#include <QWidget>

#include "workbench/framepacer.h"

class PacedProgressBar : public QWidget {
    Q_OBJECT
public:
    explicit PacedProgressBar(QWidget* parent = nullptr);

    // QProgressBar's rules: a new range that leaves the value outside it
    // resets the value to minimum - 1 (nothing shown); a value outside the
    // range is ignored.
    int minimum() const { return minimum_; }
    int maximum() const { return maximum_; }
    int value() const { return value_; }
    void setMinimum(int minimum);
    void setMaximum(int maximum);
    void setRange(int minimum, int maximum);
    void setValue(int value);
    void reset();

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void Changed();
    int Unset() const;

    int minimum_ = 0;
    int maximum_ = 100;
    int value_ = -1;
    FramePacer pacer_{this};
};
