// Every edit the window offers, on the bundled sample: it changes the stores
// and what shows them, Undo puts both back as they were, Redo makes the edit
// again, and a load forgets the history. What an import computes is tested
// in the pixel library; here each edit must reach its target and its undo.
#include <QtTest>
#include <QtWidgets>

#include "style/moddeclares.h"
#include "support/hookrecorder.h"
#include "support/storesnapshot.h"
#include "support/tempdir.h"
#include "workbench/frmsty2.h"
#include "workbench/panes_dialogs.h"
#include "workbench/picturebox.h"

namespace {

enum class Edit { Tile, Sprite, Delta, Colour, Jasc, RecycleAdd, RecycleRemove };
enum class Shows { Cell, Sprite, List };
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

class EditsTest : public QObject {
    Q_OBJECT
    ombrevale::testsupport::TempDir dir_;
    ombrevale::testsupport::ScopedCurrentDir cwd_{dir_.path()};
    std::unique_ptr<frmSTY2> w_;
    QString picture_;  // what the file dialog answers
    bool yes_ = true;  // what a question answers
    int questions_ = 0;
    State before_;  // once the target is chosen, just before the edit
    frmSTY2& W() { return *w_; }
    QString F(const char* name) { return QString::fromStdString(dir_.File(name)); }
    QAction* Button(const char* key) { return W().tlbMain->findChild<QAction*>(QString::fromLatin1(key)); }

    State Now() {
        QStringList rows;
        for (int i = 0; i < W().lstRecy->count(); ++i) rows << W().lstRecy->item(i)->text();
        const int cols = W().Cols();
        return {ombrevale::testsupport::TakeSnapshot(W().Sty()),
                W().picMain->image().copy(kTile % cols * 64, kTile / cols * 64, 64, 64), W().picSprite->image(),
                W().picPalette->image(), rows};
    }
    // The selected sprite as exported, with one pixel's colour number changed.
    QString EditedExport(bool withDelta) {
        const QString path = F("sprite.bmp");
        std::int16_t pal = -1;
        const bool saved = withDelta ? W().Sty().SaveDelta(path.toStdString(), 0, W().iSelNum, pal)
                                     : W().Sty().SaveSprite(path.toStdString(), W().iSelNum, pal);
        QImage image(path);
        if (!saved || image.format() != QImage::Format_Indexed8) return {};
        const QPoint at(image.width() / 2, image.height() / 2);
        image.setPixel(at, uint(image.pixelIndex(at) + 1) % 256);
        return image.save(path, "BMP") ? path : QString();
    }

