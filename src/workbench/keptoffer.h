#pragma once
// The bar over the top of the sheet that offers the kept edits of the style
// just loaded: their description, Restore and Discard. It lies over the
// sheet rather than in the layout, so no control moves when it shows.

#include <QFrame>

class QLabel;
class QPushButton;

namespace ombrevale::workbench {

class KeptOffer : public QFrame {
    Q_OBJECT
public:
    explicit KeptOffer(QWidget* over);
    void Offer(const QString& text);
    QString Text() const;
    QPushButton* RestoreButton() const { return restore_; }
    QPushButton* DiscardButton() const { return discard_; }

signals:
    void Restore();
    void Discard();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Fit();
    QLabel* text_;
    QPushButton* restore_;
    QPushButton* discard_;
};

}  // namespace ombrevale::workbench
