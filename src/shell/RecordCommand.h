// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include "capture/CapturePlatform.h"
#include "capture/RecordingDevices.h"
#include "shell/CommandError.h"

namespace tessaloom {

/// `tessaloom record`: records until the time is up, the source ends, or the user interrupts; prints the
/// bundle's path. Throws CommandError and UsageError.
ExitStatus runRecordCommand(const QStringList& words, CapturePlatform& platform, RecordingDevices& devices);

}  // namespace tessaloom
