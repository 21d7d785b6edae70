// PictureBox against Qt: the BMPs it decodes itself give the picture Qt's
// reader gives, and any mix of drawing calls on its blocks adds up to what the
// same calls give on one plain QImage.
#include <QFile>
#include <QPainter>
#include <QtTest>
#include <random>

#include "pixels/modbmp.h"
#include "style/moddeclares.h"
#include "support/tempdir.h"
#include "workbench/picturebox.h"

namespace {

// A picture as the pixel engine writes it, through WriteBMP with palette 0.
QByteArray EngineBmp(int w, int h, const std::string& path) {
    std::vector<std::uint8_t> pixels;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < (w + 3) / 4 * 4; ++x) pixels.push_back(static_cast<std::uint8_t>(x * 7 + y * 13));
    QFile::remove(QString::fromStdString(path));
    if (!modBMP::WriteBMP(path, w, h, 0, pixels)) return {};
    QFile f(QString::fromStdString(path));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void WriteAll(const std::string& path, const QByteArray& b) {
    QFile f(QString::fromStdString(path));
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(b);
}

void Put32(QByteArray& b, int at, std::uint32_t v) {
    for (int i = 0; i < 4; ++i) b[at + i] = static_cast<char>(v >> (8 * i));
}

QImage Pattern(int w, int h, int seed) {
    QImage img(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) img.setPixel(x, y, qRgb((x * 31 + seed) & 0xFF, (y * 17) & 0xFF, (x ^ y) & 0xFF));
    return img;
}

std::int32_t Vb(QRgb c) { return qRed(c) | qGreen(c) << 8 | qBlue(c) << 16; }

void Paint(PictureBox& box, const QImage& img) {
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x) box.SetPixelV(x, y, Vb(img.pixel(x, y)));
}

