// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string_view>

namespace tessaloom {

/// A ready-made vertical gradient that the editor offers.
struct GradientPreset {
    std::string_view id;
    std::string_view from;
    std::string_view to;
};

inline constexpr std::array<GradientPreset, 6> gradientPresets{{
    {"Midnight", "#1C1C1E", "#3A3A52"},
    {"Indigo", "#4338CA", "#9333EA"},
    {"Sunset", "#F97316", "#DB2777"},
    {"Ocean", "#0EA5E9", "#1E3A8A"},
    {"Forest", "#10B981", "#064E3B"},
    {"Slate", "#64748B", "#1E293B"},
}};

}  // namespace tessaloom
