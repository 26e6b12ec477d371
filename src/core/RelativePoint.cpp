// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/RelativePoint.h"

#include <cmath>

namespace tessaloom {

double distance(RelativePoint a, RelativePoint b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

}  // namespace tessaloom
