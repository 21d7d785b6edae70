// The views a user asks for: their keys, their menus and their windows. None
// of them shows until asked, so the window starts as it always has; each
// view is a class of its own, reaching the window through the calls here.
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QListWidget>
#include <QMenu>
#include <QScrollBar>
#include <QTabWidget>
#include <QToolButton>

#include "pixels/paletteusage.h"
#include "style/carrecord.h"
#include "style/hooks.h"
#include "style/moddeclares.h"
#include "style/surfaces.h"
#include "workbench/allremapswindow.h"
#include "workbench/carrecordpanel.h"
#include "workbench/frmsty2.h"
#include "workbench/gotofind.h"
#include "workbench/mapsheet.h"
#include "workbench/paletteusagewindow.h"
#include "workbench/picturebox.h"
#include "workbench/sheetgeometry.h"
#include "workbench/spritename.h"
#include "workbench/surfaceoverlay.h"
#include "workbench/zoomlens.h"

using namespace ombrevale::workbench;

namespace {

enum Page { kTiles, kSprites, kPalettes, kFont };

// A command of a view, its key working while its page shows.
QAction* ViewAction(QWidget* window, const QString& text, const QKeySequence& key, int page, QTabWidget* pages,
                    std::function<void()> run) {
    auto* a = new QAction(text, window);
    a->setShortcut(key);
    a->setShortcutContext(Qt::WindowShortcut);
    a->setToolTip(text + QStringLiteral(" (") + key.toString(QKeySequence::NativeText) + QLatin1Char(')'));
    a->setProperty("page", page);
    a->setEnabled(pages->currentIndex() == page);
    // On another page the key goes on to the control that has the focus.
    QObject::connect(pages, &QTabWidget::currentChanged, a, [a, page](int now) { a->setEnabled(now == page); });
    QObject::connect(a, &QAction::triggered, window, std::move(run));
    window->addAction(a);
    return a;
}

void ShowMenu(QWidget* on, const QPoint& at, const QList<QAction*>& actions) {
    QMenu menu;
    menu.addActions(actions);
    menu.exec(on->mapToGlobal(at));
}

}  // namespace

void frmSTY2::WireViews() {
    picSpriteZoom = new ZoomLens(picSprite);
    picFontZoom = new ZoomLens(picFont);
    // The car record's view reaches the window through these three calls.
    CarRecordHost host;
    host.record = [this] {
        const int s = lstSprites->currentRow();
        return s >= 0 && s < modDeclares::STYSpriteBase[0] ? ombrevale::paletteusage::CarRecordOfSprite(s) : -1;
    };
    host.sprite = [this] {
        const int s = lstSprites->currentRow();
        return QSize(Sty().GetSpriteWidth(s), Sty().GetSpriteHeight(s));
    };
    host.edit = [this](int r, const modDeclares::CarRecord& edited) {
        const QString name = ombrevale::workbench::CarName(modDeclares::STYCarInfo, static_cast<std::size_t>(r));
        return RecordEdit(ombrevale::editparts::Kind::Car, r, QStringLiteral("car record of %1").arg(name), [&] {
            ombrevale::cars::Replace(static_cast<std::size_t>(r), edited);
            return true;
        });
    };
    carPanel_ = new CarRecordPanel(std::move(host), picSprite, picSpriteZoom, lstInfo, SprTab->widget(0), this);
    surfaces_ = new SurfaceView(picMain, picCont, vScroll);

    const auto caption = [this](int s) { return lstSprites->item(s)->text(); };
    usage_ = new PaletteUsageWindow(
        {[this] { return lstPalettes->currentRow(); }, [this] { return static_cast<int>(Sty().GetNumOfTiles()); },
         [this] { return lstSprites->count(); }, caption},
        this);
    connect(usage_, &PaletteUsageWindow::TileChosen, this, [this](int t) { GoToTile(t); });
    connect(usage_, &PaletteUsageWindow::SpriteChosen, this, [this](int s, int position) {
        MainTab->setCurrentIndex(kSprites);
        lstSprites->setCurrentRow(s);
        lstSprites->scrollToItem(lstSprites->item(s));
        // Row 0 of the remaps is the sprite's own palette.
        if (position >= 0) lstRemaps->setCurrentRow(position + 1);
    });

    AllRemapsWindow::Source remaps;
    remaps.sprite = [this] { return lstRemaps->isEnabled() && lstRemaps->count() > 0 ? lstSprites->currentRow() : -1; };
    remaps.spriteCaption = caption;
    remaps.remaps = [this] {
        std::vector<int> numbers;
        for (int row = 1; row < lstRemaps->count(); ++row) numbers.push_back(lstRemaps->item(row)->text().toInt());
        return numbers;
    };
    auto* box = new PictureBox(this);
    box->hide();
    remaps.picture = [this, box](int row) {
        const int s = lstSprites->currentRow(), w = std::max(1, Sty().GetSpriteWidth(s)),
                  h = std::max(1, Sty().GetSpriteHeight(s));
        const auto remap = row == 0 ? std::optional<std::int16_t>(-1) : RemapPalette(row);
        std::int16_t pal = remap.value_or(-1);
        QImage empty(w, h, QImage::Format_ARGB32);
        empty.fill(Qt::transparent);
        box->resize(w, h);
        if (!remap || !Sty().RenderSprite(s, *box, pal)) return empty;
        return box->image().copy(0, 0, w, h);
    };
    allRemaps_ = new AllRemapsWindow(std::move(remaps), this);
    // Row i of the strip is row i of lstRemaps: a click there is a click here.
    connect(allRemaps_, &AllRemapsWindow::RemapChosen, this, [this](int row) {
        MainTab->setCurrentIndex(kSprites);
        lstRemaps->setCurrentRow(row);
    });

    goToFind_ = new GoToFind({[this] { return static_cast<int>(Sty().GetNumOfTiles()); },
                              [this] { return lstSprites->count(); }, [this](int t) { GoToTile(t); },
                              [this](int s) {
                                  MainTab->setCurrentIndex(kSprites);
                                  lstSprites->setCurrentRow(s);
                                  lstSprites->scrollToItem(lstSprites->item(s));
                              }},
                             this);
    WireViewKeys();
    WireMap();
}

