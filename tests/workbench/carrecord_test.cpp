// The car record drawn over its sprite at the lens's zoom and corner, and
// edited in its dialog from the window on the sample: refusals, one step
// of the history, and the table and the drawing following.
#include <QtTest>
#include <QtWidgets>

#include "activewindow.h"
#include "style/carrecord.h"
#include "style/moddeclares.h"
#include "support/tempdir.h"
#include "workbench/carrecorddialog.h"
#include "workbench/carrecordoverlay.h"
#include "workbench/carrecordpanel.h"
#include "workbench/frmsty2.h"
#include "workbench/picturebox.h"
#include "workbench/zoomlens.h"

using namespace ombrevale::workbench;
using modDeclares::CarRecord;
using modDeclares::STYCarInfo;

namespace {

constexpr int kCar = 3;  // a sample car whose sprite is its record's

enum class Opens { Key, DoubleClick };

}  // namespace

class CarRecordTest : public QObject {
    Q_OBJECT
    ombrevale::testsupport::TempDir dir_;
    ombrevale::testsupport::ScopedCurrentDir cwd_{dir_.path()};
    std::unique_ptr<frmSTY2> w_;
    int runs_ = 0;
    frmSTY2& W() { return *w_; }
    void Show() { QVERIFY(ombrevale::wbtest::ShowActive(W())); }
    CarRecordPanel* Panel() { return W().findChild<CarRecordPanel*>(); }
    QString TableWidth() { return W().lstInfo->topLevelItem(1)->text(1); }

    // f runs on the dialog once it is up; a dialog f leaves open is cancelled.
    void Answer(std::function<void(CarRecordDialog&)> f) {
        QTimer::singleShot(0, this, [f] {
            auto* d = dynamic_cast<CarRecordDialog*>(QApplication::activeModalWidget());
            QVERIFY(d);
            f(*d);
            if (d->isVisible()) d->reject();
        });
    }

private slots:
    void init() {
        // A history of another run would be offered, and asked about, at load.
        qputenv("XDG_STATE_HOME", QByteArray::fromStdString(dir_.File("state" + std::to_string(++runs_))));
        w_.reset();
    }

    // Each mark where the record's numbers put it, at the lens's zoom and corner.
    void marks_data() {
        QTest::addColumn<int>("zoom");
        QTest::addColumn<int>("pan");  // rows the picture is dragged up
        QTest::newRow("1x") << 1 << 0;
        QTest::newRow("4x") << 4 << 0;
        QTest::newRow("4x, dragged 6 rows") << 4 << 6;
    }
    void marks() {
        QFETCH(int, zoom);
        QFETCH(int, pan);
        PictureBox box;
        box.resize(132, 132);
        box.show();
        ZoomLens lens(&box);
        CarRecordOverlay overlay(&box, &lens);
        // A 24 x 40 sprite, centre (12, 20): box x 2..21, y 2..37; axles at rows 8 and 32,
        // windows at 15 and 26; the door at (6, 22).
        CarRecord r;
        r.width = 20;
        r.height = 36;
        r.frontWheelOffset = r.rearWheelOffset = 12;
        r.frontWindowOffset = 5;
        r.rearWindowOffset = 6;
        r.numDoors = 1;
        r.doors = {static_cast<std::uint16_t>(static_cast<std::uint8_t>(-6) | 2 << 8)};
        overlay.SetRecord(r, {24, 40});
        overlay.show();
        lens.SetZoom(zoom);
        QTest::mousePress(&lens, Qt::LeftButton, {}, {60, 100});
        QTest::mouseMove(&lens, {60, 100 - pan * zoom});
        QTest::mouseRelease(&lens, Qt::LeftButton, {}, {60, 100 - pan * zoom});
        QCOMPARE(lens.Origin(), QPoint(0, pan));
        const QImage shot = box.grab().toImage();
        // Picture edge v in the widget; a far edge is the last widget pixel before it.
        const auto L = [&](int v, int o) { return (v - o) * zoom; };
        const struct {
            const char* what;
            CarMark mark;
            QPoint at;
        } marks[] = {
            {"left edge", CarMark::HitBox, {L(2, 0), L(20, pan)}},
            {"right edge", CarMark::HitBox, {L(22, 0) - 1, L(20, pan)}},
            {"bottom edge", CarMark::HitBox, {L(8, 0), L(38, pan) - 1}},
            {"front axle", CarMark::Axle, {L(4, 0), L(8, pan)}},
            {"rear axle", CarMark::Axle, {L(4, 0), L(32, pan)}},
            {"front window", CarMark::Window, {L(4, 0), L(15, pan)}},
            {"rear window", CarMark::Window, {L(4, 0), L(26, pan)}},
            {"door", CarMark::Door, {L(6, 0), L(22, pan)}},
        };
        for (const auto& m : marks)
            if (shot.rect().contains(m.at)) QVERIFY2(shot.pixelColor(m.at) == CarMarkColour(m.mark), m.what);
    }

