// The panes, the tool bar and the views a user asks for, on the bundled
// sample, driven by their keys and clicks, the dialogs answered by the test.
// What they compute is tested in the style and pixel libraries: here each
// control must reach the right call with the right numbers and show the result.
#include <QtTest>
#include <QtWidgets>
#include <csignal>
#include <filesystem>
#include <fstream>

#include <sys/resource.h>

#include "activewindow.h"
#include "style/fonts.h"
#include "style/moddeclares.h"
#include "style/surfaces.h"
#include "stylewriter/stylewriter.h"
#include "support/hookrecorder.h"
#include "support/storesnapshot.h"
#include "support/tempdir.h"
#include "teststyle.h"
#include "workbench/allremapswindow.h"
#include "workbench/colourchoice.h"
#include "workbench/edithistory.h"
#include "workbench/fontchoice.h"
#include "workbench/frmsty2.h"
#include "workbench/keptcopy.h"
#include "workbench/keptoffer.h"
#include "workbench/keptview.h"
#include "workbench/keycodes.h"
#include "workbench/paletteusagewindow.h"
#include "workbench/panes_dialogs.h"
#include "workbench/picturebox.h"
#include "workbench/surfaceoverlay.h"
#include "workbench/zoomlens.h"

using namespace modDeclares;

namespace {

QImage Rgb(const QImage& i) { return i.convertToFormat(QImage::Format_RGB32); }

// What the document draws for sprite s in palette p (-1: its own), with delta d (-1: none) on top.
QImage Drawn(clsSTY& doc, int s, int p = -1, int d = -1) {
    PictureBox box;
    box.resize(doc.GetSpriteWidth(s), doc.GetSpriteHeight(s));
    std::int16_t pal = std::int16_t(p);
    doc.RenderSprite(s, box, pal);
    if (d >= 0) doc.RenderDelta(std::int16_t(d), std::int16_t(s), box, doc.lPal());
    return Rgb(box.image());
}

// The physical palette of remap k of the sample's first car record, whose sprite 0 has deltas too.
int Remap(int k) {
    return STYPalIndex.at(std::size_t(STYPalBase[0] + STYPalBase[1] + STYCarInfo.at(0).remaps.at(std::size_t(k))));
}

QStringList Rows(const QListWidget* list) {
    QStringList out;
    for (int i = 0; i < list->count(); ++i) out << list->item(i)->text();
    return out;
}

QRgb StoreColour(int p, int c) {
    const auto& pal = STYPalData.at(std::size_t(p));
    return qRgb(pal[std::size_t(c) * 4 + 2], pal[std::size_t(c) * 4 + 1], pal[std::size_t(c) * 4]);
}
QRgb Band(const PictureBox* strip, int c) {
    return strip->image().pixel(3, (c * strip->height() + 255) / 256) | 0xFF000000u;
}

void ClickRow(QListWidget* list, int row) {
    list->scrollToItem(list->item(row));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
}

void CtrlWheel(QWidget* on, int notches) {
    for (int i = 0; i < std::abs(notches); ++i) {
        QWheelEvent e({5, 5}, on->mapToGlobal(QPointF(5, 5)), {}, {0, notches > 0 ? 120 : -120}, Qt::NoButton,
                      Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(on, &e);
    }
}

enum class Edit { Tile, TileOwnPalette, Sprite, Delta, Colour, Jasc, RecycleAdd, RecycleRemove };
enum class Shows { Cell, Sprite, List };
enum class Chosen { None, Palette, Tile };  // palette 1, tile 5
constexpr int kTile = 5;

struct State {
    ombrevale::testsupport::StoreSnapshot stores;
    QImage cell, sprite, strip;
    QStringList recycling;
    bool operator==(const State&) const = default;
    QVariant Of(Shows what) const {
        return what == Shows::Cell ? QVariant(cell) : what == Shows::Sprite ? QVariant(sprite) : QVariant(recycling);
    }
};

}  // namespace

class PanesTest : public QObject {
    Q_OBJECT
    // The current directory is a temp folder, so "temp.bmp" lands there.
    ombrevale::testsupport::TempDir dir_;
    ombrevale::testsupport::ScopedCurrentDir cwd_{dir_.path()};
    std::unique_ptr<frmSTY2> w_;
    QStringList answers_;           // file dialogs, in turn; none left: Cancel
    QStringList folders_;           // where each file dialog started
    std::optional<QString> reply_;  // the input box; nothing: Cancel
    bool yes_ = true;               // what a question answers
    // What the colour choice answers while yes_, and the previews it offered.
    ombrevale::workbench::ColourAnswer choice_ = ombrevale::workbench::ColourAnswer::Nearest;
    QImage nearestPreview_, ownPreview_;
    QString ownNote_, ownText_;
    QString question_, prompt_;  // the colour choice's question, the input box's prompt
    QString choicePrompt_;       // a choice among several buttons, and the one answered
    QStringList choiceButtons_;
    int choiceAnswer_ = -1;
    frmSTY2& W() { return *w_; }
    QString F(const std::string& name) const { return QString::fromStdString(dir_.File(name)); }
    // The messages the window gave while f ran.
    static int Says(const std::function<void()>& f) {
        ombrevale::testsupport::HookRecorder hooks;
        f();
        return int(hooks.messages().size());
    }
    int Click(const char* key) {
        return Says([&] { W().tlbMain_ButtonClick(QString::fromLatin1(key)); });
    }
    void Show() { QVERIFY(ombrevale::wbtest::ShowActive(W())); }
    void Ctrl(QWidget* on, Qt::Key key) {
        Show();
        QTest::keyClick(on, key, Qt::ControlModifier);
    }
    QPoint CellCentre(int t) { return {t % W().Cols() * 64 + 32, t / W().Cols() * 64 + 32}; }
    // A copy of the sample in a window of its own, its path.
    std::string OpenCopy() {
        const std::string path = dir_.File("kept.sty");
        std::filesystem::copy_file(OMBREVALE_SAMPLE, path, std::filesystem::copy_options::overwrite_existing);
        w_.reset();
        w_ = std::make_unique<frmSTY2>(path);
        return path;
    }
    // The document kept for path once every write asked for is done; empty: none.
    std::vector<std::uint8_t> Kept(const std::string& path) {
        W().Document().KeepNow();
        std::vector<std::uint8_t> bytes;
        return W().Document().Kept()->store().ReadDocument(path, bytes) ? std::vector<std::uint8_t>() : bytes;
    }
    void AddRecycled(const char* number) {
        reply_ = QString::fromLatin1(number);
        W().cmdRecyAdd_Click();
    }
    bool Offered() { return W().Views().kept->OfferBar()->isVisibleTo(&W()); }

    State Now() {
        return {ombrevale::testsupport::TakeSnapshot(W().Sty()),
                W().picMain->image().copy(QRect(CellCentre(kTile) - QPoint(32, 32), QSize(64, 64))),
                W().picSprite->image(), W().picPalette->image(), Rows(W().lstRecy)};
    }

