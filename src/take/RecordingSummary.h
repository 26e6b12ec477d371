// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "core/TakeBundle.h"

namespace tessaloom {

/// What a list of recordings tells of each one.
struct RecordingSummary {
    std::string recordingId;     ///< the folder's name without its extension
    std::string created;         ///< ISO 8601, UTC, "2026-11-15T13:05:09Z"
    double durationSeconds = 0;  ///< of the screen's movie, to one decimal; 0 when it can't be read
    bool hasCamera = false;
    bool hasMicrophone = false;
    bool hasCaptions = false;
    std::string path;

    static RecordingSummary of(const TakeBundle& bundle);
};

}  // namespace tessaloom