void frmSTY2::WireMap() {
    MapSheet::Host host;
    host.style = [this]() -> const clsSTY& { return Sty(); };
    host.goToTile = [this](int t) { GoToTile(t); };
    host.cols = [this] { return Cols(); };
    host.surfaceTypes = [this] {
        return ombrevale::surfaces::ReadSurfaces(Sty().STYSurfaceSpec, Sty().GetNumOfTiles()).type;
    };
    host.tell = [](const QString& text) { MsgBox(text.toStdString(), "Ombrevale", MsgIcon::Exclamation); };
    host.surfaceTip = [this](int x, int y) { return surfaces_->Shown() ? surfaces_->CellTip(x, y) : QString(); };
    mapSheet_ = new MapSheet(std::move(host), this, picMain);
    // The tool bar's Open holds Open map in its menu, as Import holds Import folder.
    if (auto* button = qobject_cast<QToolButton*>(actions_.open->associatedObjects().value(0))) {
        auto* menu = new QMenu(button);
        menu->addAction(QStringLiteral("Open style..."), actions_.open, &QAction::trigger);
        menu->addAction(mapSheet_->OpenAction());
        button->setMenu(menu);
        button->setPopupMode(QToolButton::DelayedPopup);
    }
}

void frmSTY2::WireViewKeys() {
    const auto ctrl = [](Qt::Key key) { return QKeySequence(Qt::CTRL | key); };
    QAction* goTo = ViewAction(this, QStringLiteral("Go to tile..."), ctrl(Qt::Key_G), kTiles, MainTab,
                               [this] { goToFind_->AskTile(); });
    QAction* tint = ViewAction(this, QStringLiteral("Tint surface types"), ctrl(Qt::Key_T), kTiles, MainTab,
                               [this] { ShowSurfaces(!surfaces_->Shown()); });
    QAction* find = ViewAction(this, QStringLiteral("Find sprite..."), ctrl(Qt::Key_F), kSprites, MainTab,
                               [this] { goToFind_->AskSprite(); });
    QAction* all = ViewAction(this, QStringLiteral("All remaps..."), ctrl(Qt::Key_R), kSprites, MainTab,
                              [this] { allRemaps_->Open(); });
    QAction* car = ViewAction(this, QStringLiteral("Show car record"), ctrl(Qt::Key_K), kSprites, MainTab,
                              [this] { carPanel_->ToggleOverlay(); });
    QAction* editCar = ViewAction(this, QStringLiteral("Edit car record..."), ctrl(Qt::Key_E), kSprites, MainTab,
                                  [this] { carPanel_->Edit(); });
    QAction* usage = ViewAction(this, QStringLiteral("Palette usage..."), ctrl(Qt::Key_U), kPalettes, MainTab,
                                [this] { usage_->Open(); });
    tint->setCheckable(true);
    sheetViews_ = {goTo, tint};
    auto* keys = new QAction(QStringLiteral("Keys"), this);
    keys->setShortcuts(QKeySequence::HelpContents);
    keys->setShortcutContext(Qt::WindowShortcut);
    connect(keys, &QAction::triggered, this,
            [this] { MsgBox(KeysText().toStdString(), "Ombrevale keys", MsgIcon::Information); });
    addAction(keys);
    for (auto [list, actions] :
         {std::pair{lstSprites, QList<QAction*>{find, all, car, editCar}}, std::pair{lstRemaps, QList<QAction*>{all}},
          std::pair{lstPalettes, QList<QAction*>{usage}}}) {
        list->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(list, &QWidget::customContextMenuRequested, this,
                [list, actions](const QPoint& at) { ShowMenu(list->viewport(), at, actions); });
    }
}

