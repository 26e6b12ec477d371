// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string_view>

#include "core/CaptionStyle.h"
#include "core/RawString.h"

namespace tessaloom {

/// The built-in caption looks.
enum class CaptionPreset { classic, karaoke, minimal, bold };

template <>
struct RawStrings<CaptionPreset> {
    static constexpr std::array<std::string_view, 4> values{"classic", "karaoke", "minimal", "bold"};
};

/// The preset's look; size and place of the text stay those of `base`.
CaptionStyle captionStyle(CaptionPreset preset, const CaptionStyle& base);

}  // namespace tessaloom
