#pragma once
// Draws a widget at most once a frame. A change after a quiet frame is drawn
// at once; changes within a frame are drawn together when it is up. Each
// drawing of the progress window waits for the display server, and a load
// or a sheet changes it far more often than anyone can see.

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

class FramePacer {
public:
    static constexpr int kFrameMs = 16;

    explicit FramePacer(QWidget* widget) : widget_(widget) {
        frame_.setSingleShot(true);
        QObject::connect(&frame_, &QTimer::timeout, widget, [widget] { widget->update(); });
    }

    void Changed() {
        if (!widget_->isVisible()) return;
        if (!sincePaint_.isValid() || sincePaint_.elapsed() >= kFrameMs) {
            widget_->update();
        } else if (!frame_.isActive()) {
            frame_.start(static_cast<int>(kFrameMs - sincePaint_.elapsed()));
        }
    }
    // Called from the widget's paintEvent.
    void Painted() { sincePaint_.start(); }

private:
    QWidget* widget_;
    QTimer frame_;
    QElapsedTimer sincePaint_;
};
