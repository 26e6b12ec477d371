// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/RawString.h"
#include "core/RelativePoint.h"

namespace tessaloom {

/// The camera bubble.
struct WebcamConfig {
    enum class Shape { circle, pill, rectangle };

    bool enabled = false;
    Shape shape = Shape::circle;
    /// Bubble width over canvas width.
    double relativeSize = 0.2;
    /// The bubble's centre on the canvas.
    RelativePoint position{0.85, 0.85};
    /// As a fraction of the bubble's width.
    double borderWidth = 0;
    std::string borderColor = "#FFFFFF";
    bool mirrored = false;
    /// Blur behind the person, 0 (off) to 1.
    double blur = 0;

    bool operator==(const WebcamConfig&) const = default;
};

template <>
struct RawStrings<WebcamConfig::Shape> {
    static constexpr std::array<std::string_view, 3> values{"circle", "pill", "rectangle"};
};

}  // namespace tessaloom
