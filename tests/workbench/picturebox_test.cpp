// PictureBox against Qt: the BMPs it decodes itself give the picture Qt's
// reader gives, and any mix of drawing calls on its blocks adds up to what the
// same calls give on one plain QImage.
#include <QtTest>
#include <QtWidgets>
#include <random>

#include "pixels/modbmp.h"
#include "style/moddeclares.h"
#include "support/tempdir.h"
#include "workbench/picturebox.h"

namespace {

QImage Rgb32(const QString& path) { return QImage(path).convertToFormat(QImage::Format_RGB32); }
std::int32_t Vb(QRgb c) { return qRed(c) | qGreen(c) << 8 | qBlue(c) << 16; }

// The same calls on one plain image.
void Set(QImage& img, int x, int y, QRgb c) {
    if (img.rect().contains(x, y)) img.setPixel(x, y, c);
}
void Blt(QImage& to, int dx, int dy, int w, int h, const QImage& from, int sx, int sy) {
    const QImage copy = from.copy();
    for (int r = 0; r < h; ++r)
        for (int c = 0; c < w; ++c)
            if (copy.rect().contains(sx + c, sy + r)) Set(to, dx + c, dy + r, copy.pixel(sx + c, sy + r));
}
QImage Grown(const QImage& img, QSize s, QRgb back) {
    QImage out(s, QImage::Format_RGB32);
    out.fill(back);
    QPainter(&out).drawImage(0, 0, img);
    return out;
}

}  // namespace

class PictureBoxTest : public QObject {
    Q_OBJECT
    ombrevale::testsupport::TempDir dir_;
    // A picture as the pixel engine writes it, through WriteBMP with palette 0; its path.
    QString EngineBmp(int w, int h) {
        std::vector<std::uint8_t> pixels;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < (w + 3) / 4 * 4; ++x) pixels.push_back(static_cast<std::uint8_t>(x * 7 + y * 13));
        const std::string path = dir_.File(std::to_string(w) + "x" + std::to_string(h) + ".bmp");
        return modBMP::WriteBMP(path, w, h, 0, pixels) ? QString::fromStdString(path) : QString();
    }

private slots:
    void initTestCase() {
        modDeclares::ResetSharedStores();
        modDeclares::STYPalData.assign(1, modDeclares::Palette{});
        for (std::size_t i = 0; i < 1024; ++i) modDeclares::STYPalData[0][i] = static_cast<std::uint8_t>(i * 37 + 5);
    }

    // The work file as a write over a longer one leaves it, cut short, or missing:
    // the picture as Qt reads it, or the control as it was.
    void loadPicture_data() {
        QTest::addColumn<QString>("kind");
        for (const char* kind : {"tail", "short", "missing"}) QTest::newRow(kind) << kind;
    }
    void loadPicture() {
        QFETCH(QString, kind);
        QFile file(EngineBmp(13, 11));
        if (kind == "tail") QVERIFY(file.open(QIODevice::Append) && file.write(QByteArray(5000, char(0xEE))) == 5000);
        file.close();
        if (kind == "short") QVERIFY(file.resize(file.size() - 10));
        if (kind == "missing") QVERIFY(file.remove());
        PictureBox pb;
        pb.resize(64, 64);
        QVERIFY(pb.LoadPicture(EngineBmp(64, 64).toStdString()));
        const QImage qt = Rgb32(file.fileName());
        const QImage want = qt.isNull() ? pb.image() : Grown(qt, pb.size(), pb.BackColor());
        QCOMPARE(pb.LoadPicture(file.fileName().toStdString()), !qt.isNull());
        QCOMPARE(pb.image(), want);
    }

    // Random drawing on a sheet of many blocks and its 68 x 68 tile box: loads
    // of the engine's pictures (every row padding, whole blocks, parts, the
    // box's own size, larger), whole tiles onto the grid, odd blocks, self
    // copies, boxes, runs, resizes and wipes, checked after every call.
    void blocksAddUpToThePicture_data() {
        QTest::addColumn<unsigned>("sequence");
        for (unsigned n : {1u, 2u, 3u, 4u, 5u, 6u}) QTest::addRow("sequence %u", n) << n;
    }
    void blocksAddUpToThePicture() {
        QFETCH(unsigned, sequence);
        std::mt19937 rng(sequence);
        auto pick = [&rng](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
        const QStringList pictures = {EngineBmp(64, 64), EngineBmp(71, 45), EngineBmp(5, 80), EngineBmp(68, 68),
                                      EngineBmp(2, 9)};
        PictureBox sheet, cell;
        sheet.resize(200, 150);
        cell.resize(68, 68);
        QImage sheetRef = Grown({}, sheet.size(), sheet.BackColor());
        QImage cellRef = Grown({}, cell.size(), cell.BackColor());
        for (int step = 0; step < 120; ++step) {
            const int op = pick(0, 8);
            if (op == 0) {
                const QString& path = pictures[pick(-2, 4) < 0 ? 0 : pick(0, 4)];  // the tile most often
                QVERIFY(cell.LoadPicture(path.toStdString()));
                cellRef = Grown(Rgb32(path), cell.size(), cell.BackColor());
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
                for (int yy = y; yy <= y2; ++yy)
                    for (int xx = x; xx <= x2; ++xx)
                        if ((xx == x || xx == x2 || yy == y || yy == y2) && sheetRef.rect().contains(xx, yy))
                            sheetRef.setPixel(xx, yy, sheetRef.pixel(xx, yy) ^ 0x00FFFFFFu);
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
                sheetRef = Grown(sheetRef, to, sheet.BackColor());
            } else if (op == 6 && pick(0, 3) == 0) {
                sheet.Cls();
                sheetRef = Grown({}, sheet.size(), sheet.BackColor());
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
            QVERIFY2(cell.image() == cellRef && sheet.image() == sheetRef,
                     qPrintable(QString("step %1 op %2").arg(step).arg(op)));
        }
    }
};

QTEST_MAIN(PictureBoxTest)
#include "picturebox_test.moc"
