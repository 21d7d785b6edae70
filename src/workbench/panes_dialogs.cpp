#include "workbench/panes_dialogs.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

#include "workbench/colourchoice.h"

namespace ombrevale::panesdialogs {
namespace {
Dialogs& Installed() {
    static Dialogs d;
    return d;
}
}  // namespace

void Install(Dialogs dialogs) { Installed() = std::move(dialogs); }

std::optional<QString> InputBox(QWidget* parent, const QString& sPrompt) {
    if (Installed().inputBox) return Installed().inputBox(parent, sPrompt);
    bool ok = false;
    // No title of its own: the application's name stands in the frame.
    const QString reply = QInputDialog::getText(parent, QString(), sPrompt, QLineEdit::Normal, QString(), &ok);
    if (!ok) return std::nullopt;
    return reply;
}

QString FileDialog(QWidget* parent, FileMode mode, const QString& sCaption, const QString& sFilter,
                   const QString& sFolder) {
    if (Installed().fileDialog) return Installed().fileDialog(parent, mode, sCaption, sFilter, sFolder);
    if (mode == FileMode::Folder) return QFileDialog::getExistingDirectory(parent, sCaption, sFolder);
    return mode == FileMode::Open ? QFileDialog::getOpenFileName(parent, sCaption, sFolder, sFilter)
                                  : QFileDialog::getSaveFileName(parent, sCaption, sFolder, sFilter);
}

bool Question(QWidget* parent, const QString& sPrompt) {
    if (Installed().question) return Installed().question(parent, sPrompt);
    return QMessageBox::question(parent, QStringLiteral("Ombrevale"), sPrompt) == QMessageBox::Yes;
}

int Choose(QWidget* parent, const QString& sPrompt, const QStringList& buttons) {
    if (Installed().choice) return Installed().choice(parent, sPrompt, buttons);
    QMessageBox box(QMessageBox::Question, QStringLiteral("Ombrevale"), sPrompt, QMessageBox::Cancel, parent);
    QList<QAbstractButton*> made;
    for (const QString& b : buttons) made << box.addButton(b, QMessageBox::AcceptRole);
    box.setDefaultButton(qobject_cast<QPushButton*>(made.value(0)));
    box.exec();
    return static_cast<int>(made.indexOf(box.clickedButton()));
}

workbench::ColourAnswer ChooseColours(workbench::ColourChoice& dialog) {
    if (Installed().colourChoice) return Installed().colourChoice(dialog);
    return static_cast<workbench::ColourAnswer>(dialog.exec());
}

}  // namespace ombrevale::panesdialogs
