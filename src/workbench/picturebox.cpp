#include "workbench/picturebox.h"

#include <fcntl.h>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <unordered_map>

#include "pixels/picturefile.h"

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

constexpr int kSide = PictureBox::kSide;
constexpr std::size_t kCells = static_cast<std::size_t>(kSide) * kSide;
using ColourTable = PictureBox::ColourTable;

int BlocksFor(int px) { return (px + kSide - 1) / kSide; }

std::size_t Cell(int x, int y) { return static_cast<std::size_t>((y % kSide) * kSide + x % kSide); }

// One table per distinct palette, whichever box holds it: the sheet's tiles
// share a few hundred palettes between them.
std::shared_ptr<const ColourTable> Shared(const ColourTable& table) {
    static std::unordered_multimap<std::uint64_t, std::weak_ptr<const ColourTable>> known;
    std::uint64_t h = 1469598103934665603ull;
    for (QRgb c : table) h = (h ^ c) * 1099511628211ull;
    auto [first, last] = known.equal_range(h);
    for (auto it = first; it != last; ++it)
        if (auto t = it->second.lock(); t && *t == table) return t;
    if (known.size() > 4096) std::erase_if(known, [](const auto& e) { return e.second.expired(); });
    auto made = std::make_shared<const ColourTable>(table);
    known.emplace(h, made);
    return made;
}

// Open, one read, close: the sheet reads a thousand of these in a row.
std::size_t ReadOnce(const std::string& path, unsigned char* to, std::size_t n) {
#ifdef _WIN32
    const int fd = _open(path.c_str(), _O_RDONLY | _O_BINARY);
    if (fd < 0) return 0;
    const int got = _read(fd, to, static_cast<unsigned>(n));
    _close(fd);
#else
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return 0;
    const ssize_t got = read(fd, to, n);
    close(fd);
#endif
    return got > 0 ? static_cast<std::size_t>(got) : 0;
}

// An 8-bit picture no larger than the engine's, read in one go into `file`;
// its rows are drawn from there. A short read from a regular file is its
// end; should one ever fall short otherwise, the picture goes the long way.
bool ReadEightBit(const std::string& path, std::vector<unsigned char>& file, ombrevale::picturefile::Layout& bmp) {
    constexpr std::size_t kMost = 54 + 1024 + 256 * 256;
    file.resize(kMost + 1);
    const std::size_t got = ReadOnce(path, file.data(), file.size());
    return got <= kMost && !ombrevale::picturefile::ReadLayout({file.data(), got}, bmp) && bmp.bits == 8;
}

QRgb FromVb(std::int32_t colour) {
    const auto c = static_cast<std::uint32_t>(colour);
    return qRgb(static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF), static_cast<int>((c >> 16) & 0xFF));
}

}  // namespace

PictureBox::PictureBox(QWidget* parent) : QWidget(parent) {}

PictureBox::Block& PictureBox::BlockAt(int x, int y) const {
    return blocks_[static_cast<std::size_t>((y / kSide) * blockCols_ + x / kSide)];
}

void PictureBox::Expand(Block& b) const {
    if (!b.colours.empty()) return;
    b.colours.assign(kCells, backColor_);
    if (b.table) {
        for (std::size_t i = 0; i < kCells; ++i) b.colours[i] = (*b.table)[(*b.numbers)[i]];
        b.table.reset();
        b.numbers.reset();
    }
}

QRgb* PictureBox::Row(int x, int y) const {
    Block& b = BlockAt(x, y);
    Expand(b);
    flatValid_ = false;
    return b.colours.data() + Cell(x, y);
}

QRgb PictureBox::Pixel(int x, int y) const {
    const Block& b = BlockAt(x, y);
    if (!b.colours.empty()) return b.colours[Cell(x, y)];
    if (b.table) return (*b.table)[(*b.numbers)[Cell(x, y)]];
    return backColor_;
}

void PictureBox::ClearBlocks() const {
    for (Block& b : blocks_) b = Block{};
    flatValid_ = false;
}

void PictureBox::BlankOutside() const {
    const int w = size_.width(), h = size_.height();
    for (int by = 0; by < blockRows_; ++by) {
        for (int bx = 0; bx < blockCols_; ++bx) {
            const int x0 = bx * kSide, y0 = by * kSide;
            if (x0 + kSide <= w && y0 + kSide <= h) continue;
            Block& b = BlockAt(x0, y0);
            if (b.colours.empty() && !b.table) continue;
            Expand(b);
            for (int y = 0; y < kSide; ++y)
                for (int x = 0; x < kSide; ++x)
                    if (x0 + x >= w || y0 + y >= h) b.colours[static_cast<std::size_t>(y * kSide + x)] = backColor_;
        }
    }
}

