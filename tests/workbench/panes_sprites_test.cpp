// The Sprites page and its car table on the bundled sample: record search,
// remap palettes, deltas painted over the sprite, the ten rows of the table.
#include <QComboBox>
#include <QLabel>
#include <QTabWidget>
#include <QTreeWidget>
#include <QtTest>
#include <map>

#include "panes_fixture.h"
#include "support/hookrecorder.h"
#include "workbench/picturebox.h"

using modDeclares::STYCarInfo;
using modDeclares::STYDeltaIndex;
using modDeclares::STYPalBase;
using modDeclares::STYPalIndex;
using panestest::Pixel;
using panestest::SpriteByte;
using panestest::StoreColour;

namespace {

// Pixels of delta d of sprite s as (x, y) -> colour number, walked here from the delta store.
std::map<std::pair<int, int>, int> DeltaPixels(int s, int d) {
    std::size_t start = 0;
    for (const auto& e : STYDeltaIndex) {
        if (e.sprite == s) {
            if (d >= e.deltaCount) return {};
            for (int k = 0; k < d; ++k) start += static_cast<std::size_t>(e.deltaSizes[static_cast<std::size_t>(k)]);
            const auto end = start + static_cast<std::size_t>(e.deltaSizes[static_cast<std::size_t>(d)]);
            std::map<std::pair<int, int>, int> px;
            long pos = 0;
            const auto& st = modDeclares::STYDeltaStore;
            for (std::size_t at = start; at + 3 <= end;) {
                pos += st[at] | st[at + 1] << 8;
                const int n = st[at + 2];
                for (int i = 0; i < n; ++i)
                    px[{static_cast<int>((pos + i) % 256), static_cast<int>((pos + i) / 256)}] =
                        st[at + 3 + static_cast<std::size_t>(i)];
                pos += n;
                at += 3 + static_cast<std::size_t>(n);
            }
            return px;
        }
        for (auto size : e.deltaSizes) start += static_cast<std::size_t>(size);
    }
    return {};
}

// The first car record with remaps whose sprite has at least two deltas; its sprite number.
std::pair<int, int> CarWithRemapsAndDeltas() {
    long n = 0;
    for (std::size_t r = 0; r < STYCarInfo.size(); ++r) {
        if (r > 0) n += STYCarInfo[r].sprite;
        if (STYCarInfo[r].remaps.size() < 2 || (STYCarInfo[r].sprite == 0 && r > 0)) continue;
        for (const auto& e : STYDeltaIndex)
            if (e.sprite == n && e.deltaCount >= 2) return {static_cast<int>(r), static_cast<int>(n)};
    }
    return {-1, -1};
}

}  // namespace

class PanesSpritesTest : public QObject {
    Q_OBJECT
    std::unique_ptr<panestest::SampleWindow> s_;
    frmSTY2& W() { return *s_->w; }

    // Checks the whole picture of sprite s in palette p, with delta d (or -1) over it.
    void CheckPicture(int s, int p, int d) {
        const QImage img = W().picSprite->image();
        const int w = W().Sty().GetSpriteWidth(s), h = W().Sty().GetSpriteHeight(s);
        const auto delta = d >= 0 ? DeltaPixels(s, d) : std::map<std::pair<int, int>, int>{};
        if (d >= 0) QVERIFY(!delta.empty());
        for (int y = 0; y < std::min(h, img.height()); ++y)
            for (int x = 0; x < std::min(w, img.width()); ++x) {
                const auto it = delta.find({x, y});
                const int c = it != delta.end() ? it->second : SpriteByte(W().Sty(), s, x, y);
                QCOMPARE(Pixel(img, x, y), StoreColour(p, c));
            }
    }

private slots:
    void init() {
        s_ = std::make_unique<panestest::SampleWindow>();
        W().Sty().DrawTransparent(false);
    }
    void cleanup() { s_.reset(); }