    // Brings the window to the edit's target and makes it; the window just before the edit.
    State Make(Edit edit) {
        switch (edit) {
            case Edit::Tile:
            case Edit::TileOwnPalette:
                if (edit == Edit::TileOwnPalette) choice_ = ombrevale::workbench::ColourAnswer::OwnPalette;
                W().picMain_MouseUp(1, 0, kTile * 64 + 32, 32);
                answers_ = {F("tile.png")};
                break;
            case Edit::Sprite:
            case Edit::Delta: {
                W().lstSprites->setCurrentRow(0);
                if (edit == Edit::Delta) W().cmbDeltas->setCurrentIndex(1);
                // The sprite as exported, one pixel's colour number changed: a delta of that pixel alone.
                std::int16_t own = -1;
                answers_ = {F("sprite.bmp")};
                W().Sty().SaveSprite(answers_[0].toStdString(), 0, own);
                QImage image(answers_[0]);
                const QPoint at(image.width() / 2, image.height() / 2);
                image.setPixel(at, uint(image.pixelIndex(at) + 1) % 256);
                image.save(answers_[0], "BMP");
                break;
            }
            case Edit::Colour:
                // A colour of the tile whose cell is watched.
                W().lstPalettes->setCurrentRow(STYPalIndex.at(kTile));
                W().picPalette_MouseUp(W().Sty().STYTileStore.at(kTile)[32 * 64 + 32] + 0.5);
                W().txtRed->setText(QString::number((W().txtRed->text().toInt() + 1) % 256));
                break;
            case Edit::Jasc:
                W().lstPalettes->setCurrentRow(STYPalIndex.at(kTile));
                answers_ = {F("p.pal")};
                break;
            case Edit::RecycleAdd:
                reply_ = QStringLiteral("77");
                break;
            case Edit::RecycleRemove:
                W().lstRecy->setCurrentRow(0);
                break;
        }
        const State before = Now();
        if (edit == Edit::Colour)
            W().lblColour_Click();
        else if (edit == Edit::RecycleAdd)
            W().cmdRecyAdd_Click();
        else if (edit == Edit::RecycleRemove)
            W().cmdRecyRemove_Click();
        else
            W().tlbMain_ButtonClick(QStringLiteral("import"));
        return before;
    }

private slots:
    // The files the dialogs answer with, and the answers in place of the dialogs.
    void initTestCase() {
        qputenv("XDG_STATE_HOME", QByteArray::fromStdString(dir_.File("state")));
        QImage tile(64, 64, QImage::Format_RGB32);  // in colours no palette holds all of
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x) tile.setPixel(x, y, qRgb(x * 4, y * 4, 77));
        QVERIFY(tile.save(F("tile.png")) && tile.copy(0, 0, 32, 64).save(F("bad.png")));
        std::ofstream(dir_.File("bad.sty"), std::ios::binary) << "GBST\x01";
        std::ofstream(dir_.File("no.sty"), std::ios::binary) << "XXXX and more";
        std::ofstream pal(dir_.File("p.pal"), std::ios::binary);
        pal << "JASC-PAL\n0100\n256\n";
        for (int i = 0; i < 256; ++i) pal << i << " 1 2\n";
        using ombrevale::panesdialogs::FileMode;
        ombrevale::panesdialogs::Install(
            {[this](QWidget*, const QString& prompt) {
                 prompt_ = prompt;
                 return reply_;
             },
             [this](QWidget*, FileMode, const QString&, const QString&, const QString& folder) {
                 folders_ << folder;
                 return answers_.isEmpty() ? QString() : answers_.takeFirst();
             },
             [this](QWidget*, const QString&) { return yes_; },
             [this](ombrevale::workbench::ColourChoice& d) {
                 question_ = d.findChild<QLabel*>()->text();
                 nearestPreview_ = d.NearestPreview();
                 ownPreview_ = d.OwnPreview();
                 ownNote_ = d.OwnButton()->isEnabled() ? QString() : d.OwnNote()->text();
                 ownText_ = d.OwnNote()->text();
                 return yes_ ? choice_ : ombrevale::workbench::ColourAnswer::Cancel;
             },
             [this](QWidget*, const QString& prompt, const QStringList& buttons) {
                 choicePrompt_ = prompt;
                 choiceButtons_ = buttons;
                 return choiceAnswer_;
             }});
    }
    void init() {
        w_.reset();  // else the new window finds the style open in the old one
        w_ = std::make_unique<frmSTY2>(std::string(OMBREVALE_SAMPLE));
        answers_ = folders_ = {};
        reply_.reset();
        yes_ = true;
        choice_ = ombrevale::workbench::ColourAnswer::Nearest;
        nearestPreview_ = ownPreview_ = {};
        ownNote_.clear();
    }
    // Sprites page

    void carRemapDelta_data() {
        QTest::addColumn<int>("remapRow");
        QTest::addColumn<int>("deltaRow");
        QTest::newRow("own palette, no delta") << 0 << 0;
        QTest::newRow("second remap, second dent") << 2 << 2;
        QTest::newRow("a delta the sprite lacks") << 0 << 19;
    }
    void carRemapDelta() {
        QFETCH(int, remapRow);
        QFETCH(int, deltaRow);
        auto& car = STYCarInfo[0];  // the table's numbers are unsigned bytes
        car.model = car.width = car.height = car.passengers = car.wreck = car.rating = 255;
        car.frontWheelOffset = car.rearWheelOffset = car.frontWindowOffset = car.rearWindowOffset = 255;
        ombrevale::testsupport::HookRecorder hooks;
        W().lstSprites->setCurrentRow(0);
        QCOMPARE(W().lstRemaps->count(), int(car.remaps.size()) + 1);
        for (int i = 0; i < 10; ++i) QCOMPARE(W().lstInfo->topLevelItem(i)->text(1), QStringLiteral("255"));
        W().lstRemaps->setCurrentRow(remapRow);
        W().cmbDeltas->setCurrentIndex(deltaRow);
        const QImage want = Drawn(W().Sty(), 0, remapRow > 0 ? Remap(remapRow - 1) : -1, deltaRow - 1);
        QCOMPARE(Rgb(W().picSprite->image().copy(want.rect())), want);
        QCOMPARE(W().sSelKind, std::string(deltaRow > 0 ? "d" : "s"));
        QCOMPARE(W().lblSSize->text(), QStringLiteral("Size: %1x%2").arg(want.width()).arg(want.height()));
        QVERIFY(hooks.messages().empty());
    }

    // A car sprite that no record reaches keeps its deltas but has no remaps or table.
    void carWithoutRecord() {
        for (auto& car : STYCarInfo) car.sprite = 0;
        W().lstSprites->setCurrentRow(1);
        QVERIFY(!W().SprTab->isTabEnabled(1) && W().cmbDeltas->isEnabled());
        QCOMPARE(Rows(W().lstRemaps), QStringList{"(none)"});
    }

    // Palettes page: the strip, and the pointer over it reaching the read-out, the take and the write.

    void readTakeWrite() {
        W().show();
        W().MainTab->setCurrentIndex(2);
        W().lstPalettes->setCurrentRow(70);  // on the second page of palettes
        QCOMPARE(W().sSelKind, std::string("p"));
        for (int c : {0, 255}) QCOMPARE(Band(W().picPalette, c), StoreColour(70, c));
        const QColor c(StoreColour(70, 200));
        const QPoint at(10, (200 * W().picPalette->height() + 255) / 256);
        QTest::mouseMove(W().picPalette, at);
        QCOMPARE(W().lblPalInfo->text(),
                 QStringLiteral("Index: 200 Red: %1 Green: %2 Blue: %3").arg(c.red()).arg(c.green()).arg(c.blue()));
        QTest::mouseClick(W().picPalette, Qt::LeftButton, {}, at);
        QCOMPARE(W().txtIdx->text() + W().txtRed->text() + W().txtGreen->text() + W().txtBlue->text(),
                 QStringLiteral("200%1%2%3").arg(c.red()).arg(c.green()).arg(c.blue()));
        W().picPalette_MouseMove(12.7);  // a fraction of a band belongs to the band
        QVERIFY(W().lblPalInfo->text().startsWith("Index: 12 "));
        W().txtRed->setText(QString::number(255 - c.red()));
        const auto fourth = STYPalData[70][200 * 4 + 3];
        QTest::mouseClick(W().lblColour, Qt::LeftButton);
        QCOMPARE(StoreColour(70, 200), qRgb(255 - c.red(), c.green(), c.blue()));
        QCOMPARE(STYPalData[70][200 * 4 + 3], fourth);
        // Named as the Palettes list names it, then as the tile caption's physical number.
        QCOMPARE(W().Document().UndoStack()->undoText(), QStringLiteral("colour 200 of palette 71 (physical 70)"));
        // The strip shows the new colour; the big box still shows the colour taken.
        QCOMPARE(Band(W().picPalette, 200), StoreColour(70, 200));
        QCOMPARE(W().lblColour->palette().color(QPalette::Window), c);
    }

    void refusedWrites_data() {
        QTest::addColumn<int>("palette");
        QTest::addColumn<int>("idx");  // -1: none taken
        QTest::addColumn<QString>("red");
        QTest::addColumn<double>("pointer");  // where the pointer moves and clicks first
        QTest::newRow("no colour taken yet") << 1 << -1 << "10" << -1.0;
        QTest::newRow("red above 255") << 1 << 12 << "256" << -1.0;
        QTest::newRow("red not a number") << 1 << 12 << "red" << -1.0;
        QTest::newRow("no palette, pointer inside") << -1 << 4 << "4" << 10.0;
        QTest::newRow("pointer above the strip") << 0 << -1 << "4" << -0.5;
        QTest::newRow("pointer below the strip") << 0 << -1 << "4" << 256.0;
    }
    void refusedWrites() {
        QFETCH(int, palette);
        QFETCH(int, idx);
        QFETCH(QString, red);
        QFETCH(double, pointer);
        const QString index = idx < 0 ? QString() : QString::number(idx);
        W().lstPalettes->setCurrentRow(palette);
        W().txtIdx->setText(index);
        W().txtRed->setText(red);
        W().picPalette_MouseMove(pointer);
        W().picPalette_MouseUp(pointer);
        QCOMPARE(W().lblPalInfo->text(), QString());
        QCOMPARE(W().txtIdx->text(), index);
        const auto before = STYPalData;
        QCOMPARE(Says([&] { W().lblColour_Click(); }), int(palette >= 0));
        QVERIFY(STYPalData == before);
    }

