// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string_view>

#include "core/RawString.h"

namespace tessaloom {

/// The image that is drawn as the pointer.
enum class CursorStyle { system, hand, large, dot, ring };

template <>
struct RawStrings<CursorStyle> {
    static constexpr std::array<std::string_view, 5> values{"system", "hand", "large", "dot", "ring"};
};

}  // namespace tessaloom
