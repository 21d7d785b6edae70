// The panes and the tool bar on the bundled sample, the dialogs answered by
// the test. The drawing is the document's and is tested with it: here each
// control must reach the right call with the right numbers and show the result.
#include <QtTest>
#include <QtWidgets>
#include <filesystem>
#include <fstream>

#include "style/moddeclares.h"
#include "support/hookrecorder.h"
#include "support/storesnapshot.h"
#include "support/tempdir.h"
#include "workbench/frmprogress.h"
#include "workbench/frmsty2.h"
#include "workbench/keycodes.h"
#include "workbench/panes_dialogs.h"
#include "workbench/picturebox.h"

using modDeclares::STYCarInfo;
using modDeclares::STYPalData;
using modDeclares::STYRecycle;

namespace {

QRgb StoreColour(int p, int c) {
    const auto& pal = STYPalData.at(std::size_t(p));
    return qRgb(pal[std::size_t(c) * 4 + 2], pal[std::size_t(c) * 4 + 1], pal[std::size_t(c) * 4]);
}
std::int16_t RemapPalette(int m) {
    return modDeclares::STYPalIndex.at(std::size_t(modDeclares::STYPalBase[0] + modDeclares::STYPalBase[1] + m));
}

// What the document draws for sprite s in palette p (-1: its own), with delta d (-1: none) on top.
QImage Drawn(clsSTY& doc, int s, int p = -1, int d = -1) {
    PictureBox box;
    box.resize(doc.GetSpriteWidth(s), doc.GetSpriteHeight(s));
    std::int16_t pal = std::int16_t(p);
    doc.RenderSprite(s, box, pal);
    if (d >= 0) doc.RenderDelta(std::int16_t(d), std::int16_t(s), box, doc.lPal());
    return box.image().convertToFormat(QImage::Format_RGB32);
}
QRgb Band(const PictureBox* strip, int c) {
    return strip->image().pixel(3, (c * strip->height() + 255) / 256) | 0xFF000000u;
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

QStringList Rows(const QListWidget* list) {
    QStringList out;
    for (int i = 0; i < list->count(); ++i) out << list->item(i)->text();
    return out;
}

}  // namespace

class PanesTest : public QObject {
    Q_OBJECT
    // The current directory is a temp folder, so "temp.bmp" lands there.
    ombrevale::testsupport::TempDir dir_;
    ombrevale::testsupport::ScopedCurrentDir cwd_{dir_.path()};
    std::unique_ptr<frmSTY2> w_;
    QStringList answers_;  // file dialogs, in turn; none left: Cancel
    QStringList folders_;  // where each file dialog started
    QVariant reply_;       // the input box: a QString, or invalid for Cancel
    frmSTY2& W() { return *w_; }
    // The messages the window gave for a tool bar button.
    std::size_t Click(const char* key) {
        ombrevale::testsupport::HookRecorder hooks;
        W().tlbMain_ButtonClick(QString::fromLatin1(key));
        return hooks.messages().size();
    }

private slots:
    void init() {
        w_ = std::make_unique<frmSTY2>(std::string(OMBREVALE_SAMPLE));
        answers_.clear();
        folders_.clear();
        const auto input = [this](QWidget*, const QString&) {
            return reply_.isValid() ? std::optional<QString>(reply_.toString()) : std::nullopt;
        };
        using ombrevale::panesdialogs::FileMode;
        const auto file = [this](QWidget*, FileMode, const QString&, const QString&, const QString& folder) {
            folders_ << folder;
            return answers_.isEmpty() ? QString() : answers_.takeFirst();
        };
        ombrevale::panesdialogs::Install({input, file, {}});
    }
    void cleanup() {
        ombrevale::panesdialogs::Install({});
        w_.reset();
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
        const auto [r, s] = CarWithRemapsAndDeltas();
        QVERIFY2(r >= 0, "the sample has a car with remaps and deltas");
        auto& car = STYCarInfo[std::size_t(r)];  // the table's numbers are unsigned bytes
        car.model = car.width = car.height = car.passengers = car.wreck = car.rating = 255;
        car.frontWheelOffset = car.rearWheelOffset = car.frontWindowOffset = car.rearWindowOffset = 255;
        ombrevale::testsupport::HookRecorder hooks;
        W().lstSprites->setCurrentRow(s);
        QCOMPARE(Rows(W().lstRemaps).size(), int(car.remaps.size()) + 1);
        for (int i = 0; i < 10; ++i) QCOMPARE(W().lstInfo->topLevelItem(i)->text(1), QStringLiteral("255"));
        W().lstRemaps->setCurrentRow(remapRow);
        W().cmbDeltas->setCurrentIndex(deltaRow);
        const int p = remapRow > 0 ? RemapPalette(car.remaps[std::size_t(remapRow - 1)]) : -1;
        const QImage want = Drawn(W().Sty(), s, p, deltaRow - 1);
        QCOMPARE(W().picSprite->image().copy(want.rect()).convertToFormat(QImage::Format_RGB32), want);
        QCOMPARE(W().sSelKind, std::string(deltaRow > 0 ? "d" : "s"));
        QCOMPARE(int(W().iSelNum), s);
        QCOMPARE(W().lblSSize->text(),
                 QStringLiteral("Size: %1x%2").arg(W().Sty().GetSpriteWidth(s)).arg(W().Sty().GetSpriteHeight(s)));
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
        W().lstPalettes->setCurrentRow(70);  // on the second page of palettes
        QCOMPARE(W().sSelKind, std::string("p"));
        for (int c : {0, 255}) QCOMPARE(Band(W().picPalette, c), StoreColour(70, c));
        W().show();
        W().lstPalettes->setCurrentRow(0);
        W().MainTab->setCurrentIndex(2);
        const QColor c(StoreColour(0, 200));
        const int y = (200 * W().picPalette->height() + 255) / 256;
        QTest::mouseMove(W().picPalette, QPoint(10, y));
        QCOMPARE(W().lblPalInfo->text(),
                 QStringLiteral("Index: 200 Red: %1 Green: %2 Blue: %3").arg(c.red()).arg(c.green()).arg(c.blue()));
        QTest::mouseClick(W().picPalette, Qt::LeftButton, {}, QPoint(10, y));
        QCOMPARE(W().txtIdx->text() + W().txtRed->text() + W().txtGreen->text() + W().txtBlue->text(),
                 QStringLiteral("200%1%2%3").arg(c.red()).arg(c.green()).arg(c.blue()));
        W().picPalette_MouseMove(12.7);  // a fraction of a band belongs to the band
        QVERIFY(W().lblPalInfo->text().startsWith("Index: 12 "));
        W().txtRed->setText(QString::number(255 - c.red()));
        const auto fourth = STYPalData[0][200 * 4 + 3];
        QTest::mouseClick(W().lblColour, Qt::LeftButton);
        QCOMPARE(StoreColour(0, 200), qRgb(255 - c.red(), c.green(), c.blue()));
        QCOMPARE(STYPalData[0][200 * 4 + 3], fourth);
        // The strip shows the new colour; the big box still shows the colour taken.
        QCOMPARE(Band(W().picPalette, 200), StoreColour(0, 200));
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
        ombrevale::testsupport::HookRecorder hooks;
        W().lblColour_Click();
        QVERIFY(STYPalData == before);
        QCOMPARE(hooks.messages().size(), std::size_t(palette >= 0));
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
        ombrevale::testsupport::HookRecorder hooks;
        reply_ = reply;
        W().cmdRecyAdd_Click();
        QCOMPARE(hooks.messages().size(), std::size_t(added == -1));
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
        const auto old = STYRecycle;
        W().cmdRecyRemove_Click();
        QCOMPARE(STYRecycle, old);
        W().lstRecy->setCurrentRow(2);
        for (int twice = 0; twice < 2; ++twice) QTest::mouseClick(W().cmdRecyRemove, Qt::LeftButton);
        QCOMPARE(Rows(W().lstRecy), (QStringList{"001", "002"}));
        QCOMPARE(STYRecycle, (std::vector<std::uint8_t>{1, 2, 255}));
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
        const int s = modDeclares::STYSpriteBase[0] + 2;
        W().lstSprites->setCurrentRow(s);
        W().sSelKind = kind.toStdString();
        W().iSelNum = static_cast<std::int16_t>(kind == "t" ? 5 : s);
        QImage want(3, 3, QImage::Format_RGB32);
        want.fill(qRgb(1, 2, 3));
        QApplication::clipboard()->setImage(want);
        if (kind == "s") want = Drawn(W().Sty(), s);
        PictureBox tile;
        tile.resize(64, 64);
        if (kind == "t" && W().Sty().RenderTile(5, tile)) want = tile.image().convertToFormat(QImage::Format_RGB32);
        for (int twice = 0; twice < 2; ++twice) {
            Click("copy");
            QCOMPARE(QApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32), want);
        }
        QCOMPARE(W().picTemp->image().pixel(0, 0), W().picTemp->BackColor());  // the scratch picture is left empty
    }

