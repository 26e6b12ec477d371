// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/PictureFile.h"

#include <QImage>
#include <QImageReader>
#include <cstring>

namespace tessaloom {
namespace {

/// More than any screen has, few enough to be held in memory.
constexpr int largestMebiPixels = 64;
constexpr int bytesPerPixel = 4;

/// Drawings come without a size in which drawing them ends in reasonable time.
bool isDrawing(const QImageReader& reader) {
    return reader.format().startsWith("svg");
}

std::optional<BgraImage> read(QImageReader& reader) {
    // Qt's own is below the size of an 8K screen.
    QImageReader::setAllocationLimit(largestMebiPixels * bytesPerPixel);
    QImage image = reader.read();
    if (image.isNull()) return std::nullopt;
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    BgraImage picture(image.width(), image.height());
    for (int y = 0; y < picture.height(); ++y) {
        std::memcpy(picture.row(y), image.constScanLine(y),
                    static_cast<std::size_t>(picture.width()) * bytesPerPixel);
    }
    return picture;
}

}  // namespace

std::optional<BgraImage> readPictureFile(const std::filesystem::path& file) {
    QImageReader reader(QString::fromStdString(file.string()));
    reader.setAutoTransform(true);
    return isDrawing(reader) ? std::nullopt : read(reader);
}

std::optional<BgraImage> drawPictureFile(const std::filesystem::path& file, int width, int height) {
    QImageReader reader(QString::fromStdString(file.string()));
    if (!isDrawing(reader)) return std::nullopt;
    reader.setScaledSize({width, height});
    return read(reader);
}

}  // namespace tessaloom
