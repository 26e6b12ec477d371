// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "support/XInjector.h"

namespace tessaloom::test {

/// The colour that the screen shows at a place, as 0xRRGGBB.
std::uint32_t screenColorAt(const XInjector& injector, int x, int y);

/// The middle one of the places where the screen shows just this colour, in reading order; nothing when there
/// are fewer than `least`.
std::optional<ScreenPoint> placeOfColor(const XInjector& injector, std::uint32_t rgb, std::size_t least);

/// False when ten seconds pass first.
bool waitUntil(const std::function<bool()>& condition);

}  // namespace tessaloom::test
