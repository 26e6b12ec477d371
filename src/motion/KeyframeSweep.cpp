// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/KeyframeSweep.h"

#include <algorithm>
#include <compare>
#include <numeric>

namespace tessaloom {
namespace {

std::vector<std::size_t> indicesBy(std::span<const ZoomKeyframe> keyframes, double ZoomKeyframe::*time) {
    std::vector<std::size_t> indices(keyframes.size());
    std::iota(indices.begin(), indices.end(), std::size_t{0});
    // A total order: times that are no numbers must not lead the sort astray.
    std::ranges::sort(indices, [&](std::size_t a, std::size_t b) {
        return std::is_lt(std::strong_order(keyframes[a].*time, keyframes[b].*time));
    });
    return indices;
}

}  // namespace

KeyframeSweep::KeyframeSweep(std::span<const ZoomKeyframe> keyframes)
    : keyframes_(keyframes),
      byStart_(indicesBy(keyframes, &ZoomKeyframe::startPTS)),
      byEnd_(indicesBy(keyframes, &ZoomKeyframe::endPTS)),
      firstToStart_(byStart_) {
    for (std::size_t place = firstToStart_.size(); place-- > 1;)
        firstToStart_[place - 1] = std::min(firstToStart_[place - 1], firstToStart_[place]);
}

void KeyframeSweep::advance(double time) {
    for (; started_ < byStart_.size() && keyframes_[byStart_[started_]].startPTS <= time; ++started_)
        running_.push(byStart_[started_]);
    for (; ended_ < byEnd_.size() && keyframes_[byEnd_[ended_]].endPTS < time; ++ended_)
        lastEnded_ = std::max(lastEnded_.value_or(0), byEnd_[ended_]);
    while (!running_.empty() && keyframes_[running_.top()].endPTS < time)
        running_.pop();
}

bool KeyframeSweep::standsUntil(double time) const {
    const bool starts = started_ < byStart_.size() && keyframes_[byStart_[started_]].startPTS <= time;
    const bool ends = ended_ < byEnd_.size() && keyframes_[byEnd_[ended_]].endPTS < time;
    return !starts && !ends;
}

}  // namespace tessaloom
