// PictureBox's own drawing against Qt's: a BMP it decodes itself gives the
// picture Qt's reader gives, and what it leaves to Qt still loads; runs of
// pixels, block copies and growing keep to the same pixels as the one-pixel
// calls and QPainter.
#include <QPainter>
#include <QtTest>
#include <cstdio>
#include <functional>
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
        if (kind == "rgb24") QVERIFY(Pattern(w, h, 3).convertToFormat(QImage::Format_RGB888).save(QString::fromStdString(path), "BMP"));
        if (kind == "png") QVERIFY(Pattern(w, h, 3).save(QString::fromStdString(path), "PNG"));
        if (kind == "junk") b.assign(2000, 0x42);
        if (kind == "missing") std::remove(path.c_str());
        else if (kind != "rgb24" && kind != "png") WriteAll(path, b);

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
        QPainter p(&want);
        p.setCompositionMode(QPainter::CompositionMode_Source);
        p.drawImage(to, src.image(), block);
        p.end();
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
};

QTEST_MAIN(PictureBoxTest)
#include "picturebox_test.moc"
