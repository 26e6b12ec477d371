// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string_view>

#include "core/RawString.h"

namespace tessaloom {

/// The built-in music beds.
enum class MusicPreset { none, lofi, ambient, synthwave, cinematic };

template <>
struct RawStrings<MusicPreset> {
    static constexpr std::array<std::string_view, 5> values{"none", "lofi", "ambient", "synthwave",
                                                            "cinematic"};
};

}  // namespace tessaloom
