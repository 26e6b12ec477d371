// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "media/PixelRect.h"

namespace tessaloom {

/// The rectangles of a picture to read anew for what was damaged: cut to the picture, grown to even
/// coordinates (colour is stored per two by two pixels), and joined into one when reading them apart would
/// cost more.
std::vector<PixelRect> rectanglesToRead(const std::vector<PixelRect>& damaged, int pictureWidth,
                                        int pictureHeight);

/// Width and height are 0 when the two don't overlap.
PixelRect intersection(const PixelRect& a, const PixelRect& b);

}  // namespace tessaloom
