// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "media/ColorHistogram.h"

namespace tessaloom {

/// At most `size` colours, 0xRRGGBB and at least one, that show these groups of colours with little squared
/// error: boxes that are split where they spread most, then moved to the means of what is nearest to them.
std::vector<std::uint32_t> choosePalette(std::vector<ColorHistogram::Group> groups, std::size_t size);

}  // namespace tessaloom
