#pragma once
// The kept edits in the window: the offer of an earlier session's edits after
// a load, their Restore and Discard, the question before an edit would take
// their place, and the badge that counts the unsaved edits on Save.

#include <QObject>
#include <string>

class QLabel;
class QWidget;

namespace ombrevale::workbench {

class KeptCopy;
class KeptOffer;
class StyleDocument;

class KeptEditsView : public QObject {
public:
    // The offer lies over sheetPage, the badge on saveButton. Every load of a
    // file offers its kept edits, and an edit asks first whether it may take their place.
    KeptEditsView(StyleDocument& doc, QWidget* sheetPage, QWidget* saveButton, QWidget* parent);
    // After a load of path: its kept edits, if any, are offered.
    void Offer(const std::string& path);
    void Restore();
    void Discard();
    // An edit while earlier kept edits are on offer would take their place on
    // disk: the user says first whether they may go. False: the edit waits.
    // They go only once an edit has been made.
    bool MayReplace();
    KeptOffer* OfferBar() const { return offer_; }
    QLabel* Badge() const { return badge_; }

private:
    void ShowUnsaved(bool unsaved, int edits);
    void Withdraw();
    StyleDocument& doc_;
    KeptCopy* kept_;
    QWidget* parent_;
    KeptOffer* offer_;
    QLabel* badge_;
};

}  // namespace ombrevale::workbench
