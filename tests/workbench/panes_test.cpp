// The panes and the tool bar on the bundled sample, the dialogs answered by
// the test: sprites with their car records, remaps and deltas; the palette
// strip and writing a colour back; lines of font glyphs; the recycling list;
// copy, open, save, export and import; events that arrive during a Refresh.
#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QToolTip>
#include <QTreeWidget>
#include <QtTest>
#include <filesystem>
#include <fstream>

#include "style/moddeclares.h"
#include "support/hookrecorder.h"
#include "support/storesnapshot.h"
#include "stylewriter/stylewriter.h"
#include "support/tempdir.h"
#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"
#include "workbench/keycodes.h"
#include "workbench/panes_dialogs.h"
#include "workbench/picturebox.h"

using modDeclares::STYCarInfo;
using modDeclares::STYPalData;

namespace {

// Read-outs of the stores made here rather than through the pixel engine.
QRgb StoreColour(int p, int c) {
    const auto& pal = STYPalData.at(std::size_t(p));
    return qRgb(pal[std::size_t(c) * 4 + 2], pal[std::size_t(c) * 4 + 1], pal[std::size_t(c) * 4]);
}
int OwnPalette(int s) { return modDeclares::STYPalIndex.at(std::size_t(modDeclares::STYPalBase[0] + s)); }

// Sprite s in palette p (its own when -1); colour 0 is the key colour when transparent.
QImage SpriteImage(const clsSTY& doc, int s, bool transparent, int p = -1) {
    const auto& rec = doc.STYSpriteIndex.at(std::size_t(s));
    QImage img(doc.GetSpriteWidth(s), doc.GetSpriteHeight(s), QImage::Format_RGB32);
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x) {
            const int c = doc.STYSpriteData.at(std::size_t(rec.offset + y * 256 + x));
            img.setPixel(x, y, transparent && c == 0 ? qRgb(255, 0, 255) : StoreColour(p < 0 ? OwnPalette(s) : p, c));
        }
    return img;
}

// The part of img at `at` the size of want, as opaque RGB, is want.
bool Shows(const QImage& img, const QImage& want, QPoint at = {}) {
    return img.copy(QRect(at, want.size())).convertToFormat(QImage::Format_RGB32) == want;
}

QRgb Pixel(const QImage& img, int x, int y) { return img.pixel(x, y) | 0xFF000000u; }

// Delta d of sprite s painted over img from the delta store; false when the sprite lacks it.
bool PaintDelta(QImage& img, int s, int d, int p) {
    std::size_t at = 0;
    for (const auto& e : modDeclares::STYDeltaIndex) {
        if (e.sprite != s) {
            for (auto size : e.deltaSizes) at += std::size_t(size);
            continue;
        }
        if (d < 0 || d >= e.deltaCount) return false;
        for (int k = 0; k < d; ++k) at += std::size_t(e.deltaSizes[std::size_t(k)]);
        const auto end = at + std::size_t(e.deltaSizes[std::size_t(d)]);
        const auto& st = modDeclares::STYDeltaStore;
        for (long pos = 0; at + 3 <= end; at += 3 + std::size_t{st[at + 2]}) {
            pos += st[at] | st[at + 1] << 8;
            for (int i = 0; i < st[at + 2]; ++i, ++pos)
                img.setPixel(int(pos % 256), int(pos / 256), StoreColour(p, st[at + 3 + std::size_t(i)]));
        }
        return true;
    }
    return false;
}

// The first car record with remaps whose sprite has at least two deltas, and that sprite.
std::pair<int, int> CarWithRemapsAndDeltas() {
    long n = 0;
    for (std::size_t r = 0; r < STYCarInfo.size(); ++r) {
        if (r > 0) n += STYCarInfo[r].sprite;
        if (STYCarInfo[r].remaps.size() < 2 || (STYCarInfo[r].sprite == 0 && r > 0)) continue;
        for (const auto& e : modDeclares::STYDeltaIndex)
            if (e.sprite == n && e.deltaCount >= 2) return {int(r), int(n)};
    }
    return {-1, -1};
}

// Bytes of the palette store that differ from a copy of it.
int Changed(const std::vector<modDeclares::Palette>& a) {
    int n = 0;
    for (std::size_t p = 0; p < a.size(); ++p)
        for (std::size_t i = 0; i < a[p].size(); ++i) n += a[p][i] != STYPalData[p][i];
    return n;
}
int BandTop(int c, int height) { return (c * height + 255) / 256; }

