// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <string>

#include "support/XInjector.h"

namespace tessaloom::test {

/// The colour that the screen shows at a place, as 0xRRGGBB.
std::uint32_t screenColorAt(const XInjector& injector, int x, int y);

/// False when ten seconds pass first.
bool waitUntil(const std::function<bool()>& condition);

}  // namespace tessaloom::test
