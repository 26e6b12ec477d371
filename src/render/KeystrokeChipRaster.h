// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string_view>

#include "render/OverlayRaster.h"

namespace tessaloom {

/// A key label in white on a dark rounded plate, big enough for every canvas. Nothing when it can't be drawn.
std::optional<OverlayRaster> keystrokeChipRaster(std::string_view text);

}  // namespace tessaloom
