// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Geometry.h"
#include "media/BgraImage.h"
#include "render/AxisMapping.h"

namespace tessaloom {

/// How a picture is read so that its middle fills a rectangle.
struct CoverFit {
    AxisMapping across;
    AxisMapping down;
};

/// Fills `target` (canvas pixels) with the picture's middle, cutting what is too long, never stretching.
CoverFit coverFit(BgraView picture, const Rect& target);

}  // namespace tessaloom
