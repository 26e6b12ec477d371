// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/CaptureRect.h"
#include "core/CursorSample.h"
#include "core/InputEvent.h"

namespace tessaloom {

/// What the user did during a recording, in seconds since its first frame.
struct EventLog {
    std::int64_t version = 1;
    /// Host clock, nanoseconds, just before the screen engine was created.
    std::uint64_t streamStartHostTime = 0;
    CaptureRect captureRect;
    /// Starts of the camera and microphone files relative to the first frame; may be negative.
    double webcamStartOffset = 0;
    double micStartOffset = 0;
    /// In time order.
    std::vector<CursorSample> cursorSamples;
    std::vector<InputEvent> events;

    bool operator==(const EventLog&) const = default;
};

/// The log's own end: the time of the last cursor sample, else of the last event, else 0.
double logDuration(const EventLog& log);

/// Reads the stored form as tolerantly as decodeEditParams does. Throws DecodeError when the text is no JSON
/// object.
EventLog decodeEventLog(std::string_view json);

/// The stored form: JSON with sorted keys. Samples and events without a finite time are left out.
std::string encode(const EventLog& log);

}  // namespace tessaloom
