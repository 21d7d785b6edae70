// The tool bar on the bundled sample: transparency, copy to the clipboard,
// paste, and open, save, save as, export and import with the dialogs answered
// by the test.
#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTabWidget>
#include <QToolTip>
#include <QTreeWidget>
#include <QtTest>
#include <filesystem>
#include <fstream>

#include "panes_fixture.h"
#include "support/hookrecorder.h"
#include "stylewriter/stylewriter.h"
#include "workbench/frmprogress.h"
#include "workbench/panes_dialogs.h"
#include "workbench/picturebox.h"

using panestest::Pixel;
using panestest::SpriteByte;
using panestest::StoreColour;

namespace {

int OwnPalette(int s) { return modDeclares::STYPalIndex.at(static_cast<std::size_t>(modDeclares::STYPalBase[0] + s)); }

// Sprite s as the store has it, colour 0 as the key colour when transparent.
QImage ExpectedSprite(const clsSTY& doc, int s, bool transparent) {
    QImage img(doc.GetSpriteWidth(s), doc.GetSpriteHeight(s), QImage::Format_RGB32);
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x) {
            const int c = SpriteByte(doc, s, x, y);
            img.setPixel(x, y, transparent && c == 0 ? qRgb(255, 0, 255) : StoreColour(OwnPalette(s), c) | 0xFF000000u);
        }
    return img;
}

// What a user can see of a control, for comparing two windows.
QString State(const QWidget* w) {
    QString s = QString::fromLatin1(w->metaObject()->className());
    const QRect g = w->geometry();
    s += QStringLiteral(" %1,%2 %3x%4 shown %5 enabled %6")
             .arg(g.x())
             .arg(g.y())
             .arg(g.width())
             .arg(g.height())
             .arg(w->isVisibleTo(w->window()))
             .arg(w->isEnabled());
    if (auto* l = qobject_cast<const QLabel*>(w))
        s += " text " + l->text() + " " + l->palette().color(QPalette::Window).name();
    if (auto* e = qobject_cast<const QLineEdit*>(w)) s += " text " + e->text();
    if (auto* c = qobject_cast<const QComboBox*>(w)) s += QStringLiteral(" row %1").arg(c->currentIndex());
    if (auto* t = qobject_cast<const QTabWidget*>(w)) s += QStringLiteral(" page %1").arg(t->currentIndex());
    if (auto* t = qobject_cast<const QTreeWidget*>(w)) s += QStringLiteral(" rows %1").arg(t->topLevelItemCount());
    if (auto* b = qobject_cast<const QScrollBar*>(w)) s += QStringLiteral(" value %1").arg(b->value());
    if (auto* list = qobject_cast<const QListWidget*>(w)) {
        s += QStringLiteral(" row %1 of").arg(list->currentRow());
        for (int i = 0; i < list->count(); ++i) s += " " + list->item(i)->text();
    }
    if (auto* p = qobject_cast<const PictureBox*>(w))
        s += " picture " +
             QString::number(qHashBits(p->image().constBits(), static_cast<std::size_t>(p->image().sizeInBytes())));
    return s;
}

bool SamePixels(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) return false;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (Pixel(a, x, y) != Pixel(b, x, y)) return false;
    return true;
}

}  // namespace

class PanesToolbarTest : public QObject {
    Q_OBJECT
    std::unique_ptr<panestest::SampleWindow> s_;
    QStringList answers_;
    QStringList folders_;  // where each dialog started
    frmSTY2& W() { return *s_->w; }
    std::string Copy(const std::string& name) {
        const std::string p = s_->dir.File(name);
        std::filesystem::copy_file(OMBREVALE_SAMPLE, p, std::filesystem::copy_options::overwrite_existing);
        return p;
    }

private slots:
    void init() {
        s_ = std::make_unique<panestest::SampleWindow>();
        answers_.clear();
        folders_.clear();
        ombrevale::panesdialogs::Install(
            {{}, [this](QWidget*, ombrevale::panesdialogs::FileMode, const QString&, const QString&, const QString& folder) {
                 folders_ << folder;
                 return answers_.isEmpty() ? QString() : answers_.takeFirst();
             }});
    }
    void cleanup() {
        ombrevale::panesdialogs::Install({});
        s_.reset();
    }

