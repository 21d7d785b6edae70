#pragma once
// The questions the panes ask the user: an input box, file dialogs, yes or no,
// and the colours of an imported picture. Tests put their own answers in place
// of the real dialogs.

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

class QWidget;
namespace ombrevale::workbench {
class ColourChoice;
enum class ColourAnswer : int;
}  // namespace ombrevale::workbench

namespace ombrevale::panesdialogs {

enum class FileMode { Open, Save, Folder };

struct Dialogs {
    // The reply, or nothing when the box was cancelled.
    std::function<std::optional<QString>(QWidget* parent, const QString& sPrompt)> inputBox;
    // A chosen path, or empty when the dialog was cancelled. sFilter as QFileDialog takes it;
    // sFolder is where the dialog starts.
    std::function<QString(QWidget* parent, FileMode mode, const QString& sCaption, const QString& sFilter,
                          const QString& sFolder)>
        fileDialog;
    // True for Yes.
    std::function<bool(QWidget* parent, const QString& sPrompt)> question;
    // The answer to a colour choice, made but not shown, so a test sees what it offers.
    std::function<workbench::ColourAnswer(workbench::ColourChoice& dialog)> colourChoice;
    // The button chosen among several, by its place, or -1 for Cancel.
    std::function<int(QWidget* parent, const QString& sPrompt, const QStringList& buttons)> choice;
};

// Replaces the dialogs; an empty function means the real Qt dialog.
void Install(Dialogs dialogs);
std::optional<QString> InputBox(QWidget* parent, const QString& sPrompt);
QString FileDialog(QWidget* parent, FileMode mode, const QString& sCaption, const QString& sFilter,
                   const QString& sFolder);
bool Question(QWidget* parent, const QString& sPrompt);
int Choose(QWidget* parent, const QString& sPrompt, const QStringList& buttons);
workbench::ColourAnswer ChooseColours(workbench::ColourChoice& dialog);

}  // namespace ombrevale::panesdialogs
