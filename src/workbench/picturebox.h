#pragma once
// A picture box with a persistent picture: what is drawn stays, survives
// repainting and can be read while the widget is hidden.
//
// The picture is kept in 64 x 64 blocks. A block nobody drew on is background
// and costs nothing; a block filled whole from an 8-bit picture (a tile on the
// sheet) keeps its 4 KB of colour numbers, shared with the document's tile
// (pixelblock.h), and a shared colour table; any other drawing turns a block
// into 16 KB of colours. The sheet of a thousand tiles then costs what its
// block list costs instead of 16 MB, and wiping it is free.

#include <QImage>
#include <QWidget>
#include <array>
#include <memory>
#include <vector>

#include "pixels/picturecontrol.h"
#include "style/pixelblock.h"

class PictureBox : public QWidget, public PictureControl {
    Q_OBJECT
public:
    explicit PictureBox(QWidget* parent = nullptr);

    void Cls() override;
    bool LoadPicture(const std::string& sPath) override;
    void SetPixelV(int x, int y, std::int32_t colour) override;
    void SetPixelRunV(int x, int y, const std::int32_t* colours, std::size_t n) override;
    // The control's size; its picture follows it even while hidden.
    int Width() const override { return width(); }
    int Height() const override { return height(); }

    // Plain copy (SRCCOPY) of a block; parts outside either picture are dropped.
    void BitBlt(int dx, int dy, int w, int h, const PictureBox& src, int sx, int sy);
    // Outline from (x1, y1) to (x2, y2), both corners included, every pixel
    // inverted once, so a second call restores what was there.
    void InvertBox(int x1, int y1, int x2, int y2);

    // The whole picture as one image, made on demand and kept until the next drawing.
    const QImage& image() const;
    QRgb BackColor() const { return backColor_; }
    // Bytes the picture's blocks hold now, shared ones included.
    std::size_t StoredBytes() const;

    QString Tag = QStringLiteral("-1");

    static constexpr int kSide = 64;
    using ColourTable = std::array<QRgb, 256>;

signals:
    void MouseUp(Qt::MouseButton button, Qt::KeyboardModifiers shift, double x, double y);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    // Neither table nor colours: background.
    struct Block {
        std::shared_ptr<const ColourTable> table;
        SharedPixelBlock numbers;   // with table: kSide * kSide colour numbers
        std::vector<QRgb> colours;  // kSide * kSide colours
    };

    Block& BlockAt(int x, int y) const;
    // The row of colours from (x, y) to the end of its block, which becomes
    // one of colours if it was not.
    QRgb* Row(int x, int y) const;
    QRgb Pixel(int x, int y) const;
    void Expand(Block& b) const;
    void Put(int x, int y, const QImage& from, const QRect& part);
    void ClearBlocks() const;
    // Background again wherever a block reaches past the picture.
    void BlankOutside() const;
    void InvertPixel(int x, int y);
    // True when it has made a new picture for a new size; keep = false makes
    // it all background instead of keeping what the old one held.
    bool EnsureImage(bool keep = true) const;

    // The picture follows the widget's size, even from a const read.
    mutable QSize size_{1, 1};
    mutable int blockCols_ = 1;
    mutable int blockRows_ = 1;
    mutable std::vector<Block> blocks_{1};
    mutable QImage flat_;
    mutable bool flatValid_ = false;
    QRgb backColor_ = qRgb(0xF0, 0xF0, 0xF0);
};
