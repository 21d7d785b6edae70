#include "workbench/addedviews.h"

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
#include "workbench/holdmenu.h"
#include "workbench/keptview.h"
#include "workbench/mapsheet.h"
#include "workbench/paletteusagewindow.h"
#include "workbench/picturebox.h"
#include "workbench/sheetgeometry.h"
#include "workbench/spritename.h"
#include "workbench/styledocument.h"
#include "workbench/surfaceoverlay.h"
#include "workbench/zoomlens.h"

namespace ombrevale::workbench {

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

AddedViews::AddedViews(frmSTY2& form, StyleDocument& doc) : QObject(&form), form_(form), doc_(doc) {}

void AddedViews::Build() {
    frmSTY2& f = form_;
    spriteZoom = new ZoomLens(f.picSprite);
    fontZoom = new ZoomLens(f.picFont);
    // The car record's view reaches the window through these three calls.
    CarRecordHost host;
    host.record = [&f] {
        const int s = f.lstSprites->currentRow();
        return s >= 0 && s < modDeclares::STYSpriteBase[0] ? paletteusage::CarRecordOfSprite(s) : -1;
    };
    host.sprite = [&f, this] {
        const int s = f.lstSprites->currentRow();
        return QSize(doc_.Sty().GetSpriteWidth(s), doc_.Sty().GetSpriteHeight(s));
    };
    host.edit = [this](int r, const modDeclares::CarRecord& edited) {
        const QString name = CarName(modDeclares::STYCarInfo, static_cast<std::size_t>(r));
        return doc_.Record({{editparts::Kind::Car, r}}, QStringLiteral("car record of %1").arg(name), [&] {
            cars::Replace(static_cast<std::size_t>(r), edited);
            return true;
        });
    };
    car = new CarRecordPanel(std::move(host), f.picSprite, spriteZoom, f.lstInfo, f.SprTab->widget(0), &f);
    surfaces = new SurfaceView(f.picMain, f.picCont, f.vScroll);
    BuildLists();
    goToFind = new GoToFind({[this] { return static_cast<int>(doc_.Sty().GetNumOfTiles()); },
                             [&f] { return f.lstSprites->count(); }, [&f](int t) { f.GoToTile(t); },
                             [&f](int s) {
                                 f.MainTab->setCurrentIndex(kSprites);
                                 f.lstSprites->setCurrentRow(s);
                                 f.lstSprites->scrollToItem(f.lstSprites->item(s));
                             }},
                            &f);
    BuildKeys();
    BuildMap();
    BuildKept();
    // The menus of the sheet and of the sprite picture offer the same as the tool bar.
    f.picMain->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(f.picMain, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) { SheetMenu(at); });
    auto* importSprite = new QAction(QStringLiteral("Import picture..."), this);
    auto* exportSprite = new QAction(QStringLiteral("Export picture..."), this);
    connect(importSprite, &QAction::triggered, this, [&f] { f.tlbMain_ButtonClick(QStringLiteral("import")); });
    connect(exportSprite, &QAction::triggered, this, [&f] { f.tlbMain_ButtonClick(QStringLiteral("export")); });
    spriteZoom->SetMoreActions(QList<QAction*>{importSprite, exportSprite} + car->Actions());
}

void AddedViews::BuildLists() {
    frmSTY2& f = form_;
    const auto caption = [&f](int s) { return f.lstSprites->item(s)->text(); };
    usage = new PaletteUsageWindow(
        {[&f] { return f.lstPalettes->currentRow(); }, [this] { return static_cast<int>(doc_.Sty().GetNumOfTiles()); },
         [&f] { return f.lstSprites->count(); }, caption},
        doc_, &f);
    connect(usage, &PaletteUsageWindow::TileChosen, this, [&f](int t) { f.GoToTile(t); });
    connect(usage, &PaletteUsageWindow::SpriteChosen, this, [&f](int s, int position) {
        f.MainTab->setCurrentIndex(kSprites);
        f.lstSprites->setCurrentRow(s);
        f.lstSprites->scrollToItem(f.lstSprites->item(s));
        // Row 0 of the remaps is the sprite's own palette.
        if (position >= 0) f.lstRemaps->setCurrentRow(position + 1);
    });

    AllRemapsWindow::Source remaps;
    remaps.sprite = [&f] {
        return f.lstRemaps->isEnabled() && f.lstRemaps->count() > 0 ? f.lstSprites->currentRow() : -1;
    };
    remaps.spriteCaption = caption;
    remaps.remaps = [&f] {
        std::vector<int> numbers;
        for (int row = 1; row < f.lstRemaps->count(); ++row) numbers.push_back(f.lstRemaps->item(row)->text().toInt());
        return numbers;
    };
    auto* box = new PictureBox(&f);
    box->hide();
    remaps.picture = [this, &f, box](int row) {
        const int s = f.lstSprites->currentRow(), w = std::max(1, doc_.Sty().GetSpriteWidth(s)),
                  h = std::max(1, doc_.Sty().GetSpriteHeight(s));
        const auto remap = row == 0 ? std::optional<std::int16_t>(-1) : f.RemapPalette(row);
        std::int16_t pal = remap.value_or(-1);
        QImage empty(w, h, QImage::Format_ARGB32);
        empty.fill(Qt::transparent);
        box->resize(w, h);
        if (!remap || !doc_.Sty().RenderSprite(s, *box, pal)) return empty;
        return box->image().copy(0, 0, w, h);
    };
    allRemaps = new AllRemapsWindow(std::move(remaps), doc_, &f);
    // Row i of the strip is row i of lstRemaps: a click there is a click here.
    connect(allRemaps, &AllRemapsWindow::RemapChosen, this, [&f](int row) {
        f.MainTab->setCurrentIndex(kSprites);
        f.lstRemaps->setCurrentRow(row);
    });
}

