// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

#include "media/BgraImage.h"
#include "media/YuvImage.h"

namespace tessaloom::test {

struct Bgr {
    std::uint8_t blue = 0;
    std::uint8_t green = 0;
    std::uint8_t red = 0;
};

constexpr Bgr black{0, 0, 0};
constexpr Bgr white{255, 255, 255};
constexpr Bgr pureRed{0, 0, 255};
constexpr Bgr pureGreen{0, 255, 0};
constexpr Bgr pureBlue{255, 0, 0};

/// One picture of a made movie: a plain colour from `time` (seconds) on.
struct PlainPicture {
    double time = 0;
    Bgr color;
};

BgraImage plainImage(int width, int height, Bgr color);
YuvImage plainYuv(int width, int height, Bgr color);

/// Evenly spaced pictures of one colour, `count` of them at `rate` a second from time 0.
std::vector<PlainPicture> plainPictures(int count, double rate, Bgr color);

/// Writes a recording's movie as the capture side does, flushed once a second.
void writeRecordedMovie(const std::filesystem::path& path, int width, int height,
                        std::span<const PlainPicture> pictures);

/// A tenth of a second of silence: a sound file without any pictures.
void writeSoundFile(const std::filesystem::path& path);

}  // namespace tessaloom::test