QStringList Rows(const QListWidget* list) {
    QStringList out;
    for (int i = 0; i < list->count(); ++i) out << list->item(i)->text();
    return out;
}
QList<int> Recycle(const QStringList& rows) {
    QList<int> out;
    for (const QString& r : rows) out << r.toInt();
    return out << 255;
}
QList<int> Recycle() { return QList<int>(modDeclares::STYRecycle.begin(), modDeclares::STYRecycle.end()); }

// What a user can see of a control, for comparing two windows.
QString State(const QWidget* w) {
    const QRect g = w->geometry();
    QStringList s = {w->metaObject()->className(),    QString::number(g.x()),
                     QString::number(g.y()),          QString::number(g.width()),
                     QString::number(g.height()),     QString::number(w->isVisibleTo(w->window())),
                     QString::number(w->isEnabled()), w->palette().color(QPalette::Window).name()};
    for (const char* p : {"text", "currentIndex", "currentRow", "value", "count", "topLevelItemCount"})
        s << w->property(p).toString();
    if (auto* l = qobject_cast<const QListWidget*>(w)) s << Rows(l);
    if (auto* p = qobject_cast<const PictureBox*>(w))
        s << QString::number(qHashBits(p->image().constBits(), std::size_t(p->image().sizeInBytes())));
    return s.join(' ');
}

}  // namespace

class PanesTest : public QObject {
    Q_OBJECT
    // The current directory is a temp folder, so "temp.bmp" lands there.
    std::unique_ptr<testsupport::TempDir> dir_;
    std::unique_ptr<testsupport::ScopedCurrentDir> cwd_;
    std::unique_ptr<frmSTY2> w_;
    QStringList answers_;  // file dialogs, in turn; none left: Cancel
    QStringList folders_;  // where each file dialog started
    QVariant reply_;       // the input box: a QString, or invalid for Cancel
    QStringList prompts_;
    frmSTY2& W() { return *w_; }
    void Click(const char* key) { W().tlbMain_ButtonClick(QString::fromLatin1(key)); }
    std::string Copy(const std::string& name) {
        const std::string p = dir_->File(name);
        std::filesystem::copy_file(OMBREVALE_SAMPLE, p, std::filesystem::copy_options::overwrite_existing);
        return p;
    }
    void Type(const QString& idx, const QString& red) {
        W().txtIdx->setText(idx);
        W().txtRed->setText(red);
        W().txtGreen->setText(QStringLiteral("5"));
        W().txtBlue->setText(QStringLiteral("5"));
    }

private slots:
    void init() {
        dir_ = std::make_unique<testsupport::TempDir>();
        cwd_ = std::make_unique<testsupport::ScopedCurrentDir>(dir_->path());
        w_ = std::make_unique<frmSTY2>(std::string(OMBREVALE_SAMPLE));
        answers_.clear();
        folders_.clear();
        prompts_.clear();
        ombrevale::panesdialogs::Install(
            {[this](QWidget*, const QString& prompt) -> std::optional<QString> {
                 prompts_ << prompt;
                 return reply_.isValid() ? std::optional<QString>(reply_.toString()) : std::nullopt;
             },
             [this](QWidget*, ombrevale::panesdialogs::FileMode, const QString&, const QString&, const QString& folder) {
                 folders_ << folder;
                 return answers_.isEmpty() ? QString() : answers_.takeFirst();
             }});
    }
    void cleanup() {
        ombrevale::panesdialogs::Install({});
        w_.reset();
        cwd_.reset();
        dir_.reset();
    }

    // Sprites page

    void carRemapDelta_data() {
        QTest::addColumn<int>("remapRow");
        QTest::addColumn<int>("deltaRow");
        QTest::addColumn<bool>("hasDelta");
        QTest::newRow("own palette, no delta") << 0 << 0 << false;
        QTest::newRow("first remap, no delta") << 1 << 0 << false;
        QTest::newRow("own palette, first dent") << 0 << 1 << true;
        QTest::newRow("second remap, second dent") << 2 << 2 << true;
        QTest::newRow("a delta the sprite lacks") << 0 << 19 << false;
    }
    void carRemapDelta() {
        QFETCH(int, remapRow);
        QFETCH(int, deltaRow);
        QFETCH(bool, hasDelta);
        const auto [r, s] = CarWithRemapsAndDeltas();
        QVERIFY2(r >= 0, "the sample has a car with remaps and deltas");
        const auto& car = STYCarInfo[std::size_t(r)];
        W().Sty().DrawTransparent(false);
        testsupport::HookRecorder hooks;
        W().lstSprites->setCurrentRow(s);
        QCOMPARE(W().lstRemaps->count(), int(car.remaps.size()) + 1);
        QCOMPARE(W().lstInfo->topLevelItem(0)->text(1), QString::number(car.model));
        W().lstRemaps->setCurrentRow(remapRow);
        W().cmbDeltas->setCurrentIndex(deltaRow);
        int p = OwnPalette(s);
        if (remapRow > 0) {
            const int m = car.remaps[std::size_t(remapRow - 1)], own = p;
            QCOMPARE(W().lstRemaps->item(remapRow)->text(), QString::number(m));
            p = modDeclares::STYPalIndex[std::size_t(modDeclares::STYPalBase[0] + modDeclares::STYPalBase[1] + m)];
            QVERIFY2(p != own, "a remap in another palette than the sprite's own");
        }
        QImage want = SpriteImage(W().Sty(), s, false, p);
        QCOMPARE(PaintDelta(want, s, deltaRow - 1, p), hasDelta);
        QVERIFY(Shows(W().picSprite->image(), want));
        QCOMPARE(W().sSelKind, std::string(deltaRow > 0 ? "d" : "s"));
        QCOMPARE(int(W().iSelNum), s);
        QCOMPARE(W().lblSSize->text(), QStringLiteral("Size: %1x%2").arg(want.width()).arg(want.height()));
        QVERIFY(hooks.messages().empty());
    }

