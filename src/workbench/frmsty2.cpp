#include "workbench/frmsty2.h"
#include "workbench/mapsheet.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDropEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTreeWidget>
#include <algorithm>
#include <cstdio>

#include "pixels/exportnames.h"
#include "settings/cregistry.h"
#include "style/moddeclares.h"
#include "workbench/fontchoice.h"
#include "workbench/keptcopy.h"
#include "workbench/keptview.h"
#include "workbench/keycodes.h"
#include "workbench/picturebox.h"
#include "workbench/styleedits.h"
#include "workbench/toolbarimages.h"
#include "workbench/topmost.h"
#include "workbench/twips.h"
#include "workbench/windowsfonts.h"
#include "workbench/zoomlens.h"

using ombrevale::twips::Place;

namespace {
constexpr int kSheetTop = -120;
}  // namespace

using ombrevale::workbench::StyleDocument;

frmSTY2::frmSTY2(std::optional<std::string> stylePath, QWidget* parent)
    : QWidget(parent),
      doc_(new StyleDocument(this)),
      commandLinePath_(std::move(stylePath)),
      views_(new ombrevale::workbench::AddedViews(*this, *doc_)) {
    // Form_Initialize: Qt's widgets need no common-controls set-up.
    ombrevale::workbench::UseWindowsFontMetrics();
    QFont font(QStringLiteral("Microsoft Sans Serif"));
    font.setPointSizeF(8.25);
    font.setStretch(ombrevale::workbench::WindowsFontStretch());
    setFont(font);
    setWindowTitle(QStringLiteral("Ombrevale v" OMBREVALE_VERSION));
    setWindowIcon(imgToolBar::WindowIcon());
    resize(ombrevale::twips::ToPx(8910), ombrevale::twips::ToPx(7710));
    // The window redraws first; the views that watch the document then find it drawn.
    connect(doc_, &StyleDocument::Loaded, this, &frmSTY2::DocumentLoaded);
    connect(doc_, &StyleDocument::PartChanged, this, &frmSTY2::ShowEdited);
    setAcceptDrops(true);
    BuildControls();
    WirePanes();
    views_->Build();
    WireFolderImport();
    qApp->installEventFilter(this);
    Form_Load();
}

frmSTY2::~frmSTY2() { qApp->removeEventFilter(this); }

void frmSTY2::BuildControls() {
    MainTab = new QTabWidget(this);
    MainTab->setTabPosition(QTabWidget::South);
    Place(MainTab, -30, 330, 8970, 7365);
    auto* page = new QWidget;
    MainTab->addTab(page, QStringLiteral("Tiles"));
    picCont = new QWidget(page);
    Place(picCont, 0, 0, 8970, 7035);
    picCont->setFont(QFont(QStringLiteral("Tahoma"), 9));
    picMain = new PictureBox(picCont);
    Place(picMain, 0, kSheetTop, 8640, 107520);
    picMain->Tag = QStringLiteral("-1");
    vScroll = new QScrollBar(Qt::Vertical, picCont);
    Place(vScroll, 8640, 0, 255, 6975);
    vScroll->setRange(0, vScrollMax_);
    vScroll->setSingleStep(64);
    vScroll->setPageStep(256);
    picTTmp = new PictureBox(page);
    Place(picTTmp, 7740, 3330, 1020, 1020);
    picTTmp->hide();
    lblIdx = new QLabel(page);
    lblIdx->setFont(QFont(QStringLiteral("Tahoma"), 9));
    lblIdx->move(ombrevale::twips::ToPx(1470), ombrevale::twips::ToPx(450));
    lblIdx->adjustSize();
    // The caption would sit under the sheet; keep it readable in front of it.
    lblIdx->raise();
    lblSheetNote = new QLabel(picCont);
    lblSheetNote->setWordWrap(true);
    lblSheetNote->setTextFormat(Qt::PlainText);
    lblSheetNote->setGeometry(16, 48, picCont->width() - vScroll->width() - 32, 120);
    lblSheetNote->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    lblSheetNote->hide();
    cmdGen = new QPushButton(QStringLiteral("&Refresh"), MainTab);
    Place(cmdGen, 7785, 7060, 1110, 315);
    cmdGen->raise();

    connect(vScroll, &QScrollBar::valueChanged, this, [this] { vScroll_Change(); });
    connect(picMain, &PictureBox::MouseUp, this,
            [this](Qt::MouseButton b, Qt::KeyboardModifiers s, double x, double y) {
                picMain_MouseUp(static_cast<int>(b), static_cast<int>(s), x, y);
            });
    connect(cmdGen, &QPushButton::clicked, this, [this] { cmdGen_Click(); });
    BuildOtherPages();
    picTemp = new PictureBox(this);
    Place(picTemp, 1350, 2910, 1320, 1725);
    picTemp->hide();
    MainTab->setCurrentIndex(0);
}

