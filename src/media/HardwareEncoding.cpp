// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/HardwareEncoding.h"

#include <fstream>
#include <string>

namespace tessaloom {

std::optional<HardwareEncoding> HardwareEncoding::installed(const std::filesystem::path& stateFolder,
                                                            const std::filesystem::path& driverVersion) {
    std::string version;
    if (!(std::ifstream(driverVersion) >> version)) return std::nullopt;
    return HardwareEncoding{.exported = &H264Settings::exportedByNvenc,
                            .marker = stateFolder / ("nvenc-" + version + ".attempt")};
}

}  // namespace tessaloom