bool PictureBox::EnsureImage(bool keep) const {
    // The stored picture follows the control's size and keeps what it holds.
    // Hidden widgets get no resize event, so every use checks.
    const QSize s(std::max(1, width()), std::max(1, height()));
    if (s == size_) return false;
    const int cols = BlocksFor(s.width()), rows = BlocksFor(s.height());
    std::vector<Block> grown(static_cast<std::size_t>(cols) * static_cast<std::size_t>(rows));
    for (int by = 0; keep && by < std::min(rows, blockRows_); ++by)
        for (int bx = 0; bx < std::min(cols, blockCols_); ++bx)
            grown[static_cast<std::size_t>(by * cols + bx)] =
                std::move(blocks_[static_cast<std::size_t>(by * blockCols_ + bx)]);
    blocks_ = std::move(grown);
    blockCols_ = cols;
    blockRows_ = rows;
    size_ = s;
    // Blocks kept from a larger picture hold pixels past the new edge.
    if (keep) BlankOutside();
    flatValid_ = false;
    return true;
}

void PictureBox::Cls() {
    if (!EnsureImage(false)) ClearBlocks();
    update();
}

void PictureBox::Put(int x, int y, const QImage& from, const QRect& part) {
    const QRect dest = QRect(QPoint(x, y), part.size()).intersected(QRect(QPoint(0, 0), size_));
    for (int r = dest.top(); r <= dest.bottom(); ++r) {
        const auto* line = reinterpret_cast<const QRgb*>(from.constScanLine(part.y() + r - y));
        for (int c = dest.left(); c <= dest.right();) {
            const int n = std::min(dest.right() + 1, (c / kSide + 1) * kSide) - c;
            std::memcpy(Row(c, r), line + (part.x() + c - x), static_cast<std::size_t>(n) * sizeof(QRgb));
            c += n;
        }
    }
}

bool PictureBox::LoadPicture(const std::string& sPath) {
    EnsureImage();
    thread_local std::vector<unsigned char> file;
    ombrevale::picturefile::Layout bmp;
    if (ReadEightBit(sPath, file, bmp)) {
        ClearBlocks();
        ColourTable colours;
        colours.fill(qRgb(0, 0, 0));  // numbers past a short table, as the picture reader has them
        for (std::size_t c = 0; c * 4 < bmp.table.size(); ++c)
            colours[c] = qRgb(bmp.table[c * 4 + 2], bmp.table[c * 4 + 1], bmp.table[c * 4]);
        const int rows = std::min(bmp.height, size_.height()), cols = std::min(bmp.width, size_.width());
        const auto table = Shared(colours);
        for (int by = 0; by < BlocksFor(rows); ++by) {
            for (int bx = 0; bx < BlocksFor(cols); ++bx) {
                const int x0 = bx * kSide, y0 = by * kSide;
                const int w = std::min(kSide, cols - x0), h = std::min(kSide, rows - y0);
                Block& b = BlockAt(x0, y0);
                if (w == kSide && h == kSide) {
                    // Filled whole: colour numbers and the table, no colours.
                    b.table = table;
                    PixelBlock numbers;
                    for (int y = 0; y < kSide; ++y)
                        std::memcpy(&numbers[static_cast<std::size_t>(y * kSide)], bmp.Row(y0 + y).data() + x0, kSide);
                    // A tile's picture is the tile's own block: the sheet keeps no copy.
                    b.numbers = InternPixelBlock(numbers.data());
                    continue;
                }
                for (int y = 0; y < h; ++y) {
                    QRgb* line = Row(x0, y0 + y);
                    const unsigned char* src = bmp.Row(y0 + y).data() + x0;
                    for (int x = 0; x < w; ++x) line[x] = colours[src[x]];
                }
            }
        }
    } else {
        ombrevale::picturefile::Picture pic;
        if (ombrevale::picturefile::ReadBMPFile(sPath, pic)) return false;
        QImage image(pic.width, pic.height, QImage::Format_RGB32);
        for (int y = 0; y < pic.height; ++y) {
            auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < pic.width; ++x) {
                const auto& c = pic.colours[static_cast<std::size_t>(y * pic.width + x)];
                line[x] = qRgb(c.r, c.g, c.b);
            }
        }
        ClearBlocks();
        Put(0, 0, image, image.rect());
    }
    flatValid_ = false;
    update();
    return true;
}

void PictureBox::SetPixelV(int x, int y, std::int32_t colour) {
    EnsureImage();
    if (!QRect(QPoint(0, 0), size_).contains(x, y)) return;
    *Row(x, y) = FromVb(colour);
    update(x, y, 1, 1);
}

void PictureBox::SetPixelRunV(int x, int y, const std::int32_t* colours, std::size_t n) {
    EnsureImage();
    // Only the part inside the picture is drawn, and one update covers it.
    if (y < 0 || y >= size_.height() || n == 0) return;
    const long first = std::max(0L, static_cast<long>(x));
    const long end = std::min(static_cast<long>(size_.width()), static_cast<long>(x) + static_cast<long>(n));
    if (first >= end) return;
    for (long px = first; px < end;) {
        QRgb* line = Row(static_cast<int>(px), y);
        const long stop = std::min(end, (px / kSide + 1) * kSide);
        for (long i = px; i < stop; ++i) line[i - px] = FromVb(colours[i - x]);
        px = stop;
    }
    update(static_cast<int>(first), y, static_cast<int>(end - first), 1);
}

