// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <vector>

#include "media/H264Settings.h"

namespace tessaloom {

/// Encoding by a graphics card, which leaves the processor to the drawing.
struct HardwareEncoding {
    /// The settings of a finished movie; see H264Settings::exported.
    std::function<H264Settings(int width, int height, std::int64_t bitRate)> exported;
    /// Stands while the encoder is in use; see AttemptMarker. Its name tells the driver and its version, so
    /// that a driver that crashed gets another chance when another version is installed. A driver for VAAPI
    /// tells its own only once it is at work, so that the kernel's stands for it.
    std::filesystem::path marker;

    /// What this machine has, in the order in which it should be tried, by the files in which the kernel
    /// tells of its drivers; those of NVIDIA's, then those of VAAPI. Whether one works shows when it is used.
    /// `root` is where these files' paths begin.
    static std::vector<HardwareEncoding> installed(const std::filesystem::path& stateFolder,
                                                   const std::filesystem::path& root = "/");
};

}  // namespace tessaloom