    // Recycling page: rows kept sorted, the store rebuilt with its closing 255.

    void recycleAdd_data() {
        QTest::addColumn<int>("rows");  // 000, 003, 006, ... before
        QTest::addColumn<QVariant>("reply");
        QTest::addColumn<int>("added");  // -1: refused with a message, -2: no message
        QTest::newRow("5 gives 005, sorted into place") << 3 << QVariant("5") << 5;
        QTest::newRow("duplicate stays") << 3 << QVariant("3") << 3;
        QTest::newRow("255 is an entry") << 1 << QVariant("255") << 255;
        QTest::newRow("0 with spaces is an entry") << 0 << QVariant(" 0 ") << 0;
        for (const char* bad : {"256", "-1", "bus"}) QTest::addRow("'%s' refused", bad) << 1 << QVariant(bad) << -1;
        QTest::newRow("Cancel") << 1 << QVariant() << -2;
        QTest::newRow("63 rows: the 64th goes in") << 63 << QVariant("99") << 99;
        QTest::newRow("64 rows: full") << 64 << QVariant("99") << -1;
        QTest::newRow("70 rows from a file: full") << 70 << QVariant("99") << -1;
    }
    void recycleAdd() {
        QFETCH(int, rows);
        QFETCH(QVariant, reply);
        QFETCH(int, added);
        QStringList before;
        for (int i = 0; i < rows; ++i) before << QString::asprintf("%03d", i * 3);
        W().lstRecy->clear();
        W().lstRecy->addItems(before);
        const auto old = STYRecycle;
        if (reply.isValid()) reply_ = reply.toString();
        QCOMPARE(Says([&] { W().cmdRecyAdd_Click(); }), int(added == -1));
        QStringList after = before;
        if (added >= 0) after << QString::asprintf("%03d", added);
        after.sort();
        QCOMPARE(Rows(W().lstRecy), after);
        std::vector<std::uint8_t> store(std::size_t(after.size()) + 1, 255);
        std::transform(after.begin(), after.end(), store.begin(),
                       [](const QString& r) { return std::uint8_t(r.toInt()); });
        QCOMPARE(STYRecycle, added >= 0 ? store : old);  // a refused reply leaves the store as the file had it
    }

    // Only a selected row goes, and nothing is selected afterwards: a second press removes nothing.
    void recycleRemove() {
        W().lstRecy->clear();
        W().lstRecy->addItems({"001", "002", "003"});
        W().cmdRecyRemove_Click();
        W().lstRecy->setCurrentRow(2);
        for (int twice = 0; twice < 2; ++twice) QTest::mouseClick(W().cmdRecyRemove, Qt::LeftButton);
        QCOMPARE(Rows(W().lstRecy), (QStringList{"001", "002"}));
    }

    // Tool bar

    void copy_data() {
        QTest::addColumn<QString>("kind");  // what is selected
        QTest::newRow("sprite") << "s";
        QTest::newRow("tile") << "t";
        QTest::newRow("nothing selected") << "";
    }
    void copy() {
        QFETCH(QString, kind);
        const int s = STYSpriteBase[0] + 2;
        W().sSelKind = kind.toStdString();
        W().iSelNum = static_cast<std::int16_t>(kind == "t" ? 5 : s);
        QImage want(3, 3, QImage::Format_RGB32);
        want.fill(qRgb(1, 2, 3));
        QApplication::clipboard()->setImage(want);  // with nothing to copy it stays
        if (kind == "s") want = Drawn(W().Sty(), s);
        if (kind == "t") want = Rgb(W().picMain->image().copy(5 * 64, 0, 64, 64));
        QCOMPARE(Click("copy"), 0);
        QCOMPARE(Rgb(QApplication::clipboard()->image()), want);
        QCOMPARE(W().picTemp->image().pixel(0, 0), W().picTemp->BackColor());  // the scratch picture is left empty
    }

    // Choosing a style's own font sets the text at once: its glyphs, a space as wide as its narrowest
    // glyph, an empty box for what it lacks (a character past Latin-1 too), named under the text.
    void fontChoice_data() {
        QTest::addColumn<QString>("between");  // between "1" and "2"
        QTest::addColumn<QString>("lacked");   // named under the text
        QTest::newRow("space") << QStringLiteral(" ") << QString();
        QTest::newRow("a letter the font lacks") << QStringLiteral("A") << QStringLiteral("A");
        QTest::newRow("past Latin-1") << QStringLiteral("\u20AC") << QStringLiteral("\u20AC");
    }
    void fontChoice() {
        QFETCH(QString, between);
        QFETCH(QString, lacked);
        auto* choice = W().Views().fontChoice;
        QCOMPARE(choice->Chosen(), ombrevale::fonts::kFixedRule);
        QCOMPARE(choice->combo()->count(), 1 + int(STYFontBase.base.size()));
        const int font = int(STYFontBase.base.size()) - 1;  // the sample's last font has 26 glyphs, to ":"
        W().txtText->setText(QLatin1Char('1') + between + QLatin1Char('2'));
        choice->combo()->setCurrentIndex(font + 1);
        emit choice->combo()->activated(font + 1);
        const int room = lacked.isEmpty() ? ombrevale::fonts::SpaceWidth(W().Sty(), font)
                                          : ombrevale::fonts::MissingWidth(W().Sty(), font);
        const auto one = ombrevale::fonts::Glyph(W().Sty(), font, '1'),
                   two = ombrevale::fonts::Glyph(W().Sty(), font, '2');
        QVERIFY(one && two && room > 2);
        const QImage first = Drawn(W().Sty(), *one), second = Drawn(W().Sty(), *two);
        const QImage shown = Rgb(W().picFont->image());
        QCOMPARE(shown.copy(0, 0, first.width(), first.height()), first);
        QCOMPARE(shown.copy(first.width() + room, 0, second.width(), second.height()), second);
        // A box's sides stand out from the ground that fills it; a space is ground throughout.
        const QRgb ground = shown.pixel(first.width() + room / 2, first.height() / 2);
        QCOMPARE(shown.pixel(first.width() + 1, first.height() / 2) != ground, !lacked.isEmpty());
        QCOMPARE(choice->note()->isHidden(), lacked.isEmpty());
        if (!lacked.isEmpty())
            QCOMPARE(choice->note()->text(), QStringLiteral("Font %1 has no glyph for \"%2\": an empty box stands in "
                                                            "their place.")
                                                 .arg(font + 1)
                                                 .arg(lacked));
    }

    // After Open the window is as a start on that file leaves it, whatever was chosen before.
    void openSaveSaveAs() {
        W().show();
        W().picMain_MouseUp(1, 0, 70, 130);
        W().lstSprites->setCurrentRow(3);
        W().lstRemaps->setCurrentRow(1);
        W().lstPalettes->setCurrentRow(3);
        W().picPalette_MouseUp(40);
        W().txtText->setText(QStringLiteral("ABC"));
        W().Views().fontChoice->combo()->setCurrentIndex(2);
        W().cmdCreateText_Click();
        W().vScroll->setValue(640);
        W().Actions().trans->trigger();
        std::filesystem::copy_file(OMBREVALE_SAMPLE, dir_.File("a.sty"));
        answers_ = {F("a.sty")};
        QCOMPARE(Click("open"), 0);
        QCOMPARE(W().Document().Path(), dir_.File("a.sty"));
        QCOMPARE(folders_, QStringList{QFileInfo(OMBREVALE_SAMPLE).absolutePath()});  // the style's own folder
        frmSTY2 fresh(dir_.File("a.sty"));
        fresh.show();
        fresh.cmdGen_Click();  // drawn at the shown window's width, as the open drew it
        const auto state = [](frmSTY2& w) {
            return QStringList{QString::fromStdString(w.sSelKind), w.lblIdx->text(), w.lblSSize->text(),
                               w.txtIdx->text(), w.txtText->text()}
                   << QString::asprintf("%d %d %d %d %d %d %d", w.iSelNum, w.lstSprites->currentRow(),
                                        w.lstRemaps->count(), w.lstPalettes->currentRow(), w.vScroll->value(),
                                        int(w.Sty().DrawTransparent()), w.Views().fontChoice->Chosen());
        };
        QCOMPARE(state(W()), state(fresh));
        QCOMPARE(W().picSprite->image(), fresh.picSprite->image());
        QCOMPARE(W().picFont->image(), fresh.picFont->image());
        // "save" writes the opened file and says so in a note that goes by itself.
        STYRecycle = {9, 255};
        QCOMPARE(Click("save"), 0);
        QCOMPARE(QToolTip::text(), QStringLiteral("Saved a.sty"));
        QVERIFY(QToolTip::isVisible());
        STYRecycle.clear();
        QVERIFY(clsSTY().LoadSTY(dir_.File("a.sty")));
        QCOMPARE(STYRecycle, (std::vector<std::uint8_t>{9, 255}));
        // "saveas" writes another file and "save" goes there from then on; Cancel changes nothing.
        answers_ = {F("b.sty")};
        QCOMPARE(Click("saveas"), 0);
        QVERIFY(std::filesystem::exists(dir_.File("b.sty")));
        QCOMPARE(Click("saveas"), 0);
        QCOMPARE(W().Document().Path(), dir_.File("b.sty"));
        QCOMPARE(folders_.last(), QString::fromStdString(dir_.path().string()));
    }

