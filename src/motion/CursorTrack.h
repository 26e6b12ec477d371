// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "core/CursorSample.h"
#include "core/RelativePoint.h"

namespace tessaloom {

/// The pointer's path. Samples are in ascending time. Immutable; callable from any thread.
class CursorTrack {
  public:
    CursorTrack() = default;
    explicit CursorTrack(std::vector<CursorSample> samples) : samples_(std::move(samples)) {}

    const std::vector<CursorSample>& samples() const { return samples_; }

    /// Linear between samples, still before the first and after the last; nothing for an empty track.
    std::optional<RelativePoint> position(double time) const;

    /// A copy through a causal low-pass filter: `amount` 0 is the path as it is, 1 trails it the most.
    CursorTrack smoothed(double amount) const;

    /// Seconds, in steps of 0.25, since the pointer was last further than `threshold` (fractions of the
    /// frame) from its place at `time`; looks back `maximum` seconds at most.
    double idleSeconds(double time, double threshold, double maximum) const;

    bool operator==(const CursorTrack&) const = default;

  private:
    std::vector<CursorSample> samples_;
};

}  // namespace tessaloom