    // Ctrl+K draws the shown car's record and takes it away again; nothing shows before.
    void overlayFollowsTheCar() {
        w_ = std::make_unique<frmSTY2>(std::string(OMBREVALE_SAMPLE));
        Show();
        W().MainTab->setCurrentIndex(1);
        W().lstSprites->setCurrentRow(kCar);
        CarRecordOverlay* overlay = Panel()->Overlay();
        QVERIFY(!overlay->isVisible());
        QTest::keyClick(&W(), Qt::Key_K, Qt::ControlModifier);
        QVERIFY(overlay->isVisible() && overlay->Record() == STYCarInfo[kCar]);
        W().lstSprites->setCurrentRow(kCar + 1);
        QVERIFY(overlay->Record() == STYCarInfo[kCar + 1]);
        W().lstSprites->setCurrentRow(W().lstSprites->count() - 1);  // no car
        QVERIFY(!overlay->isVisible());
        QTest::keyClick(&W(), Qt::Key_K, Qt::ControlModifier);
        W().lstSprites->setCurrentRow(kCar);
        QVERIFY(!overlay->isVisible());
    }

    // A value past its field's limit is refused with the reason and OK waits; OK is one
    // step that Undo takes back, and the table and the drawing follow both ways.
    void editAndUndo_data() {
        QTest::addColumn<Opens>("opens");
        QTest::newRow("Ctrl+E") << Opens::Key;
        QTest::newRow("double-click on Other Info") << Opens::DoubleClick;
    }
    void editAndUndo() {
        QFETCH(Opens, opens);
        w_ = std::make_unique<frmSTY2>(std::string(OMBREVALE_SAMPLE));
        Show();
        W().MainTab->setCurrentIndex(1);
        W().lstSprites->setCurrentRow(kCar);
        QTest::keyClick(&W(), Qt::Key_K, Qt::ControlModifier);
        const CarRecord before = STYCarInfo[kCar];
        const QString width = TableWidth();
        // The dialog and the undo step name the car as the Sprites list does, then its record and model.
        const QString car = QStringLiteral("%1 (record %2, model %3)")
                                .arg(W().lstSprites->currentItem()->text())
                                .arg(kCar)
                                .arg(STYCarInfo[kCar].model);
        Answer([&](CarRecordDialog& d) {
            QCOMPARE(d.windowTitle(), QStringLiteral("Car record of ") + car);
            d.FieldEdit(ombrevale::cars::Field::Width)->setText(QStringLiteral("129"));
            QVERIFY(!d.ok->isEnabled() && d.Problem().contains(QStringLiteral("(0..128)")));
            d.FieldEdit(ombrevale::cars::Field::Width)->setText(QStringLiteral("20"));
            d.remaps->setText(d.remaps->text() + QStringLiteral(", 7"));
            d.doors->clear();
            QVERIFY(d.ok->isEnabled());
            d.ok->click();
        });
        if (opens == Opens::Key) {
            QTest::keyClick(&W(), Qt::Key_E, Qt::ControlModifier);
        } else {
            W().SprTab->setCurrentIndex(1);
            QTreeWidget* table = W().lstInfo;
            const QPoint row = table->visualItemRect(table->topLevelItem(1)).center();
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, row);
            QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, row);
        }
        CarRecord after = before;
        after.width = 20;
        after.remaps.push_back(7);
        after.numRemaps = static_cast<std::uint8_t>(after.remaps.size());
        after.doors.clear();
        after.numDoors = 0;
        QVERIFY(STYCarInfo[kCar] == after);
        QCOMPARE(W().Document().UndoStack()->count(), 1);
        QCOMPARE(W().Document().UndoStack()->undoText(), QStringLiteral("car record of ") + car);
        QCOMPARE(TableWidth(), QStringLiteral("20"));
        QVERIFY(Panel()->Overlay()->Record() == after);
        Show();  // back from the dialog
        QTest::keyClick(&W(), Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(STYCarInfo[kCar] == before);
        QCOMPARE(TableWidth(), width);
        QVERIFY(Panel()->Overlay()->Record() == before);
    }
};

QTEST_MAIN(CarRecordTest)
#include "carrecord_test.moc"
