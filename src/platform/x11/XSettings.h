// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "capture/ClickCounter.h"
#include "platform/x11/X11Connection.h"

namespace tessaloom {

/// A number among the desktop's settings as they lie in the property _XSETTINGS_SETTINGS; nothing when it
/// isn't there, or the bytes aren't such settings.
std::optional<std::int32_t> settingsNumber(std::string_view settings, std::string_view name);

/// As the desktop's settings have them now, by the usual ones where they don't tell.
ClickLimits clickLimits(const X11Connection& connection);

}  // namespace tessaloom