    // Every button shows its picture from the start; "Save As" shares the
    // picture of "Save" and no two other buttons look alike.
    void buttonPictures() {
        QMap<QString, QImage> seen;
        for (const char* key : {"open", "save", "saveas", "trans", "export", "import", "copy", "paste"}) {
            const QAction* a = W().tlbMain->findChild<QAction*>(QString::fromLatin1(key));
            QVERIFY2(a, key);
            const QImage img = a->icon().pixmap(16, 16).toImage().convertToFormat(QImage::Format_ARGB32);
            QCOMPARE(img.size(), QSize(16, 16));
            int opaque = 0;
            for (int y = 0; y < img.height(); ++y)
                for (int x = 0; x < img.width(); ++x) opaque += qAlpha(img.pixel(x, y)) != 0;
            QVERIFY2(opaque > 40, key);
            seen.insert(QString::fromLatin1(key), img);
        }
        QCOMPARE(seen["saveas"], seen["save"]);
        const QStringList distinct = {"open", "save", "trans", "export", "import", "copy", "paste"};
        for (qsizetype i = 0; i < distinct.size(); ++i)
            for (qsizetype j = i + 1; j < distinct.size(); ++j)
                QVERIFY2(seen[distinct[i]] != seen[distinct[j]], qPrintable(distinct[i] + " " + distinct[j]));
        QVERIFY(!W().windowIcon().isNull());
    }

    void copy_data() {
        QTest::addColumn<bool>("transparent");
        QTest::newRow("sprite in its own palette") << false;
        QTest::newRow("sprite with the key colour") << true;
    }
    void copy() {
        QFETCH(bool, transparent);
        W().Sty().DrawTransparent(transparent);
        const int s = modDeclares::STYSpriteBase[0] + 2;
        W().lstSprites->setCurrentRow(s);
        QApplication::clipboard()->clear();
        W().tlbMain_ButtonClick(QStringLiteral("copy"));
        const QImage got = QApplication::clipboard()->image();
        QVERIFY(SamePixels(got, ExpectedSprite(W().Sty(), s, transparent)));
        // A second copy gives the same picture; picTemp holds nothing afterwards.
        W().tlbMain_ButtonClick(QStringLiteral("copy"));
        QVERIFY(SamePixels(QApplication::clipboard()->image(), got));
        QCOMPARE(Pixel(W().picTemp->image(), 0, 0), W().picTemp->BackColor() & 0xFFFFFFu);
    }

    void copyTile() {
        W().sSelKind = "t";
        W().iSelNum = 5;
        W().Sty().DrawTransparent(false);
        W().tlbMain_ButtonClick(QStringLiteral("copy"));
        const QImage got = QApplication::clipboard()->image();
        QCOMPARE(got.size(), QSize(64, 64));
        const int p = modDeclares::STYPalIndex[5];
        const auto& tile = W().Sty().STYTileStore[5];
        for (int y = 0; y < 64; y += 9)
            for (int x = 0; x < 64; x += 7)
                QCOMPARE(Pixel(got, x, y), StoreColour(p, tile[static_cast<std::size_t>(y * 64 + x)]));
    }

    void copyNothingSelected_data() {
        QTest::addColumn<QString>("kind");
        QTest::newRow("palette") << "p";
        QTest::newRow("delta") << "d";
        QTest::newRow("none") << "";
    }
    void copyNothingSelected() {
        QFETCH(QString, kind);
        QImage marker(3, 3, QImage::Format_RGB32);
        marker.fill(qRgb(1, 2, 3));
        QApplication::clipboard()->setImage(marker);
        W().sSelKind = kind.toStdString();
        W().tlbMain_ButtonClick(QStringLiteral("copy"));
        QVERIFY(SamePixels(QApplication::clipboard()->image(), marker));
    }

    void transRedrawsTheSprite() {
        const int s = modDeclares::STYSpriteBase[0] + 1;
        W().lstSprites->setCurrentRow(s);
        QVERIFY(W().Sty().DrawTransparent());
        W().tlbMain->findChild<QAction*>(QStringLiteral("trans"))->trigger();  // released
        QVERIFY(!W().Sty().DrawTransparent());
        const QImage shown =
            W().picSprite->image().copy(0, 0, W().Sty().GetSpriteWidth(s), W().Sty().GetSpriteHeight(s));
        QVERIFY(SamePixels(shown, ExpectedSprite(W().Sty(), s, false)));
    }

    void pasteAndUnknownKeys() {
        testsupport::HookRecorder hooks;
        W().tlbMain_ButtonClick(QStringLiteral("paste"));
        W().tlbMain_ButtonClick(QStringLiteral("Copy"));
        QCOMPARE(static_cast<int>(hooks.messages().size()), 1);
        QVERIFY(QString::fromStdString(hooks.messages()[0]).contains("Paste Disabled"));
    }

