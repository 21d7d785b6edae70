#include "workbench/keptoffer.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>

namespace ombrevale::workbench {

KeptOffer::KeptOffer(QWidget* over) : QFrame(over) {
    setObjectName(QStringLiteral("keptOffer"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    QPalette p = palette();
    p.setColor(QPalette::Window, QColor(255, 244, 200));
    p.setColor(QPalette::WindowText, Qt::black);
    setPalette(p);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(6, 3, 6, 3);
    text_ = new QLabel(this);
    text_->setWordWrap(true);
    restore_ = new QPushButton(QStringLiteral("Restore"), this);
    discard_ = new QPushButton(QStringLiteral("Discard"), this);
    row->addWidget(text_, 1);
    row->addWidget(restore_);
    row->addWidget(discard_);
    connect(restore_, &QPushButton::clicked, this, &KeptOffer::Restore);
    connect(discard_, &QPushButton::clicked, this, &KeptOffer::Discard);
    over->installEventFilter(this);
    hide();
}

void KeptOffer::Offer(const QString& text) {
    text_->setText(text);
    Fit();
    show();
    raise();
}

QString KeptOffer::Text() const { return text_->text(); }

bool KeptOffer::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Resize) Fit();
    return false;
}

void KeptOffer::Fit() {
    // The width of the sheet beside its scroll bar, the height its text needs.
    const auto* bar = parentWidget()->findChild<QScrollBar*>(QString(), Qt::FindDirectChildrenOnly);
    const int width = parentWidget()->width() - (bar ? bar->width() : 0);
    resize(width, heightForWidth(width) > 0 ? heightForWidth(width) : sizeHint().height());
    move(0, 0);
}

}  // namespace ombrevale::workbench