    void openSaveSaveAs() {
        std::filesystem::copy_file(OMBREVALE_SAMPLE, dir_.File("a.sty"));
        answers_ = {QString::fromStdString(dir_.File("a.sty"))};
        Click("open");
        QCOMPARE(W().CurrentStylePath(), dir_.File("a.sty"));
        QCOMPARE(folders_, QStringList{QFileInfo(OMBREVALE_SAMPLE).absolutePath()});  // the style's own folder
        // "save" writes the opened file and says so in a note that goes by itself.
        STYRecycle = {9, 255};
        Click("save");
        QCOMPARE(QToolTip::text(), QStringLiteral("Saved a.sty"));
        QVERIFY(QToolTip::isVisible());
        STYRecycle.clear();
        QVERIFY(clsSTY().LoadSTY(dir_.File("a.sty")));
        QCOMPARE(STYRecycle, (std::vector<std::uint8_t>{9, 255}));
        // "saveas" writes another file and "save" goes there from then on; Cancel changes nothing.
        answers_ = {QString::fromStdString(dir_.File("b.sty"))};
        Click("saveas");
        QVERIFY(std::filesystem::exists(dir_.File("b.sty")));
        Click("saveas");
        QCOMPARE(W().CurrentStylePath(), dir_.File("b.sty"));
        QCOMPARE(folders_.last(), QString::fromStdString(dir_.path().string()));
    }

