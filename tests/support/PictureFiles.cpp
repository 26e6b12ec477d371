// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/PictureFiles.h"

#include <QImage>
#include <filesystem>
#include <stdexcept>

namespace tessaloom::test {

std::string writePicture(BgraView picture, const std::string& name) {
    const std::filesystem::path folder = TESSALOOM_TEST_OUTPUT;
    std::filesystem::create_directories(folder);
    std::string file = (folder / (name + ".png")).string();
    const QImage image(picture.pixels, picture.width, picture.height, picture.stride, QImage::Format_RGB32);
    if (!image.save(QString::fromStdString(file))) throw std::runtime_error("cannot write " + file);
    return file;
}

}  // namespace tessaloom::test