// The same calls on one plain image.
void Set(QImage& img, int x, int y, QRgb c) {
    if (img.rect().contains(x, y)) img.setPixel(x, y, c);
}
void InvertBox(QImage& img, int x1, int y1, int x2, int y2) {
    QImage before = img.copy();
    for (int y = y1; y <= y2; ++y)
        for (int x = x1; x <= x2; ++x)
            if ((x == x1 || x == x2 || y == y1 || y == y2) && img.rect().contains(x, y))
                img.setPixel(x, y, before.pixel(x, y) ^ 0x00FFFFFFu);
}
void Blt(QImage& to, int dx, int dy, int w, int h, const QImage& from, int sx, int sy) {
    const QImage copy = from.copy();
    for (int r = 0; r < h; ++r)
        for (int c = 0; c < w; ++c)
            if (copy.rect().contains(sx + c, sy + r)) Set(to, dx + c, dy + r, copy.pixel(sx + c, sy + r));
}
QImage Grown(const QImage& img, QSize s, QRgb back, bool keep) {
    QImage out(s, QImage::Format_RGB32);
    out.fill(back);
    if (keep) QPainter(&out).drawImage(0, 0, img);
    return out;
}

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
        QTest::addColumn<QSize>("box");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QSize>("pic");
        // The engine's own pictures: every row padding, smaller and larger than the box.
        for (int w : {1, 2, 3, 5, 64, 255})
            QTest::addRow("engine width %d", w) << QSize(64, 64) << "engine" << QSize(w, 9);
        QTest::newRow("engine larger than the box") << QSize(40, 30) << "engine" << QSize(64, 64);
        QTest::newRow("engine exactly the box") << QSize(64, 64) << "engine" << QSize(64, 64);
        QTest::newRow("engine 255 x 255") << QSize(300, 300) << "engine" << QSize(255, 255);
        // Still decoded here: no colour count (all 256), junk behind the pixels.
        for (const char* kind : {"used0", "tail", "used16", "topdown", "short", "rgb24", "png", "junk", "missing"})
            QTest::newRow(kind) << QSize(64, 64) << kind << QSize(13, 11);
    }
    void loadPicture() {
        QFETCH(QSize, box);
        QFETCH(QString, kind);
        QFETCH(QSize, pic);
        const std::string path = dir_.File("pic.bmp");
        QByteArray b = EngineBmp(pic.width(), pic.height(), dir_.File("scratch.bmp"));
        QVERIFY(!b.isEmpty());
        if (kind == "used0") Put32(b, 46, 0);
        if (kind == "tail") b.append(5000, char(0xEE));
        if (kind == "used16") {  // a table of 16, the pixels right behind it
            Put32(b, 46, 16);
            b.remove(54 + 64, 1024 - 64);
            Put32(b, 10, 54 + 64);
            for (qsizetype i = 54 + 64; i < b.size(); ++i) b[i] = char(b[i] & 0x0F);
        }
        if (kind == "topdown") Put32(b, 22, static_cast<std::uint32_t>(-pic.height()));
        if (kind == "short") b.chop(10);
        if (kind == "junk") b.fill(0x42, 2000);
        if (kind == "rgb24" || kind == "png")
            QVERIFY(Pattern(pic.width(), pic.height(), 3)
                        .convertToFormat(kind == "png" ? QImage::Format_RGB32 : QImage::Format_RGB888)
                        .save(QString::fromStdString(path), kind == "png" ? "PNG" : "BMP"));
        else if (kind == "missing")
            QFile::remove(QString::fromStdString(path));
        else
            WriteAll(path, b);

        PictureBox pb;
        pb.resize(box);
        Paint(pb, Pattern(box.width(), box.height(), 1));
        const QImage qt(QString::fromStdString(path));
        const QImage want =
            qt.isNull() ? pb.image() : Grown(qt.convertToFormat(QImage::Format_RGB32), box, pb.BackColor(), true);
        QCOMPARE(pb.LoadPicture(path), !qt.isNull());
        QCOMPARE(pb.image(), want);
    }

    // Random drawing on a sheet of many blocks and its 68 x 68 tile box:
    // loads, whole tiles onto the grid, odd blocks, self copies, boxes, runs,
    // resizes and wipes, checked against the plain image after every call.
    void blocksAddUpToThePicture_data() {
        QTest::addColumn<unsigned>("seed");
        for (unsigned seed : {1u, 2u, 3u, 4u, 5u, 6u}) QTest::addRow("seed %u", seed) << seed;
    }
    void blocksAddUpToThePicture() {
        QFETCH(unsigned, seed);
        std::mt19937 rng(seed);
        auto pick = [&rng](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
        const std::string tile = dir_.File("tile.bmp"), odd = dir_.File("odd.bmp");
        WriteAll(tile, EngineBmp(64, 64, dir_.File("scratch.bmp")));
        WriteAll(odd, EngineBmp(70, 45, dir_.File("scratch.bmp")));
        PictureBox sheet, cell;
        sheet.resize(200, 150);
        cell.resize(68, 68);
        QImage sheetRef = Grown({}, sheet.size(), sheet.BackColor(), false);
        QImage cellRef = Grown({}, cell.size(), cell.BackColor(), false);
        for (int step = 0; step < 120; ++step) {
            const int op = pick(0, 8);
            if (op == 0) {
                const std::string& path = pick(0, 3) ? tile : odd;
                QVERIFY(cell.LoadPicture(path));
                cellRef = Grown(QImage(QString::fromStdString(path)).convertToFormat(QImage::Format_RGB32), cell.size(),
                                cell.BackColor(), true);
            } else if (op <= 2) {
                const bool grid = op == 1;  // whole tiles onto the grid, as the sheet is drawn
                const int dx = grid ? pick(0, 3) * 64 : pick(-70, 210), dy = grid ? pick(0, 2) * 64 : pick(-70, 160);
                const int w = grid ? 64 : pick(0, 80), h = grid ? 64 : pick(0, 80);
                const int sx = grid ? 0 : pick(-10, 70), sy = grid ? 0 : pick(-10, 70);
                sheet.BitBlt(dx, dy, w, h, cell, sx, sy);
                Blt(sheetRef, dx, dy, w, h, cellRef, sx, sy);
            } else if (op == 3) {
                const int x = pick(-5, 205), y = pick(-5, 155), x2 = x + pick(0, 70), y2 = y + pick(0, 70);
                sheet.InvertBox(x, y, x2, y2);
                InvertBox(sheetRef, x, y, x2, y2);
            } else if (op == 4) {
                const int x = pick(-10, 200), y = pick(-2, 151), n = pick(0, 150);
                std::vector<std::int32_t> run;
                for (int i = 0; i < n; ++i) {
                    const QRgb c = qRgb(pick(0, 255), pick(0, 255), pick(0, 255));
                    run.push_back(Vb(c));
                    Set(sheetRef, x + i, y, c);
                }
                sheet.SetPixelRunV(x, y, run.data(), run.size());
            } else if (op == 5) {
                const QSize to(pick(1, 260), pick(1, 200));
                sheet.resize(to);
                sheetRef = Grown(sheetRef, to, sheet.BackColor(), true);
            } else if (op == 6 && pick(0, 3) == 0) {
                sheet.Cls();
                sheetRef = Grown({}, sheet.size(), sheet.BackColor(), false);
            } else if (op == 7) {  // a box onto itself, overlapping
                const int x = pick(0, 150), y = pick(0, 100), dx = x + pick(-20, 20), dy = y + pick(-20, 20);
                sheet.BitBlt(dx, dy, 60, 50, sheet, x, y);
                Blt(sheetRef, dx, dy, 60, 50, sheetRef, x, y);
            } else {
                const int x = pick(-3, 210), y = pick(-3, 160);
                const QRgb c = qRgb(pick(0, 255), pick(0, 255), pick(0, 255));
                sheet.SetPixelV(x, y, Vb(c));
                Set(sheetRef, x, y, c);
            }
            const QByteArray what = "step " + QByteArray::number(step) + " op " + QByteArray::number(op);
            QVERIFY2(cell.image() == cellRef, what);
            QVERIFY2(sheet.image() == sheetRef, what);
        }
    }

    // A sheet of tiles keeps one colour number a pixel; a wipe gives all of it back.
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
