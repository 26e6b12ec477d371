// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/H264Settings.h"

#include <algorithm>
#include <cmath>

namespace tessaloom {
namespace {

/// x264's own, in frames from one key frame to the next.
constexpr int longestGroup = 250;

/// What the best quality spends, and the finest quantisers that are of use there.
constexpr double bestBitsPerPixel = 0.1;
constexpr FinestQuantisers finestAtBest{.still = 10, .moving = 26};
/// So many steps take about half of the bits.
constexpr double stepsToHalf = 6;

/// With fewer bits to spend, a picture that is easy is to take fewer, too.
FinestQuantisers finestFor(int width, int height, std::int64_t bitRate) {
    const double bitsPerPixel = static_cast<double>(bitRate) / (60.0 * width * height);
    const auto coarser =
        std::max(0, static_cast<int>(std::lround(stepsToHalf * std::log2(bestBitsPerPixel / bitsPerPixel))));
    return {.still = finestAtBest.still + coarser, .moving = finestAtBest.moving + coarser};
}

H264Settings bt709(H264Settings settings) {
    settings.options.insert(settings.options.end(), {{"color_primaries", "bt709"},
                                                     {"color_trc", "bt709"},
                                                     {"colorspace", "bt709"},
                                                     {"color_range", "tv"}});
    return settings;
}

}  // namespace

H264Settings H264Settings::capture(int width, int height) {
    return bt709({.width = width,
                  .height = height,
                  .timescale = 90'000,
                  .keyFrameInterval = 1.0,
                  .finerKeyFrames = 4,
                  .options = {{"preset", "superfast"},
                              {"tune", "zerolatency"},
                              {"crf", "20"},
                              {"bf", "0"},
                              {"forced-idr", "1"}}});
}

H264Settings H264Settings::exported(int width, int height, std::int64_t bitRate) {
    return bt709({.width = width,
                  .height = height,
                  .timescale = 60,
                  .keyFrameInterval = longestGroup / 60.0,
                  .finestQuantisers = finestFor(width, height, bitRate),
                  .predictsForwardOnly = true,
                  .options = {{"preset", "veryfast"}, {"b", std::to_string(bitRate)}, {"profile", "high"}}});
}

H264Settings H264Settings::exportedByNvenc(int width, int height, std::int64_t bitRate) {
    return bt709({.width = width,
                  .height = height,
                  .timescale = 60,
                  .keyFrameInterval = 0,
                  .encoder = "h264_nvenc",
                  .options = {{"preset", "p5"},
                              {"tune", "hq"},
                              {"rc", "vbr"},
                              {"b", std::to_string(bitRate)},
                              {"profile", "high"}}});
}

H264Settings H264Settings::exportedByVaapi(int width, int height, std::int64_t bitRate,
                                           const std::string& renderNode, bool lowPower) {
    return bt709({.width = width,
                  .height = height,
                  .timescale = 60,
                  .keyFrameInterval = longestGroup / 60.0,
                  .encoder = "h264_vaapi",
                  .surfaces = SurfaceDevice{.interface = "vaapi", .name = renderNode},
                  .options = {{"b", std::to_string(bitRate)},
                              {"profile", "high"},
                              {"g", std::to_string(longestGroup)},
                              {"bf", "0"},
                              {"low_power", lowPower ? "1" : "0"}}});
}

std::string H264Settings::commandLine() const {
    std::string text = "-c:v " + encoder + " -pix_fmt yuv420p";
    for (const auto& [name, value] : options)
        text.append(" -").append(name).append(":v ").append(value);
    return text;
}

}  // namespace tessaloom
