#pragma once
// A picture box with a persistent picture: what is drawn stays in a QImage
// that survives repainting and can be read while the widget is hidden.

#include <QImage>
#include <QWidget>

#include "pixels/picturecontrol.h"

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

    const QImage& image() const {
        EnsureImage();
        return image_;
    }
    QRgb BackColor() const { return backColor_; }

    QString Tag = QStringLiteral("-1");

signals:
    void MouseUp(Qt::MouseButton button, Qt::KeyboardModifiers shift, double x, double y);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void InvertPixel(int x, int y);
    // True when it has made a new picture for a new size; keep = false makes
    // it all background instead of keeping what the old one held.
    bool EnsureImage(bool keep = true) const;

    mutable QImage image_;
    QRgb backColor_ = qRgb(0xF0, 0xF0, 0xF0);
};
