// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/EventRetimer.h"

#include <algorithm>

#include "capture/RelativeLocation.h"

namespace tessaloom {

std::vector<InputEvent> EventRetimer::retime(std::vector<RawEvent> newEvents,
                                             std::span<const CursorSample> newSamples) {
    std::ranges::move(newEvents, std::back_inserter(waiting_));
    std::ranges::stable_sort(waiting_, {}, &RawEvent::host);
    path_.insert(path_.end(), newSamples.begin(), newSamples.end());
    const double pathEnd = path_.empty() ? origin_ : path_.back().pts + origin_;
    const auto later = std::ranges::upper_bound(waiting_, pathEnd, {}, &RawEvent::host);
    std::vector<InputEvent> events = place({waiting_.begin(), later});
    waiting_.erase(waiting_.begin(), later);
    // What comes next lies after the path's end; before it only the last sample still matters.
    if (path_.size() > 1) path_.erase(path_.begin(), path_.end() - 1);
    return events;
}

std::vector<InputEvent> EventRetimer::finish() {
    std::vector<InputEvent> events = place(waiting_);
    waiting_.clear();
    return events;
}

std::vector<InputEvent> EventRetimer::place(std::span<const RawEvent> events) {
    const CursorTrack path(path_);
    const CursorTrack pathInside(heldInside(path_));
    std::vector<InputEvent> placedEvents;
    for (const RawEvent& raw : events) {
        if (raw.host >= origin_) placedEvents.push_back(placed(raw, path, pathInside));
    }
    return placedEvents;
}

InputEvent EventRetimer::placed(const RawEvent& raw, const CursorTrack& path, const CursorTrack& pathInside) {
    InputEvent event;
    event.pts = raw.host - origin_;
    if (raw.kind == RawInput::Kind::key) {
        event.type = InputEvent::EventType::keyDown;
        event.keyLabel = raw.label;
        return event;
    }
    event.location = pathInside.position(event.pts);
    switch (raw.kind) {
        case RawInput::Kind::leftButton:
            event.type = leftClickType(event.pts, path.position(event.pts));
            break;
        case RawInput::Kind::rightButton:
            event.type = InputEvent::EventType::rightClick;
            break;
        default:
            event.type = InputEvent::EventType::scroll;
            break;
    }
    return event;
}

/// By where the pointer really was: places far apart outside the area may stick to the same one at its edge.
InputEvent::EventType EventRetimer::leftClickType(double pts, const std::optional<RelativePoint>& pointer) {
    std::optional<Point> place;
    if (pointer) place = Point{pointer->x * displayFrame_.width, pointer->y * displayFrame_.height};
    return clicks_.press(pts, place) > 1 ? InputEvent::EventType::doubleClick
                                         : InputEvent::EventType::leftClick;
}

}  // namespace tessaloom
