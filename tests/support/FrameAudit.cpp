// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FrameAudit.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <vector>

#include "demo-scene/CounterCode.h"

namespace tessaloom::test {
namespace {

using demo::CounterCode::counterLimit;

constexpr double halfFrame = 0.5 / 60;

/// A frame and the paint it shows, as the number of it.
struct Match {
    double time;
    std::size_t paint;
};

/// The paint with this counter that is nearest to a time; nothing when there is none.
std::optional<std::size_t> nearestPaint(std::span<const Paint> paints, unsigned counter, double hostTime) {
    std::optional<std::size_t> nearest;
    const auto distance = [&](std::size_t i) { return std::abs(paints[i].hostTime - hostTime); };
    for (std::size_t i = 0; i < paints.size(); ++i)
        if (paints[i].counter == counter && (!nearest || distance(i) < distance(*nearest))) nearest = i;
    return nearest;
}

/// The paint with this counter that is nearest to another; it may lie outside.
std::ptrdiff_t paintNear(std::span<const Paint> paints, std::size_t known, unsigned counter) {
    constexpr std::ptrdiff_t limit = counterLimit;
    auto steps =
        (static_cast<std::ptrdiff_t>(counter) - static_cast<std::ptrdiff_t>(paints[known].counter) + limit) %
        limit;
    if (steps > limit / 2) steps -= limit;
    return static_cast<std::ptrdiff_t>(known) + steps;
}

std::vector<Match> matchAll(std::span<const Paint> paints, std::span<const RecordedFrame> frames,
                            double begin) {
    std::vector<Match> matches;
    for (const RecordedFrame& frame : frames) {
        if (!frame.counter) continue;
        if (matches.empty()) {
            const auto first = nearestPaint(paints, *frame.counter, begin + frame.time);
            if (first) matches.push_back({frame.time, *first});
            continue;
        }
        const std::ptrdiff_t paint = paintNear(paints, matches.back().paint, *frame.counter);
        if (paint >= 0 && paint < std::ssize(paints))
            matches.push_back({frame.time, static_cast<std::size_t>(paint)});
    }
    return matches;
}

void countPaints(std::span<const Paint> paints, std::span<const Match> matches, FrameAudit& audit) {
    std::size_t latest = matches.front().paint;
    for (const Match& match : matches.subspan(1)) {
        if (match.paint == latest) ++audit.repeated;
        if (match.paint < latest) ++audit.outOfOrder;
        for (std::size_t lost = latest + 1; lost < match.paint; ++lost) {
            ++audit.lost;
            if (paints[lost + 1].hostTime - paints[lost].hostTime < halfFrame) ++audit.fleeting;
        }
        latest = std::max(latest, match.paint);
    }
}

void measureDelays(std::span<const Paint> paints, std::span<const Match> matches, FrameAudit& audit) {
    std::vector<double> delays;
    for (std::size_t i = 0; i < matches.size(); ++i) {
        const bool isNew = i == 0 || matches[i].paint > matches[i - 1].paint;
        if (isNew) delays.push_back(matches[i].time - paints[matches[i].paint].hostTime);
    }
    const double shortest = *std::ranges::min_element(delays);
    double sum = 0;
    for (const double delay : delays)
        sum += delay - shortest;
    audit.meanDelay = sum / static_cast<double>(delays.size());
    audit.longestDelay = *std::ranges::max_element(delays) - shortest;
}

}  // namespace

FrameAudit auditFrames(std::span<const Paint> paints, std::span<const RecordedFrame> frames, double begin) {
    const std::vector<Match> matches = matchAll(paints, frames, begin);
    if (matches.empty()) throw std::runtime_error("no frame shows any paint of the scene");
    FrameAudit audit;
    audit.frames = frames.size();
    audit.paints = matches.back().paint - matches.front().paint + 1;
    audit.unreadable = static_cast<std::size_t>(
        std::ranges::count_if(frames, [](const auto& frame) { return !frame.counter; }));
    countPaints(paints, matches, audit);
    measureDelays(paints, matches, audit);
    return audit;
}

}  // namespace tessaloom::test