    // After Open the window is as a start on that file leaves it, whatever was chosen before.
    void openStartsAfresh() {
        W().show();
        W().picMain_MouseUp(1, 0, 70, 130);
        W().lstSprites->setCurrentRow(3);
        W().lstRemaps->setCurrentRow(1);
        W().lstPalettes->setCurrentRow(3);
        W().picPalette_MouseUp(40);
        W().txtText->setText(QStringLiteral("ABC"));
        W().cmdCreateText_Click();
        W().vScroll->setValue(640);
        W().tlbMain->findChild<QAction*>(QStringLiteral("trans"))->trigger();
        std::filesystem::copy_file(OMBREVALE_SAMPLE, dir_.File("fresh.sty"));
        answers_ = {QString::fromStdString(dir_.File("fresh.sty"))};
        Click("open");
        frmSTY2 fresh(dir_.File("fresh.sty"));
        fresh.show();
        fresh.cmdGen_Click();  // drawn at the shown window's width, as the open drew it
        const auto state = [](frmSTY2& w) {
            return QStringList{QString::fromStdString(w.sSelKind),
                               QString::number(w.iSelNum),
                               w.lblIdx->text(),
                               QString::number(w.lstSprites->currentRow()),
                               QString::number(w.lstRemaps->count()),
                               w.lblSSize->text(),
                               QString::number(w.lstPalettes->currentRow()),
                               w.txtIdx->text(),
                               w.txtText->text(),
                               QString::number(w.vScroll->value()),
                               QString::number(w.Sty().DrawTransparent())};
        };
        QCOMPARE(state(W()), state(fresh));
        QCOMPARE(W().picSprite->image(), fresh.picSprite->image());
        QCOMPARE(W().picFont->image(), fresh.picFont->image());
    }

    void captionsFitTheirPlaces() {
        const QList<QPair<QString, QLineEdit*>> rows = {
            {"Index:", W().txtIdx}, {"Red:", W().txtRed}, {"Green:", W().txtGreen}, {"Blue:", W().txtBlue}};
        for (const auto& [caption, box] : rows) {
            const auto labels = W().findChildren<QLabel*>();
            const auto label =
                std::find_if(labels.begin(), labels.end(), [&](QLabel* l) { return l->text() == caption; });
            QVERIFY2(label != labels.end(), qPrintable(caption));
            QVERIFY2((*label)->x() + (*label)->fontMetrics().horizontalAdvance(caption) < box->x(),
                     qPrintable(caption));
        }
    }

