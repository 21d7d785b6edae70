// The tool bar: transparency, copy and paste, the file commands open, save,
// save as, export and import, and undo and redo.
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QImage>
#include <QListWidget>
#include <QPixmap>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QToolButton>
#include <QToolTip>
#include <QUndoStack>
#include <algorithm>

#include "style/hooks.h"
#include "style/moddeclares.h"
#include "style/palettebases.h"
#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"
#include "workbench/palettename.h"
#include "workbench/panes_dialogs.h"
#include "workbench/panes_events.h"
#include "workbench/picturebox.h"
#include "workbench/styleedits.h"
#include "workbench/toolbarimages.h"

using ombrevale::panesdialogs::FileDialog;
using ombrevale::panesdialogs::FileMode;

namespace {

const QString kStyleFilter = QStringLiteral("Style files (*.sty);;All files (*)");

void Tell(const std::string& text) { MsgBox(text, "Ombrevale", MsgIcon::Exclamation); }

// A note by the Save button that goes by itself: nothing to dismiss.
void ShowSaved(QWidget* save, const QString& path) {
    // Above the button: the tool bar is the window's bottom row.
    QToolTip::showText(save->mapToGlobal(QPoint(0, -2 * save->height())),
                       QStringLiteral("Saved %1").arg(QFileInfo(path).fileName()), save, QRect(), 5000);
}

}  // namespace

void frmSTY2::BuildToolbar() {
    // The bar sits in the row of the page strip, left of "&Refresh", so the pages keep all their room.
    // A row of tool buttons rather than a QToolBar: nothing here needs its
    // overflow menu, whose arrow icon makes Qt load every image plug-in.
    tlbMain = new QWidget(MainTab);
    auto* row = new QHBoxLayout(tlbMain);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    const auto make = [this](const char* key, const char* caption, const char* image) {
        auto* a = new QAction(QString::fromLatin1(caption), tlbMain);
        a->setIcon(QIcon(imgToolBar::Picture(QString::fromLatin1(image))));
        a->setToolTip(a->text());
        const QString k = QString::fromLatin1(key);
        connect(a, &QAction::triggered, this, [this, k] { tlbMain_ButtonClick(k); });
        return a;
    };
    ombrevale::workbench::ToolbarActions& a = actions_;
    a.open = make("open", "Open", "open");
    a.save = make("save", "Save", "save");
    a.saveAs = make("saveas", "Save As", "save");
    a.trans = make("trans", "Transparent", "trans");
    a.exportPicture = make("export", "Export", "export");
    a.import = make("import", "Import", "import");
    a.copy = make("copy", "Copy", "copy");
    a.paste = make("paste", "Paste", "paste");
    // Undo and Redo are the history's own: enabled and named as it stands.
    a.undo = doc_->Edits()->UndoAction();
    a.redo = doc_->Edits()->RedoAction();
    a.undo->setIcon(QIcon(imgToolBar::Picture(QStringLiteral("undo"))));
    a.redo->setIcon(QIcon(imgToolBar::Picture(QStringLiteral("redo"))));
    // The platform's own keys for the file commands, named in their tips.
    for (const auto& [action, standard] : {std::pair{a.open, QKeySequence::Open}, std::pair{a.save, QKeySequence::Save},
                                           std::pair{a.saveAs, QKeySequence::SaveAs}}) {
        action->setShortcuts(standard);
        // Some desktops bind no key to Save As; the usual one then.
        if (action->shortcut().isEmpty() && standard == QKeySequence::SaveAs)
            action->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
        action->setShortcutContext(Qt::WindowShortcut);
        action->setToolTip(action->text() + QStringLiteral(" (") +
                           action->shortcut().toString(QKeySequence::NativeText) + QLatin1Char(')'));
    }
    for (QAction* action :
         {a.open, a.save, a.saveAs, a.trans, a.exportPicture, a.import, a.copy, a.paste, a.undo, a.redo}) {
        auto* button = new QToolButton(tlbMain);
        button->setDefaultAction(action);
        button->setAutoRaise(true);
        button->setIconSize(QSize(imgToolBar::kSide, imgToolBar::kSide));
        button->setToolButtonStyle(Qt::ToolButtonIconOnly);
        row->addWidget(button);
    }
    a.trans->setCheckable(true);
    a.trans->setChecked(true);  // DrawTransparent is set at start
    a.paste->setEnabled(false);
    tlbMain->adjustSize();
    const int natural = tlbMain->findChild<QToolButton*>()->sizeHint().width();
    const auto place = [this, natural] {
        // Never over the page tabs, nor over Refresh: with wider fonts the tabs
        // grow, and the buttons narrow towards their pictures to make room.
        const QTabBar* bar = MainTab->tabBar();
        const int tabsEnd =
            bar->count() == 0 ? 0 : bar->mapTo(MainTab, bar->tabRect(bar->count() - 1).topRight()).x() + 4;
        const auto buttons = tlbMain->findChildren<QToolButton*>();
        const int room = cmdGen->x() - 6 - tabsEnd;
        const int each = std::clamp(room / static_cast<int>(buttons.size()), imgToolBar::kSide + 2, natural);
        for (QToolButton* b : buttons) b->setFixedWidth(each);
        tlbMain->adjustSize();
        const int left = std::max(cmdGen->x() - tlbMain->width() - 6, tabsEnd);
        tlbMain->move(left, cmdGen->y() + (cmdGen->height() - tlbMain->height()) / 2);
    };
    place();
    new PanesEventTap(cmdGen, QEvent::Move, [place](QEvent*) { place(); });
    new PanesEventTap(MainTab->tabBar(), QEvent::Resize, [place](QEvent*) { place(); });
    tlbMain->show();
    connect(doc_, &ombrevale::workbench::StyleDocument::Saved, this, [this](const QString& path) {
        auto* save = qobject_cast<QWidget*>(actions_.save->associatedObjects().value(0));
        ShowSaved(save ? save : tlbMain, path);
    });
}

