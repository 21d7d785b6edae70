#include "workbench/colourchoice.h"

#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QPixmap>
#include <QPushButton>
#include <algorithm>
#include <cmath>

namespace ombrevale::workbench {
namespace {

constexpr int kZoom = 2;

QLabel* Preview(const QImage& picture, QSize size, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setFixedSize(size);
    label->setAlignment(Qt::AlignCenter);
    label->setFrameShape(QFrame::Box);
    if (!picture.isNull()) label->setPixmap(QPixmap::fromImage(picture));
    return label;
}

}  // namespace

ColourChoice::ColourChoice(const QString& question, const ColourWay& nearest, const ColourWay& own, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(QStringLiteral("Ombrevale"));
    // Pixels stay square and sharp: no smoothing, so one pixel is 2 x 2.
    const auto zoom = [](const QImage& p) {
        return p.isNull() ? p : p.scaled(p.size() * kZoom, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    };
    nearest_ = zoom(nearest.picture);
    own_ = zoom(own.picture);
    const QSize box = (nearest_.isNull() ? own_.size() : nearest_.size()) + QSize(2, 2);

    auto* grid = new QGridLayout(this);
    auto* ask = new QLabel(question, this);
    ask->setWordWrap(true);
    grid->addWidget(ask, 0, 0, 1, 2);
    const QLocale locale;
    const auto caption = [&](const ColourWay& way, const QString& title) {
        QString text = QStringLiteral("<b>%1</b><br>%2").arg(title, way.note.toHtmlEscaped());
        // PSNR rather than a count of pixels changed: dithering changes nearly all of them, a little.
        if (!way.picture.isNull())
            text += std::isinf(way.psnr) ? QStringLiteral("<br>The picture's own colours")
                                         : QStringLiteral("<br>PSNR %1 dB against the picture (higher is closer)")
                                               .arg(locale.toString(way.psnr, 'f', 1));
        auto* label = new QLabel(text, this);
        label->setWordWrap(true);
        label->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
        label->setMinimumWidth(std::max(box.width(), 220));
        return label;
    };
    grid->addWidget(Preview(nearest_, box, this), 1, 0, Qt::AlignHCenter);
    grid->addWidget(Preview(own_, box, this), 1, 1, Qt::AlignHCenter);
    grid->addWidget(caption(nearest, QStringLiteral("Nearest colours")), 2, 0);
    ownNote_ = caption(own, QStringLiteral("A palette of its own"));
    grid->addWidget(ownNote_, 2, 1);
    nearestButton_ = new QPushButton(QStringLiteral("&Nearest colours"), this);
    ownButton_ = new QPushButton(QStringLiteral("&Own palette"), this);
    ownButton_->setEnabled(!own_.isNull());
    grid->addWidget(nearestButton_, 3, 0);
    grid->addWidget(ownButton_, 3, 1);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    grid->addWidget(cancel, 4, 1, Qt::AlignRight);
    (own_.isNull() ? nearestButton_ : ownButton_)->setDefault(true);
    connect(nearestButton_, &QPushButton::clicked, this, [this] { done(static_cast<int>(ColourAnswer::Nearest)); });
    connect(ownButton_, &QPushButton::clicked, this, [this] { done(static_cast<int>(ColourAnswer::OwnPalette)); });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

}  // namespace ombrevale::workbench
