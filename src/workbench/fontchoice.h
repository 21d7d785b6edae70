#pragma once
// The Font page's choice of font: the fixed rule first, as at start, then the
// style's own fonts as FONB counts them; and a note under the text of what
// the chosen font could not set.

#include <QObject>
#include <QString>

class QComboBox;
class QLabel;
class QWidget;

namespace ombrevale::workbench {

class FontChoice : public QObject {
    Q_OBJECT
public:
    FontChoice(QWidget* page, QObject* parent);
    // The fonts of the style now in the window; the choice stays where it still can.
    void Refill();
    // Back to the fixed rule, as a start shows the page.
    void Reset();
    // fonts::kFixedRule or the number of a style's font, from 0.
    int Chosen() const;
    void Note(const QString& text);
    QComboBox* combo() const { return combo_; }
    QLabel* note() const { return note_; }

private:
    QComboBox* combo_;
    QLabel* note_;
};

}  // namespace ombrevale::workbench