void AddedViews::BuildMap() {
    frmSTY2& f = form_;
    MapSheet::Host host;
    host.goToTile = [&f](int t) { f.GoToTile(t); };
    host.cols = [&f] { return f.Cols(); };
    host.surfaceTypes = [this] {
        return ombrevale::surfaces::ReadSurfaces(doc_.Sty().STYSurfaceSpec, doc_.Sty().GetNumOfTiles()).type;
    };
    host.tell = [](const QString& text) { MsgBox(text.toStdString(), "Ombrevale", MsgIcon::Exclamation); };
    host.surfaceTip = [this](int x, int y) { return surfaces->Shown() ? surfaces->CellTip(x, y) : QString(); };
    map = new MapSheet(std::move(host), doc_, &f, f.picMain);
    // The tool bar's Open holds Open map in its menu, as Import holds Import folder.
    if (auto* button = qobject_cast<QToolButton*>(f.Actions().open->associatedObjects().value(0))) {
        auto* menu = new QMenu(button);
        menu->addAction(QStringLiteral("Open style..."), f.Actions().open, &QAction::trigger);
        menu->addAction(map->OpenAction());
        MenuOnHold(button, menu);
        f.Actions().open->setToolTip(QStringLiteral("%1; hold for Open map, %2)")
                                         .arg(f.Actions().open->toolTip().chopped(1),
                                              map->OpenAction()->shortcut().toString(QKeySequence::NativeText)));
    }
}

void AddedViews::BuildKept() {
    frmSTY2& f = form_;
    kept =
        new KeptEditsView(doc_, f.picCont, qobject_cast<QWidget*>(f.Actions().save->associatedObjects().value(0)), &f);
}

void AddedViews::BuildKeys() {
    frmSTY2& f = form_;
    const auto ctrl = [](Qt::Key key) { return QKeySequence(Qt::CTRL | key); };
    QAction* goTo = ViewAction(&f, QStringLiteral("Go to tile..."), ctrl(Qt::Key_G), kTiles, f.MainTab,
                               [this] { goToFind->AskTile(); });
    QAction* tint = ViewAction(&f, QStringLiteral("Tint surface types"), ctrl(Qt::Key_T), kTiles, f.MainTab,
                               [this] { ShowSurfaces(!surfaces->Shown()); });
    QAction* find = ViewAction(&f, QStringLiteral("Find sprite..."), ctrl(Qt::Key_F), kSprites, f.MainTab,
                               [this] { goToFind->AskSprite(); });
    QAction* all = ViewAction(&f, QStringLiteral("All remaps..."), ctrl(Qt::Key_R), kSprites, f.MainTab,
                              [this] { allRemaps->Open(); });
    QAction* showCar = ViewAction(&f, QStringLiteral("Show car record"), ctrl(Qt::Key_K), kSprites, f.MainTab,
                                  [this] { car->ToggleOverlay(); });
    QAction* editCar = ViewAction(&f, QStringLiteral("Edit car record..."), ctrl(Qt::Key_E), kSprites, f.MainTab,
                                  [this] { car->Edit(); });
    QAction* usageKey = ViewAction(&f, QStringLiteral("Palette usage..."), ctrl(Qt::Key_U), kPalettes, f.MainTab,
                                   [this] { usage->Open(); });
    tint->setCheckable(true);
    sheetViews_ = {goTo, tint};
    auto* keys = new QAction(QStringLiteral("Keys"), &f);
    keys->setShortcuts(QKeySequence::HelpContents);
    keys->setShortcutContext(Qt::WindowShortcut);
    connect(keys, &QAction::triggered, this,
            [this] { MsgBox(KeysText().toStdString(), "Ombrevale keys", MsgIcon::Information); });
    f.addAction(keys);
    for (auto [list, actions] :
         {std::pair{f.lstSprites, QList<QAction*>{find, all, showCar, editCar}},
          std::pair{f.lstRemaps, QList<QAction*>{all}}, std::pair{f.lstPalettes, QList<QAction*>{usageKey}}}) {
        list->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(list, &QWidget::customContextMenuRequested, this,
                [list, actions](const QPoint& at) { ShowMenu(list->viewport(), at, actions); });
    }
}

