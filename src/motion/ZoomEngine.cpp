// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/ZoomEngine.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace tessaloom {
namespace {

// One click that counts.
struct Activity {
    double pts = 0;
    RelativePoint point;
};

// A group of clicks that belong together.
struct Episode {
    double start = 0;
    double end = 0;
    RelativePoint center;
    int weight = 1;
};

RelativePoint weightedMean(RelativePoint a, int weightA, RelativePoint b, int weightB) {
    const double sum = weightA + weightB;
    return {(a.x * weightA + b.x * weightB) / sum, (a.y * weightA + b.y * weightB) / sum};
}

std::vector<Activity> collectActivity(const EventLog& log) {
    std::vector<Activity> activity;
    for (const InputEvent& event : log.events) {
        if (event.isClick() && event.location) activity.push_back({event.pts, *event.location});
    }
    std::ranges::stable_sort(activity, {}, &Activity::pts);
    return activity;
}

std::vector<Episode> cluster(const std::vector<Activity>& activity, const ZoomEngine::Settings& settings) {
    std::vector<Episode> episodes;
    for (const Activity& click : activity) {
        const bool joins = !episodes.empty() && click.pts - episodes.back().end <= settings.clusterGap &&
                           distance(episodes.back().center, click.point) <= settings.clusterRadius;
        if (!joins) {
            episodes.push_back({click.pts, click.pts, click.point, 1});
            continue;
        }
        Episode& last = episodes.back();
        last.end = click.pts;
        last.center = weightedMean(click.point, 1, last.center, last.weight);
        ++last.weight;
    }
    return episodes;
}

std::vector<Episode> merge(const std::vector<Episode>& episodes, const ZoomEngine::Settings& settings) {
    std::vector<Episode> merged;
    for (const Episode& episode : episodes) {
        const bool joins = !merged.empty() && episode.start - merged.back().end <= settings.mergeGap &&
                           distance(merged.back().center, episode.center) <= settings.mergeProximity;
        if (!joins) {
            merged.push_back(episode);
            continue;
        }
        Episode& last = merged.back();
        last.end = episode.end;
        last.center = weightedMean(episode.center, episode.weight, last.center, last.weight);
        last.weight += episode.weight;
    }
    return merged;
}

std::vector<double> keyTimes(const EventLog& log) {
    std::vector<double> times;
    for (const InputEvent& event : log.events) {
        if (event.type == InputEvent::EventType::keyDown) times.push_back(event.pts);
    }
    std::ranges::sort(times);
    return times;
}

// Each accepted key moves the end on, so a steady run of typing carries an episode along until the next one.
void extendForTyping(std::vector<Episode>& episodes, const std::vector<double>& times, double reach) {
    std::ranges::stable_sort(episodes, {}, &Episode::start);
    for (const double time : times) {
        const auto next = std::ranges::upper_bound(episodes, time, {}, &Episode::start);
        if (next == episodes.begin()) continue;
        Episode& episode = *std::prev(next);
        if (time - episode.end > reach) continue;
        const double limit = next == episodes.end() ? std::numeric_limits<double>::infinity() : next->start;
        episode.end = std::min(limit, std::max(episode.end, time));
    }
}

// The side of the target in both directions, so that it keeps the frame's own shape.
double targetSide(double zoomFactor) {
    const double side = 1 / zoomFactor;
    return side > 0.05 ? std::min(side, 1.0) : 0.05;
}

double clampedCenter(double center, double half) {
    return std::min(center <= half ? half : center, 1 - half);
}

RelativeRect targetAround(RelativePoint center, double side) {
    const double half = side * 0.5;
    return {clampedCenter(center.x, half) - half, clampedCenter(center.y, half) - half, side, side};
}

}  // namespace

std::vector<ZoomKeyframe> ZoomEngine::generate(const EventLog& log, double duration) const {
    const std::vector<Activity> activity = collectActivity(log);
    if (activity.empty() || !(duration > 0)) return {};
    std::vector<Episode> episodes = merge(cluster(activity, settings), settings);
    extendForTyping(episodes, keyTimes(log), settings.clusterGap);

    const double side = targetSide(settings.zoomFactor);
    std::vector<ZoomKeyframe> keyframes;
    for (const Episode& episode : episodes) {
        const double start = std::max(episode.start - settings.leadIn, 0.0);
        const double end = std::min(episode.end + settings.holdAfter, duration);
        if (settings.minDwell > end - start) continue;
        keyframes.push_back({Uuid::random(), start, end, targetAround(episode.center, side), settings.easeIn,
                             settings.easeOut});
    }
    return keyframes;
}

std::vector<ZoomKeyframe> ZoomEngine::retarget(std::vector<ZoomKeyframe> keyframes, double zoomFactor) {
    const double side = targetSide(zoomFactor);
    for (ZoomKeyframe& keyframe : keyframes) {
        const RelativeRect& old = keyframe.targetRect;
        keyframe.targetRect = targetAround({old.x + 0.5 * old.width, old.y + 0.5 * old.height}, side);
    }
    return keyframes;
}

}  // namespace tessaloom
