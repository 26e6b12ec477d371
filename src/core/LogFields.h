// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/CaptureRect.h"
#include "core/CursorSample.h"
#include "core/EventLog.h"
#include "core/InputEvent.h"
#include "core/Json.h"
#include "core/RelativePoint.h"

/// The stored keys of what an event log is made of.
namespace tessaloom {

template <typename Coder, RecordOf<RelativePoint> Record>
void fields(Coder& coder, Record& point) {
    coder.field("x", point.x);
    coder.field("y", point.y);
}

template <typename Coder, RecordOf<CaptureRect> Record>
void fields(Coder& coder, Record& rect) {
    coder.field("x", rect.x);
    coder.field("y", rect.y);
    coder.field("width", rect.width);
    coder.field("height", rect.height);
    coder.field("displayScaleFactor", rect.displayScaleFactor);
}

template <typename Coder, RecordOf<CursorSample> Record>
void fields(Coder& coder, Record& sample) {
    coder.required("pts", sample.pts);
    coder.field("x", sample.x);
    coder.field("y", sample.y);
}

template <typename Coder, RecordOf<InputEvent> Record>
void fields(Coder& coder, Record& event) {
    coder.required("pts", event.pts);
    coder.required("type", event.type);
    coder.field("location", event.location);
    coder.field("keyLabel", event.keyLabel);
}

/// All of a log but its lists.
template <typename Coder, RecordOf<EventLog> Record>
void headerFields(Coder& coder, Record& log) {
    coder.field("version", log.version);
    coder.field("streamStartHostTime", log.streamStartHostTime);
    coder.field("captureRect", log.captureRect);
    coder.field("webcamStartOffset", log.webcamStartOffset);
    coder.field("micStartOffset", log.micStartOffset);
}

}  // namespace tessaloom
