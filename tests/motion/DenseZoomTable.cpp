// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/DenseZoomTable.h"

#include <algorithm>
#include <cmath>

namespace tessaloom::test {
namespace {

constexpr double step = 1.0 / 60;
constexpr double glideLimit = 1.2;

double smootherstep(double progress) {
    const double p = std::clamp(progress, 0.0, 1.0);
    return p * p * p * (p * (6 * p - 15) + 10);
}

RelativeRect blended(const RelativeRect& a, const RelativeRect& b, double w) {
    return {a.x + (b.x - a.x) * w, a.y + (b.y - a.y) * w, a.width + (b.width - a.width) * w,
            a.height + (b.height - a.height) * w};
}

RelativeRect inside(const std::vector<ZoomKeyframe>& keyframes, std::size_t i, double time) {
    const auto& [id, start, end, target, easeIn, easeOut] = keyframes[i];
    const double length = end - start;
    if (!(length > 0)) return target;
    const bool openLeft = i == 0 || start - keyframes[i - 1].endPTS > glideLimit;
    const bool openRight = i + 1 == keyframes.size() || keyframes[i + 1].startPTS - end > glideLimit;
    const double inTime = std::min(length * 0.5, easeIn);
    const double outTime = std::min(length * 0.5, easeOut);
    double w = 1;
    if (inTime > 0 && openLeft && time - start < inTime) {
        w = smootherstep((time - start) / inTime);
    } else if (outTime > 0 && openRight && end - time < outTime) {
        w = smootherstep((end - time) / outTime);
    } else {
        return target;
    }
    return {target.x * w, target.y * w, (target.width - 1) * w + 1, (target.height - 1) * w + 1};
}

}  // namespace

RelativeRect DenseZoomTable::curve(const std::vector<ZoomKeyframe>& keyframes, double time) {
    for (std::size_t i = 0; i < keyframes.size(); ++i) {
        if (keyframes[i].startPTS <= time && time <= keyframes[i].endPTS) return inside(keyframes, i, time);
    }
    const auto before = std::find_if(keyframes.rbegin(), keyframes.rend(),
                                     [time](const ZoomKeyframe& each) { return each.endPTS < time; });
    const auto after = std::find_if(keyframes.begin(), keyframes.end(),
                                    [time](const ZoomKeyframe& each) { return time < each.startPTS; });
    if (before == keyframes.rend() || after == keyframes.end()) return {};
    const double gap = after->startPTS - before->endPTS;
    if (!(gap > 0 && gap <= glideLimit)) return {};
    return blended(before->targetRect, after->targetRect, smootherstep((time - before->endPTS) / gap));
}

RelativeRect DenseZoomTable::filtered(const RelativeRect& previous, const RelativeRect& raw) {
    return blended(previous, raw, step / (0.18 + step));
}

DenseZoomTable DenseZoomTable::over(const std::vector<ZoomKeyframe>& keyframes, double duration) {
    DenseZoomTable table;
    const auto count = static_cast<std::size_t>(std::ceil(duration / step)) + 2;
    RelativeRect previous = curve(keyframes, 0);
    for (std::size_t i = 0; i < count; ++i) {
        previous = filtered(previous, curve(keyframes, static_cast<double>(i) * step));
        table.samples.push_back(previous);
    }
    return table;
}

RelativeRect DenseZoomTable::rect(double time) const {
    const double last = static_cast<double>(samples.size() - 1);
    const double position = std::max(time, 0.0) / step;
    const double i = std::min(std::trunc(position), last);
    const double j = std::min(i + 1, last);
    return blended(samples[static_cast<std::size_t>(i)], samples[static_cast<std::size_t>(j)], position - i);
}

}  // namespace tessaloom::test
