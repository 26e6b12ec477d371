// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <vector>

#include "capture/ClickCounter.h"
#include "capture/RawEvent.h"
#include "core/CursorSample.h"
#include "core/Geometry.h"
#include "core/InputEvent.h"
#include "motion/CursorTrack.h"

namespace tessaloom {

/// Turns raw events into stored ones: on the recording's time, those before its first frame left out, each
/// click and scroll at the place where the path shows the pointer at that moment.
///
/// Works as the recording runs: events later than the path so far wait until the pointer's place is known.
class EventRetimer {
  public:
    /// `origin` in HostClock seconds, `displayFrame` the captured area in global points.
    EventRetimer(double origin, const Rect& displayFrame, const ClickLimits& clickLimits = {})
        : origin_(origin), displayFrame_(displayFrame), clicks_(clickLimits) {}

    /// The events that can be placed now, in time order. `newSamples` continue the path of the calls before,
    /// also outside the captured area, to whose edge the events stick.
    std::vector<InputEvent> retime(std::vector<RawEvent> newEvents, std::span<const CursorSample> newSamples);

    /// The events still waiting, placed at the path's end.
    std::vector<InputEvent> finish();

  private:
    std::vector<InputEvent> place(std::span<const RawEvent> events);
    InputEvent placed(const RawEvent& raw, const CursorTrack& path, const CursorTrack& pathInside);
    InputEvent::EventType leftClickType(double pts, const std::optional<RelativePoint>& pointer);

    double origin_;
    Rect displayFrame_;
    ClickCounter clicks_;
    std::vector<RawEvent> waiting_;
    std::vector<CursorSample> path_;  ///< the newest part of it
};

}  // namespace tessaloom
