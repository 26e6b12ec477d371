// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/HardwareEncoding.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>

namespace tessaloom {
namespace {

namespace fs = std::filesystem;

std::optional<std::string> firstWord(const fs::path& file) {
    std::string word;
    if (!(std::ifstream(file) >> word)) return std::nullopt;
    return word;
}

/// Where programs reach graphics cards without owning the screen; the machine's first one comes first.
std::vector<fs::path> renderNodes(const fs::path& root) {
    std::vector<fs::path> nodes;
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(root / "dev/dri", missing)) {
        if (entry.path().filename().string().starts_with("renderD")) nodes.push_back(entry.path());
    }
    std::ranges::sort(nodes);
    return nodes;
}

/// The kernel's driver behind a render node; a node without hardware behind it has none.
std::optional<std::string> driverOf(const fs::path& node, const fs::path& root) {
    std::error_code missing;
    const auto driver = fs::read_symlink(root / "sys/class/drm" / node.filename() / "device/driver", missing);
    if (missing) return std::nullopt;
    return driver.filename().string();
}

/// Both of a card's circuits: the small one alone is what some drivers offer.
void addCircuits(std::vector<HardwareEncoding>& encodings, const std::string& node, const fs::path& marker) {
    for (const bool lowPower : {false, true}) {
        encodings.push_back({.exported =
                                 [node, lowPower](int width, int height, std::int64_t bitRate) {
                                     return H264Settings::exportedByVaapi(width, height, bitRate, node,
                                                                          lowPower);
                                 },
                             .marker = marker});
    }
}

}  // namespace

std::vector<HardwareEncoding> HardwareEncoding::installed(const fs::path& stateFolder, const fs::path& root) {
    const auto markerOf = [&stateFolder](const std::string& driver) {
        return stateFolder / (driver + ".attempt");
    };
    std::vector<HardwareEncoding> encodings;
    if (const auto version = firstWord(root / "sys/module/nvidia/version"))
        encodings.push_back(
            {.exported = &H264Settings::exportedByNvenc, .marker = markerOf("nvenc-" + *version)});
    const auto kernel = firstWord(root / "proc/sys/kernel/osrelease");
    if (!kernel) return encodings;
    for (const auto& node : renderNodes(root)) {
        if (const auto driver = driverOf(node, root))
            addCircuits(encodings, node.string(), markerOf("vaapi-" + *driver + "-" + *kernel));
    }
    return encodings;
}

}  // namespace tessaloom
