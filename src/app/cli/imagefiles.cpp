#include "imagefiles.h"

#include <QImage>
#include <QString>
#include <filesystem>
#include <fstream>

#include "clierror.h"
#include "commands.h"
#include "style/moddeclares.h"

namespace ombrevale::cli {

void WritePicture(const std::string& path, bool png, const std::function<bool(const std::string& bmpPath)>& writeBmp,
                  Durability durability) {
    WriteThrough(
        path,
        [&](const std::string& temp) {
            if (!png) return writeBmp(temp);
            const std::string bmp = temp + ".bmp";
            const bool wrote = writeBmp(bmp);
            QImage image;
            const bool loaded = wrote && image.load(QString::fromStdString(bmp), "BMP");
            std::error_code ec;
            std::filesystem::remove(bmp, ec);
            // An 8-bit BMP loads as an indexed image, and PNG keeps the colour table.
            return loaded && image.save(QString::fromStdString(temp), "PNG");
        },
        durability);
}

void WriteJascPalette(const std::string& path, int pal, Durability durability) {
    const auto& colours = modDeclares::STYPalData[static_cast<std::size_t>(pal)];
    std::string text = "JASC-PAL\r\n0100\r\n256\r\n";
    for (std::size_t c = 0; c < 256; ++c)
        text += std::to_string(colours[c * 4 + 2]) + " " + std::to_string(colours[c * 4 + 1]) + " " +
                std::to_string(colours[c * 4]) + "\r\n";
    WriteThrough(
        path,
        [&](const std::string& temp) {
            std::ofstream out(temp, std::ios::binary | std::ios::trunc);
            out.write(text.data(), static_cast<std::streamsize>(text.size()));
            return static_cast<bool>(out.flush());
        },
        durability);
}

bool HasJascMark(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw Failure(path, "cannot be opened");
    std::string line;
    char ch = 0;
    while (line.size() <= 8 && in.get(ch) && ch != '\r' && ch != '\n') line += ch;
    return line == "JASC-PAL" && (in.eof() || ch == '\r' || ch == '\n');
}

}  // namespace ombrevale::cli
