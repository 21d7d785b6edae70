#include "workbench/allremapswindow.h"

#include <QPixmap>
#include <QScrollBar>
#include <algorithm>

#include "workbench/toolwindow.h"

namespace ombrevale::workbench {

AllRemapsWindow::AllRemapsWindow(Source source, StyleDocument& doc, QWidget* owner)
    : ToolListWindow(owner, doc), source_(std::move(source)) {
    setViewMode(QListView::IconMode);
    setMovement(QListView::Static);
    setResizeMode(QListView::Adjust);
    setSpacing(4);
    connect(this, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) { emit RemapChosen(row(item)); });
}

QSize AllRemapsWindow::Wanted() const {
    // Room for every picture in a row up to the width of the main window, and the title.
    const QSize icon = iconSize().expandedTo(QSize(32, 32));
    const int cell = std::max(icon.width(), fontMetrics().horizontalAdvance(QStringLiteral("remap 000"))) + 16;
    const int across = std::clamp(count(), 1, std::max(1, owner_->width() / cell));
    const int rows = (std::max(count(), 1) + across - 1) / across;
    const int width = std::max(across * cell + verticalScrollBar()->sizeHint().width() + 2 * frameWidth(),
                               fontMetrics().horizontalAdvance(windowTitle()) + kTitleButtons);
    const int height = rows * (icon.height() + fontMetrics().height() + 16) + 2 * frameWidth();
    return {width, std::max(height, 120)};
}

void AllRemapsWindow::Fill() {
    clear();
    const int s = source_.sprite();
    if (s < 0) {
        setWindowTitle(QStringLiteral("All remaps: choose a car sprite"));
        return;
    }
    setWindowTitle(QStringLiteral("All remaps: %1").arg(source_.spriteCaption(s)));
    const std::vector<int> remaps = source_.remaps();
    QSize biggest(1, 1);
    for (std::size_t row = 0; row <= remaps.size(); ++row) {
        const QImage image = source_.picture(static_cast<int>(row));
        // A remap without a palette gets an empty cell rather than the car's own colours.
        QPixmap picture = image.isNull() ? QPixmap(1, 1) : QPixmap::fromImage(image);
        if (image.isNull()) picture.fill(Qt::transparent);
        const QString label = row == 0 ? QStringLiteral("own") : QStringLiteral("remap %1").arg(remaps[row - 1]);
        addItem(new QListWidgetItem(QIcon(picture), label));
        biggest = biggest.expandedTo(picture.size());
    }
    setIconSize(biggest);
}

}  // namespace ombrevale::workbench
