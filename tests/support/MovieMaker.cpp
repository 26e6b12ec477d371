// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/MovieMaker.h"

#include <fstream>
#include <string>

#include "media/ColorConversion.h"
#include "media/MovieWriter.h"

namespace tessaloom::test {
namespace {

constexpr double frameDuration = 1.0 / 60.0;

std::string littleEndian(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
    return text;
}

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
    constexpr std::uint32_t rate = 8000;
    const std::string samples(1600, '\0');
    const auto size = static_cast<std::uint32_t>(samples.size());
    std::ofstream file(path, std::ios::binary);
    file << "RIFF" << littleEndian(36 + size, 4) << "WAVEfmt " << littleEndian(16, 4) << littleEndian(1, 2)
         << littleEndian(1, 2) << littleEndian(rate, 4) << littleEndian(rate * 2, 4) << littleEndian(2, 2)
         << littleEndian(16, 2) << "data" << littleEndian(size, 4) << samples;
}

}  // namespace tessaloom::test