void AddedViews::SheetMenu(const QPoint& at) {
    frmSTY2& f = form_;
    const auto t = sheet::TileAt(at.x(), at.y(), f.Cols());
    if (!t) return;
    // The menu is about the tile under the pointer: it is chosen as a click chooses it.
    if (f.sSelKind != "t" || f.picMain->Tag.toInt() != *t) f.picMain_MouseUp(Qt::RightButton, 0, at.x(), at.y());
    QMenu menu;
    if (f.sSelKind == "t" && f.picMain->Tag.toInt() == *t) {
        menu.addAction(QStringLiteral("Import picture into tile %1...").arg(*t), this, [&f] { f.ImportPicture(); });
        menu.addAction(QStringLiteral("Export tile %1...").arg(*t), this,
                       [&f] { f.tlbMain_ButtonClick(QStringLiteral("export")); });
        menu.addSeparator();
    }
    menu.addActions(sheetViews_);
    menu.addSeparator();
    menu.addActions(map->SheetActions(f.sSelKind == "t" ? f.picMain->Tag.toInt() : -1));
    menu.exec(f.picMain->mapToGlobal(at));
}

void AddedViews::ShowSurfaces(bool on) {
    sheetViews_[1]->setChecked(on);
    if (!on) return surfaces->Hide();
    const auto types = ombrevale::surfaces::ReadSurfaces(doc_.Sty().STYSurfaceSpec, doc_.Sty().GetNumOfTiles());
    surfaces->Show(types.type, form_.Cols());
    // Every render shows the tint again; the damage is the file's, told once a load.
    if (!types.problem.empty() && form_.FirstTelling(types.problem))
        MsgBox(types.problem, "Ombrevale", MsgIcon::Exclamation);
}

QString AddedViews::KeysText() const {
    QString rows;
    const auto row = [&](const QString& keys, const QString& what) {
        rows += QStringLiteral("<tr><td>%1</td><td>%2</td></tr>").arg(keys.toHtmlEscaped(), what.toHtmlEscaped());
    };
    const auto add = [&](const QAction* a, const QString& what) {
        if (!a->shortcuts().isEmpty()) row(QKeySequence::listToString(a->shortcuts(), QKeySequence::NativeText), what);
    };
    const ToolbarActions& t = form_.Actions();
    // Undo and Redo are named after the step they take: here by what they are.
    for (const auto& [a, what] :
         {std::pair{t.open, "Open"}, std::pair{t.save, "Save"}, std::pair{t.saveAs, "Save As"},
          std::pair{t.undo, "Undo"}, std::pair{t.redo, "Redo"}, std::pair{t.importFolder, "Import folder..."}})
        add(a, QString::fromLatin1(what));
    static const char* const kPages[] = {"Tiles", "Sprites", "Palettes", "Font"};
    for (const QAction* a : form_.actions()) {
        const QVariant page = a->property("page");
        if (page.isValid())
            add(a, QStringLiteral("%1 (%2 page)").arg(a->text(), QString::fromLatin1(kPages[page.toInt()])));
    }
    row(QStringLiteral("Up, Down"), QStringLiteral("scroll the tile sheet a row"));
    row(QStringLiteral("PgUp, PgDown"), QStringLiteral("scroll the tile sheet a page"));
    row(QStringLiteral("Ctrl+wheel"), QStringLiteral("zoom the sprite or the font text"));
    add(map->OpenAction(), QStringLiteral("Open map..."));
    add(map->UsageAction(), QStringLiteral("grey the tiles the map does not use (Tiles page)"));
    row(QStringLiteral("Map window"), QStringLiteral("L light, Z zones, A arrows, G grid, T surface types; "
                                                     "+ and - or Ctrl+wheel zoom, Ctrl+0 fit; PgUp, PgDown the "
                                                     "level cut; F3, Shift+F3 next and previous found; middle "
                                                     "drag scrolls"));
    row(QStringLiteral("Esc"), QStringLiteral("close the window"));
    return QStringLiteral("<table cellspacing=\"0\" cellpadding=\"2\">%1</table>").arg(rows);
}

}  // namespace ombrevale::workbench
