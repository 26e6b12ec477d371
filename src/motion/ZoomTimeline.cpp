// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/ZoomTimeline.h"

#include <algorithm>
#include <cmath>
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

RelativeRect insideKeyframe(std::span<const ZoomKeyframe> keyframes, std::size_t index, double time,
                            double bridgeGap) {
    const ZoomKeyframe& keyframe = keyframes[index];
    const double length = keyframe.endPTS - keyframe.startPTS;
    if (!(length > 0)) return keyframe.targetRect;
    const double sinceStart = time - keyframe.startPTS;
    const double untilEnd = keyframe.endPTS - time;
    const double inTime = std::min(length * 0.5, keyframe.easeIn);
    const double outTime = std::min(length * 0.5, keyframe.easeOut);
    if (inTime > 0 && sinceStart < inTime && isOpenLeft(keyframes, index, bridgeGap))
        return fromWholeFrame(keyframe.targetRect, eased(sinceStart / inTime));
    if (outTime > 0 && untilEnd < outTime && isOpenRight(keyframes, index, bridgeGap))
        return fromWholeFrame(keyframe.targetRect, eased(untilEnd / outTime));
    return keyframe.targetRect;
}

RelativeRect betweenKeyframes(const ZoomKeyframe& before, const ZoomKeyframe& after, double time,
                              double bridgeGap) {
    const double gap = after.startPTS - before.endPTS;
    if (!(gap > 0 && gap <= bridgeGap)) return {};
    return between(before.targetRect, after.targetRect, eased((time - before.endPTS) / gap));
}

RelativeRect curveAt(KeyframeSweep& sweep, std::span<const ZoomKeyframe> keyframes, double time,
                     double bridgeGap) {
    sweep.advance(time);
    if (const auto inForce = sweep.inForce()) return insideKeyframe(keyframes, *inForce, time, bridgeGap);
    const auto before = sweep.before();
    const auto after = sweep.after();
    if (!before || !after) return {};
    return betweenKeyframes(keyframes[*before], keyframes[*after], time, bridgeGap);
}

}  // namespace

ZoomTimeline::ZoomTimeline(std::vector<ZoomKeyframe> keyframes, double duration)
    : keyframes_(std::move(keyframes)) {
    if (keyframes_.empty() || !(duration > 0)) return;
    // Two samples more, so that a lookup at the very end can interpolate.
    const auto count =
        static_cast<std::size_t>(std::ceil(std::min(duration, longestDuration) / sampleStep)) + 2;
    samples_.reserve(count);
    KeyframeSweep sweep(keyframes_);
    RelativeRect previous = curveAt(sweep, keyframes_, 0, bridgeGap);
    for (std::size_t index = 0; index < count; ++index) {
        const double time = static_cast<double>(index) * sampleStep;
        previous = between(previous, curveAt(sweep, keyframes_, time, bridgeGap), filterCoefficient);
        samples_.push_back(previous);
    }
}

RelativeRect ZoomTimeline::rect(double time) const {
    if (samples_.empty()) return {};
    const double position = time > 0 ? time / sampleStep : 0;
    if (position >= static_cast<double>(samples_.size() - 1)) return samples_.back();
    const auto index = static_cast<std::size_t>(position);
    return between(samples_[index], samples_[index + 1], position - static_cast<double>(index));
}

RelativeRect ZoomTimeline::curve(std::span<const ZoomKeyframe> keyframes, double time, double bridgeGap) {
    KeyframeSweep sweep(keyframes);
    return curveAt(sweep, keyframes, time, bridgeGap);
}

}  // namespace tessaloom