    void notACar() {
        W().lstSprites->setCurrentRow(CarWithRemapsAndDeltas().second);
        W().cmbDeltas->setCurrentIndex(7);
        W().lstSprites->setCurrentRow(modDeclares::STYSpriteBase[0] + 3);  // a ped
        QVERIFY(!W().SprTab->isTabEnabled(1) && !W().cmbDeltas->isEnabled() && !W().lstRemaps->isEnabled());
        QCOMPARE(W().lstRemaps->count(), 0);
        QCOMPARE(W().cmbDeltas->currentIndex(), 7);
        // The click itself ends on "s"; the car's table stays.
        QCOMPARE(W().sSelKind, std::string("s"));
        QCOMPARE(W().lstInfo->topLevelItemCount(), 10);
    }

    // The table's numbers are unsigned bytes.
    void carTableNeverNegative() {
        auto& car = STYCarInfo.at(0);
        car.model = car.width = car.height = car.passengers = car.wreck = car.rating = 255;
        car.frontWheelOffset = car.rearWheelOffset = car.frontWindowOffset = car.rearWindowOffset = 255;
        W().lstSprites->setCurrentRow(1);
        W().lstSprites->setCurrentRow(0);
        QCOMPARE(W().lstInfo->topLevelItemCount(), 10);
        for (int i = 0; i < 10; ++i) QCOMPARE(W().lstInfo->topLevelItem(i)->text(1), QStringLiteral("255"));
    }

    void recordSearchPastTheEnd() {
        // No record reaches the last car sprite: no table, only "(none)", no message and no crash.
        for (auto& car : STYCarInfo) car.sprite = 0;
        testsupport::HookRecorder hooks;
        W().lstSprites->setCurrentRow(1);
        QVERIFY(!W().SprTab->isTabEnabled(1));
        QCOMPARE(W().lstRemaps->count(), 1);
        QVERIFY(W().cmbDeltas->isEnabled());
        QCOMPARE(W().sSelKind, std::string("s"));
        QVERIFY(hooks.messages().empty());
    }

    void secondClickResets() {
        const int s = CarWithRemapsAndDeltas().second;
        W().sSelKind = "t";
        W().cmbDeltas->setCurrentIndex(3);  // before any sprite: the tile stays selected
        QCOMPARE(W().sSelKind, std::string("t"));
        W().show();
        W().MainTab->setCurrentIndex(1);
        W().lstSprites->setCurrentRow(s);
        W().lstSprites->scrollToItem(W().lstSprites->item(s));
        W().lstRemaps->setCurrentRow(2);
        W().cmbDeltas->setCurrentIndex(3);
        // Tile 100 chosen elsewhere; a remap change here takes the selection back.
        W().sSelKind = "t";
        W().iSelNum = 100;
        W().lstRemaps->setCurrentRow(1);
        QCOMPARE(int(W().iSelNum), s);
        QCOMPARE(W().sSelKind, std::string("d"));
        const QRect row = W().lstSprites->visualItemRect(W().lstSprites->item(s));
        QTest::mouseClick(W().lstSprites->viewport(), Qt::LeftButton, {}, row.center());
        QCOMPARE(W().lstRemaps->currentRow(), 0);
        QCOMPARE(W().cmbDeltas->currentIndex(), 0);
        QCOMPARE(W().sSelKind, std::string("s"));
    }

    // Palettes page

