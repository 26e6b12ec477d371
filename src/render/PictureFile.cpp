// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/PictureFile.h"

#include <QImage>
#include <QImageReader>
#include <cstring>

namespace tessaloom {

std::optional<BgraImage> readPictureFile(const std::filesystem::path& file) {
    QImageReader reader(QString::fromStdString(file.string()));
    reader.setAutoTransform(true);
    const QImage image = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) return std::nullopt;
    BgraImage picture(image.width(), image.height());
    for (int y = 0; y < picture.height(); ++y) {
        std::memcpy(picture.row(y), image.constScanLine(y), static_cast<std::size_t>(picture.width()) * 4);
    }
    return picture;
}

}  // namespace tessaloom
