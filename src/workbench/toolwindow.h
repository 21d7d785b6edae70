#pragma once
// The small windows the views open (palette usage, all remaps): a list in a
// tool window of the main one, standing beside it, sized to what it holds,
// and filled anew while it shows whenever the document changes.

#include <QListWidget>
#include <QSize>

namespace ombrevale::workbench {

class StyleDocument;

class ToolListWindow : public QListWidget {
public:
    // Follows every load of doc at once, and its edits once they have settled.
    ToolListWindow(QWidget* owner, StyleDocument& doc);
    // Fills the window, then shows it beside the owner.
    void Open();
    // Fills it anew when it shows: after a load, or another choice in the window.
    void Follow();

protected:
    virtual void Fill() = 0;
    // The size the window's content wants, once filled.
    virtual QSize Wanted() const = 0;
    // Room the system's title bar takes beside the title's text.
    static constexpr int kTitleButtons = 100;
    QWidget* owner_;

private:
    bool followSoon_ = false;
};

// Sizes window to wanted (at most the screen's free area) and puts it right
// of owner, or left of it where the right has no room; top edges level. A room
// narrower than smallest is passed over: then the window stands partly over owner.
void PlaceBeside(QWidget* window, const QWidget* owner, QSize wanted, QSize smallest = QSize(160, 120));

}  // namespace ombrevale::workbench