    void strip_data() {
        QTest::addColumn<int>("palette");
        QTest::newRow("first item is palette 0") << 0;
        QTest::newRow("second page of palettes") << 70;
    }
    void strip() {
        QFETCH(int, palette);
        W().lstPalettes->setCurrentRow(palette);
        QCOMPARE(int(W().iSelNum), palette);
        QCOMPARE(W().sSelKind, std::string("p"));
        const QImage img = W().picPalette->image();
        for (int c = 0; c < 256; ++c) {
            QCOMPARE(Pixel(img, 0, BandTop(c, img.height())), StoreColour(palette, c));
            QCOMPARE(Pixel(img, img.width() - 1, BandTop(c, img.height())), StoreColour(palette, c));
        }
    }

    // Pointer events over the strip reach the read-out, the take and the write.
    void readTakeWrite() {
        auto& pal = STYPalData.at(0);
        pal[200 * 4] = 7;  // blue, green, red
        pal[200 * 4 + 1] = 8;
        pal[200 * 4 + 2] = 9;
        W().show();
        W().lstPalettes->setCurrentRow(0);
        W().MainTab->setCurrentIndex(2);
        const int y = BandTop(200, W().picPalette->height());
        QMouseEvent move(QEvent::MouseMove, QPointF(10, y), W().picPalette->mapToGlobal(QPointF(10, y)), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(W().picPalette, &move);
        QCOMPARE(W().lblPalInfo->text(), QStringLiteral("Index: 200 Red: 9 Green: 8 Blue: 7"));
        QTest::mouseClick(W().picPalette, Qt::LeftButton, {}, QPoint(10, y));
        QCOMPARE((QStringList{W().txtIdx->text(), W().txtRed->text(), W().txtGreen->text(), W().txtBlue->text()}),
                 (QStringList{"200", "9", "8", "7"}));
        QCOMPARE(W().lblColour->palette().color(QPalette::Window), QColor(9, 8, 7));
        W().picPalette_MouseMove(12.7);  // a fraction of a band belongs to the band
        QVERIFY(W().lblPalInfo->text().startsWith("Index: 12 "));
        Type("200", "100");
        const auto before = STYPalData;
        QTest::mouseClick(W().lblColour, Qt::LeftButton);
        QCOMPARE(Changed(before), 3);  // not the entry's fourth byte
        QCOMPARE(StoreColour(0, 200), qRgb(100, 5, 5));
        // The strip shows the new colour; the big box still shows the colour taken.
        const QImage img = W().picPalette->image();
        QCOMPARE(Pixel(img, 5, BandTop(200, img.height())), qRgb(100, 5, 5));
        QCOMPARE(W().lblColour->palette().color(QPalette::Window), QColor(9, 8, 7));
    }

    void refusedWrites_data() {
        QTest::addColumn<int>("palette");
        QTest::addColumn<QString>("idx");
        QTest::addColumn<QString>("red");
        QTest::addColumn<double>("pointer");  // where the pointer moves and clicks first
        QTest::newRow("no colour taken yet") << 1 << ""
                                             << "10" << -1.0;
        QTest::newRow("red above 255") << 1 << "12"
                                       << "256" << -1.0;
        QTest::newRow("red below 0") << 1 << "12"
                                     << "-1" << -1.0;
        QTest::newRow("red empty") << 1 << "12"
                                   << "" << -1.0;
        QTest::newRow("red not a number") << 1 << "12"
                                          << "red" << -1.0;
        QTest::newRow("no palette, pointer inside") << -1 << "4"
                                                    << "4" << 10.0;
        QTest::newRow("pointer above the strip") << 0 << ""
                                                 << "4" << -0.5;
        QTest::newRow("pointer below the strip") << 0 << ""
                                                 << "4" << 256.0;
    }
    void refusedWrites() {
        QFETCH(int, palette);
        QFETCH(QString, idx);
        QFETCH(QString, red);
        QFETCH(double, pointer);
        W().lstPalettes->setCurrentRow(palette);
        Type(idx, red);
        W().picPalette_MouseMove(pointer);
        W().picPalette_MouseUp(pointer);
        QCOMPARE(W().lblPalInfo->text(), QString());
        QCOMPARE(W().txtIdx->text(), idx);
        const auto before = STYPalData;
        testsupport::HookRecorder hooks;
        W().lblColour_Click();
        QCOMPARE(Changed(before), 0);
        if (palette >= 0) QCOMPARE(hooks.messages().size(), std::size_t(1));
    }

    // The layout was drawn for Windows' fonts; their stand-ins must leave every caption its room.
    void captionsFitTheirPlaces() {
        const QList<QPair<QString, QLineEdit*>> rows = {
            {"Index:", W().txtIdx}, {"Red:", W().txtRed}, {"Green:", W().txtGreen}, {"Blue:", W().txtBlue}};
        for (const auto& [caption, box] : rows) {
            const QLabel* label = nullptr;
            for (const QLabel* l : W().findChildren<QLabel*>())
                if (l->text() == caption) label = l;
            QVERIFY2(label, qPrintable(caption));
            QVERIFY2(label->x() + label->fontMetrics().horizontalAdvance(caption) < box->x(), qPrintable(caption));
        }
        QVERIFY(W().Label8->heightForWidth(W().Label8->width()) <= W().Label8->height());
    }

    // Font page: glyph beside glyph at y = 0, each in its own palette, then background.

    void fontLine_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QList<int>>("sprites");
        QTest::addColumn<bool>("transparent");
        QTest::newRow("two exclamation marks") << "!!" << QList<int>{1366, 1366} << false;
        QTest::newRow("A is sprite 1398") << "A!" << QList<int>{1398, 1366} << false;
        QTest::newRow("a space is sprite 1365") << "B C" << QList<int>{1399, 1365, 1400} << false;
        QTest::newRow("key colour while transparent") << "Ab" << QList<int>{1398, 1431} << true;
        QTest::newRow("empty text wipes") << "" << QList<int>{} << false;
        QTest::newRow("Z has no sprite: left out") << "AZZ!" << QList<int>{1398, 1366} << false;
    }
    void fontLine() {
        QFETCH(QString, text);
        QFETCH(QList<int>, sprites);
        QFETCH(bool, transparent);
        W().Sty().DrawTransparent(transparent);
        W().txtText->setText(QString(30, '~'));  // a longer line first, to be wiped
        W().cmdCreateText->click();
        const bool cut = text.contains('Z');
        if (cut) W().Sty().STYSpriteIndex.resize(1399);  // the store ends after the glyph of "A"
        testsupport::HookRecorder hooks;
        W().txtText->setText(text);
        W().cmdCreateText->click();
        const QImage img = W().picFont->image();
        int x = 0;
        for (int s : sprites) {
            const QImage glyph = SpriteImage(W().Sty(), s, transparent);
            QVERIFY(Shows(img, glyph, QPoint(x, 0)));
            x += glyph.width();
        }
        QImage rest(img.width() - x, img.height(), QImage::Format_RGB32);
        rest.fill(W().picFont->BackColor());
        QCOMPARE(img.copy(x, 0, rest.width(), rest.height()), rest);
        QCOMPARE(hooks.messages().size(), std::size_t(cut));  // one message, not one a character
        if (cut) QVERIFY(QString::fromStdString(hooks.messages()[0]).contains("\"Z\""));
        // What is drawn survives a repaint of the control.
        W().show();
        QCOMPARE(W().picFont->grab().toImage().convertToFormat(QImage::Format_RGB32), img);
    }

