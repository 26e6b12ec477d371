// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace tessaloom::test {

struct SoakOptions {
    std::string recorder;
    std::string scene;
    double seconds = 600;
    /// How much faster than the host's clock that of the sound card and of the camera is: 300e-6 for 300
    /// parts in a million.
    double clockError = 0;
    bool camera = false;
    /// More missed paints than these are a failure.
    std::optional<long> mostMissed;

    /// Nothing for arguments that aren't as the usage says.
    static std::optional<SoakOptions> parse(int count, char** arguments);
    static constexpr auto usage =
        "usage: soak_take RECORDER SCENE [SECONDS] [--clock-ppm PARTS] [--camera] [--most-missed FRAMES]\n"
        "  SECONDS        at least 20 (600)\n"
        "  --clock-ppm    how many parts in a million the clock of sound card and camera is fast (0)\n"
        "  --camera       records a camera too\n"
        "  --most-missed  more missed frames are a failure\n";
};

}  // namespace tessaloom::test
