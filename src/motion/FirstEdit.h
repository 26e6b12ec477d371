// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/TakeBundle.h"

namespace tessaloom {

/// Puts the zooms generated from a finished recording's log into its stored edit, the fresh one when that
/// can't be read. Answers how many there are. Throws std::system_error.
std::size_t storeGeneratedZooms(const TakeBundle& bundle, const EventLog& log);

}  // namespace tessaloom
