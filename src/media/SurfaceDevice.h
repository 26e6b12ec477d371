// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tessaloom {

/// A graphics device whose encoder takes pictures from the device's own memory only.
struct SurfaceDevice {
    /// How it is spoken to, by libav's name: "vaapi".
    std::string interface;
    /// Which one, as that interface names it: "/dev/dri/renderD128".
    std::string name;
};

}  // namespace tessaloom
