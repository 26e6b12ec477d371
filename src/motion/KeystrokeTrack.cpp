// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/KeystrokeTrack.h"

#include <algorithm>
#include <iterator>

namespace tessaloom {
namespace {

constexpr double matchSlack = 0.000001;
constexpr double fullSeconds = 1.0;
constexpr double fadeSeconds = 0.35;

// Written so that a time that is no number counts as out of order.
bool inAscendingOrder(const std::vector<KeystrokeTrack::Stroke>& strokes) {
    return std::ranges::adjacent_find(
               strokes, [](const auto& a, const auto& b) { return !(a.pts <= b.pts); }) == strokes.end();
}

}  // namespace

KeystrokeTrack::KeystrokeTrack(std::span<const InputEvent> events) {
    for (const InputEvent& event : events) {
        const bool isLabelled = event.keyLabel && !event.keyLabel->empty();
        if (event.type == InputEvent::EventType::keyDown && isLabelled)
            strokes_.push_back({event.pts, *event.keyLabel});
    }
    ascending_ = inAscendingOrder(strokes_);
}

const KeystrokeTrack::Stroke* KeystrokeTrack::latestStroke(double time) const {
    const auto isPast = [time](const Stroke& stroke) { return stroke.pts <= time + matchSlack; };
    const auto stroke =
        ascending_
            ? std::make_reverse_iterator(std::partition_point(strokes_.begin(), strokes_.end(), isPast))
            : std::find_if(strokes_.rbegin(), strokes_.rend(), isPast);
    return stroke == strokes_.rend() ? nullptr : &*stroke;
}

std::optional<KeystrokeChip> KeystrokeTrack::chip(double time) const {
    const Stroke* stroke = latestStroke(time);
    if (stroke == nullptr) return std::nullopt;
    const double age = time - stroke->pts;
    if (age < 0 || age > fullSeconds + fadeSeconds) return std::nullopt;
    const double alpha = std::clamp(1 + (age - fullSeconds) / -fadeSeconds, 0.0, 1.0);
    return KeystrokeChip{stroke->text, static_cast<float>(alpha)};
}

std::vector<std::string_view> KeystrokeTrack::uniqueTexts() const {
    std::vector<std::string_view> texts;
    for (const Stroke& stroke : strokes_)
        texts.emplace_back(stroke.text);
    std::ranges::sort(texts);
    const auto repeated = std::ranges::unique(texts);
    texts.erase(repeated.begin(), repeated.end());
    return texts;
}

}  // namespace tessaloom
