// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace tessaloom {

/// The stored spelling of an enumeration's cases. Each enumeration that is stored specialises this beside
/// itself with `static constexpr std::array values`, in the order of the cases, which count from 0.
template <typename Enumeration>
struct RawStrings;

template <typename Enumeration>
constexpr std::string_view rawString(Enumeration value) {
    return RawStrings<Enumeration>::values[static_cast<std::size_t>(value)];
}

/// Nothing for an unknown spelling; case matters.
template <typename Enumeration>
constexpr std::optional<Enumeration> fromRawString(std::string_view text) {
    const auto& values = RawStrings<Enumeration>::values;
    for (std::size_t index = 0; index < values.size(); ++index) {
        if (values[index] == text) return static_cast<Enumeration>(index);
    }
    return std::nullopt;
}

}  // namespace tessaloom
