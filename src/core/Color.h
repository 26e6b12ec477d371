// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace tessaloom {

/// Straight (not premultiplied) components, 0 to 1.
struct Color {
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 1;

    bool operator==(const Color&) const = default;
};

/// Reads "#RRGGBB", the number sign optional, white space of any script around it ignored. Anything else is a
/// dark charcoal: a bad colour never stops a frame.
Color colorFromHex(std::string_view text);

}  // namespace tessaloom
