// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "media/BgraImage.h"

namespace tessaloom {

/// Clockwise.
enum class Rotation { none, quarter, half, threeQuarters };

/// True when width and height change places.
constexpr bool swapsSides(Rotation rotation) {
    return rotation == Rotation::quarter || rotation == Rotation::threeQuarters;
}

/// Turns `source` into `target`, which becomes a new picture when its size differs.
void rotate(const BgraView& source, Rotation rotation, BgraImage& target);

}  // namespace tessaloom
