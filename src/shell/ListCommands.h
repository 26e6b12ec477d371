// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include "shell/CommandError.h"

namespace tessaloom {

/// `tessaloom list`: all recordings of the library, newest first.
ExitStatus runListCommand(const QStringList& words);

/// `tessaloom info BUNDLE`: one recording's description.
ExitStatus runInfoCommand(const QStringList& words);

}  // namespace tessaloom
