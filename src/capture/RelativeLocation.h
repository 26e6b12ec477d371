// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <vector>

#include "core/CursorSample.h"
#include "core/Geometry.h"
#include "core/RelativePoint.h"

namespace tessaloom {

/// A global point as a fraction of the captured area, outside 0 to 1 for points outside it. Nothing for an
/// area without extent.
std::optional<RelativePoint> relativeLocation(const Point& point, const Rect& capturedArea);

/// Samples outside the area stick to its edge, a hair inside: a zoom's filter comes to rest a few last bits
/// beside the whole frame, and the pointer must not fall out of it.
std::vector<CursorSample> heldInside(std::vector<CursorSample> samples);

}  // namespace tessaloom
