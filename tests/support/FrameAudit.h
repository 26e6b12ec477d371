// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace tessaloom::test {

/// One of the demonstration scene's paints, from its log.
struct Paint {
    double hostTime = 0;  ///< HostClock seconds by which it was on the screen
    unsigned counter = 0;
};

/// One frame of a recording of that scene.
struct RecordedFrame {
    double time = 0;                  ///< seconds of the file
    std::optional<unsigned> counter;  ///< of the paint it shows, if that can be read
};

/// What became of each paint between the first and the last that a recording shows.
struct FrameAudit {
    std::size_t paints = 0;
    std::size_t frames = 0;
    std::size_t lost = 0;        ///< paints that no frame shows
    std::size_t fleeting = 0;    ///< those of them that were painted over within half a frame
    std::size_t repeated = 0;    ///< frames that show the same paint as the one before
    std::size_t outOfOrder = 0;  ///< frames that show an earlier paint
    std::size_t unreadable = 0;  ///< frames without a counter
    /// How much later than the promptest frame the others are, after the paints they show. Seconds.
    double meanDelay = 0;
    double longestDelay = 0;

    /// What a recorder of sixty frames a second might have been expected to show, and didn't.
    std::size_t missed() const { return lost - fleeting; }
};

/// `paints` and `frames` are in order of time; counters wrap around at demo::CounterCode::counterLimit.
/// `begin` is the HostClock time of the recording's first frame, to within half a minute. Throws
/// std::runtime_error when no frame shows any of the paints.
FrameAudit auditFrames(std::span<const Paint> paints, std::span<const RecordedFrame> frames, double begin);

}  // namespace tessaloom::test