    void openSaveSaveAs() {
        const std::string a = Copy("a.sty");
        answers_ = {QString::fromStdString(a)};
        W().tlbMain_ButtonClick(QStringLiteral("open"));
        QCOMPARE(W().CurrentStylePath(), a);
        // Dialogs start in the folder of the style in the window.
        QCOMPARE(folders_.takeFirst(), QFileInfo(OMBREVALE_SAMPLE).absolutePath());
        W().tlbMain_ButtonClick(QStringLiteral("saveas"));  // cancelled
        QCOMPARE(folders_.takeFirst(), QString::fromStdString(s_->dir.path().string()));
        QCOMPARE(W().lstSprites->count(), 1816);
        // A change in the store, then "save" writes the opened file and keeps the old one as .bak.
        modDeclares::STYRecycle = {9, 255};
        W().tlbMain_ButtonClick(QStringLiteral("save"));
        QVERIFY(std::filesystem::exists(a + ".bak"));
        // The save is told by a note that goes by itself, not by a box to close.
        QVERIFY(QToolTip::isVisible());
        QCOMPARE(QToolTip::text(), QStringLiteral("Saved a.sty"));
        clsSTY reread;
        QVERIFY(reread.LoadSTY(a));
        QCOMPARE(modDeclares::STYRecycle, (std::vector<std::uint8_t>{9, 255}));
        // "saveas" writes another file and "save" goes there from then on; Cancel writes nothing.
        const std::string b = s_->dir.File("b.sty");
        answers_ = {QString::fromStdString(b)};
        W().tlbMain_ButtonClick(QStringLiteral("saveas"));
        QVERIFY(std::filesystem::exists(b));
        QCOMPARE(W().CurrentStylePath(), b);
        W().tlbMain_ButtonClick(QStringLiteral("saveas"));  // cancelled
        QCOMPARE(W().CurrentStylePath(), b);
    }

    void openCancelledOrMissing() {
        const auto sprites = W().lstSprites->count();
        testsupport::HookRecorder hooks;
        W().tlbMain_ButtonClick(QStringLiteral("open"));  // cancelled
        answers_ = {QString::fromStdString(s_->dir.File("missing.sty"))};
        W().tlbMain_ButtonClick(QStringLiteral("open"));
        QCOMPARE(W().lstSprites->count(), sprites);
        QCOMPARE(static_cast<int>(hooks.messages().size()), 1);
    }

    void openRefusedKeepsTheStyle_data() {
        QTest::addColumn<QByteArray>("file");
        const auto Of = [](const ombrevale::stylewriter::Bytes& b) {
            return QByteArray(reinterpret_cast<const char*>(b.data()), static_cast<qsizetype>(b.size()));
        };
        // The recycling list loads, then a section claims more bytes than the file holds.
        QTest::newRow("cut short") << Of(ombrevale::stylewriter::StyleBytes()
                                             .Add("RECY", {1, 2, 255})
                                             .AddWithSize("PPAL", 1 << 20, ombrevale::stylewriter::Bytes(64, 1))
                                             .bytes());
        QTest::newRow("wrong magic") << Of(ombrevale::stylewriter::StyleBytes("GBSX").Add("RECY", {1, 255}).bytes());
        QTest::newRow("empty") << QByteArray();
    }
    void openRefusedKeepsTheStyle() {
        QFETCH(QByteArray, file);
        // Edits in memory survive an open of a file that does not load.
        modDeclares::STYRecycle = {3, 255};
        modDeclares::STYPalData[0][4] = 77;
        const auto tiles = W().Sty().STYTileStore.size();
        const std::string bad = s_->dir.File("bad.sty");
        ombrevale::stylewriter::WriteFile(bad, ombrevale::stylewriter::Bytes(file.begin(), file.end()));
        answers_ = {QString::fromStdString(bad)};
        testsupport::HookRecorder hooks;
        W().tlbMain_ButtonClick(QStringLiteral("open"));
        QCOMPARE(static_cast<int>(hooks.messages().size()), 1);
        // Told as what happened: nothing of the file stays.
        QVERIFY2(hooks.messages()[0].find("still loaded") != std::string::npos, hooks.messages()[0].c_str());
        QVERIFY2(hooks.messages()[0].find("were loaded") == std::string::npos, hooks.messages()[0].c_str());
        QVERIFY(!modGTA2::LoadedInstance() || !modGTA2::LoadedInstance()->isVisible());
        QCOMPARE(modDeclares::STYRecycle, (std::vector<std::uint8_t>{3, 255}));
        QCOMPARE(static_cast<int>(modDeclares::STYPalData[0][4]), 77);
        QCOMPARE(W().Sty().STYTileStore.size(), tiles);
        QCOMPARE(W().lstSprites->count(), 1816);
        QVERIFY(W().CurrentStylePath().empty());
    }