void frmSTY2::tlbMain_ButtonClick(const QString& Key) {
    // Every button changes or writes the document, or starts a job: none runs inside a running job.
    if (doc_->Busy()) return;
    if (Key == QLatin1String("trans")) {
        const bool pressed = actions_.trans->isChecked();
        Sty().DrawTransparent(pressed);
        if (sSelKind == "s")
            ShowSprite();
        else if (sSelKind == "t")
            RenderSheet();
    } else if (Key == QLatin1String("copy")) {
        bool drawn = false;
        if (sSelKind == "t") {
            picTemp->resize(64, 64);
            drawn = Sty().RenderTile(iSelNum, *picTemp);
        } else if (sSelKind == "s") {
            picTemp->resize(Sty().GetSpriteWidth(iSelNum), Sty().GetSpriteHeight(iSelNum));
            std::int16_t own = -1;
            drawn = Sty().RenderSprite(iSelNum, *picTemp, own);
        }
        if (drawn) {
            QApplication::clipboard()->clear();
            QApplication::clipboard()->setImage(picTemp->image());
        }
        picTemp->Cls();
    } else if (Key == QLatin1String("paste")) {
        MsgBox("Paste Disabled");
    } else if (Key == QLatin1String("open")) {
        const QString path =
            FileDialog(this, FileMode::Open, QStringLiteral("Open Style"), kStyleFilter, DialogFolder());
        if (!path.isEmpty()) OpenStyle(path);
    } else if (Key == QLatin1String("save")) {
        ToolbarSave(false);
    } else if (Key == QLatin1String("saveas")) {
        ToolbarSave(true);
    } else if (Key == QLatin1String("export")) {
        ToolbarExport();
    } else if (Key == QLatin1String("import")) {
        ToolbarImport();
    } else if (Key == QLatin1String("undo")) {
        actions_.undo->trigger();
    } else if (Key == QLatin1String("redo")) {
        actions_.redo->trigger();
    }
}

void frmSTY2::OpenStyle(const QString& path) {
    if (doc_->Busy()) return;
    if (!QFile::exists(path)) {
        Tell("The file " + path.toStdString() + " does not exist.");
        return;
    }
    const std::string file = path.toStdString();
    LoadReport report;
    if (!doc_->Open(file, report)) {
        const std::string why = report.problem->kind == ombrevale::Problem::Kind::NotAStyle
                                    ? "The file " + file + " is not a style file: it does not begin with GBST."
                                    : LoadFailureText(file, report, {});
        MsgBox(why + " It was not opened; the style you had is still loaded.", "ERROR", MsgIcon::Exclamation);
        return;
    }
    if (!report.warnings.empty()) MsgBox(LoadWarningText(file, report), "Ombrevale", MsgIcon::Information);
}

