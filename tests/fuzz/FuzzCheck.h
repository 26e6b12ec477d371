// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace tessaloom::fuzz {

inline std::string_view asText(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Ends the run, which the fuzzer reports with the input that led here.
inline void require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace tessaloom::fuzz