    // Recycling page: rows kept sorted, the store rebuilt with its closing 255.

    void recycleAdd_data() {
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<QVariant>("reply");
        QTest::addColumn<QStringList>("after");
        QTest::addColumn<int>("messages");
        QTest::newRow("7 gives 007") << QStringList{} << QVariant("7") << QStringList{"007"} << 0;
        QTest::newRow("sorted into place")
            << QStringList{"010", "200"} << QVariant("50") << QStringList{"010", "050", "200"} << 0;
        QTest::newRow("duplicate stays") << QStringList{"123"} << QVariant("123") << QStringList{"123", "123"} << 0;
        QTest::newRow("255 is an entry") << QStringList{"001"} << QVariant("255") << QStringList{"001", "255"} << 0;
        QTest::newRow("0 is an entry") << QStringList{} << QVariant(" 0 ") << QStringList{"000"} << 0;
        for (const char* bad : {"256", "-1", "bus", "1.5", ""})
            QTest::addRow("'%s' refused", bad) << QStringList{"010"} << QVariant(bad) << QStringList{"010"} << 1;
        QTest::newRow("Cancel") << QStringList{"010"} << QVariant() << QStringList{"010"} << 0;
        QStringList full;
        for (int i = 0; i < 70; ++i) full << QString::asprintf("%03d", i);
        QTest::newRow("63 rows: the 64th goes in")
            << full.mid(0, 63) << QVariant("99") << full.mid(0, 63) + QStringList{"099"} << 0;
        QTest::newRow("64 rows: full") << full.mid(0, 64) << QVariant("99") << full.mid(0, 64) << 1;
        QTest::newRow("70 rows from a file: full") << full << QVariant("99") << full << 1;
    }
    void recycleAdd() {
        QFETCH(QStringList, before);
        QFETCH(QVariant, reply);
        QFETCH(QStringList, after);
        QFETCH(int, messages);
        W().lstRecy->clear();
        W().lstRecy->addItems(before);
        const QList<int> old = Recycle();
        testsupport::HookRecorder hooks;
        reply_ = reply;
        W().cmdRecyAdd_Click();
        QCOMPARE(prompts_, before.size() < 64 ? QStringList{"Model Number?"} : QStringList{});
        QCOMPARE(Rows(W().lstRecy), after);
        QCOMPARE(int(hooks.messages().size()), messages);
        if (before.size() >= 64)
            QVERIFY(QString::fromStdString(hooks.messages()[0]).contains("No more entries allowed."));
        // A refused reply leaves the store as the file had it.
        QCOMPARE(Recycle(), after == before ? old : Recycle(after));
    }