void frmSTY2::ToolbarSave(bool askName) {
    // Nothing loaded: there is no style to write, only an empty shell of one.
    if (!doc_->HasStyle()) return;
    std::string path = askName ? std::string() : doc_->Path();
    if (path.empty() && !askName) path = StylePath();
    if (path.empty()) {
        path = FileDialog(this, FileMode::Save, QStringLiteral("Save Style As"), kStyleFilter, DialogFolder())
                   .toStdString();
        if (path.empty()) return;
    }
    doc_->Save(path);
}

QString frmSTY2::DialogFolder() const {
    const std::string style = doc_->Path().empty() ? StylePath() : doc_->Path();
    // Never the private working folder, the current one, which goes at exit.
    return style.empty() ? QDir::homePath() : QFileInfo(QString::fromStdString(style)).absolutePath();
}

void frmSTY2::ToolbarExport() {
    if (sSelKind != "t" && sSelKind != "s" && sSelKind != "d") {
        Tell("Select a tile on the Tiles page or a sprite on the Sprites page first.");
        return;
    }
    const QString path = FileDialog(this, FileMode::Save, QStringLiteral("Export Picture"),
                                    QStringLiteral("BMP picture (*.bmp);;PNG picture (*.png)"), DialogFolder());
    if (path.isEmpty()) return;
    const bool png = path.endsWith(QLatin1String(".png"), Qt::CaseInsensitive);
    QTemporaryDir tmp;
    const std::string bmp = png ? (tmp.path() + QStringLiteral("/export.bmp")).toStdString() : path.toStdString();
    // The sprite goes out in the palette it is shown in: its own or the chosen remap.
    std::int16_t pal = ShownRemapPalette();
    bool ok = false;
    if (sSelKind == "t")
        ok = Sty().SaveTile(bmp, iSelNum);
    else if (sSelKind == "s")
        ok = Sty().SaveSprite(bmp, iSelNum, pal);
    else
        ok = Sty().SaveDelta(bmp, static_cast<std::int16_t>(cmbDeltas->currentIndex() - 1), iSelNum, pal);
    if (!ok || !png) return;
    const QImage pic(QString::fromStdString(bmp));
    if (pic.isNull() || !pic.save(path, "PNG")) Tell("The picture file " + path.toStdString() + " cannot be written.");
}

std::int16_t frmSTY2::ShownRemapPalette() const {
    if (lstRemaps->currentRow() <= 0 || !lstRemaps->isEnabled()) return -1;
    return RemapPalette(lstRemaps->currentRow()).value_or(-1);
}

std::optional<std::int16_t> frmSTY2::RemapPalette(int row) const {
    const long m = lstRemaps->item(row)->text().toLong();
    return ombrevale::palettebases::RemapPalette(m);
}

void frmSTY2::ToolbarImport() {
    // Pictures go into what is selected, as Copy and Export take it; a palette takes a JASC file.
    if (sSelKind == "t" || sSelKind == "s" || sSelKind == "d") {
        ImportPicture();
        return;
    }
    const int p = lstPalettes->currentRow();
    if (p < 0) {
        Tell("Select a tile on the Tiles page, a sprite on the Sprites page or a palette on the Palettes page first.");
        return;
    }
    const QString path = FileDialog(this, FileMode::Open, QStringLiteral("Import Palette"),
                                    QStringLiteral("JASC palette (*.pal);;All files (*)"), DialogFolder());
    if (path.isEmpty()) return;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly) || f.readLine().trimmed() != "JASC-PAL") {
        Tell(path.toStdString() + " is not a JASC-PAL palette file. The palette was not changed.");
        return;
    }
    const bool imported = doc_->Record({{ombrevale::editparts::Kind::Palette, p}},
                                       QStringLiteral("JASC import into %1").arg(ombrevale::workbench::PaletteName(p)),
                                       [&] { return Sty().ImportPalette(path.toStdString(), p); });
    if (imported) lstPalettes_Click();
}
