#pragma once
// Go to a tile of the sheet, find a sprite of the list: each asks for what
// to look for and answers an answer that leads nowhere with why.

#include <QObject>
#include <functional>
#include <optional>
#include <string>

class QWidget;

namespace ombrevale::workbench {

class GoToFind : public QObject {
public:
    struct Target {
        std::function<int()> tiles;
        std::function<int()> sprites;
        // Brings tile t into view and selects it, as a click on its cell does.
        std::function<void(int)> goToTile;
        std::function<void(int)> chooseSprite;
    };
    GoToFind(Target target, QWidget* parent);
    void AskTile();
    void AskSprite();
    // Why tile t of a style of `tiles` tiles cannot be gone to; nothing when it can.
    static std::optional<std::string> WhyNotTile(long t, int tiles);

private:
    Target target_;
    QWidget* parent_;
};

}  // namespace ombrevale::workbench