void frmSTY2::BuildOtherPages() {
    auto* sprites = new QWidget;
    MainTab->addTab(sprites, QStringLiteral("Sprites"));
    lstSprites = new QListWidget(sprites);
    Place(lstSprites, 120, 120, 1965, 4350);
    frMain = new QGroupBox(QStringLiteral("Sprite Options"), sprites);
    Place(frMain, 2220, 105, 6795, 4485);
    SprTab = new QTabWidget(frMain);
    Place(SprTab, 105, 270, 6585, 4140);
    SprTab->addTab(new QWidget, QStringLiteral("Image"));
    SprTab->addTab(new QWidget, QStringLiteral("Other Info"));

    auto* palettes = new QWidget;
    MainTab->addTab(palettes, QStringLiteral("Palettes"));
    lstPalettes = new QListWidget(palettes);
    QFont listFont(QStringLiteral("Microsoft Sans Serif"), 9);
    listFont.setStretch(ombrevale::workbench::WindowsFontStretch());
    lstPalettes->setFont(listFont);
    Place(lstPalettes, 120, 120, 1665, 4335);
    picPalette = new PictureBox(palettes);
    Place(picPalette, 1860, 120, 1305, 4470);

    auto* font = new QWidget;
    MainTab->addTab(font, QStringLiteral("Font"));
    txtText = new QLineEdit(font);
    Place(txtText, 90, 75, 8880, 315);
    cmdCreateText = new QPushButton(QStringLiteral("Create"), font);
    Place(cmdCreateText, 7800, 450, 1020, 405);
    picFont = new PictureBox(font);
    Place(picFont, 90, 900, 8880, 3645);
    views_->fontChoice = new ombrevale::workbench::FontChoice(font, this);

    auto* recy = new QWidget;
    MainTab->addTab(recy, QStringLiteral("Recycling"));
    lstRecy = new QListWidget(recy);
    lstRecy->setSortingEnabled(true);
    Place(lstRecy, 120, 120, 1665, 4350);
    cmdRecyAdd = new QPushButton(QStringLiteral("Add"), recy);
    Place(cmdRecyAdd, 1830, 135, 900, 360);
    cmdRecyRemove = new QPushButton(QStringLiteral("Remove"), recy);
    Place(cmdRecyRemove, 1830, 525, 900, 360);
}

std::string frmSTY2::StylePath() const {
    if (commandLinePath_) return *commandLinePath_;
    cRegistry reg;
    reg.ClassKey(HKEY_CURRENT_USER_);
    reg.SectionKey("Software\\DMA Design LTd\\Gta2 Editor\\App Defaults");
    reg.ValueKey("App Style File");
    const std::string value = RegValueText(reg.Value());
    // A Windows path names a file of the Wine prefix here.
    return value.empty() ? value : LocalPathForStylePath(value);
}

void frmSTY2::Form_Load() {
    MainTab->move(MainTab->x(), 0);
    const std::string path = StylePath();
    // Nothing to read: the empty document shows as a loaded one would.
    if (path.empty())
        DocumentLoaded(StyleDocument::LoadKind::Start);
    else
        doc_->Reload(path, StyleDocument::LoadKind::Start);
    ombrevale::workbench::SetTopMost(this, true);
}

void frmSTY2::DocumentLoaded(StyleDocument::LoadKind kind) {
    // What was told of the last style may hold again for this one.
    causesTold_.clear();
    switch (kind) {
        case StyleDocument::LoadKind::Start:
            Sty().DrawTransparent(true);
            FillLists();
            RenderSheet();
            break;
        case StyleDocument::LoadKind::Refresh:
            // Another file may count other fonts; the lists themselves stay as they were.
            views_->fontChoice->Refill();
            RenderSheet();
            break;
        case StyleDocument::LoadKind::Open:
        case StyleDocument::LoadKind::Restore:
            Sty().DrawTransparent(true);
            actions_.trans->setChecked(true);
            // The lists go first: while a sprite row is chosen, the pane's controls would redraw it.
            FillLists();
            ResetPanes();
            RenderSheet();
            break;
    }
}

void frmSTY2::FillLists() {
    lstSprites->clear();
    lstPalettes->clear();
    // Each list is filled in one insertion rather than a model change a row.
    QStringList sprites, palettes;
    std::int32_t total = 0;
    for (const std::int16_t count : modDeclares::STYSpriteBase) total += std::max<std::int16_t>(count, 0);
    // The captions are the export index's too: one home for them.
    for (std::int32_t s = 0; s < total; ++s)
        sprites.append(QString::fromStdString(ombrevale::exportnames::SpriteCaption(modDeclares::STYSpriteBase, s)));
    for (int i = 1; i <= Sty().GetNumOfPals(); ++i) palettes.append(QStringLiteral("Palette: %1").arg(i));
    lstSprites->addItems(sprites);
    lstPalettes->addItems(palettes);
    views_->fontChoice->Refill();
    FillRecycleList();
}

