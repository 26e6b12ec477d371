// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/RawString.h"

namespace tessaloom {

/// How the active word is marked.
enum class CaptionHighlight { none, box, underline };

template <>
struct RawStrings<CaptionHighlight> {
    static constexpr std::array<std::string_view, 3> values{"none", "box", "underline"};
};

/// What lies behind the line.
enum class CaptionPlate { bar, none };

template <>
struct RawStrings<CaptionPlate> {
    static constexpr std::array<std::string_view, 2> values{"bar", "none"};
};

/// The look of the captions. Colours are texts of a number sign and six hexadecimal digits.
struct CaptionStyle {
    double fontScale = 1.0;
    std::string color = "#FFFFFF";
    std::string background = "#000000";
    double backgroundOpacity = 0.78;
    /// 0 is the top of the picture, 1 the bottom.
    double verticalPosition = 1.0;
    CaptionHighlight highlight = CaptionHighlight::box;
    std::string highlightColor = "#FFD60A";
    CaptionPlate plate = CaptionPlate::bar;
    /// Draws the text in capitals; the stored text stays.
    bool uppercase = false;

    bool operator==(const CaptionStyle&) const = default;
};

}  // namespace tessaloom