void PictureBox::BitBlt(int dx, int dy, int w, int h, const PictureBox& src, int sx, int sy) {
    EnsureImage();
    src.EnsureImage();
    if (w > 0 && h > 0) {
        // Clip the block to both pictures.
        QRect source = QRect(sx, sy, w, h).intersected(QRect(QPoint(0, 0), src.size_));
        const QRect dest = source.translated(dx - sx, dy - sy).intersected(QRect(QPoint(0, 0), size_));
        source = dest.translated(sx - dx, sy - dy);
        const bool wholeBlock = dest.width() == kSide && dest.height() == kSide && dest.x() % kSide == 0 &&
                                dest.y() % kSide == 0 && source.x() % kSide == 0 && source.y() % kSide == 0;
        if (wholeBlock) {
            // A tile onto the sheet: the block goes over as it is.
            const Block from = src.BlockAt(source.x(), source.y());
            BlockAt(dest.x(), dest.y()) = from;
            flatValid_ = false;
        } else if (!dest.isEmpty()) {
            // Through a copy, so a box may copy onto itself.
            QImage part(source.size(), QImage::Format_RGB32);
            for (int r = 0; r < source.height(); ++r) {
                auto* line = reinterpret_cast<QRgb*>(part.scanLine(r));
                for (int c = 0; c < source.width(); ++c) line[c] = src.Pixel(source.x() + c, source.y() + r);
            }
            Put(dest.x(), dest.y(), part, part.rect());
        }
    }
    if (isVisible()) update(dx, dy, w, h);
}

void PictureBox::InvertPixel(int x, int y) {
    if (!QRect(QPoint(0, 0), size_).contains(x, y)) return;
    QRgb* p = Row(x, y);
    *p = (*p ^ 0x00FFFFFFu) | 0xFF000000u;
}

void PictureBox::InvertBox(int x1, int y1, int x2, int y2) {
    EnsureImage();
    if (x1 > x2) std::swap(x1, x2);
    if (y1 > y2) std::swap(y1, y2);
    for (int x = x1; x <= x2; ++x) {
        InvertPixel(x, y1);
        if (y2 != y1) InvertPixel(x, y2);
    }
    for (int y = y1 + 1; y < y2; ++y) {
        InvertPixel(x1, y);
        if (x2 != x1) InvertPixel(x2, y);
    }
    update(QRect(QPoint(x1, y1), QPoint(x2, y2)));
}

const QImage& PictureBox::image() const {
    EnsureImage();
    if (flatValid_ && flat_.size() == size_) return flat_;
    flat_ = QImage(size_, QImage::Format_RGB32);
    for (int y = 0; y < size_.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(flat_.scanLine(y));
        for (int x = 0; x < size_.width(); ++x) line[x] = Pixel(x, y);
    }
    flatValid_ = true;
    return flat_;
}

std::size_t PictureBox::StoredBytes() const {
    std::size_t bytes = 0;
    for (const Block& b : blocks_) bytes += b.colours.size() * sizeof(QRgb) + (b.numbers ? b.numbers->size() : 0);
    return bytes;
}

void PictureBox::paintEvent(QPaintEvent* event) {
    EnsureImage();
    QPainter p(this);
    const QRect want = event->rect().intersected(QRect(QPoint(0, 0), size_));
    if (want.isEmpty()) return;
    for (int by = want.top() / kSide; by <= want.bottom() / kSide; ++by) {
        for (int bx = want.left() / kSide; bx <= want.right() / kSide; ++bx) {
            const QPoint at(bx * kSide, by * kSide);
            const Block& b = BlockAt(at.x(), at.y());
            const QRect part = QRect(at, QSize(kSide, kSide)).intersected(want);
            if (!b.colours.empty()) {
                const QImage view(reinterpret_cast<const uchar*>(b.colours.data()), kSide, kSide, kSide * 4,
                                  QImage::Format_RGB32);
                p.drawImage(part.topLeft(), view, part.translated(-at));
            } else if (b.table) {
                QImage view(b.numbers->data(), kSide, kSide, kSide, QImage::Format_Indexed8);
                view.setColorTable(QList<QRgb>(b.table->begin(), b.table->end()));
                p.drawImage(part.topLeft(), view, part.translated(-at));
            } else {
                p.fillRect(part, backColor_);
            }
        }
    }
}

void PictureBox::resizeEvent(QResizeEvent*) { EnsureImage(); }

void PictureBox::mouseReleaseEvent(QMouseEvent* event) {
    emit MouseUp(event->button(), event->modifiers(), event->position().x(), event->position().y());
}