    // With no style loaded, a file dialog starts at home, never in the working folder that goes at exit.
    void dialogsStartAtHomeWithoutAStyle() {
        w_ = std::make_unique<frmSTY2>(std::string());
        W().picMain_MouseUp(1, 0, 32, 32);
        // Save As, with no style to write, asks nothing.
        for (const char* key : {"saveas", "export", "open"}) Click(key);
        QCOMPARE(folders_, QStringList(2, QDir::homePath()));
    }

    void captionsFitTheirPlaces() {
        // The tool bar sits between the page tabs and Refresh, over neither.
        const QTabBar* tabs = W().MainTab->tabBar();
        const int tabsEnd = tabs->mapTo(W().MainTab, tabs->tabRect(tabs->count() - 1).topRight()).x();
        QVERIFY(W().tlbMain->x() > tabsEnd && W().tlbMain->geometry().right() < W().cmdGen->x());
        const auto labels = W().findChildren<QLabel*>();
        const QList<QPair<QString, QLineEdit*>> rows = {
            {"Index:", W().txtIdx}, {"Red:", W().txtRed}, {"Green:", W().txtGreen}, {"Blue:", W().txtBlue}};
        for (const auto& [caption, box] : rows) {
            const auto l = std::find_if(labels.begin(), labels.end(), [&](QLabel* x) { return x->text() == caption; });
            QVERIFY2(l != labels.end() && (*l)->x() + (*l)->fontMetrics().horizontalAdvance(caption) < box->x(),
                     qPrintable(caption));
        }
    }

