// PictureBox's own drawing against Qt's: a BMP it decodes itself gives the
// picture Qt's reader gives, and what it leaves to Qt still loads; runs of
// pixels, block copies and growing keep to the same pixels as the one-pixel
// calls and QPainter.
#include <QPainter>
#include <QtTest>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "pixels/modbmp.h"
#include "style/moddeclares.h"
#include "support/tempdir.h"
#include "workbench/picturebox.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

void Put32(Bytes& b, std::size_t at, std::uint32_t v) {
    for (int i = 0; i < 4; ++i) b[at + static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(v >> (8 * i));
}

// A picture as the engine writes it, through WriteBMP with palette 0.
Bytes EngineBmp(int w, int h, const std::string& scratch) {
    Bytes pixels;
    const int stride = (w + 3) / 4 * 4;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < stride; ++x) pixels.push_back(static_cast<std::uint8_t>((x * 7 + y * 13) & 0xFF));
    std::remove(scratch.c_str());
    if (!modBMP::WriteBMP(scratch, w, h, 0, pixels)) return {};
    std::FILE* f = std::fopen(scratch.c_str(), "rb");
    Bytes out(static_cast<std::size_t>(modBMP::kHeadBytes) + pixels.size());
    const std::size_t got = std::fread(out.data(), 1, out.size(), f);
    std::fclose(f);
    out.resize(got);
    return out;
}

void WriteAll(const std::string& path, const Bytes& b) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!b.empty()) std::fwrite(b.data(), 1, b.size(), f);
    std::fclose(f);
}

// What LoadPicture gave before it read any BMP itself: Qt's reader, drawn over the back colour.
QImage QtReference(const QImage& before, const QString& path, QRgb back, bool& loads) {
    const QImage pic(path);
    loads = !pic.isNull();
    if (!loads) return before;
    QImage ref(before.size(), QImage::Format_RGB32);
    ref.fill(back);
    QPainter p(&ref);
    p.drawImage(0, 0, pic.convertToFormat(QImage::Format_RGB32));
    return ref;
}

QImage Pattern(int w, int h, int seed) {
    QImage img(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) img.setPixel(x, y, qRgb((x * 31 + seed) & 0xFF, (y * 17) & 0xFF, (x ^ y) & 0xFF));
    return img;
}

// Draws a pattern into a box through its own calls: a run of pixels per row.
void Paint(PictureBox& box, const QImage& img) {
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x) {
            const QRgb c = img.pixel(x, y);
            box.SetPixelV(x, y, qRed(c) | qGreen(c) << 8 | qBlue(c) << 16);
        }
}

// The picture as one plain image, drawn the simplest way: what PictureBox's
// blocks must always add up to.
struct Reference {
    QImage img;
    QRgb back;
    Reference(QSize s, QRgb b) : img(s, QImage::Format_RGB32), back(b) { img.fill(back); }
    void Resize(QSize s, bool keep) {
        QImage grown(s, QImage::Format_RGB32);
        grown.fill(back);
        if (keep) {
            QPainter p(&grown);
            p.drawImage(0, 0, img);
        }
        img = grown;
    }
    void Load(const QString& path) {
        const QImage pic = QImage(path).convertToFormat(QImage::Format_RGB32);
        img.fill(back);
        QPainter p(&img);
        p.drawImage(0, 0, pic);
    }
    void Set(int x, int y, QRgb c) {
        if (img.rect().contains(x, y)) img.setPixel(x, y, c);
    }
    void Invert(int x, int y) {
        if (img.rect().contains(x, y)) img.setPixel(x, y, img.pixel(x, y) ^ 0x00FFFFFFu);
    }
    void InvertBox(int x1, int y1, int x2, int y2) {
        for (int x = x1; x <= x2; ++x) {
            Invert(x, y1);
            if (y2 != y1) Invert(x, y2);
        }
        for (int y = y1 + 1; y < y2; ++y) {
            Invert(x1, y);
            if (x2 != x1) Invert(x2, y);
        }
    }
    void Blt(int dx, int dy, int w, int h, const QImage& from, int sx, int sy) {
        const QImage copy = from.copy();
        for (int r = 0; r < h; ++r)
            for (int c = 0; c < w; ++c)
                if (copy.rect().contains(sx + c, sy + r)) Set(dx + c, dy + r, copy.pixel(sx + c, sy + r));
    }
};

}  // namespace