    // Brings the window to the edit's target and makes it.
    void Make(Edit edit) {
        switch (edit) {
            case Edit::Tile: {
                W().picMain_MouseUp(1, 0, kTile * 64 + 32, 32);
                QImage image(64, 64, QImage::Format_RGB32);
                for (int y = 0; y < 64; ++y)
                    for (int x = 0; x < 64; ++x) image.setPixel(x, y, qRgb(x * 4, y * 4, 77));
                picture_ = F("tile.png");
                QVERIFY(image.save(picture_));
                // No to the question of the changed colours: nothing changes.
                before_ = Now();
                yes_ = false;
                W().tlbMain_ButtonClick(QStringLiteral("import"));
                QCOMPARE(questions_, 1);
                QVERIFY(Now() == before_);
                QVERIFY(!Button("undo")->isEnabled());
                yes_ = true;
                break;
            }
            case Edit::Sprite:
            case Edit::Delta:
                W().lstSprites->setCurrentRow(0);
                if (edit == Edit::Delta) W().cmbDeltas->setCurrentIndex(1);
                picture_ = EditedExport(edit == Edit::Delta);
                QVERIFY(!picture_.isEmpty());
                break;
            case Edit::Colour:
                W().MainTab->setCurrentIndex(2);
                // A colour of the tile whose cell is watched.
                W().lstPalettes->setCurrentRow(modDeclares::STYPalIndex.at(kTile));
                W().picPalette_MouseUp(W().Sty().STYTileStore.at(kTile)[32 * 64 + 32] + 0.5);
                W().txtRed->setText(QString::number((W().txtRed->text().toInt() + 1) % 256));
                before_ = Now();
                W().lblColour_Click();
                return;
            case Edit::Jasc: {
                W().lstPalettes->setCurrentRow(modDeclares::STYPalIndex.at(kTile));
                picture_ = F("p.pal");
                QFile pal(picture_);
                QVERIFY(pal.open(QIODevice::WriteOnly));
                pal.write("JASC-PAL\n0100\n256\n");
                for (int i = 0; i < 256; ++i) pal.write(QByteArray::number(i) + " 1 2\n");
                break;
            }
            case Edit::RecycleAdd:
                ombrevale::panesdialogs::Install(
                    {[](QWidget*, const QString&) { return std::optional<QString>(QStringLiteral("77")); }, {}, {}});
                before_ = Now();
                W().cmdRecyAdd_Click();
                return;
            case Edit::RecycleRemove:
                QVERIFY(W().lstRecy->count() > 0);
                W().lstRecy->setCurrentRow(0);
                before_ = Now();
                W().cmdRecyRemove_Click();
                return;
        }
        before_ = Now();
        W().tlbMain_ButtonClick(QStringLiteral("import"));
    }

private slots:
    void init() {
        w_ = std::make_unique<frmSTY2>(std::string(OMBREVALE_SAMPLE));
        questions_ = 0;
        ombrevale::panesdialogs::Install({{},
                                          [this](QWidget*, ombrevale::panesdialogs::FileMode, const QString&,
                                                 const QString&, const QString&) { return picture_; },
                                          [this](QWidget*, const QString&) {
                                              ++questions_;
                                              return yes_;
                                          }});
    }
    void cleanup() {
        ombrevale::panesdialogs::Install({});
        w_.reset();
    }

    void undoRedo_data() {
        QTest::addColumn<Edit>("edit");
        QTest::addColumn<Shows>("shows");
        QTest::addColumn<bool>("ctrlY");  // else Ctrl+Shift+Z
        QTest::newRow("tile import, colours mapped") << Edit::Tile << Shows::Cell << true;
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
        Make(edit);
        if (QTest::currentTestFailed()) return;
        const State before = before_, after = Now();
        QVERIFY(after.stores != before.stores);
        QVERIFY2(after.Of(shows) != before.Of(shows), "the edit shows");
        QVERIFY(Button("undo")->isEnabled());
        const std::string kind = W().sSelKind;
        W().MainTab->setCurrentIndex(0);
        QTest::keyClick(&W(), Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(Now() == before);
        QVERIFY(Button("redo")->isEnabled() && !Button("undo")->isEnabled() && W().sSelKind == kind);
        if (ctrlY)
            QTest::keyClick(&W(), Qt::Key_Y, Qt::ControlModifier);
        else
            QTest::keyClick(&W(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(Now() == after && hooks.messages().empty());
        W().cmdGen_Click();
        QVERIFY(!Button("undo")->isEnabled() && !Button("redo")->isEnabled());
    }

    // A picture that cannot go in says why, and changes nothing.
    void refusedImport() {
        W().picMain_MouseUp(1, 0, kTile * 64 + 32, 32);
        picture_ = F("bad.png");
        QVERIFY(QImage(32, 64, QImage::Format_RGB32).save(picture_));
        const State before = Now();
        ombrevale::testsupport::HookRecorder hooks;
        W().tlbMain_ButtonClick(QStringLiteral("import"));
        QCOMPARE(hooks.messages().size(), std::size_t(1));
        QVERIFY(QString::fromStdString(hooks.messages()[0])
                    .contains(picture_ + " is 32 x 64 pixels, but tile 5 is 64 x 64."));
        QVERIFY(Now() == before && !Button("undo")->isEnabled());
    }
};

QTEST_MAIN(EditsTest)
#include "edits_test.moc"
