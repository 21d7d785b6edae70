#pragma once
// The choice a picture import offers when the target's palette lacks some of
// the picture's colours: the nearest colours of that palette, or a palette of
// the target's own. Each way is shown as the target would look, at 2x.

#include <QDialog>
#include <QImage>
#include <QString>

class QPushButton;
class QLabel;

namespace ombrevale::workbench {

// The dialog's result codes: reject() is Cancel.
enum class ColourAnswer : int { Cancel = 0, Nearest = 1, OwnPalette = 2 };

struct ColourWay {
    // The target as the import would leave it; none when this way is closed.
    QImage picture;
    // How close it comes to the picture: PSNR in dB, infinity for its very colours.
    double psnr = 0;
    // Which palette the way draws in, or why it is closed.
    QString note;
};

class ColourChoice : public QDialog {
    Q_OBJECT
public:
    ColourChoice(const QString& question, const ColourWay& nearest, const ColourWay& own, QWidget* parent = nullptr);

    // The previews as shown; null for a closed way.
    QImage NearestPreview() const { return nearest_; }
    QImage OwnPreview() const { return own_; }
    QPushButton* NearestButton() const { return nearestButton_; }
    QPushButton* OwnButton() const { return ownButton_; }
    QLabel* OwnNote() const { return ownNote_; }

private:
    QImage nearest_;
    QImage own_;
    QPushButton* nearestButton_ = nullptr;
    QPushButton* ownButton_ = nullptr;
    QLabel* ownNote_ = nullptr;
};

}  // namespace ombrevale::workbench
