// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

namespace tessaloom {

/// The evenly spaced points of time that a screen's frames are taken to belong to, so that steady motion
/// gives evenly spaced frames. It begins with the first frame. HostClock seconds.
class FrameGrid {
  public:
    enum class Change {
        cameJustNow,  ///< after nothing had changed for a while
        hasWaited,    ///< for its point, or for whoever reads it
    };

    explicit FrameGrid(double interval) : interval_(interval) {}

    /// The point of a change that isn't read yet; it is to be read at `now` if that has passed. One that came
    /// just now belongs to the nearest point, one that has waited to the last one that has passed: who was
    /// held up reads at once, and doesn't miss what comes next by waiting for the next point.
    double pointOf(Change change, double now);

    /// A frame was taken for this point; the next one is for a later one.
    void taken(double point) { next_ = point + interval_; }

  private:
    double interval_;
    std::optional<double> next_;  ///< the first point that has no frame yet
};

}  // namespace tessaloom
