// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ResolutionPreset.h"

#include <algorithm>
#include <cmath>

namespace tessaloom {

int outputLongEdge(ResolutionPreset preset, double aspect) {
    constexpr std::array<double, 4> shortEdges{720, 1080, 1440, 2160};
    const double shortEdge = shortEdges[static_cast<std::size_t>(preset)];
    const double longest = std::max(aspect, 1 / std::max(aspect, 0.01));
    return static_cast<int>(std::lround(longest * shortEdge));
}

}  // namespace tessaloom