    // After an open every pane shows what a start on that file shows.
    void openStartsAfresh() {
        W().show();
        W().picMain_MouseUp(1, 0, 70, 130);
        W().lstSprites->setCurrentRow(3);
        W().lstRemaps->setCurrentRow(1);
        W().cmbDeltas->setCurrentIndex(2);
        W().SprTab->setCurrentIndex(1);
        W().lstPalettes->setCurrentRow(3);
        W().picPalette_MouseMove(40);
        W().picPalette_MouseUp(40);
        W().txtText->setText(QStringLiteral("ABC"));
        W().cmdCreateText_Click();
        W().vScroll->setValue(640);
        W().tlbMain->findChild<QAction*>(QStringLiteral("trans"))->trigger();
        W().MainTab->setCurrentIndex(2);
        const std::string a = Copy("a.sty");
        answers_ = {QString::fromStdString(a)};
        W().tlbMain_ButtonClick(QStringLiteral("open"));
        frmSTY2 fresh(a);
        fresh.show();
        // Drawn again at the width the shown window gives, as the open drew it.
        fresh.cmdGen_Click();
        QCOMPARE(W().sSelKind, fresh.sSelKind);
        QCOMPARE(W().iSelNum, fresh.iSelNum);
        QCOMPARE(W().Sty().DrawTransparent(), fresh.Sty().DrawTransparent());
        const auto Controls = [](frmSTY2& w) {
            return QList<QWidget*>{w.MainTab,    w.picMain,    w.vScroll,  w.lblIdx,    w.lstSprites, w.SprTab,
                                   w.cmbDeltas,  w.picSprite,  w.lblSSize, w.lstRemaps, w.lstInfo,    w.lstPalettes,
                                   w.picPalette, w.lblPalInfo, w.txtIdx,   w.txtRed,    w.txtGreen,   w.txtBlue,
                                   w.lblColour,  w.txtText,    w.picFont,  w.lstRecy,   w.picTemp};
        };
        const auto mine = Controls(W()), theirs = Controls(fresh);
        for (qsizetype i = 0; i < mine.size(); ++i) QCOMPARE(State(mine[i]), State(theirs[i]));
        const auto myActions = W().findChildren<QAction*>(), theirActions = fresh.findChildren<QAction*>();
        for (qsizetype i = 0; i < myActions.size(); ++i)
            QCOMPARE(myActions[i]->isChecked(), theirActions[i]->isChecked());
    }

    void exportPicture_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("sprite as BMP") << "s.bmp";
        QTest::newRow("sprite as PNG") << "s.png";
    }
    void exportPicture() {
        QFETCH(QString, name);
        const int s = modDeclares::STYSpriteBase[0] + 4;
        W().lstSprites->setCurrentRow(s);
        const QString path = QString::fromStdString(s_->dir.File(name.toStdString()));
        answers_ = {path};
        W().tlbMain_ButtonClick(QStringLiteral("export"));
        const QImage got(path);
        QVERIFY(!got.isNull());
        QVERIFY(SamePixels(got.convertToFormat(QImage::Format_RGB32), ExpectedSprite(W().Sty(), s, false)));
    }

    void exportWithoutSelection() {
        W().sSelKind = "p";
        testsupport::HookRecorder hooks;
        W().tlbMain_ButtonClick(QStringLiteral("export"));
        QCOMPARE(static_cast<int>(hooks.messages().size()), 1);
        QVERIFY(answers_.isEmpty());
    }

    void importPalette() {
        const std::string pal = s_->dir.File("grey.pal");
        {
            std::ofstream f(pal);
            f << "JASC-PAL\n0100\n256\n";
            for (int i = 0; i < 256; ++i) f << i << ' ' << i << ' ' << 255 - i << '\n';
        }
        W().lstPalettes->setCurrentRow(2);
        answers_ = {QString::fromStdString(pal)};
        W().tlbMain_ButtonClick(QStringLiteral("import"));
        QCOMPARE(StoreColour(2, 40), qRgb(40, 40, 215) & 0xFFFFFFu);
        const QImage strip = W().picPalette->image();
        QCOMPARE(Pixel(strip, 3, (40 * strip.height() + 255) / 256), qRgb(40, 40, 215) & 0xFFFFFFu);
    }

    void importRefused() {
        const std::string bad = s_->dir.File("bad.pal");
        std::ofstream(bad) << "not a palette\n";
        const auto before = modDeclares::STYPalData;
        testsupport::HookRecorder hooks;
        W().lstPalettes->setCurrentRow(-1);
        W().tlbMain_ButtonClick(QStringLiteral("import"));  // no palette chosen
        W().lstPalettes->setCurrentRow(1);
        answers_ = {QString::fromStdString(bad)};
        W().tlbMain_ButtonClick(QStringLiteral("import"));
        QCOMPARE(static_cast<int>(hooks.messages().size()), 2);
        QVERIFY(modDeclares::STYPalData == before);
    }
};

QTEST_MAIN(PanesToolbarTest)
#include "panes_toolbar_test.moc"
