// SPDX-License-Identifier: GPL-3.0-or-later
#include "HourLog.h"

#include <cmath>

namespace tessaloom {
namespace {

constexpr int duration = 3600;
constexpr int samplesPerSecond = 120;

// Whole pixels at whole nanoseconds, as a screen gives them.
CursorSample sampleAt(int index) {
    const double angle = index * 0.01;
    const int jitter = index % 1000 * 7919 % 1'000'003;
    const double pts = (std::floor(index * 1e9 / samplesPerSecond) + jitter) / 1e9;
    return {pts, std::round(960 + 900 * std::sin(angle)) / 1920,
            std::round(540 + 500 * std::sin(angle * 1.3)) / 1080};
}

InputEvent eventAt(int second, const CursorSample& pointer) {
    using enum InputEvent::EventType;
    const RelativePoint place{pointer.x, pointer.y};
    if (second % 3 == 0) return {pointer.pts, leftClick, place, std::nullopt};
    if (second % 3 == 1) return {pointer.pts, keyDown, std::nullopt, "⌃⇧S"};
    return {pointer.pts, scroll, place, std::nullopt};
}

}  // namespace

EventLog hourLog() {
    EventLog log;
    log.captureRect = {0, 0, 1920, 1080, 1};
    for (int index = 0; index < duration * samplesPerSecond; ++index)
        log.cursorSamples.push_back(sampleAt(index));
    for (int second = 0; second < duration; ++second) {
        const auto sample = static_cast<std::size_t>(second) * samplesPerSecond;
        log.events.push_back(eventAt(second, log.cursorSamples[sample]));
    }
    return log;
}

}  // namespace tessaloom
