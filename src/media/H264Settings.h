// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "media/SurfaceDevice.h"

namespace tessaloom {

/// The finest quantisers (0 to 51, 0 is lossless, 6 more double the step) that are of any use. Without them
/// an encoder with an average bit rate spends all of it on pictures that it finds easy, on differences that
/// nobody can see, and most of its time with that.
struct FinestQuantisers {
    int still = 0;
    int moving = 0;
};

/// How video is encoded: the picture's size in pixels (both even), the encoder and its options.
struct H264Settings {
    int width = 0;
    int height = 0;
    /// Ticks per second in which frame times are counted.
    int timescale = 0;
    /// The longest stretch of time without a key frame, in seconds; 0 leaves it to the encoder.
    double keyFrameInterval = 0;
    /// By libav's name.
    std::string encoder = "libx264";
    /// Where the encoder wants its pictures; absent for one that takes them from the processor.
    std::optional<SurfaceDevice> surfaces = std::nullopt;
    std::optional<FinestQuantisers> finestQuantisers = std::nullopt;
    /// By how many quantiser steps a key frame is finer than the encoder would make it. Where pictures come
    /// only when something changes, a scene at rest has no other.
    int finerKeyFrames = 0;
    /// Pictures are predicted from earlier ones only, which takes less time than from later ones, too.
    bool predictsForwardOnly = false;
    /// Encoder options by libav name, applied in order.
    std::vector<std::pair<std::string, std::string>> options;

    /// For a recording in progress: quick, constant quality, each frame leaves the encoder as soon as it
    /// went in, a key frame at least each second.
    static H264Settings capture(int width, int height);

    /// For a finished movie at 60 frames a second and `bitRate` bits a second on average.
    static H264Settings exported(int width, int height, std::int64_t bitRate);

    /// The same by the encoder in a graphics card from NVIDIA.
    static H264Settings exportedByNvenc(int width, int height, std::int64_t bitRate);

    /// The same by the encoder behind a render node ("/dev/dri/renderD128"), through VAAPI. `lowPower` takes
    /// the card's smaller circuit, which some drivers offer alone.
    static H264Settings exportedByVaapi(int width, int height, std::int64_t bitRate,
                                        const std::string& renderNode, bool lowPower);

    /// The same encoder set-up as arguments of FFmpeg's command line, to compare speeds with.
    /// Pictures that have to be brought to a device first are not looked after.
    std::string commandLine() const;
};

}  // namespace tessaloom
