// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <queue>
#include <span>
#include <vector>

#include "core/ZoomKeyframe.h"

namespace tessaloom {

/// Goes through keyframes in any order by ascending times, so that a table is built in about
/// keyframes + times steps however damaged the list is. Places are indices into the list, which must outlive
/// this.
class KeyframeSweep {
  public:
    explicit KeyframeSweep(std::span<const ZoomKeyframe> keyframes);

    /// `time` must not be before an earlier call's.
    void advance(double time);

    /// Whether an advance to this later time would change none of the answers below, nor one on the way.
    bool standsUntil(double time) const;

    /// The first in the list that covers the time.
    std::optional<std::size_t> inForce() const {
        return running_.empty() ? std::nullopt : std::optional(running_.top());
    }
    /// The last in the list that has ended.
    std::optional<std::size_t> before() const { return lastEnded_; }
    /// The first in the list that is still to start.
    std::optional<std::size_t> after() const {
        return started_ == byStart_.size() ? std::nullopt : std::optional(firstToStart_[started_]);
    }

  private:
    std::span<const ZoomKeyframe> keyframes_;
    std::vector<std::size_t> byStart_;
    std::vector<std::size_t> byEnd_;
    /// For each place of byStart_ the least index from there on.
    std::vector<std::size_t> firstToStart_;
    std::size_t started_ = 0;
    std::size_t ended_ = 0;
    std::optional<std::size_t> lastEnded_;
    /// All that have started, the least index on top, less those found ended there.
    std::priority_queue<std::size_t, std::vector<std::size_t>, std::greater<>> running_;
};

}  // namespace tessaloom
