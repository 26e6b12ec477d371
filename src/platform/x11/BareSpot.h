// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <vector>

#include "media/PixelRect.h"

namespace tessaloom {

/// A pixel of `screen`, given as a rectangle of one by one, that lies in none of `windows` nor in the shadow
/// that a compositing manager may draw around one; of these the nearest to the middle of `area`. Nothing when
/// windows cover it all.
std::optional<PixelRect> bareSpotNear(const PixelRect& area, const PixelRect& screen,
                                      const std::vector<PixelRect>& windows);

}  // namespace tessaloom