    void recycleRemove_data() {
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<int>("selected");
        QTest::addColumn<QStringList>("after");
        QTest::newRow("the only row") << QStringList{"042"} << 0 << QStringList{};
        QTest::newRow("middle row") << QStringList{"001", "002", "003"} << 1 << QStringList{"001", "003"};
        QTest::newRow("nothing selected") << QStringList{"001", "002"} << -1 << QStringList{"001", "002"};
    }
    void recycleRemove() {
        QFETCH(QStringList, before);
        QFETCH(int, selected);
        QFETCH(QStringList, after);
        W().lstRecy->clear();
        W().lstRecy->addItems(before);
        const QList<int> old = Recycle();
        W().lstRecy->setCurrentRow(selected);
        W().cmdRecyRemove_Click();
        QCOMPARE(Rows(W().lstRecy), after);
        QCOMPARE(Recycle(), selected < 0 ? old : Recycle(after));
        // Nothing is selected afterwards, so a second press removes nothing.
        QTest::mouseClick(W().cmdRecyRemove, Qt::LeftButton);
        QCOMPARE(Rows(W().lstRecy), after);
    }

    // Tool bar

    // "Save As" shares the picture of "Save"; no two other buttons look alike or are blank.
    void buttonPictures() {
        QMap<QString, QImage> seen;
        for (const char* key : {"open", "save", "saveas", "trans", "export", "import", "copy", "paste"}) {
            const QAction* a = W().tlbMain->findChild<QAction*>(QString::fromLatin1(key));
            QVERIFY2(a && !a->icon().isNull(), key);
            seen.insert(key, a->icon().pixmap(16, 16).toImage());
        }
        QCOMPARE(seen.take("saveas"), seen["save"]);
        for (const QImage& img : seen) QCOMPARE(seen.keys(img).size(), 1);
        QVERIFY(!W().windowIcon().isNull());
    }

    void copy_data() {
        QTest::addColumn<QString>("kind");  // what is selected
        QTest::addColumn<bool>("transparent");
        QTest::newRow("sprite in its own palette") << "s" << false;
        QTest::newRow("sprite with the key colour") << "s" << true;
        QTest::newRow("tile") << "t" << false;
        QTest::newRow("palette: nothing copied") << "p" << false;
        QTest::newRow("delta: nothing copied") << "d" << false;
        QTest::newRow("nothing selected") << "" << false;
    }
    void copy() {
        QFETCH(QString, kind);
        QFETCH(bool, transparent);
        const int s = modDeclares::STYSpriteBase[0] + 2;
        W().Sty().DrawTransparent(transparent);
        W().lstSprites->setCurrentRow(s);
        W().sSelKind = kind.toStdString();
        W().iSelNum = static_cast<std::int16_t>(kind == "t" ? 5 : s);
        QImage want(3, 3, QImage::Format_RGB32);
        want.fill(qRgb(1, 2, 3));
        QApplication::clipboard()->setImage(want);
        if (kind == "s") want = SpriteImage(W().Sty(), s, transparent);
        if (kind == "t") {
            want = QImage(64, 64, QImage::Format_RGB32);
            for (int i = 0; i < 64 * 64; ++i)
                want.setPixel(i % 64, i / 64,
                              StoreColour(modDeclares::STYPalIndex[5], W().Sty().STYTileStore[5][std::size_t(i)]));
        }
        for (int twice = 0; twice < 2; ++twice) {
            Click("copy");
            QCOMPARE(QApplication::clipboard()->image().size(), want.size());
            QVERIFY(Shows(QApplication::clipboard()->image(), want));
        }
        QCOMPARE(W().picTemp->image().pixel(0, 0), W().picTemp->BackColor());  // the scratch picture is left empty
    }

