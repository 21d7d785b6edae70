#include "pictureio/picturereader.h"

#include <QFile>
#include <QImage>
#include <QImageReader>
#include <filesystem>
#include <string>

namespace ombrevale::pictureio {
namespace {

using picturefile::Rgba;

Rgba FromQRgb(QRgb c) {
    return {static_cast<std::uint8_t>(qRed(c)), static_cast<std::uint8_t>(qGreen(c)),
            static_cast<std::uint8_t>(qBlue(c)), static_cast<std::uint8_t>(qAlpha(c))};
}

void FromImage(const QImage& image, picturefile::Picture& out) {
    out = {};
    out.width = image.width();
    out.height = image.height();
    const bool indexed = image.format() == QImage::Format_Indexed8;
    const QImage plain = indexed ? image : image.convertToFormat(QImage::Format_ARGB32);
    if (indexed)
        for (QRgb c : image.colorTable()) out.table.push_back(FromQRgb(c));
    for (int y = 0; y < out.height; ++y)
        for (int x = 0; x < out.width; ++x) {
            if (indexed) {
                const int n = plain.pixelIndex(x, y);
                out.numbers.push_back(static_cast<std::uint8_t>(n));
                out.colours.push_back(static_cast<std::size_t>(n) < out.table.size()
                                          ? out.table[static_cast<std::size_t>(n)]
                                          : Rgba{0, 0, 0, 255});
            } else {
                out.colours.push_back(FromQRgb(plain.pixel(x, y)));
            }
        }
}

// What a path that names no file is, in a user's words; empty for a file or for nothing there.
std::string NotAFile(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code ec;
    switch (fs::status(path, ec).type()) {
        case fs::file_type::regular:
        case fs::file_type::not_found:
        case fs::file_type::none:
            return {};
        case fs::file_type::directory:
            return "a folder";
        case fs::file_type::fifo:
            return "a pipe";
        case fs::file_type::socket:
            return "a socket";
        case fs::file_type::block:
        case fs::file_type::character:
            return "a device";
        default:
            return "no plain file";
    }
}

}  // namespace

ombrevale::Outcome ReadPicture(const std::string& path, picturefile::Picture& out) {
    // Opening a pipe waits for a writer, and a device may never end: only a file is opened.
    if (const std::string kind = NotAFile(path); !kind.empty())
        return ombrevale::Problem{ombrevale::Problem::Kind::Unreadable,
                                  "is " + kind + ", not a picture file; it was not opened"};
    QFile file(QString::fromStdString(path));
    if (file.open(QIODevice::ReadOnly) && file.peek(2) == "BM") return picturefile::ReadBMPFile(path, out);
    if (!file.exists() || !file.isOpen()) return picturefile::ReadBMPFile(path, out);  // words the reason
    QImageReader reader(&file);
    const QSize size = reader.size();
    if (size.width() > picturefile::kMaxSide || size.height() > picturefile::kMaxSide)
        return ombrevale::Problem{ombrevale::Problem::Kind::Damaged, "is larger than any tile or sprite"};
    const QImage image = reader.read();
    if (image.isNull())
        return ombrevale::Problem{
            ombrevale::Problem::Kind::Damaged,
            "is not a picture that can be read (BMP or PNG): " + reader.errorString().toStdString()};
    FromImage(image, out);
    return std::nullopt;
}

}  // namespace ombrevale::pictureio