    void carRemapDelta_data() {
        QTest::addColumn<int>("remapRow");
        QTest::addColumn<int>("deltaRow");
        QTest::newRow("own palette, no delta") << 0 << 0;
        QTest::newRow("first remap, no delta") << 1 << 0;
        QTest::newRow("own palette, first dent") << 0 << 1;
        QTest::newRow("second remap, second dent") << 2 << 2;
    }
    void carRemapDelta() {
        QFETCH(int, remapRow);
        QFETCH(int, deltaRow);
        const auto [r, s] = CarWithRemapsAndDeltas();
        QVERIFY2(r >= 0, "the sample has a car with remaps and deltas");
        W().lstSprites->setCurrentRow(s);
        QCOMPARE(W().lstRemaps->count(), static_cast<int>(STYCarInfo[static_cast<std::size_t>(r)].remaps.size()) + 1);
        QCOMPARE(W().lstRemaps->item(0)->text(), QStringLiteral("(none)"));
        QCOMPARE(W().lstInfo->topLevelItem(0)->text(1), QString::number(STYCarInfo[static_cast<std::size_t>(r)].model));
        W().lstRemaps->setCurrentRow(remapRow);
        W().cmbDeltas->setCurrentIndex(deltaRow);
        int p = STYPalIndex[static_cast<std::size_t>(STYPalBase[0] + s)];
        if (remapRow > 0) {
            const int m = STYCarInfo[static_cast<std::size_t>(r)].remaps[static_cast<std::size_t>(remapRow - 1)];
            QCOMPARE(W().lstRemaps->item(remapRow)->text(), QString::number(m));
            const int own = p;
            p = STYPalIndex[static_cast<std::size_t>(STYPalBase[0] + STYPalBase[1] + m)];
            QVERIFY2(p != own, "a remap in another palette than the sprite's own");
        }
        CheckPicture(s, p, deltaRow - 1);
        QCOMPARE(QString::fromStdString(W().sSelKind), deltaRow > 0 ? QStringLiteral("d") : QStringLiteral("s"));
        QCOMPARE(static_cast<int>(W().iSelNum), s);
        QCOMPARE(W().lblSSize->text(),
                 QStringLiteral("Size: %1x%2").arg(W().Sty().GetSpriteWidth(s)).arg(W().Sty().GetSpriteHeight(s)));
    }

    void deltaNames() {
        QCOMPARE(W().cmbDeltas->count(), 20);
        QCOMPARE(W().cmbDeltas->itemText(0), QStringLiteral("(none)"));
        QCOMPARE(W().cmbDeltas->itemText(5), QStringLiteral("Damaged Windsreen"));
        QCOMPARE(W().cmbDeltas->itemText(19), QStringLiteral("Left Rear Emergency Light"));
    }

    void notACar() {
        const auto [r, s] = CarWithRemapsAndDeltas();
        W().lstSprites->setCurrentRow(s);
        W().cmbDeltas->setCurrentIndex(7);
        const int ped = modDeclares::STYSpriteBase[0] + 3;
        W().lstSprites->setCurrentRow(ped);
        QVERIFY(!W().SprTab->isTabEnabled(1));
        QVERIFY(!W().cmbDeltas->isEnabled());
        QVERIFY(!W().lstRemaps->isEnabled());
        QCOMPARE(W().lstRemaps->count(), 0);
        QCOMPARE(W().cmbDeltas->currentIndex(), 7);
        // The click itself ends on "s"; the car's table stays.
        QCOMPARE(QString::fromStdString(W().sSelKind), QStringLiteral("s"));
        QCOMPARE(W().lstInfo->topLevelItemCount(), 10);
        Q_UNUSED(r);
    }