    // A refused open keeps the style in memory, unsaved edits and all, and says so.
    void openRefusedKeepsTheStyle_data() {
        QTest::addColumn<QString>("file");
        QTest::newRow("cancelled") << "";
        QTest::newRow("missing") << "missing.sty";
        QTest::newRow("cut short") << "bad.sty";
    }
    void openRefusedKeepsTheStyle() {
        QFETCH(QString, file);
        STYRecycle = {3, 255};
        const auto before = ombrevale::testsupport::TakeSnapshot(W().Sty());
        const int sprites = W().lstSprites->count();
        std::ofstream(dir_.File("bad.sty"), std::ios::binary) << "GBST\x01";
        if (!file.isEmpty()) answers_ = {QString::fromStdString(dir_.File(file.toStdString()))};
        ombrevale::testsupport::HookRecorder hooks;
        W().tlbMain_ButtonClick(QStringLiteral("open"));
        QCOMPARE(hooks.messages().size(), std::size_t(!file.isEmpty()));
        if (file == "bad.sty") QVERIFY(hooks.messages()[0].find("still loaded") != std::string::npos);
        QVERIFY(!modGTA2::LoadedInstance() || !modGTA2::LoadedInstance()->isVisible());
        QVERIFY(ombrevale::testsupport::TakeSnapshot(W().Sty()) == before);
        QCOMPARE(W().lstSprites->count(), sprites);
        QVERIFY(W().CurrentStylePath().empty());
    }

    // The selected sprite in the shown remap, as the document saves it; a PNG
    // holds the same picture; without a sprite or tile, no dialog.
    void exportPicture_data() {
        QTest::addColumn<QString>("name");  // empty: a palette is selected
        QTest::newRow("BMP") << "s.bmp";
        QTest::newRow("PNG") << "s.png";
        QTest::newRow("no sprite or tile selected") << "";
    }
    void exportPicture() {
        QFETCH(QString, name);
        const auto [r, s] = CarWithRemapsAndDeltas();
        W().lstSprites->setCurrentRow(s);
        W().lstRemaps->setCurrentRow(1);
        if (name.isEmpty()) W().sSelKind = "p";
        answers_ = {QString::fromStdString(dir_.File(name.isEmpty() ? "p.bmp" : name.toStdString()))};
        const QString path = answers_[0];
        QCOMPARE(Click("export"), std::size_t(name.isEmpty()));
        QCOMPARE(answers_.isEmpty(), !name.isEmpty());
        if (name.isEmpty()) return;
        std::int16_t p = RemapPalette(STYCarInfo[std::size_t(r)].remaps[0]);
        QVERIFY(W().Sty().SaveSprite(dir_.File("want.bmp"), s, p));
        QCOMPARE(QImage(path).convertToFormat(QImage::Format_RGB32),
                 QImage(QString::fromStdString(dir_.File("want.bmp"))).convertToFormat(QImage::Format_RGB32));
    }

    void importPalette_data() {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("head");
        QTest::newRow("into palette 2") << 2 << "JASC-PAL\n0100\n256\n";
        QTest::newRow("no palette chosen") << -1 << "JASC-PAL\n0100\n256\n";
        QTest::newRow("not a palette") << 1 << "not a palette\n";
    }
    void importPalette() {
        QFETCH(int, row);
        QFETCH(QString, head);
        std::ofstream pal(dir_.File("in.pal"));
        pal << head.toStdString();
        for (int i = 0; i < 256; ++i) pal << i << ' ' << i << ' ' << 255 - i << '\n';
        pal.close();
        const auto before = STYPalData;
        W().lstPalettes->setCurrentRow(row);
        answers_ = {QString::fromStdString(dir_.File("in.pal"))};
        QCOMPARE(Click("import"), std::size_t(row != 2));
        QCOMPARE(STYPalData == before, row != 2);
        if (row == 2) QCOMPARE(Band(W().picPalette, 40), qRgb(40, 40, 215));
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
        W().show();
        W().cmdGen_Click();
        const QImage cleanSheet = W().picMain->image();
        const auto cleanStores = ombrevale::testsupport::TakeSnapshot(W().Sty());
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
        };
        {
            ScopedDocumentHooks scoped(h);
            W().cmdGen_Click();
        }
        QCOMPARE(inner, 1);
        QVERIFY(ombrevale::testsupport::TakeSnapshot(W().Sty()) == cleanStores);
        QCOMPARE(W().picMain->image(), cleanSheet);
        W().picMain_MouseUp(1, 0, 70, 130);  // the window still answers once the Refresh is over
        QCOMPARE(W().picMain->Tag, QStringLiteral("19"));
    }
};

QTEST_MAIN(PanesTest)
#include "panes_test.moc"