    void transRedrawsTheSprite() {
        const int s = modDeclares::STYSpriteBase[0] + 1;
        W().lstSprites->setCurrentRow(s);
        QVERIFY(W().Sty().DrawTransparent());
        W().tlbMain->findChild<QAction*>(QStringLiteral("trans"))->trigger();  // released
        QVERIFY(!W().Sty().DrawTransparent());
        QVERIFY(Shows(W().picSprite->image(), SpriteImage(W().Sty(), s, false)));
    }

    void pasteAndUnknownKeys() {
        testsupport::HookRecorder hooks;
        Click("paste");
        Click("Copy");
        QCOMPARE(hooks.messages().size(), std::size_t(1));
        QVERIFY(QString::fromStdString(hooks.messages()[0]).contains("Paste Disabled"));
    }

    void openSaveSaveAs() {
        const std::string a = Copy("a.sty");
        answers_ = {QString::fromStdString(a)};
        Click("open");
        QCOMPARE(W().CurrentStylePath(), a);
        // Dialogs start in the folder of the style in the window.
        QCOMPARE(folders_.takeFirst(), QFileInfo(OMBREVALE_SAMPLE).absolutePath());
        Click("saveas");  // cancelled
        QCOMPARE(folders_.takeFirst(), QString::fromStdString(dir_->path().string()));
        // "save" writes the opened file, keeps the old one as .bak and says so in a note that goes by itself.
        modDeclares::STYRecycle = {9, 255};
        Click("save");
        QVERIFY(std::filesystem::exists(a + ".bak"));
        QVERIFY(QToolTip::isVisible());
        QCOMPARE(QToolTip::text(), QStringLiteral("Saved a.sty"));
        modDeclares::STYRecycle.clear();
        QVERIFY(clsSTY().LoadSTY(a));  // the stores as they were, in the opened file
        QCOMPARE(modDeclares::STYRecycle, (std::vector<std::uint8_t>{9, 255}));
        // "saveas" writes another file and "save" goes there from then on; Cancel changes nothing.
        const std::string b = dir_->File("b.sty");
        answers_ = {QString::fromStdString(b)};
        Click("saveas");
        QVERIFY(std::filesystem::exists(b));
        QCOMPARE(W().CurrentStylePath(), b);
        Click("saveas");
        QCOMPARE(W().CurrentStylePath(), b);
    }

    void openRefusedKeepsTheStyle_data() {
        QTest::addColumn<QByteArray>("file");
        const auto Of = [](const ombrevale::stylewriter::Bytes& b) {
            return QByteArray(reinterpret_cast<const char*>(b.data()), qsizetype(b.size()));
        };
        QTest::newRow("cancelled") << QByteArray("cancel");
        QTest::newRow("missing") << QByteArray("missing");
        // The recycling list loads, then a section claims more bytes than the file holds.
        QTest::newRow("cut short") << Of(ombrevale::stylewriter::StyleBytes()
                                             .Add("RECY", {1, 2, 255})
                                             .AddWithSize("PPAL", 1 << 20, ombrevale::stylewriter::Bytes(64, 1))
                                             .bytes());
    }
    void openRefusedKeepsTheStyle() {
        QFETCH(QByteArray, file);
        modDeclares::STYRecycle = {3, 255};
        STYPalData[0][4] = 77;
        const auto tiles = W().Sty().STYTileStore.size();
        const int sprites = W().lstSprites->count();
        const std::string bad = dir_->File("bad.sty");
        if (file != "missing" && file != "cancel")
            ombrevale::stylewriter::WriteFile(bad, ombrevale::stylewriter::Bytes(file.begin(), file.end()));
        if (file != "cancel") answers_ = {QString::fromStdString(bad)};
        testsupport::HookRecorder hooks;
        Click("open");
        // Edits in memory survive, and the message does not claim part of the file stayed.
        QCOMPARE(hooks.messages().size(), std::size_t(file != "cancel"));
        for (const std::string& m : hooks.messages())
            QVERIFY2(m.find("were loaded") == std::string::npos &&
                         (file == "missing" || m.find("still loaded") != std::string::npos),
                     m.c_str());
        QVERIFY(!modGTA2::LoadedInstance() || !modGTA2::LoadedInstance()->isVisible());
        QCOMPARE(modDeclares::STYRecycle, (std::vector<std::uint8_t>{3, 255}));
        QCOMPARE(int(STYPalData[0][4]), 77);
        QCOMPARE(W().Sty().STYTileStore.size(), tiles);
        QCOMPARE(W().lstSprites->count(), sprites);
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
        answers_ = {QString::fromStdString(Copy("a.sty"))};
        Click("open");
        frmSTY2 fresh(dir_->File("a.sty"));
        fresh.show();
        fresh.cmdGen_Click();  // drawn at the shown window's width, as the open drew it
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
        QTest::addColumn<QString>("name");  // empty: a palette is selected
        QTest::newRow("sprite as BMP") << "s.bmp";
        QTest::newRow("sprite as PNG") << "s.png";
        QTest::newRow("no sprite or tile selected") << "";
    }
    void exportPicture() {
        QFETCH(QString, name);
        const int s = modDeclares::STYSpriteBase[0] + 4;
        W().lstSprites->setCurrentRow(s);
        if (name.isEmpty()) W().sSelKind = "p";
        const QString path = QString::fromStdString(dir_->File(name.isEmpty() ? "p.bmp" : name.toStdString()));
        answers_ = {path};
        testsupport::HookRecorder hooks;
        Click("export");
        QCOMPARE(hooks.messages().size(), std::size_t(name.isEmpty()));
        QCOMPARE(answers_.isEmpty(), !name.isEmpty());  // no dialog without a picture
        if (!name.isEmpty()) QVERIFY(Shows(QImage(path), SpriteImage(W().Sty(), s, false)));
    }