    void carTable_data() {
        QTest::addColumn<int>("fill");
        QTest::newRow("all 255, never negative") << 255;
        QTest::newRow("all 200") << 200;
        QTest::newRow("all 0") << 0;
    }
    void carTable() {
        QFETCH(int, fill);
        auto& car = STYCarInfo.at(0);
        const auto b = static_cast<std::uint8_t>(fill);
        car.model = car.width = car.height = car.passengers = car.wreck = car.rating = b;
        car.frontWheelOffset = car.rearWheelOffset = car.frontWindowOffset = car.rearWindowOffset = b;
        W().lstSprites->setCurrentRow(0);
        W().lstSprites->setCurrentRow(1);
        W().lstSprites->setCurrentRow(0);
        const QStringList names = {"Model No.",
                                   "Width",
                                   "Height",
                                   "Passengers",
                                   "Wreck No.",
                                   "Rating",
                                   "Front Wheel Offset",
                                   "Rear Wheel Offset",
                                   "Front Window Offset",
                                   "Rear Window Offset"};
        QCOMPARE(W().lstInfo->topLevelItemCount(), 10);
        for (int i = 0; i < 10; ++i) {
            QCOMPARE(W().lstInfo->topLevelItem(i)->text(0), names[i]);
            QCOMPARE(W().lstInfo->topLevelItem(i)->text(1), QString::number(fill));
        }
    }

    void recordSearchPastTheEnd() {
        // No record reaches the last car sprite: no table, only "(none)", and no crash.
        for (auto& car : STYCarInfo) car.sprite = 0;
        testsupport::HookRecorder hooks;
        W().lstSprites->setCurrentRow(1);
        QVERIFY(!W().SprTab->isTabEnabled(1));
        QCOMPARE(W().lstRemaps->count(), 1);
        QVERIFY(W().cmbDeltas->isEnabled());
        QCOMPARE(QString::fromStdString(W().sSelKind), QStringLiteral("s"));
    }

    void deltaTheSpriteLacks() {
        const auto [r, s] = CarWithRemapsAndDeltas();
        Q_UNUSED(r);
        W().lstSprites->setCurrentRow(s);
        testsupport::HookRecorder hooks;
        W().cmbDeltas->setCurrentIndex(19);
        QVERIFY(DeltaPixels(s, 18).empty());
        CheckPicture(s, STYPalIndex[static_cast<std::size_t>(STYPalBase[0] + s)], -1);
        QCOMPARE(QString::fromStdString(W().sSelKind), QStringLiteral("d"));
        QVERIFY(hooks.messages().empty());
    }

    void secondClickResets() {
        const auto [r, s] = CarWithRemapsAndDeltas();
        Q_UNUSED(r);
        W().show();
        W().MainTab->setCurrentIndex(1);
        W().lstSprites->setCurrentRow(s);
        W().lstSprites->scrollToItem(W().lstSprites->item(s));
        W().lstRemaps->setCurrentRow(2);
        W().cmbDeltas->setCurrentIndex(3);
        const QString size = W().lblSSize->text();
        // Tile 100 chosen elsewhere; a remap change here takes the selection back.
        W().sSelKind = "t";
        W().iSelNum = 100;
        W().lstRemaps->setCurrentRow(1);
        QCOMPARE(static_cast<int>(W().iSelNum), s);
        QCOMPARE(QString::fromStdString(W().sSelKind), QStringLiteral("d"));
        QCOMPARE(W().lblSSize->text(), size);
        const QRect row = W().lstSprites->visualItemRect(W().lstSprites->item(s));
        QTest::mouseClick(W().lstSprites->viewport(), Qt::LeftButton, {}, row.center());
        QCOMPARE(W().lstRemaps->currentRow(), 0);
        QCOMPARE(W().cmbDeltas->currentIndex(), 0);
        QCOMPARE(QString::fromStdString(W().sSelKind), QStringLiteral("s"));
    }

    void changeBeforeAnySprite() {
        W().sSelKind = "t";
        W().cmbDeltas->setCurrentIndex(3);
        QCOMPARE(QString::fromStdString(W().sSelKind), QStringLiteral("t"));
    }
};

QTEST_MAIN(PanesSpritesTest)
#include "panes_sprites_test.moc"
