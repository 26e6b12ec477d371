// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "core/RawString.h"

namespace tessaloom {

/// What lies behind the framed recording. Colours are texts of a number sign and six hexadecimal digits.
struct Background {
    enum class Style { color, gradient, wallpaper, blurredScreen };

    Style style = Style::color;
    /// The colour, the gradient's first colour, or the wallpaper's file name in the bundle (empty: no image).
    std::string primary = "#1C1C1E";
    /// The gradient's second colour; `primary` again when absent.
    std::optional<std::string> secondary;

    bool operator==(const Background&) const = default;
};

template <>
struct RawStrings<Background::Style> {
    static constexpr std::array<std::string_view, 4> values{"color", "gradient", "wallpaper",
                                                            "blurredScreen"};
};

}  // namespace tessaloom