    void importPalette_data() {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("head");
        QTest::newRow("grey ramp") << 2 << "JASC-PAL\n0100\n256\n";
        QTest::newRow("no palette chosen") << -1 << "JASC-PAL\n0100\n256\n";
        QTest::newRow("not a palette") << 1 << "not a palette\n";
    }
    void importPalette() {
        QFETCH(int, row);
        QFETCH(QString, head);
        const std::string pal = dir_->File("in.pal");
        {
            std::ofstream f(pal);
            f << head.toStdString();
            for (int i = 0; i < 256; ++i) f << i << ' ' << i << ' ' << 255 - i << '\n';
        }
        const auto before = STYPalData;
        W().lstPalettes->setCurrentRow(row);
        answers_ = {QString::fromStdString(pal)};
        testsupport::HookRecorder hooks;
        Click("import");
        QCOMPARE(hooks.messages().size(), std::size_t(row != 2));
        QCOMPARE(Changed(before) > 0, row == 2);
        if (row != 2) return;
        QCOMPARE(StoreColour(2, 40), qRgb(40, 40, 215));
        const QImage strip = W().picPalette->image();
        QCOMPARE(Pixel(strip, 3, BandTop(40, strip.height())), qRgb(40, 40, 215));
    }

    // Events that arrive through a progress step while Refresh loads the style
    // or draws the sheet: none may crash or draw outside its picture, and once
    // the Refresh ends the stores and the sheet are what a quiet Refresh gives.
    void eventsDuringRefresh_data() {
        QTest::addColumn<QString>("phase");
        QTest::addColumn<QString>("what");
        for (const char* what : {"refresh", "click", "key", "sprite", "palette", "text"})
            for (const char* phase : {"Loading Section", "Rendering"})
                QTest::addRow("%s/%s", phase, what) << phase << what;
    }
    void eventsDuringRefresh() {
        QFETCH(QString, phase);
        QFETCH(QString, what);
        frmSTY2& w = W();
        w.show();
        w.cmdGen_Click();
        const QImage cleanSheet = w.picMain->image();
        const auto cleanStores = testsupport::TakeSnapshot(w.Sty());
        int inner = 0;
        DocumentHooks h;
        h.progressStep = [&](double, const std::string& caption) {
            if (inner > 0 || !QString::fromStdString(caption).startsWith(phase)) return;
            ++inner;
            if (what == "refresh") w.cmdGen_Click();
            if (what == "click") w.picMain_MouseUp(1, 0, 70, 130);
            if (what == "key") w.Form_KeyDown(ombrevale::keycodes::vbKeyPageDown, 0);
            if (what == "sprite") {
                w.lstSprites->setCurrentRow(w.lstSprites->count() - 1);
                w.lstSprites_Click();
            }
            if (what == "palette") {
                w.lstPalettes->setCurrentRow(3);
                w.lstPalettes_Click();
            }
            if (what == "text") {
                w.txtText->setText(QStringLiteral("HELLO 123"));
                w.cmdCreateText_Click();
            }
        };
        {
            ScopedDocumentHooks scoped(h);
            w.cmdGen_Click();
        }
        QCOMPARE(inner, 1);
        QVERIFY(testsupport::TakeSnapshot(w.Sty()) == cleanStores);
        QCOMPARE(w.picMain->image(), cleanSheet);
        // The window still answers once the Refresh is over.
        w.picMain_MouseUp(1, 0, 70, 130);
        QCOMPARE(w.picMain->Tag, QStringLiteral("19"));
    }
};

QTEST_MAIN(PanesTest)
#include "panes_test.moc"
