// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Geometry.h"

namespace tessaloom {

/// Where a key label's texture goes, in canvas pixels: centred near the bottom, 8 % of the canvas high.
Rect keystrokePlacement(Size textureSize, float canvasWidth, float canvasHeight);

}  // namespace tessaloom