class PictureBoxTest : public QObject {
    Q_OBJECT
    testsupport::TempDir dir_;

private slots:
    void initTestCase() {
        modDeclares::ResetSharedStores();
        modDeclares::STYPalData.assign(1, modDeclares::Palette{});
        for (std::size_t i = 0; i < 1024; ++i) modDeclares::STYPalData[0][i] = static_cast<std::uint8_t>(i * 37 + 5);
    }
    void cleanupTestCase() { modDeclares::ResetSharedStores(); }

    void loadPicture_data() {
        QTest::addColumn<int>("boxW");
        QTest::addColumn<int>("boxH");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("w");
        QTest::addColumn<int>("h");
        // The engine's own pictures, every row padding, smaller and larger than the box.
        for (int w : {1, 2, 3, 4, 5, 7, 64, 255})
            QTest::newRow(qPrintable(QStringLiteral("engine width %1").arg(w))) << 64 << 64 << "engine" << w << 9;
        QTest::newRow("engine taller than the box") << 40 << 30 << "engine" << 64 << 64;
        QTest::newRow("engine exactly the box") << 64 << 64 << "engine" << 64 << 64;
        QTest::newRow("engine as wide, shorter") << 64 << 64 << "engine" << 64 << 63;
        QTest::newRow("engine 255 x 255") << 300 << 300 << "engine" << 255 << 255;
        // Still decoded here: no colour count (all 256), junk behind the pixels.
        QTest::newRow("colour count 0") << 64 << 64 << "used0" << 13 << 11;
        QTest::newRow("tail of an older longer file") << 64 << 64 << "tail" << 13 << 11;
        // Left to Qt: everything the engine never writes.
        QTest::newRow("16 colours") << 64 << 64 << "used16" << 13 << 11;
        QTest::newRow("top-down rows") << 64 << 64 << "topdown" << 13 << 11;
        QTest::newRow("pixels cut short") << 64 << 64 << "short" << 13 << 11;
        QTest::newRow("24-bit") << 64 << 64 << "rgb24" << 13 << 11;
        QTest::newRow("PNG named .bmp") << 64 << 64 << "png" << 13 << 11;
        QTest::newRow("not a picture") << 64 << 64 << "junk" << 13 << 11;
        QTest::newRow("no file") << 64 << 64 << "missing" << 13 << 11;
    }
    void loadPicture() {
        QFETCH(int, boxW);
        QFETCH(int, boxH);
        QFETCH(QString, kind);
        QFETCH(int, w);
        QFETCH(int, h);
        const std::string path = dir_.File("pic.bmp");
        Bytes b = EngineBmp(w, h, dir_.File("scratch.bmp"));
        QVERIFY(!b.empty());
        if (kind == "used0") Put32(b, 46, 0);
        if (kind == "tail") b.insert(b.end(), 5000, 0xEE);
        if (kind == "used16") {
            // 16 colours: the table is shorter, the pixels follow it.
            Put32(b, 46, 16);
            b.erase(b.begin() + 54 + 64, b.begin() + 1078);
            Put32(b, 10, 54 + 64);
            for (std::size_t i = 54 + 64; i < b.size(); ++i) b[i] &= 0x0F;
        }
        if (kind == "topdown") Put32(b, 22, static_cast<std::uint32_t>(-h));
        if (kind == "short") b.resize(b.size() - 10);
        if (kind == "rgb24")
            QVERIFY(Pattern(w, h, 3).convertToFormat(QImage::Format_RGB888).save(QString::fromStdString(path), "BMP"));
        if (kind == "png") QVERIFY(Pattern(w, h, 3).save(QString::fromStdString(path), "PNG"));
        if (kind == "junk") b.assign(2000, 0x42);
        if (kind == "missing")
            std::remove(path.c_str());
        else if (kind != "rgb24" && kind != "png")
            WriteAll(path, b);

        PictureBox box;
        box.resize(boxW, boxH);
        Paint(box, Pattern(boxW, boxH, 1));
        const QImage before = box.image();
        bool loads = false;
        const QImage want = QtReference(before, QString::fromStdString(path), box.BackColor(), loads);
        QCOMPARE(box.LoadPicture(path), loads);
        QCOMPARE(box.image(), want);
    }

