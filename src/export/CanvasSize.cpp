// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/CanvasSize.h"

#include <algorithm>
#include <cmath>

namespace tessaloom {
namespace {

int evenSide(double side) {
    return std::max(static_cast<int>(std::lround(side)), 2) / 2 * 2;
}

}  // namespace

CanvasSize CanvasSize::fitting(int naturalWidth, int naturalHeight, double aspect,
                               std::optional<int> longEdgeLimit) {
    int longEdge = std::max(naturalWidth, naturalHeight);
    if (longEdgeLimit) longEdge = std::min(longEdge, *longEdgeLimit);
    if (aspect >= 1) return {evenSide(longEdge), evenSide(longEdge / aspect)};
    return {evenSide(longEdge * aspect), evenSide(longEdge)};
}

}  // namespace tessaloom
