// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <optional>

#include "capture/CaptureSource.h"

namespace tessaloom {

/// What `tessaloom record` was asked for; what isn't given is left to the stored settings.
struct RecordArguments {
    CaptureSource source;
    std::optional<int> countdownSeconds;
    std::optional<double> durationSeconds;
    std::optional<bool> microphone;
    std::optional<bool> camera;
    std::optional<bool> systemAudio;

    /// Throws UsageError.
    static RecordArguments parse(const QStringList& words);
};

}  // namespace tessaloom