    void pixelRun_data() {
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("y");
        QTest::addColumn<int>("n");
        QTest::newRow("inside") << 3 << 4 << 10;
        QTest::newRow("from left of the picture") << -5 << 0 << 9;
        QTest::newRow("past the right edge") << 25 << 19 << 12;
        QTest::newRow("wholly left") << -20 << 2 << 5;
        QTest::newRow("wholly right") << 40 << 2 << 5;
        QTest::newRow("above") << 0 << -1 << 8;
        QTest::newRow("below") << 0 << 20 << 8;
        QTest::newRow("wider than the picture") << -3 << 7 << 60;
        QTest::newRow("empty") << 4 << 4 << 0;
    }
    void pixelRun() {
        QFETCH(int, x);
        QFETCH(int, y);
        QFETCH(int, n);
        std::vector<std::int32_t> colours;
        for (int i = 0; i < n; ++i) colours.push_back(0x010203 * (i + 1) + 0x400000);
        PictureBox one, run;
        for (PictureBox* b : {&one, &run}) {
            b->resize(32, 20);
            b->Cls();
        }
        for (int i = 0; i < n; ++i) one.SetPixelV(x + i, y, colours[static_cast<std::size_t>(i)]);
        run.SetPixelRunV(x, y, colours.data(), colours.size());
        QCOMPARE(run.image(), one.image());
    }

    void bitBlt_data() {
        QTest::addColumn<QRect>("block");  // w, h and the source corner sx, sy
        QTest::addColumn<QPoint>("to");
        QTest::newRow("inside both") << QRect(2, 3, 10, 8) << QPoint(5, 6);
        QTest::newRow("source past its right and bottom") << QRect(20, 14, 20, 20) << QPoint(0, 0);
        QTest::newRow("source left of and above it") << QRect(-4, -3, 10, 10) << QPoint(8, 8);
        QTest::newRow("target past its edges") << QRect(0, 0, 24, 16) << QPoint(30, 25);
        QTest::newRow("target left of and above it") << QRect(0, 0, 24, 16) << QPoint(-7, -5);
        QTest::newRow("no overlap") << QRect(100, 100, 5, 5) << QPoint(0, 0);
        QTest::newRow("zero width") << QRect(0, 0, 0, 5) << QPoint(3, 3);
    }
    void bitBlt() {
        QFETCH(QRect, block);
        QFETCH(QPoint, to);
        PictureBox src, dst;
        src.resize(24, 16);
        dst.resize(40, 30);
        Paint(src, Pattern(24, 16, 9));
        Paint(dst, Pattern(40, 30, 2));
        QImage want = dst.image();
        // QPainter reads an empty source block as "to the edge"; an empty block copies nothing.
        if (!block.isEmpty()) {
            QPainter p(&want);
            p.setCompositionMode(QPainter::CompositionMode_Source);
            p.drawImage(to, src.image(), block);
        }
        dst.BitBlt(to.x(), to.y(), block.width(), block.height(), src, block.x(), block.y());
        QCOMPARE(dst.image(), want);
    }

