// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

namespace tessaloom {

/// The evenly spaced points of time that a screen's frames are taken to belong to, so that steady motion
/// gives evenly spaced frames. It begins with the first frame, and moves a little, a hundredth of its
/// interval for each frame, where changes keep coming so close to its points that the least delay would put
/// two of them into one frame and none into the next. HostClock seconds.
class FrameGrid {
  public:
    enum class Change {
        cameJustNow,  ///< after nothing had changed for a while
        hasWaited,    ///< for its point, or for whoever reads it
    };

    explicit FrameGrid(double interval) : interval_(interval) {}

    /// The point of a change that isn't read yet; it is to be read at `now` if that has passed. One that came
    /// just now belongs to the nearest point; but where the point before it is free and the one before that
    /// isn't, steady changes go on and this one is late, so it belongs there. One that has waited belongs to
    /// the last point that has passed: who was held up reads at once, and doesn't miss what comes next by
    /// waiting for the next point.
    double pointOf(Change change, double now);

    /// A frame was taken for this point; the next one is for a later one.
    void taken(double point);

  private:
    double shiftAfter(double point) const;

    double interval_;
    std::optional<double> first_;   ///< the first frame's point
    std::optional<double> next_;    ///< the first point that has no frame yet
    std::optional<double> cameAt_;  ///< the change that isn't read yet, where that is known
    int laterFrames_ = 0;           ///< since the first
};

}  // namespace tessaloom
