#pragma once
// The kept edits in the window: the offer of an earlier session's edits after
// a load, their Restore and Discard, the question before an edit would take
// their place, and the badge that counts the unsaved edits on Save.

#include <QObject>
#include <functional>
#include <string>

#include "style/clssty.h"

class QLabel;
class QWidget;

namespace ombrevale::workbench {

class KeptCopy;
class KeptOffer;
struct WholeDocument;

class KeptEditsView : public QObject {
public:
    struct Window {
        // The style the window holds, as Save writes it.
        std::function<std::string()> path;
        std::function<bool()> busy;
        // Reads file into an empty document, the one it replaces handed out as
        // previous; false leaves the window's as it was.
        std::function<bool(const std::string& file, LoadReport& report, WholeDocument& previous)> load;
        // Trades the window's document for the one given, which gets the window's; every pane shows it.
        std::function<void(WholeDocument& other)> swap;
        // Every pane shows the document just loaded.
        std::function<void()> refill;
    };
    // The offer lies over sheetPage, the badge on saveButton.
    KeptEditsView(KeptCopy* kept, Window window, QWidget* sheetPage, QWidget* saveButton, QWidget* parent);
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
    KeptCopy* kept_;
    Window window_;
    QWidget* parent_;
    KeptOffer* offer_;
    QLabel* badge_;
};

}  // namespace ombrevale::workbench