    // A new size keeps what was drawn, unless the next call is a wipe.
    void resizeKeepsThePicture_data() {
        QTest::addColumn<QSize>("to");
        QTest::addColumn<bool>("wipe");
        for (bool wipe : {false, true}) {
            const QString then = wipe ? QStringLiteral(", then Cls") : QString();
            QTest::newRow(qPrintable("larger" + then)) << QSize(50, 40) << wipe;
            QTest::newRow(qPrintable("narrower and taller" + then)) << QSize(10, 60) << wipe;
            QTest::newRow(qPrintable("smaller" + then)) << QSize(7, 5) << wipe;
            QTest::newRow(qPrintable("same size" + then)) << QSize(30, 20) << wipe;
        }
    }
    void resizeKeepsThePicture() {
        QFETCH(QSize, to);
        QFETCH(bool, wipe);
        PictureBox box;
        box.resize(30, 20);
        const QImage drawn = Pattern(30, 20, 4);
        Paint(box, drawn);
        box.resize(to);
        if (wipe) box.Cls();
        QImage want(to, QImage::Format_RGB32);
        want.fill(box.BackColor());
        QPainter p(&want);
        if (!wipe) p.drawImage(0, 0, drawn);
        p.end();
        QCOMPARE(box.image(), want);
    }

