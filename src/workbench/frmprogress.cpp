#include "workbench/frmprogress.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QScreen>
#include <cmath>

#include "style/hooks.h"
#include "workbench/pacedlabel.h"
#include "workbench/pacedprogressbar.h"
#include "workbench/twips.h"

frmProgress::frmProgress(QWidget* parent) : QDialog(parent, Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
    setWindowTitle(QStringLiteral("Please Wait..."));
    setFixedSize(ombrevale::twips::ToPx(6360), ombrevale::twips::ToPx(840));
    setModal(false);
    pbar = new PacedProgressBar(this);
    ombrevale::twips::Place(pbar, 240, 360, 5925, 285);
    l = new PacedLabel(QStringLiteral("Loading..."), this);
    // As wide as the window allows rather than sized to each caption: a label
    // that changes its size makes the window redraw around it at every section.
    l->setGeometry(ombrevale::twips::ToPx(270), ombrevale::twips::ToPx(120), width() - ombrevale::twips::ToPx(270),
                   l->sizeHint().height());
    modGTA2::CenterForm(this);
}

void frmProgress::Reload() {
    pbar->setRange(0, 100);
    pbar->reset();
    l->setText(QStringLiteral("Loading..."));
    modGTA2::CenterForm(this);
}

namespace modGTA2 {
namespace {

QPointer<frmProgress>& Slot() {
    static QPointer<frmProgress> form;
    return form;
}

// An unloaded window kept hidden for the next job: making and mapping a new
// one cost more than a load's own drawing.
QPointer<frmProgress>& Spare() {
    static QPointer<frmProgress> spare;
    return spare;
}

// Values arrive as floats; the bar counts in whole numbers.
int Whole(double v) {
    if (!std::isfinite(v)) return 0;
    return static_cast<int>(std::clamp(std::round(v), -2147483647.0, 2147483647.0));
}

}  // namespace

frmProgress* LoadedInstance() { return Slot().data(); }

frmProgress* Instance() {
    if (!Slot()) {
        Slot() = Spare() ? Spare().data() : new frmProgress();
        Spare() = nullptr;
    }
    return Slot().data();
}

void ProgressStart(double iMin, double iMax, const std::string& sCaption) {
    frmProgress* f = Instance();
    // Max before Min; a range the bar would refuse leaves it as it was.
    if (Whole(iMax) > f->pbar->minimum()) f->pbar->setMaximum(Whole(iMax));
    if (Whole(iMin) < f->pbar->maximum()) f->pbar->setMinimum(Whole(iMin));
    f->l->setText(QString::fromStdString(sCaption));
    f->show();
}

void ProgressStep(double iValue, const std::string& sCaption) {
    frmProgress* f = Instance();
    const int v = Whole(iValue);
    if (v < f->pbar->maximum() && v != f->pbar->value()) f->pbar->setValue(v);
    // Compared as it comes: the sheet steps a thousand times with the same caption.
    const QString shown = f->l->text();
    if (QAnyStringView::compare(shown, QUtf8StringView(sCaption)) != 0) {
        f->l->setText(QString::fromStdString(sCaption));
    }
    QCoreApplication::processEvents();
}

void ProgressEnd() {
    // Unloaded: the next job starts from the designer's values.
    if (frmProgress* f = LoadedInstance()) {
        f->hide();
        f->Reload();
        Slot() = nullptr;
        Spare() = f;
    }
}

void CenterForm(QWidget* frm) {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen || !frm) return;
    const QRect s = screen->geometry();
    const double left = s.width() / 2.0 - frm->frameGeometry().width() / 2.0;
    const double top = s.height() / 2.0 - frm->frameGeometry().height() / 2.0;
    frm->move(static_cast<int>(left), static_cast<int>(top));
}

namespace {
// Boxes belong to the main window, so a window manager keeps them above it even while it is top-most.
QWidget* MessageParent() {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->inherits("frmSTY2") && w->isVisible()) return w;
    return QApplication::activeWindow();
}
}  // namespace

void InstallAsDocumentHooks() {
    DocumentHooks hooks;
    hooks.progressStart = &ProgressStart;
    hooks.progressStep = &ProgressStep;
    hooks.progressEnd = &ProgressEnd;
    hooks.msgBox = [](const std::string& sPrompt, const std::string& sTitle, MsgIcon icon) {
        QMessageBox box(MessageParent());
        box.setWindowTitle(QString::fromStdString(sTitle.empty() ? std::string("Ombrevale") : sTitle));
        box.setText(QString::fromStdString(sPrompt));
        switch (icon) {
            case MsgIcon::Critical:
                box.setIcon(QMessageBox::Critical);
                break;
            case MsgIcon::Question:
                box.setIcon(QMessageBox::Question);
                break;
            case MsgIcon::Exclamation:
                box.setIcon(QMessageBox::Warning);
                break;
            case MsgIcon::Information:
                box.setIcon(QMessageBox::Information);
                break;
            case MsgIcon::None:
                break;
        }
        box.exec();
    };
    InstallDocumentHooks(std::move(hooks));
}

}  // namespace modGTA2
