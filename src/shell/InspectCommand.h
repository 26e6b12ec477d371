// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include "shell/CommandError.h"

namespace tessaloom {

/// `tessaloom inspect`: prints the facts that the program works with as JSON. It reads no media files. Throws
/// CommandError and UsageError.
ExitStatus runInspectCommand(const QStringList& words);

}  // namespace tessaloom