    // A tool bar command that cannot go ahead says so (Cancel, silently), asks
    // for no file it cannot use, and keeps the style in memory, unsaved edits and all.
    void refusals_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<Chosen>("chosen");
        QTest::addColumn<QString>("file");  // the file dialog's answer; empty: Cancel
        QTest::addColumn<int>("dialogs");
        QTest::addColumn<QString>("says");  // empty: no message
        const QString open = "open", import = "import";
        QTest::newRow("open cancelled") << open << Chosen::Palette << "" << 1 << "";
        QTest::newRow("open a missing file") << open << Chosen::Palette << "missing.sty" << 1 << "does not exist";
        QTest::newRow("open a file cut short") << open << Chosen::Palette << "bad.sty" << 1 << "still loaded";
        QTest::newRow("open a file that is no style") << open << Chosen::Palette << "no.sty" << 1 << "not a style file";
        QTest::newRow("export a palette") << QString("export") << Chosen::Palette << "p.bmp" << 0 << "Select a tile";
        QTest::newRow("import, nothing chosen") << import << Chosen::None << "p.pal" << 0 << "or a palette on the";
        QTest::newRow("import no palette file") << import << Chosen::Palette << "bad.sty" << 1 << "not a JASC-PAL";
        QTest::newRow("import a picture of another size")
            << import << Chosen::Tile << "bad.png" << 1 << "bad.png is 32 x 64 pixels, but tile 5 is 64 x 64.";
        QTest::newRow("import, No to the colours mapped") << import << Chosen::Tile << "tile.png" << 1 << "";
    }
    void refusals() {
        QFETCH(QString, key);
        QFETCH(Chosen, chosen);
        QFETCH(QString, file);
        QFETCH(int, dialogs);
        QFETCH(QString, says);
        W().lstPalettes->setCurrentRow(chosen == Chosen::Palette ? 1 : -1);
        if (chosen == Chosen::Tile) W().picMain_MouseUp(1, 0, kTile * 64 + 32, 32);
        STYRecycle = {3, 255};
        const State before = Now();
        if (!file.isEmpty()) answers_ = {F(file.toStdString())};
        yes_ = false;
        ombrevale::testsupport::HookRecorder hooks;
        W().tlbMain_ButtonClick(key);
        QCOMPARE(hooks.messages().size(), std::size_t(!says.isEmpty()));
        if (!says.isEmpty())
            QVERIFY2(QString::fromStdString(hooks.messages()[0]).contains(says), hooks.messages()[0].c_str());
        QCOMPARE(folders_.size(), dialogs);
        // Whatever of the progress window the job opened, it closed again.
        const auto& calls = hooks.calls();
        const auto last = std::find_if(calls.rbegin(), calls.rend(),
                                       [](const std::string& c) { return c == "end" || c.rfind("start", 0) == 0; });
        QVERIFY(last == calls.rend() || *last == "end");
        QVERIFY(Now() == before && !W().Actions().undo->isEnabled());
        QCOMPARE(W().Document().Path(), std::string(OMBREVALE_SAMPLE));
    }

    // The selected sprite in the shown remap, as the document saves it; a PNG holds the same picture.
    void exportPicture_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("BMP") << "s.bmp";
        QTest::newRow("PNG") << "s.png";
    }
    void exportPicture() {
        QFETCH(QString, name);
        W().lstSprites->setCurrentRow(0);
        W().lstRemaps->setCurrentRow(1);
        answers_ = {F(name.toStdString())};
        QCOMPARE(Click("export"), 0);
        std::int16_t p = std::int16_t(Remap(0));
        QVERIFY(W().Sty().SaveSprite(dir_.File("want.bmp"), 0, p));
        QCOMPARE(Rgb(QImage(F(name.toStdString()))), Rgb(QImage(F("want.bmp"))));
    }

    // An edit is on disk a moment later, as a save would write the style, and
    // goes when the style is back at its saved state; a Refresh leaves it to
    // be offered, Restore brings it back unsaved, Ctrl+S saves it.
    void keptEdits() {
        const std::string path = OpenCopy();
        const auto& store = W().Document().Kept()->store();
        const auto kept = [&] { return Kept(path); };
        QLabel* badge = W().Views().kept->Badge();
        auto* bar = W().Views().kept->OfferBar();
        Make(Edit::Tile);
        const auto edited = W().Sty().SavedBytes();
        QTRY_VERIFY_WITH_TIMEOUT(store.Find(path).has_value(), 1000);
        QVERIFY(kept() == edited);
        QVERIFY(badge->isVisibleTo(&W()) && badge->toolTip().startsWith("1 unsaved edit,"));
        W().Document().UndoStack()->undo();
        QVERIFY(kept().empty() && !badge->isVisibleTo(&W()));
        W().Document().UndoStack()->redo();
        QVERIFY(kept() == edited);
        W().cmdGen_Click();
        QVERIFY(kept() == edited && !W().Document().UndoStack()->canUndo());
        QVERIFY(bar->isVisibleTo(&W()));
        QVERIFY2(bar->Text().startsWith("Unsaved edits of kept.sty from ") &&
                     bar->Text().endsWith("(1 edit: Import into tile 5)"),
                 qPrintable(bar->Text()));
        // An edit now would take their place: No leaves the edit unmade and them on offer.
        yes_ = false;
        QCOMPARE(Says([&] { Make(Edit::RecycleAdd); }), 0);
        QVERIFY(!W().Document().UndoStack()->canUndo() && kept() == edited && bar->isVisibleTo(&W()));
        // Changed on disk since: No to the question restores nothing.
        auto changed = ombrevale::stylewriter::ReadFile(path);
        changed.back() ^= 1;
        ombrevale::stylewriter::WriteFile(path, changed);
        bar->RestoreButton()->click();
        QVERIFY(W().Sty().SavedBytes() != edited && bar->isVisibleTo(&W()));
        yes_ = true;
        const auto loaded = W().Sty().SavedBytes();
        bar->RestoreButton()->click();
        QVERIFY(W().Sty().SavedBytes() == edited && !bar->isVisibleTo(&W()));
        QVERIFY(badge->isVisibleTo(&W()) && kept() == edited);
        // The Restore is one step of the history.
        W().Document().UndoStack()->undo();
        QVERIFY(W().Sty().SavedBytes() == loaded && !badge->isVisibleTo(&W()));
        W().Document().UndoStack()->redo();
        QVERIFY(W().Sty().SavedBytes() == edited && badge->text() == "1" && kept() == edited);
        W().show();
        W().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&W()));
        QTest::keyClick(&W(), Qt::Key_S, Qt::ControlModifier);
        QVERIFY(kept().empty() && !badge->isVisibleTo(&W()));
        QVERIFY(ombrevale::stylewriter::ReadFile(path) == edited);
    }

    // Offered edits stay on disk until an edit is made in their place, and on
    // offer while the window holds their style: a Save, an edit that fails or a
    // cancelled one leaves them.
    void keptOfferStaysUntilAnEdit_data() {
        QTest::addColumn<QString>("action");
        QTest::addColumn<bool>("kept");
        QTest::addColumn<bool>("offered");
        QTest::newRow("save") << "save" << true << true;
        QTest::newRow("save as") << "saveas" << true << false;
        QTest::newRow("a JASC file cut short") << "import" << true << true;
        QTest::newRow("import folder cancelled") << "folder" << true << true;
        QTest::newRow("a recycling entry") << "recycle" << false << false;
    }
    void keptOfferStaysUntilAnEdit() {
        QFETCH(QString, action);
        QFETCH(bool, kept);
        QFETCH(bool, offered);
        const std::string path = OpenCopy();
        AddRecycled("71");
        const auto edited = Kept(path);
        W().cmdGen_Click();
        std::ofstream(dir_.File("short.pal")) << "JASC-PAL\n0100\n256\n1 2 3\n";
        W().lstPalettes->setCurrentRow(1);
        if (action == "folder")
            W().ImportFolder();  // no folder chosen
        else if (action == "recycle")
            AddRecycled("72");
        else {
            answers_ = {F(action == "import" ? "short.pal" : "other.sty")};
            Click(action.toLatin1());
        }
        QCOMPARE(Kept(path) == edited, kept);
        QCOMPARE(Offered(), offered);
    }

    // A style open in two windows: the second neither offers nor touches the first's entry, and says so once.
    void keptEntryHasOneOwner() {
        const std::string path = OpenCopy();
        AddRecycled("71");
        const auto edited = Kept(path);
        std::unique_ptr<frmSTY2> second;
        QCOMPARE(Says([&] { second = std::make_unique<frmSTY2>(path); }), 1);
        QVERIFY(!second->Views().kept->OfferBar()->isVisibleTo(second.get()));
        reply_ = "72";
        second->cmdRecyAdd_Click();
        second->Document().KeepNow();
        QVERIFY(!second->Views().kept->Badge()->toolTip().contains("kept on disk until"));
        second.reset();
        QVERIFY(Kept(path) == edited);
    }

    // A disk that refuses the copy is told once for its cause, and the badge stops saying it is kept.
    void keptRefusedByTheDisk() {
        OpenCopy();
        std::signal(SIGXFSZ, SIG_IGN);  // the write fails with EFBIG, as a full disk fails it with ENOSPC
        rlimit was{};
        ::getrlimit(RLIMIT_FSIZE, &was);
        const rlimit small{4096, was.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
        const int told = Says([&] {
            for (const char* n : {"71", "72", "73"}) {
                AddRecycled(n);
                W().Document().KeepNow();
                QCoreApplication::processEvents();
            }
        });
        ::setrlimit(RLIMIT_FSIZE, &was);
        QCOMPARE(told, 1);
        QVERIFY(!W().Views().kept->Badge()->toolTip().contains("kept on disk until"));
    }

    // An edit just before Save is on disk as the save starts, so that an end
    // during the save loses nothing; then the badge and the entry count the
    // steps between the saved point and now, either way.
    void keptAcrossSave() {
        const std::string path = OpenCopy();
        for (const char* n : {"71", "72", "73"}) AddRecycled(n);
        const auto edited = W().Sty().SavedBytes();
        std::vector<std::uint8_t> duringSave;
        DocumentHooks hooks;
        hooks.progressStart = [&](double, double, const std::string&) {
            W().Document().Kept()->store().ReadDocument(path, duringSave);
        };
        {
            const ScopedDocumentHooks scoped(hooks);
            W().tlbMain_ButtonClick(QStringLiteral("save"));
        }
        QVERIFY(duringSave == edited);
        AddRecycled("74");
        QCOMPARE(W().Views().kept->Badge()->text(), "1");
        W().Document().KeepNow();
        QCOMPARE(W().Document().Kept()->store().Find(path)->edits, std::vector<std::string>{"add 74 to recycling"});
        for (int i = 0; i < 3; ++i) W().Document().UndoStack()->undo();
        QCOMPARE(W().Views().kept->Badge()->text(), "2");
    }

    // A folder of the export's files goes in as one step that Undo takes back whole: what differs
    // changes, the rest stays. Pictures in colours their palettes lack are named and counted, and take
    // the nearest colours, palettes of their own (the command line's --new-palette) or stay out.
    void importFolder_data() {
        QTest::addColumn<int>("pictures");  // in colours no palette holds; 0: the exported ones, one changed
        QTest::addColumn<int>("answer");    // as the buttons stand: nearest, own palettes, leave out (No)
        QTest::newRow("a palette refused, No") << 0 << 2;
        QTest::newRow("a palette refused, the rest go in") << 0 << 0;
        QTest::newRow("nearest, 1 picture") << 1 << 0;
        QTest::newRow("own palettes, 2 pictures") << 2 << 1;
        QTest::newRow("left out, 1 picture") << 1 << 2;
    }
    void importFolder() {
        QFETCH(int, pictures);
        QFETCH(int, answer);
        const QString folder = F("folder");
        QDir(folder).removeRecursively();
        QDir().mkpath(folder + "/tiles");
        QImage tile;
        if (pictures == 0) {
            QDir().mkpath(folder + "/palettes");
            QVERIFY(W().Sty().SaveTile(dir_.File("folder/tiles/tile-0005.bmp"), 5));
            QVERIFY(W().Sty().SaveTile(dir_.File("folder/tiles/tile-0006.bmp"), 6));
            tile = QImage(folder + "/tiles/tile-0005.bmp");  // the exported colour numbers, one pixel moved
            tile.setPixel(3, 3, uint(tile.pixelIndex(3, 3) + 1) % 256);
            QVERIFY(tile.save(folder + "/tiles/tile-0005.bmp", "BMP"));
            std::ofstream(dir_.File("folder/palettes/palette-999.pal")) << "JASC-PAL\n";
        }
        for (int k = 0; k < pictures; ++k)
            QVERIFY(QFile::copy(F("tile.png"),
                                folder + QStringLiteral("/tiles/tile-%1.png").arg(kTile + k, 4, 10, QLatin1Char('0'))));
        const State before = Now();
        const auto palettes = STYPalIndex;
        answers_ = {folder};
        yes_ = pictures > 0 || answer == 0;  // to "import the changes that can" in spite of the refused palette
        choiceAnswer_ = answer;
        ombrevale::testsupport::HookRecorder hooks;
        W().ImportFolder();
        if (pictures > 0) {
            QCOMPARE(choiceButtons_.size(), 3);
            QVERIFY2(choicePrompt_.startsWith(pictures == 1 ? QStringLiteral("1 picture of %1 has").arg(folder)
                                                            : QStringLiteral("2 pictures of %1 have").arg(folder)),
                     qPrintable(choicePrompt_));
            QVERIFY2(choicePrompt_.contains(
                         QStringLiteral("tiles/tile-%1.png").arg(kTile + pictures - 1, 4, 10, QLatin1Char('0'))),
                     qPrintable(choicePrompt_));
        } else {
            QCOMPARE(hooks.messages().size(), std::size_t(answer == 0));
        }
        if (answer == 2) {
            QVERIFY(Now() == before && !W().Document().UndoStack()->canUndo());
            return;
        }
        if (pictures == 0) {
            QVERIFY2(QString::fromStdString(hooks.messages()[0]).contains("1 changed, 1 unchanged, 1 refused."),
                     hooks.messages()[0].c_str());
            QCOMPARE(W().Sty().STYTileStore.at(5)[3 * 64 + 3], std::uint8_t(tile.pixelIndex(3, 3)));
        }
        const State after = Now();
        QVERIFY(after.cell != before.cell);
        // Each picture takes a palette of its own, named by its PALX entry alone.
        for (int k = 0; k < pictures && answer == 1; ++k) {
            const auto p = STYPalIndex.at(std::size_t(kTile + k));
            QVERIFY(p != palettes.at(std::size_t(kTile + k)) &&
                    std::count(STYPalIndex.begin(), STYPalIndex.end(), p) == 1);
        }
        QCOMPARE(W().Document().UndoStack()->count(), 1);
        W().Document().UndoStack()->undo();
        QVERIFY(Now() == before);
        W().Document().UndoStack()->redo();
        QVERIFY(Now() == after);
    }

    // Events that arrive through a progress step while Refresh loads the style
    // or draws the sheet: none may crash or draw outside its picture, and once
    // the Refresh ends the stores and the sheet are what a quiet Refresh gives.
    void eventsDuringRefresh_data() {
        QTest::addColumn<QString>("phase");
        QTest::addColumn<QString>("what");
        for (const char* what :
             {"refresh", "click", "key", "sprite", "palette", "text", "redo", "saveas", "open", "colour", "recycle"})
            for (const char* phase : {"Loading Section PPAL", "Rendering"})
                QTest::addRow("%s/%s", phase, what) << phase << what;
    }
    void eventsDuringRefresh() {
        QFETCH(QString, phase);
        QFETCH(QString, what);
        W().show();
        W().cmdGen_Click();
        const QImage cleanSheet = W().picMain->image();
        const auto cleanStores = ombrevale::testsupport::TakeSnapshot(W().Sty());
        if (what == "redo") {
            Make(Edit::Tile);
            W().Document().UndoStack()->undo();
            folders_.clear();
        }
        answers_ = {F("during.sty")};
        int inner = 0;
        DocumentHooks h;
        h.progressStep = [&](double, const std::string& caption) {
            if (inner > 0 || !QString::fromStdString(caption).startsWith(phase)) return;
            ++inner;
            if (what == "refresh") W().cmdGen_Click();
            if (what == "click") W().picMain_MouseUp(1, 0, 70, 130);
            if (what == "key") W().Form_KeyDown(ombrevale::keycodes::vbKeyPageDown, 0);
            if (what == "sprite") W().lstSprites->setCurrentRow(W().lstSprites->count() - 1);
            if (what == "palette") W().lstPalettes->setCurrentRow(3);
            if (what == "text") W().txtText->setText(QStringLiteral("HELLO 123"));
            if (what == "text") W().cmdCreateText_Click();
            // Commands that change or write the document, or start a job, are passed over.
            if (what == "redo") QTest::keyClick(W().picMain, Qt::Key_Y, Qt::ControlModifier);
            if (what == "saveas" || what == "open") W().tlbMain_ButtonClick(what);
            // An edit is refused aloud: nothing changes, and the user hears why.
            if (what == "colour") {
                W().lstPalettes->setCurrentRow(2);
                W().txtIdx->setText(QStringLiteral("7"));
                for (QLineEdit* e : {W().txtRed, W().txtGreen, W().txtBlue}) e->setText(QStringLiteral("9"));
                W().lblColour_Click();
            }
            if (what == "recycle") {
                W().lstRecy->setCurrentRow(0);
                W().cmdRecyRemove_Click();
            }
        };
        std::vector<std::string> told;
        h.msgBox = [&](const std::string& text, const std::string&, MsgIcon) { told.push_back(text); };
        ScopedDocumentHooks scoped(h);
        W().cmdGen_Click();
        QCOMPARE(inner, 1);
        const bool edit = what == "colour" || what == "recycle";
        QCOMPARE(told.size(), std::size_t(edit ? 1 : 0));
        if (edit) QVERIFY2(QString::fromStdString(told[0]).contains(QStringLiteral("was not made")), told[0].c_str());
        QVERIFY(ombrevale::testsupport::TakeSnapshot(W().Sty()) == cleanStores);
        QCOMPARE(W().picMain->image(), cleanSheet);
        QVERIFY(folders_.isEmpty());
        // The window still answers once the Refresh is over, and no box of a click it passed over stays.
        W().picMain_MouseUp(1, 0, 134, 130);
        QCOMPARE(W().picMain->Tag, QStringLiteral("20"));
        QCOMPARE(W().picMain->image().copy(64, 128, 64, 64), cleanSheet.copy(64, 128, 64, 64));
    }
    // Views

    // Ctrl+T tints a road cell over what was drawn and names it in the tip; again, and it is gone.
    void surfaceTint() {
        const auto types = ombrevale::surfaces::ReadSurfaces(W().Sty().STYSurfaceSpec, 992).type;
        const int road = int(std::find(types.begin(), types.end(), 3) - types.begin());
        const QPoint at = CellCentre(road);
        const QRgb drawn = W().picMain->image().pixel(at), tint = ombrevale::workbench::SurfaceTint(3).rgba();
        Ctrl(W().picMain, Qt::Key_T);
        const QRgb shown = W().picMain->grab().toImage().pixel(at);
        const double a = qAlpha(tint) / 255.0;
        QVERIFY(std::abs(qRed(shown) - (qRed(tint) * a + qRed(drawn) * (1 - a))) < 2);
        QVERIFY(std::abs(qBlue(shown) - (qBlue(tint) * a + qBlue(drawn) * (1 - a))) < 2);
        QCOMPARE(W().Views().surfaces->CellTip(at.x(), at.y()),
                 QStringLiteral("Tile %1\nIn palette %2 (physical %3)\nSurface: road")
                     .arg(road)
                     .arg(STYPalIndex.at(std::size_t(road)) + 1)
                     .arg(STYPalIndex.at(std::size_t(road))));
        Ctrl(W().picMain, Qt::Key_T);
        QCOMPARE(W().picMain->grab().toImage().pixel(at) | 0xFF000000u, drawn | 0xFF000000u);
        // Shown again, the list is read again: a damaged one gives one message, not one a render.
        W().Sty().STYSurfaceSpec = {5, 0, 0, 0, 7};
        QCOMPARE(Says([&] {
                     Ctrl(W().picMain, Qt::Key_T);
                     W().RenderSheet();
                     W().RenderSheet();
                 }),
                 1);
    }

    // Ctrl+G offers only the tiles a click can select, and says why not for the rest; a tile it
    // takes is in view, with the caption, number and box that a click on its cell gives.
    void goToTile_data() {
        QTest::addColumn<int>("tiles");  // of the style; 0: the sample's 992
        QTest::addColumn<QString>("reply");
        QTest::addColumn<int>("messages");
        QTest::addColumn<QString>("says");
        QTest::newRow("500, below the first screen") << 0 << "500" << 0 << "";
        QTest::newRow("beyond the tiles") << 0 << "992" << 1 << "";
        QTest::newRow("past the selectable") << 1000 << "995" << 1 << "only tiles 0 to 991";
    }
    void goToTile() {
        QFETCH(int, tiles);
        QFETCH(QString, reply);
        QFETCH(int, messages);
        QFETCH(QString, says);
        if (tiles) {
            ombrevale::wbtest::WriteStyle(dir_.File("big.sty"), tiles);
            w_.reset();
            w_ = std::make_unique<frmSTY2>(dir_.File("big.sty"));
        }
        reply_ = reply;
        ombrevale::testsupport::HookRecorder hooks;
        Ctrl(W().picMain, Qt::Key_G);
        QCOMPARE(prompt_, QStringLiteral("Go to tile (0 to 991):"));
        QCOMPARE(int(hooks.messages().size()), messages);
        QVERIFY(says.isEmpty() || QString::fromStdString(hooks.messages()[0]).contains(says));
        frmSTY2 clicked{W().Document().Path()};
        if (reply == "500") clicked.picMain_MouseUp(1, 0, CellCentre(500).x(), CellCentre(500).y());
        QCOMPARE(W().lblIdx->text(), clicked.lblIdx->text());  // the tile's number and palette
        QCOMPARE(W().picMain->image(), clicked.picMain->image());
        const int top = W().picMain->y() + CellCentre(500).y() - 32;
        QCOMPARE(top >= 0 && top + 64 <= W().picCont->height(), reply == "500");
    }

    void findSprite_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QString>("caption");  // of the row selected; empty: a message instead
        QTest::newRow("group and number") << QStringLiteral("font 40") << "Font: 40";
        QTest::newRow("sprite number") << QStringLiteral("1366") << "Font: 1";
        QTest::newRow("no such car") << QStringLiteral("car 999") << "";
    }
    void findSprite() {
        QFETCH(QString, reply);
        QFETCH(QString, caption);
        W().MainTab->setCurrentIndex(1);
        reply_ = reply;
        QCOMPARE(Says([&] { Ctrl(W().lstSprites, Qt::Key_F); }), int(caption.isEmpty()));
        QCOMPARE(W().lstSprites->currentItem() ? W().lstSprites->currentItem()->text() : QString(), caption);
    }

    void zoom_data() {
        QTest::addColumn<bool>("font");
        QTest::addColumn<int>("notches");
        QTest::addColumn<int>("zoom");
        QTest::newRow("sprite with a delta, 2x") << false << 1 << 2;
        QTest::newRow("sprite with a delta, 6x, grid") << false << 4 << 6;
        QTest::newRow("font text, no step past 8x") << true << 9 << 8;
    }
    // Ctrl+wheel: a square of zoom x zoom a pixel, of what is drawn; a grid from 4x; the colour in the tip.
    void zoom() {
        QFETCH(bool, font);
        QFETCH(int, notches);
        QFETCH(int, zoom);
        W().txtText->setText("Ab!");
        W().cmdCreateText->click();
        W().lstSprites->setCurrentRow(0);
        W().cmbDeltas->setCurrentIndex(2);
        PictureBox* box = font ? W().picFont : W().picSprite;
        const QImage drawn = Rgb(box->image());
        CtrlWheel(box, notches);
        const QImage shown = Rgb(box->grab().toImage());
        for (int y = 0; y < 15; ++y)
            for (int x = 0; x < 15; ++x) {
                QCOMPARE(shown.pixel(x * zoom + zoom - 1, y * zoom + zoom - 1), drawn.pixel(x, y));
                QCOMPARE(shown.pixel(x * zoom, y * zoom + 1) == drawn.pixel(x, y), zoom < 4);
            }
        const QRgb c = drawn.pixel(3, 5);
        QCOMPARE((font ? W().Views().fontZoom : W().Views().spriteZoom)->TipAt({3 * zoom + 1, 5 * zoom + 1}),
                 QStringLiteral("x 3 y 5 Red: %1 Green: %2 Blue: %3").arg(qRed(c)).arg(qGreen(c)).arg(qBlue(c)));
        CtrlWheel(box, -9);
        QCOMPARE(Rgb(box->grab().toImage()), drawn);
    }

    // Ctrl+R: the car in its own palette and each remap, labelled; Ctrl+U: the users of the chosen
    // palette. A click in either chooses that car and remap. Both open beside the main window, wide
    // enough for their titles, and after Open hold nothing of the last style.
    void addedViews() {
        W().setGeometry(10, 40, 300, 400);  // room on the screen's right
        W().MainTab->setCurrentIndex(1);
        W().lstSprites->setCurrentRow(0);
        Ctrl(W().lstSprites, Qt::Key_R);
        QListWidget* strip = W().Views().allRemaps;
        QCOMPARE(strip->count(), W().lstRemaps->count());
        QCOMPARE(strip->item(2)->text(), QStringLiteral("remap %1").arg(STYCarInfo[0].remaps[1]));
        const QImage want = Drawn(W().Sty(), 0, Remap(1));
        QCOMPARE(Rgb(strip->item(2)->icon().pixmap(want.size()).toImage()), want);
        ClickRow(strip, 2);
        QCOMPARE(W().lstRemaps->currentRow(), 2);
        W().lstSprites->setCurrentRow(W().lstSprites->count() - 1);
        QCOMPARE(strip->count(), 0);
        W().MainTab->setCurrentIndex(2);
        W().lstPalettes->setCurrentRow(Remap(1));
        Ctrl(W().lstPalettes, Qt::Key_U);
        QListWidget* usage = W().Views().usage;
        const auto found =
            usage->findItems(QStringLiteral("Car: 1, remap %1").arg(STYCarInfo[0].remaps[1]), Qt::MatchExactly);
        QCOMPARE(found.size(), 1);
        ClickRow(usage, usage->row(found[0]));
        QCOMPARE(W().lstSprites->currentRow(), 0);
        QCOMPARE(W().lstRemaps->currentRow(), 2);
        const QWidget* tools[] = {strip, usage};
        for (const QWidget* tool : tools) {
            QVERIFY(tool->isVisible());
            QVERIFY2(!tool->frameGeometry().intersects(W().frameGeometry()), qPrintable(tool->windowTitle()));
            QVERIFY(tool->screen()->availableGeometry().contains(tool->frameGeometry()));
            QVERIFY(tool->width() > tool->fontMetrics().horizontalAdvance(tool->windowTitle()));
        }
        // The first stands right beside the main window; the second never over it.
        QVERIFY(std::abs(tools[0]->frameGeometry().left() - W().frameGeometry().right()) < 16);
        QVERIFY(!tools[0]->frameGeometry().intersects(tools[1]->frameGeometry()));
        QVERIFY(strip->count() > 0 && usage->count() > 0);
        ombrevale::wbtest::WriteStyle(dir_.File("other.sty"), 40);
        answers_ = {F("other.sty")};
        W().tlbMain_ButtonClick(QStringLiteral("open"));
        QCOMPARE(W().Document().Path(), dir_.File("other.sty"));
        QCOMPARE(strip->count(), 0);
        QCOMPARE(usage->count(), 0);
        QCOMPARE(usage->windowTitle(), QStringLiteral("Palette usage: choose a palette"));
    }

    void boxKeepsItsEdges_data() {
        QTest::addColumn<bool>("redo");
        QTest::newRow("after an import") << false;
        QTest::newRow("after an undo and a redo") << true;
    }
    // The selected tile's box stays whole when its cell is drawn anew, and leaves nothing behind when it moves.
    void boxKeepsItsEdges() {
        Make(Edit::Tile);
        if (QFETCH(bool, redo); redo) {
            W().Document().UndoStack()->undo();
            W().Document().UndoStack()->redo();
        }
        W().picMain_MouseUp(1, 0, CellCentre(kTile + 30).x(), CellCentre(kTile + 30).y());
        const QRect around(CellCentre(kTile) - QPoint(32, 32), QSize(129, 129));
        const QImage left = W().picMain->image().copy(around);
        W().RenderSheet();
        QCOMPARE(left, W().picMain->image().copy(around));
    }

    // Zoomed past its box the picture scrolls to its far corner; the grid ends with the picture.
    void zoomScrollsAndGridEnds() {
        W().lstSprites->setCurrentRow(0);
        const int w = W().Sty().GetSpriteWidth(0);
        ombrevale::workbench::ZoomLens* lens = W().Views().spriteZoom;
        lens->SetZoom(4);
        QVERIFY(w * 4 + 5 < lens->width());
        const QImage grid = Rgb(W().picSprite->grab().toImage());
        QCOMPARE(grid.pixel(w * 4 + 4, 1) | 0xFF000000u, W().picSprite->BackColor() | 0xFF000000u);
        lens->SetZoom(8);
        const auto bars = lens->findChildren<QScrollBar*>();
        QVERIFY(std::any_of(bars.begin(), bars.end(), [](QScrollBar* b) { return !b->isHidden(); }));
        for (QScrollBar* bar : bars) bar->setValue(bar->maximum());
        QCOMPARE(lens->Origin().x() + (lens->width() - 20) / 8 >= w - 1, true);
        QCOMPARE(lens->Origin().y() + (lens->height() - 20) / 8 >= W().Sty().GetSpriteHeight(0) - 1, true);
    }

    // Every added view from the mouse: the sheet's menu, the sprite list's menu; F1 lists their keys.
    void viewsByMouseAndKeys() {
        Show();
        QStringList offered;
        const auto menuOf = [&](QWidget* on, QPoint at) {
            QTimer::singleShot(0, [&] {
                auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                for (QAction* a : menu ? menu->actions() : QList<QAction*>{})
                    offered << a->text() + QLatin1Char('\t') + a->shortcut().toString();
                if (menu) menu->close();
            });
            emit on->customContextMenuRequested(at);
        };
        menuOf(W().picMain, CellCentre(3));
        W().MainTab->setCurrentIndex(1);
        menuOf(W().lstSprites, {5, 5});
        for (const char* want : {"Go to tile...\tCtrl+G", "Tint surface types\tCtrl+T", "Find sprite...\tCtrl+F",
                                 "All remaps...\tCtrl+R", "Show car record\tCtrl+K", "Edit car record...\tCtrl+E"})
            QVERIFY2(offered.contains(QString::fromLatin1(want)), want);
        ombrevale::testsupport::HookRecorder hooks;
        Show();
        QTest::keyClick(&W(), Qt::Key_F1);
        QCOMPARE(hooks.messages().size(), std::size_t(1));
        const QString keys = QString::fromStdString(hooks.messages()[0]);
        for (const char* key :
             {"Ctrl+G", "Ctrl+T", "Ctrl+F", "Ctrl+R", "Ctrl+K", "Ctrl+E", "Ctrl+U", "Ctrl+Z", "Ctrl+Shift+S"})
            QVERIFY2(keys.contains(QString::fromLatin1(key)), key);
    }

    // Ctrl+Z in a text box takes back its typing, not the style's last edit.
    void textBoxKeepsItsUndo() {
        Make(Edit::RecycleAdd);
        W().MainTab->setCurrentIndex(3);
        Show();
        W().txtText->setFocus();
        QTest::keyClicks(W().txtText, QStringLiteral("ab"));
        QTest::keyClick(W().txtText, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(W().txtText->text(), QString());
        QCOMPARE(W().Document().UndoStack()->index(), 1);
    }

    // A style file dropped on the window opens as Open opens it.
    void dropOpensStyle() {
        ombrevale::wbtest::WriteStyle(dir_.File("dropped.sty"), 40);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(F("dropped.sty"))});
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&W(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&W(), &drop);
        QTRY_COMPARE(W().Document().Path(), dir_.File("dropped.sty"));
        QCOMPARE(W().Sty().GetNumOfTiles(), 40);
    }

    // Edits and their undo: each changes the stores and what shows them, Undo
    // puts both back, Redo makes the edit again, a load forgets the history.

    void undoRedo_data() {
        QTest::addColumn<Edit>("edit");
        QTest::addColumn<Shows>("shows");
        QTest::addColumn<bool>("ctrlY");  // else Ctrl+Shift+Z
        QTest::newRow("tile import, colours mapped") << Edit::Tile << Shows::Cell << true;
        // Pixels, palette, PALX entry and palette count in one step.
        QTest::newRow("tile import, own palette") << Edit::TileOwnPalette << Shows::Cell << false;
        QTest::newRow("sprite import") << Edit::Sprite << Shows::Sprite << false;
        QTest::newRow("delta import") << Edit::Delta << Shows::Sprite << true;
        QTest::newRow("colour write") << Edit::Colour << Shows::Cell << false;
        QTest::newRow("JASC palette import") << Edit::Jasc << Shows::Cell << true;
        QTest::newRow("recycling add") << Edit::RecycleAdd << Shows::List << false;
        QTest::newRow("recycling remove") << Edit::RecycleRemove << Shows::List << true;
    }
    void undoRedo() {
        QFETCH(Edit, edit);
        QFETCH(Shows, shows);
        QFETCH(bool, ctrlY);
        ombrevale::testsupport::HookRecorder hooks;
        const State before = Make(edit), after = Now();
        QVERIFY(after.stores != before.stores);
        QVERIFY(edit != Edit::Delta || after.stores.spriteData == before.stores.spriteData);
        QVERIFY2(after.Of(shows) != before.Of(shows), "the edit shows");
        QVERIFY(W().Actions().undo->isEnabled());
        const std::string kind = W().sSelKind;
        W().MainTab->setCurrentIndex(0);
        Show();
        QTest::keyClick(&W(), Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(Now() == before);
        QVERIFY(W().Actions().redo->isEnabled() && !W().Actions().undo->isEnabled() && W().sSelKind == kind);
        QTest::keyClick(&W(), ctrlY ? Qt::Key_Y : Qt::Key_Z,
                        Qt::ControlModifier | (ctrlY ? Qt::NoModifier : Qt::ShiftModifier));
        QVERIFY(Now() == after && hooks.messages().empty());
        W().cmdGen_Click();
        QVERIFY(!W().Actions().undo->isEnabled() && !W().Actions().redo->isEnabled());
    }

    // The choice for a picture its palette does not hold names the target as the lists do and
    // shows both ways at 2x; the way chosen is what the sheet shows afterwards; a delta has no own way.
    void colourChoice_data() {
        QTest::addColumn<int>("sprite");  // -1: tile kTile
        QTest::addColumn<int>("delta");   // -1: none
        QTest::addColumn<int>("answer");
        using A = ombrevale::workbench::ColourAnswer;
        QTest::newRow("tile, nearest colours") << -1 << -1 << int(A::Nearest);
        QTest::newRow("tile, own palette") << -1 << -1 << int(A::OwnPalette);
        QTest::newRow("sprite") << 3 << -1 << int(A::Cancel);
        QTest::newRow("delta") << 3 << 1 << int(A::Cancel);
    }
    void colourChoice() {
        QFETCH(int, sprite);
        QFETCH(int, delta);
        QFETCH(int, answer);
        choice_ = ombrevale::workbench::ColourAnswer(answer);
        const int pal = STYPalIndex.at(kTile);  // before the import gives the tile one of its own
        if (sprite >= 0) {
            W().lstSprites->setCurrentRow(sprite);
            W().cmbDeltas->setCurrentIndex(delta + 1);
            std::int16_t own = -1;
            QVERIFY(W().Sty().SaveSprite(dir_.File("sprite.bmp"), sprite, own));
            QImage image = Rgb(QImage(F("sprite.bmp")));
            image.setPixel(1, 1, qRgb(1, 2, 3));
            QVERIFY(image.save(F("sprite.png")));
            answers_ = {F("sprite.png")};
        } else {
            W().picMain_MouseUp(1, 0, kTile * 64 + 32, 32);
            answers_ = {F("tile.png")};
        }
        W().tlbMain_ButtonClick(QStringLiteral("import"));
        QVERIFY(!nearestPreview_.isNull());
        if (sprite >= 0) {
            const QString name = QStringLiteral("%1 (sprite %2)").arg(W().lstSprites->item(sprite)->text()).arg(sprite);
            QVERIFY2(
                question_.endsWith(QStringLiteral("Import it into %1%2 with:")
                                       .arg(delta < 0 ? QString() : QStringLiteral("delta %1 of ").arg(delta), name)),
                qPrintable(question_));
            QVERIFY2(delta < 0 || (ownPreview_.isNull() && ownNote_.contains("drawn in its sprite's palette")),
                     qPrintable(ownNote_));
            return;
        }
        QVERIFY2(question_.contains(QStringLiteral("that palette %1 (physical %2) does not").arg(pal + 1).arg(pal)),
                 qPrintable(question_));
        QVERIFY2(ownText_.contains(QStringLiteral("palette %1 (physical %2)").arg(pal + 1).arg(pal)),
                 qPrintable(ownText_));
        QCOMPARE(nearestPreview_.size(), QSize(128, 128));
        QCOMPARE(ownPreview_.size(), QSize(128, 128));
        const QImage chosen =
            Rgb(answer == int(ombrevale::workbench::ColourAnswer::Nearest) ? nearestPreview_ : ownPreview_);
        PictureBox box;
        box.resize(64, 64);
        QVERIFY(W().Sty().RenderTile(kTile, box));
        const QImage tile = Rgb(box.image());
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x)
                for (int k = 0; k < 4; ++k) QCOMPARE(chosen.pixel(2 * x + k % 2, 2 * y + k / 2), tile.pixel(x, y));
    }

    // Past its budget the history drops its oldest steps; the steps kept, a delta among them, still
    // undo and redo exactly, the saved state keeps its place, and a listener can pass over the rebuild.
    void historyBudget() {
        using ombrevale::editparts::Kind;
        using ombrevale::workbench::EditHistory;
        const auto tile = [this](int t) {
            W().Document().Record({{Kind::Tile, t}}, "tile",
                                  [&] { return W().Sty().SetBitsTile(t, ByteString(4096, 9)); });
        };
        const auto delta = [this] {
            ByteString bits = W().Sty().GetBits(0);
            std::fill_n(bits.begin() + std::ptrdiff_t(bits.size() / 2), 40, 7);  // a delta of another length
            W().Document().Record({{Kind::Deltas, 0}}, "delta", [&] { return W().Sty().SetDeltaBits(0, 0, bits); });
        };
        std::vector<State> states{Now()};
        // The two oldest steps weighed without a budget give one that holds the newest two, not all three.
        auto* unbounded = new EditHistory(W().Document().UndoStack(), SIZE_MAX);
        tile(kTile);
        const std::size_t tileBytes = unbounded->HeldBytes();
        states.push_back(Now());
        delta();
        const std::size_t deltaBytes = unbounded->HeldBytes() - tileBytes;
        states.push_back(Now());
        delete unbounded;
        const auto* history = new EditHistory(W().Document().UndoStack(), deltaBytes + tileBytes * 3 / 2);
        QList<bool> heard;
        const QObject listener;  // goes with the test, before the window's stack
        connect(W().Document().UndoStack(), &QUndoStack::cleanChanged, &listener, [&](bool clean) {
            if (!history->Trimming()) heard << clean;
        });
        W().Document().UndoStack()->setClean();  // saved after the delta
        tile(kTile + 1);
        states.push_back(Now());
        QCOMPARE(W().Document().UndoStack()->count(), 2);
        QCOMPARE(W().Document().UndoStack()->cleanIndex(), 1);
        for (int i = 2; i >= 1; --i) {
            W().Document().UndoStack()->undo();
            QVERIFY(Now() == states[std::size_t(i)]);
        }
        QVERIFY(!W().Document().UndoStack()->canUndo());
        QCOMPARE(heard, (QList<bool>{true, false, true, false}));
        W().Document().UndoStack()->redo();
        W().Document().UndoStack()->redo();
        QVERIFY(Now() == states.back());
    }
};

QTEST_MAIN(PanesTest)
#include "panes_test.moc"
