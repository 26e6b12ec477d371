// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "media/BgraImage.h"
#include "media/PixelRect.h"
#include "media/YuvImage.h"

namespace tessaloom {

// 8-bit full-range RGB to 8-bit limited-range BT.709 (Rec. ITU-R BT.709-6, items 3.2 to 3.4), each value
// rounded to the nearest step; a chroma sample is made of the mean of its four pixels. Alpha is ignored.
// Callable from any thread.

/// Converts the area of `source` under `region`, grown to even coordinates, into the same place of `target`.
/// Both pictures have the same size; the region lies inside it.
void bgraToYuv(const BgraView& source, YuvImage& target, PixelRect region);

/// Converts all of `source` into `target` with its top left corner at (x, y). Position and size are even, and
/// it fits.
void bgraToYuv(const BgraView& source, YuvImage& target, int x, int y);

}  // namespace tessaloom
