#pragma once
// The progress window's line of text: a plain QLabel's text and look, drawn
// at most once a frame (framepacer.h). A load changes it once a section.

#include <QString>
#include <QWidget>

#include "workbench/framepacer.h"

class PacedLabel : public QWidget {
    Q_OBJECT
public:
    explicit PacedLabel(const QString& text, QWidget* parent = nullptr);

    QString text() const { return text_; }
    void setText(const QString& text);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text_;
    FramePacer pacer_{this};
};
