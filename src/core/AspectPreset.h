// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string_view>

#include "core/RawString.h"

namespace tessaloom {

/// The shape of the output picture.
enum class AspectPreset { native, wide, square, portrait, vertical };

template <>
struct RawStrings<AspectPreset> {
    static constexpr std::array<std::string_view, 5> values{"native", "wide", "square", "portrait",
                                                            "vertical"};
};

/// Width over height. `recordingRatio` is the recording's own shape, what `native` gives; 16/9 stands in for
/// one that is not greater than 0.
double canvasRatio(AspectPreset preset, double recordingRatio);

}  // namespace tessaloom
