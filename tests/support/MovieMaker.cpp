// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/MovieMaker.h"

#include "media/ColorConversion.h"
#include "media/MovieWriter.h"
#include "support/SoundMaker.h"

namespace tessaloom::test {
namespace {

constexpr double frameDuration = 1.0 / 60.0;

}  // namespace

BgraImage plainImage(int width, int height, Bgr color) {
    BgraImage image(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            std::uint8_t* pixel = image.row(y) + std::ptrdiff_t{4} * x;
            pixel[0] = color.blue;
            pixel[1] = color.green;
            pixel[2] = color.red;
            pixel[3] = 255;
        }
    }
    return image;
}

YuvImage plainYuv(int width, int height, Bgr color) {
    YuvImage image(width, height);
    bgraToYuv(plainImage(width, height, color).view(), image, 0, 0);
    return image;
}

std::vector<PlainPicture> plainPictures(int count, double rate, Bgr color) {
    std::vector<PlainPicture> pictures;
    pictures.reserve(static_cast<std::size_t>(count));
    for (int n = 0; n < count; ++n)
        pictures.push_back({n / rate, color});
    return pictures;
}

void writeRecordedMovie(const std::filesystem::path& path, int width, int height,
                        std::span<const PlainPicture> pictures) {
    const auto writer = MovieWriter::create(path, {.container = MovieWriter::Container::fragmentedMovie,
                                                   .video = H264Settings::capture(width, height)});
    double lastFlush = 0;
    for (const PlainPicture& picture : pictures) {
        if (picture.time - lastFlush >= 1) {
            writer->flush();
            lastFlush = picture.time;
        }
        writer->appendVideo(plainYuv(width, height, picture.color), picture.time, frameDuration);
    }
    writer->finish();
}

void writeSoundFile(const std::filesystem::path& path) {
    writeWave(path, Sound(800), 8000);
}

}  // namespace tessaloom::test
