// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/ColorPalette.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tessaloom {
ColorPalette::ColorPalette(std::vector<std::uint32_t> colors) : table_(std::move(colors)) {
    for (const std::uint32_t color : table_) {
        red_.push_back(static_cast<int>(color >> 16 & 0xFF));
        green_.push_back(static_cast<int>(color >> 8 & 0xFF));
        blue_.push_back(static_cast<int>(color & 0xFF));
    }
    table_.push_back(0);
}

std::uint8_t ColorPalette::nearest(std::uint32_t color) {
    return answers_.of(color, [this](std::uint32_t unknown) { return search(unknown); });
}

std::uint8_t ColorPalette::search(std::uint32_t color) const {
    const int red = static_cast<int>(color >> 16 & 0xFF);
    const int green = static_cast<int>(color >> 8 & 0xFF);
    const int blue = static_cast<int>(color & 0xFF);
    // Distance and index in one number, so that the loop is nothing but arithmetic.
    int best = std::numeric_limits<int>::max();
    for (std::size_t i = 0; i < red_.size(); ++i) {
        const int dr = red_[i] - red;
        const int dg = green_[i] - green;
        const int db = blue_[i] - blue;
        best = std::min(best, (dr * dr + dg * dg + db * db) << 8 | static_cast<int>(i));
    }
    return static_cast<std::uint8_t>(best & 0xFF);
}

}  // namespace tessaloom
