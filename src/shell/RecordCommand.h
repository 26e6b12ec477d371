// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <functional>

#include "capture/CapturePlatform.h"
#include "capture/RecordingDevices.h"
#include "shell/CommandError.h"

namespace tessaloom {

/// `tessaloom record`: records until the time is up, the source ends, or the user interrupts; prints the
/// bundle's path. Throws CommandError and UsageError.
/// `hangUpWindows` as in CommandServices.
ExitStatus runRecordCommand(const QStringList& words, CapturePlatform& platform, RecordingDevices& devices,
                            std::function<void()> hangUpWindows);

}  // namespace tessaloom
