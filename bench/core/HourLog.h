// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/EventLog.h"

namespace tessaloom {

/// An hour of busy work on a screen of 1920 by 1080: 120 pointer samples a second, each second a click, a key
/// press or a scroll. Always the same.
EventLog hourLog();

}  // namespace tessaloom
