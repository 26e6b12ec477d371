// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/ZoomTimeline.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

#include "motion/KeyframeSweep.h"

namespace tessaloom {
namespace {

// A first-order low-pass filter with a time constant of 0.18 s.
constexpr double filterCoefficient = ZoomTimeline::sampleStep / (0.18 + ZoomTimeline::sampleStep);

// The quintic smootherstep.
double eased(double progress) {
    const double p = std::clamp(progress, 0.0, 1.0);
    return p * p * p * (p * (6 * p - 15) + 10);
}

RelativeRect between(const RelativeRect& from, const RelativeRect& to, double amount) {
    return {from.x + (to.x - from.x) * amount, from.y + (to.y - from.y) * amount,
            from.width + (to.width - from.width) * amount, from.height + (to.height - from.height) * amount};
}

RelativeRect fromWholeFrame(const RelativeRect& target, double amount) {
    return {target.x * amount, target.y * amount, (target.width - 1) * amount + 1,
            (target.height - 1) * amount + 1};
}

// A side with a neighbour within glide distance doesn't ease: the camera is already there.
bool isOpenLeft(std::span<const ZoomKeyframe> keyframes, std::size_t index, double bridgeGap) {
    return index == 0 || keyframes[index].startPTS - keyframes[index - 1].endPTS > bridgeGap;
}

bool isOpenRight(std::span<const ZoomKeyframe> keyframes, std::size_t index, double bridgeGap) {
    return index + 1 == keyframes.size() ||
           keyframes[index + 1].startPTS - keyframes[index].endPTS > bridgeGap;
}

/// How far the camera is from the whole frame to the target; nothing where it shows the target.
std::optional<double> easingProgress(std::span<const ZoomKeyframe> keyframes, std::size_t index, double time,
                                     double bridgeGap) {
    const ZoomKeyframe& keyframe = keyframes[index];
    const double length = keyframe.endPTS - keyframe.startPTS;
    if (!(length > 0)) return std::nullopt;
    const double sinceStart = time - keyframe.startPTS;
    const double untilEnd = keyframe.endPTS - time;
    const double inTime = std::min(length * 0.5, keyframe.easeIn);
    const double outTime = std::min(length * 0.5, keyframe.easeOut);
    if (inTime > 0 && sinceStart < inTime && isOpenLeft(keyframes, index, bridgeGap))
        return sinceStart / inTime;
    if (outTime > 0 && untilEnd < outTime && isOpenRight(keyframes, index, bridgeGap))
        return untilEnd / outTime;
    return std::nullopt;
}

RelativeRect insideKeyframe(std::span<const ZoomKeyframe> keyframes, std::size_t index, double time,
                            double bridgeGap) {
    const RelativeRect& target = keyframes[index].targetRect;
    const auto progress = easingProgress(keyframes, index, time, bridgeGap);
    return progress ? fromWholeFrame(target, eased(*progress)) : target;
}

bool isBridged(const KeyframeSweep& sweep, std::span<const ZoomKeyframe> keyframes, double bridgeGap) {
    const auto before = sweep.before();
    const auto after = sweep.after();
    if (!before || !after) return false;
    const double gap = keyframes[*after].startPTS - keyframes[*before].endPTS;
    return gap > 0 && gap <= bridgeGap;
}

RelativeRect betweenKeyframes(const ZoomKeyframe& before, const ZoomKeyframe& after, double time) {
    const double gap = after.startPTS - before.endPTS;
    return between(before.targetRect, after.targetRect, eased((time - before.endPTS) / gap));
}

/// The curve at the time that the sweep has reached.
RelativeRect curveAt(const KeyframeSweep& sweep, std::span<const ZoomKeyframe> keyframes, double time,
                     double bridgeGap) {
    if (const auto inForce = sweep.inForce()) return insideKeyframe(keyframes, *inForce, time, bridgeGap);
    if (!isBridged(sweep, keyframes, bridgeGap)) return {};
    return betweenKeyframes(keyframes[*sweep.before()], keyframes[*sweep.after()], time);
}

/// Whether the curve neither eases nor glides at a time at which the sweep stands as it does now.
bool isStill(const KeyframeSweep& sweep, std::span<const ZoomKeyframe> keyframes, double time,
             double bridgeGap) {
    if (const auto inForce = sweep.inForce()) return !easingProgress(keyframes, *inForce, time, bridgeGap);
    return !isBridged(sweep, keyframes, bridgeGap);
}

double timeOf(std::uint64_t sample) {
    return static_cast<double>(sample) * ZoomTimeline::sampleStep;
}

/// The first sample after `sample`, at which the sweep stands, that the curve may have moved at; `end` if
/// there is none before it.
std::uint64_t endOfRest(const KeyframeSweep& sweep, std::span<const ZoomKeyframe> keyframes,
                        std::uint64_t sample, std::uint64_t end, double bridgeGap) {
    if (!isStill(sweep, keyframes, timeOf(sample), bridgeGap)) return sample + 1;
    // Once it moves it doesn't come to rest before the sweep changes, so a bisection finds where.
    std::uint64_t resting = sample;
    while (end - resting > 1) {
        const std::uint64_t middle = resting + (end - resting) / 2;
        const double time = timeOf(middle);
        const bool rests = sweep.standsUntil(time) && isStill(sweep, keyframes, time, bridgeGap);
        (rests ? resting : end) = middle;
    }
    return end;
}

/// One step of the filter; answers whether it moved the value. By the bits: unlike a comparison of numbers
/// this also finds what is no number at rest, and 0 different from -0.
bool follow(double& value, double raw) {
    const double last = std::exchange(value, value + (raw - value) * filterCoefficient);
    return std::bit_cast<std::uint64_t>(value) != std::bit_cast<std::uint64_t>(last);
}

bool follow(RelativeRect& camera, const RelativeRect& raw) {
    const bool across = follow(camera.x, raw.x);
    const bool down = follow(camera.y, raw.y);
    const bool wider = follow(camera.width, raw.width);
    const bool higher = follow(camera.height, raw.height);
    return across || down || wider || higher;
}

/// Two samples more, so that a lookup at the very end can interpolate.
std::uint64_t sampleCountOver(double duration) {
    const double steps = std::ceil(duration / ZoomTimeline::sampleStep);
    return static_cast<std::uint64_t>(std::min(steps, ZoomTimeline::greatestSampleCount - 2)) + 2;
}

}  // namespace

ZoomTimeline::ZoomTimeline(std::vector<ZoomKeyframe> keyframes, double duration)
    : keyframes_(std::move(keyframes)) {
    if (keyframes_.empty() || !(duration > 0)) return;
    sampleCount_ = sampleCountOver(duration);
    build();
}

void ZoomTimeline::build() {
    KeyframeSweep sweep(keyframes_);
    sweep.advance(0);
    const std::uint64_t mostSteps = std::min(sampleCount_, longestMotion);
    stored_.reserve(mostSteps);  // what of it is never written takes no memory
    const RelativeRect start = curveAt(sweep, keyframes_, 0, bridgeGap);
    stored_.push_back(start);
    follow(stored_.back(), start);
    stretches_.push_back({0, 0});
    bool moved = true;
    std::uint64_t sample = 1;
    for (std::uint64_t step = 1; step < mostSteps && sample < sampleCount_; ++step) {
        const double time = timeOf(sample);
        sweep.advance(time);
        stored_.push_back(stored_.back());
        const bool moves = follow(stored_.back(), curveAt(sweep, keyframes_, time, bridgeGap));
        if (!moves) stored_.pop_back();
        if (moves && !moved) stretches_.push_back({sample, stored_.size() - 1});
        sample = moves ? sample + 1 : endOfRest(sweep, keyframes_, sample, sampleCount_, bridgeGap);
        moved = moves;
    }
}

RelativeRect ZoomTimeline::sample(std::uint64_t index) const {
    const auto next = std::ranges::upper_bound(stretches_, index, {}, &Stretch::firstSample);
    const std::size_t end = next == stretches_.end() ? stored_.size() : next->place;
    const Stretch& stretch = *std::prev(next);
    return stored_[std::min<std::uint64_t>(stretch.place + (index - stretch.firstSample), end - 1)];
}

RelativeRect ZoomTimeline::rect(double time) const {
    if (sampleCount_ == 0) return {};
    const double position = time > 0 ? time / sampleStep : 0;
    if (position >= static_cast<double>(sampleCount_ - 1)) return sample(sampleCount_ - 1);
    const auto index = static_cast<std::uint64_t>(position);
    return between(sample(index), sample(index + 1), position - static_cast<double>(index));
}

RelativeRect ZoomTimeline::curve(std::span<const ZoomKeyframe> keyframes, double time, double bridgeGap) {
    KeyframeSweep sweep(keyframes);
    sweep.advance(time);
    return curveAt(sweep, keyframes, time, bridgeGap);
}

}  // namespace tessaloom