void frmSTY2::SheetMenu(const QPoint& at) {
    const auto t = ombrevale::sheet::TileAt(at.x(), at.y(), Cols());
    if (!t) return;
    // The menu is about the tile under the pointer: it is chosen as a click chooses it.
    if (sSelKind != "t" || picMain->Tag.toInt() != *t) picMain_MouseUp(Qt::RightButton, 0, at.x(), at.y());
    QMenu menu;
    if (sSelKind == "t" && picMain->Tag.toInt() == *t) {
        menu.addAction(QStringLiteral("Import picture into tile %1...").arg(*t), this, [this] { ImportPicture(); });
        menu.addAction(QStringLiteral("Export tile %1...").arg(*t), this,
                       [this] { tlbMain_ButtonClick(QStringLiteral("export")); });
        menu.addSeparator();
    }
    menu.addActions(sheetViews_);
    menu.addSeparator();
    menu.addActions(mapSheet_->SheetActions(sSelKind == "t" ? picMain->Tag.toInt() : -1));
    menu.exec(picMain->mapToGlobal(at));
}

void frmSTY2::ShowSurfaces(bool on) {
    sheetViews_[1]->setChecked(on);
    if (!on) return surfaces_->Hide();
    const auto map = ombrevale::surfaces::ReadSurfaces(Sty().STYSurfaceSpec, Sty().GetNumOfTiles());
    surfaces_->Show(map.type, Cols());
    // Every render shows the tint again; the damage is the file's, told once a load.
    if (!map.problem.empty() && FirstTelling(map.problem)) MsgBox(map.problem, "Ombrevale", MsgIcon::Exclamation);
}

void frmSTY2::FollowDocument() {
    usage_->Follow();
    allRemaps_->Follow();
    if (mapSheet_) mapSheet_->StyleLoaded();
}

QString frmSTY2::KeysText() const {
    QString rows;
    const auto row = [&](const QString& keys, const QString& what) {
        rows += QStringLiteral("<tr><td>%1</td><td>%2</td></tr>").arg(keys.toHtmlEscaped(), what.toHtmlEscaped());
    };
    const auto add = [&](const QAction* a, const QString& what) {
        if (!a->shortcuts().isEmpty()) row(QKeySequence::listToString(a->shortcuts(), QKeySequence::NativeText), what);
    };
    const ToolbarActions& t = actions_;
    // Undo and Redo are named after the step they take: here by what they are.
    for (const auto& [a, what] :
         {std::pair{t.open, "Open"}, std::pair{t.save, "Save"}, std::pair{t.saveAs, "Save As"},
          std::pair{t.undo, "Undo"}, std::pair{t.redo, "Redo"}, std::pair{t.importFolder, "Import folder..."}})
        add(a, QString::fromLatin1(what));
    static const char* const kPages[] = {"Tiles", "Sprites", "Palettes", "Font"};
    for (const QAction* a : actions()) {
        const QVariant page = a->property("page");
        if (page.isValid())
            add(a, QStringLiteral("%1 (%2 page)").arg(a->text(), QString::fromLatin1(kPages[page.toInt()])));
    }
    row(QStringLiteral("Up, Down"), QStringLiteral("scroll the tile sheet a row"));
    row(QStringLiteral("PgUp, PgDown"), QStringLiteral("scroll the tile sheet a page"));
    row(QStringLiteral("Ctrl+wheel"), QStringLiteral("zoom the sprite or the font text"));
    add(mapSheet_->OpenAction(), QStringLiteral("Open map..."));
    add(mapSheet_->UsageAction(), QStringLiteral("grey the tiles the map does not use (Tiles page)"));
    row(QStringLiteral("Map window"), QStringLiteral("L light, Z zones, A arrows, G grid, T surface types; "
                                                     "+ and - or Ctrl+wheel zoom, Ctrl+0 fit; PgUp, PgDown the "
                                                     "level cut; F3, Shift+F3 next and previous found; middle "
                                                     "drag scrolls"));
    row(QStringLiteral("Esc"), QStringLiteral("close the window"));
    return QStringLiteral("<table cellspacing=\"0\" cellpadding=\"2\">%1</table>").arg(rows);
}