    // Random drawing on a picture of many blocks, a sheet and its 68 x 68
    // tile box, checked against the plain image after every call.
    void blocksAddUpToThePicture_data() {
        QTest::addColumn<unsigned>("seed");
        for (unsigned seed : {1u, 2u, 3u, 4u, 5u, 6u}) QTest::newRow(qPrintable(QString::number(seed))) << seed;
    }
    void blocksAddUpToThePicture() {
        QFETCH(unsigned, seed);
        std::mt19937 rng(seed);
        auto pick = [&rng](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
        const std::string tile = dir_.File("tile.bmp");
        WriteAll(tile, EngineBmp(64, 64, dir_.File("scratch.bmp")));
        const std::string odd = dir_.File("odd.bmp");
        WriteAll(odd, EngineBmp(70, 45, dir_.File("scratch.bmp")));

        PictureBox sheet, cell;
        sheet.resize(200, 150);
        cell.resize(68, 68);
        Reference sheetRef(sheet.size(), sheet.BackColor()), cellRef(cell.size(), cell.BackColor());
        for (int step = 0; step < 120; ++step) {
            const int op = pick(0, 8);
            const QByteArray what = QByteArray::number(step) + " op " + QByteArray::number(op);
            if (op == 0) {
                const std::string& path = pick(0, 3) ? tile : odd;
                QVERIFY(cell.LoadPicture(path));
                cellRef.Load(QString::fromStdString(path));
            } else if (op <= 2) {
                // Mostly whole tiles onto the grid, as the sheet is drawn.
                const bool grid = op == 1;
                const int dx = grid ? pick(0, 3) * 64 : pick(-70, 210), dy = grid ? pick(0, 2) * 64 : pick(-70, 160);
                const int w = grid ? 64 : pick(1, 80), h = grid ? 64 : pick(1, 80);
                const int sx = grid ? 0 : pick(-10, 70), sy = grid ? 0 : pick(-10, 70);
                sheet.BitBlt(dx, dy, w, h, cell, sx, sy);
                sheetRef.Blt(dx, dy, w, h, cellRef.img, sx, sy);
            } else if (op == 3) {
                const int x = pick(-5, 205), y = pick(-5, 155);
                const int w = pick(0, 70), h = pick(0, 70);
                sheet.InvertBox(x, y, x + w, y + h);
                sheetRef.InvertBox(x, y, x + w, y + h);
            } else if (op == 4) {
                const int x = pick(-10, 200), y = pick(-2, 151), n = pick(0, 150);
                std::vector<std::int32_t> run;
                for (int i = 0; i < n; ++i) run.push_back(pick(0, 0xFFFFFF));
                sheet.SetPixelRunV(x, y, run.data(), run.size());
                for (int i = 0; i < n; ++i) {
                    const auto c = static_cast<std::uint32_t>(run[static_cast<std::size_t>(i)]);
                    sheetRef.Set(x + i, y, qRgb(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF));
                }
            } else if (op == 5) {
                const QSize to(pick(1, 260), pick(1, 200));
                sheet.resize(to);
                sheetRef.Resize(to, true);
            } else if (op == 6 && pick(0, 3) == 0) {
                sheet.Cls();
                sheetRef.Resize(sheet.size(), false);
            } else if (op == 7) {
                // A box onto itself, overlapping.
                const int x = pick(0, 150), y = pick(0, 100), dx = x + pick(-20, 20), dy = y + pick(-20, 20);
                sheet.BitBlt(dx, dy, 60, 50, sheet, x, y);
                sheetRef.Blt(dx, dy, 60, 50, sheetRef.img, x, y);
            } else {
                const int x = pick(-3, 210), y = pick(-3, 160);
                const QRgb c = qRgb(pick(0, 255), pick(0, 255), pick(0, 255));
                sheet.SetPixelV(x, y, qRed(c) | qGreen(c) << 8 | qBlue(c) << 16);
                sheetRef.Set(x, y, c);
            }
            QVERIFY2(cell.image() == cellRef.img, what);
            QVERIFY2(sheet.image() == sheetRef.img, what);
        }
    }

    // Copying a box onto itself reads the block as it was before the copy.
    void copyOntoItself_data() {
        QTest::addColumn<QRect>("block");
        QTest::addColumn<QPoint>("to");
        QTest::newRow("down and right, across blocks") << QRect(30, 20, 90, 70) << QPoint(50, 40);
        QTest::newRow("up and left") << QRect(60, 70, 80, 60) << QPoint(5, 3);
        QTest::newRow("whole block onto the next") << QRect(0, 0, 64, 64) << QPoint(64, 64);
    }
    void copyOntoItself() {
        QFETCH(QRect, block);
        QFETCH(QPoint, to);
        PictureBox box;
        box.resize(200, 150);
        Paint(box, Pattern(200, 150, 7));
        Reference ref(box.size(), box.BackColor());
        ref.img = box.image();
        ref.Blt(to.x(), to.y(), block.width(), block.height(), ref.img, block.x(), block.y());
        box.BitBlt(to.x(), to.y(), block.width(), block.height(), box, block.x(), block.y());
        QCOMPARE(box.image(), ref.img);
    }

    // A sheet of tiles keeps one colour number a pixel and shares the tiles'
    // colour tables; a wipe gives all of it back.
    void sheetOfTilesTakesAByteAPixel() {
        const std::string tile = dir_.File("tile.bmp");
        WriteAll(tile, EngineBmp(64, 64, dir_.File("scratch.bmp")));
        PictureBox sheet, cell;
        sheet.resize(9 * 64, 12 * 64);
        cell.resize(68, 68);
        sheet.Cls();
        QCOMPARE(sheet.StoredBytes(), std::size_t{0});
        for (int t = 0; t < 100; ++t) {
            QVERIFY(cell.LoadPicture(tile));
            sheet.BitBlt((t % 9) * 64, (t / 9) * 64, 64, 64, cell, 0, 0);
        }
        QCOMPARE(sheet.StoredBytes(), std::size_t{100 * 64 * 64});
        sheet.InvertBox(64, 64, 128, 128);  // a selection box touches four blocks
        QCOMPARE(sheet.StoredBytes(), std::size_t{96 * 64 * 64 + 4 * 64 * 64 * 4});
        sheet.Cls();
        QCOMPARE(sheet.StoredBytes(), std::size_t{0});
    }
};

QTEST_MAIN(PictureBoxTest)
#include "picturebox_test.moc"
