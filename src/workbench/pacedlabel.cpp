#include "workbench/pacedlabel.h"

#include <QPainter>
#include <QStyle>

namespace {
// What a QLabel of plain text uses to measure and to draw.
constexpr int kFlags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextExpandTabs;
}  // namespace

PacedLabel::PacedLabel(const QString& text, QWidget* parent) : QWidget(parent), text_(text) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

void PacedLabel::setText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    updateGeometry();
    pacer_.Changed();
}

QSize PacedLabel::sizeHint() const { return fontMetrics().boundingRect(QRect(0, 0, 2000, 2000), kFlags, text_).size(); }

void PacedLabel::paintEvent(QPaintEvent*) {
    pacer_.Painted();
    QPainter p(this);
    const auto align = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter);
    style()->drawItemText(&p, contentsRect(), static_cast<int>(align.toInt()) | Qt::TextExpandTabs, palette(),
                          isEnabled(), text_, foregroundRole());
}
