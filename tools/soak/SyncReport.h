// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "core/TakeBundle.h"

namespace tessaloom::test {

/// When things happened, in HostClock seconds. A microphone's world beeps, and a camera's is lit, at each
/// full second.
struct Happenings {
    std::vector<double> flashes;
    std::vector<double> clicks;
    std::vector<double> beepsPlayed;  ///< by the speakers, which a busy machine keeps some from
};

/// When the same things happen in a take, in seconds since its first frame.
struct RecordedHappenings {
    std::vector<double> flashes;
    std::vector<double> clicks;
    std::vector<double> beepsPlayed;
    std::vector<double> beepsHeard;
    std::optional<std::vector<double>> cameraFlashes;

    /// All but the flashes, which the caller has seen while going through the frames.
    static RecordedHappenings read(const TakeBundle& bundle, std::vector<double> flashes);
};

/// How much later than the picture the others are in one part of a take, on average, in milliseconds; not a
/// number where one is missing. That a picture is half a frame late on average is taken off.
struct SyncReport {
    double from = 0;  ///< seconds of the take
    double to = 0;
    double speakers = 0;
    double microphone = 0;
    double clicks = 0;
    std::optional<double> camera;

    bool holds() const;
};

/// `begin` is the HostClock time of the take's first frame, to within a tenth of a second.
SyncReport reportSync(const Happenings& happened, const RecordedHappenings& recorded, double begin,
                      double from, double to);

/// The times at which the top left corner of a movie turns from dark to light.
std::vector<double> cornerFlashes(const std::filesystem::path& movie);

}  // namespace tessaloom::test
