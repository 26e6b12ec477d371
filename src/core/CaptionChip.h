// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string_view>

#include "core/CaptionStyle.h"

namespace tessaloom {

/// The caption of one frame. The texts are views into the track and the style it was made from and are valid
/// only while those live unchanged. The defaults are those of the default CaptionStyle.
struct CaptionChip {
    std::string_view text;
    float alpha = 0;
    float fontScale = 1.0F;
    std::string_view colorHex = "#FFFFFF";
    std::string_view bgHex = "#000000";
    float bgAlpha = 0.78F;
    float verticalPosition = 1.0F;
    /// Index of the marked word among the line's words.
    std::optional<int> activeWord;
    CaptionHighlight highlight = CaptionHighlight::box;
    std::string_view highlightHex = "#FFD60A";
    CaptionPlate plate = CaptionPlate::bar;
    bool uppercase = false;

    bool operator==(const CaptionChip&) const = default;
};

}  // namespace tessaloom
