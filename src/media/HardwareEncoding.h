// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "media/H264Settings.h"

namespace tessaloom {

/// Encoding by the graphics card, which leaves the processor to the drawing.
struct HardwareEncoding {
    /// The settings of a finished movie; see H264Settings::exported.
    H264Settings (*exported)(int width, int height, std::int64_t bitRate);
    /// Stands while the encoder is in use; see AttemptMarker. Its name tells the driver's version, so that a
    /// driver that crashed gets another chance when another version is installed.
    std::filesystem::path marker;

    /// What this machine has, by the file in which the kernel tells the NVIDIA driver's version. Whether it
    /// works shows when it is used.
    static std::optional<HardwareEncoding> installed(
        const std::filesystem::path& stateFolder,
        const std::filesystem::path& driverVersion = "/sys/module/nvidia/version");
};

}  // namespace tessaloom