void frmSTY2::ResetPanes() {
    sSelKind.clear();
    iSelNum = 0;
    picMain->Tag = QStringLiteral("-1");
    boxCell_.reset();
    lblIdx->clear();
    lblIdx->adjustSize();
    vScroll->setValue(0);
    // Until the first scroll the sheet stands where it was placed, not at the bar's value.
    picMain->move(0, ombrevale::twips::ToPx(kSheetTop));
    lstRemaps->clear();
    lstRemaps->setEnabled(true);
    cmbDeltas->setCurrentIndex(-1);
    cmbDeltas->setEnabled(true);
    SprTab->setTabEnabled(1, true);
    SprTab->setCurrentIndex(0);
    lstInfo->clear();
    picSprite->Cls();
    lblSSize->clear();
    lblSSize->adjustSize();
    lblPalInfo->clear();
    lblPalInfo->adjustSize();
    for (QLineEdit* box : {txtIdx, txtRed, txtGreen, txtBlue, txtText}) box->clear();
    lblColour->setPalette(QPalette());
    picPalette->Cls();
    picFont->Cls();
    for (auto* lens : {views_->spriteZoom, views_->fontZoom}) lens->SetPictureSize({});
    views_->fontChoice->Reset();
    Place(picTemp, 1350, 2910, 1320, 1725);
    picTemp->Cls();
    MainTab->setCurrentIndex(0);
}

void frmSTY2::cmdGen_Click() {
    // A Refresh that arrives through a load's or a render's event run waits for no one: it is dropped.
    if (doc_->Busy()) return;
    const std::string path = StylePath();
    // Save then writes the file that Refresh took up; with none named, the sheet is only drawn again.
    if (path.empty())
        RenderSheet();
    else
        doc_->Reload(path, StyleDocument::LoadKind::Refresh);
}

void frmSTY2::dragEnterEvent(QDragEnterEvent* event) {
    const auto urls = event->mimeData()->urls();
    if (urls.size() == 1 && urls[0].isLocalFile()) event->acceptProposedAction();
}

void frmSTY2::dropEvent(QDropEvent* event) {
    const auto urls = event->mimeData()->urls();
    if (urls.size() != 1 || !urls[0].isLocalFile()) return;
    event->acceptProposedAction();
    // The drop's own event run ends first: Open's messages and progress window must not run inside it.
    QMetaObject::invokeMethod(
        this,
        [this, file = urls[0].toLocalFile()] {
            if (file.endsWith(QLatin1String(".gmp"), Qt::CaseInsensitive))
                views_->map->Open(file);
            else
                OpenStyle(file);
        },
        Qt::QueuedConnection);
}

bool frmSTY2::eventFilter(QObject* watched, QEvent* event) {
    // The wheel over the sheet scrolls it as it would over the scroll bar.
    if (event->type() == QEvent::Wheel && (watched == picMain || watched == picCont)) {
        QCoreApplication::sendEvent(vScroll, event);
        return true;
    }
    // The window sees every key before its controls do; the key then goes on.
    if (event->type() == QEvent::KeyPress) {
        auto* w = qobject_cast<QWidget*>(watched);
        const auto* ke = static_cast<QKeyEvent*>(event);
        // A key the focus widget ignores travels up to its parents as the same event: act once.
        const bool seen =
            w && event == lastKey_ && lastKeyTarget_ && w != lastKeyTarget_ && w->isAncestorOf(lastKeyTarget_);
        if (w && w->window() == this) {
            lastKey_ = event;
            lastKeyTarget_ = w;
        }
        if (w && w->window() == this && !seen) {
            int code = 0;
            switch (ke->key()) {
                case Qt::Key_Escape:
                    code = ombrevale::keycodes::vbKeyEscape;
                    break;
                case Qt::Key_Down:
                    code = ombrevale::keycodes::vbKeyDown;
                    break;
                case Qt::Key_Up:
                    code = ombrevale::keycodes::vbKeyUp;
                    break;
                case Qt::Key_PageDown:
                    code = ombrevale::keycodes::vbKeyPageDown;
                    break;
                case Qt::Key_PageUp:
                    code = ombrevale::keycodes::vbKeyPageUp;
                    break;
                default:
                    break;
            }
            if (code != 0) Form_KeyDown(code, static_cast<int>(ke->modifiers()));
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmSTY2::closeEvent(QCloseEvent* event) {
    // Esc and the close button leave unsaved edits on disk for the next start.
    doc_->KeepNow();
    QWidget::closeEvent(event);
}
