// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include "take/OpenTake.h"

namespace tessaloom {

/// The recording that a command was given, by path or by name. Throws CommandError when there is none, or
/// when the folder is no recording.
TakeBundle findBundle(const QString& pathOrName);

/// Opens a take and prints what could not be read as warnings on stderr.
OpenTake openTake(const TakeBundle& bundle);

/// The stored log or edit alone, read and warned about in the same way.
EventLog openLog(const TakeBundle& bundle);
EditParams openEdit(const TakeBundle& bundle);

/// The length that an export of the take covers when nothing is cut, in seconds: its log's, or its movie's
/// when the log is empty. Throws when that movie can't be read.
double playableDuration(const OpenTake& take);

}  // namespace tessaloom
