// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Color.h"

#include <charconv>
#include <cstdint>

namespace tessaloom {
namespace {

constexpr Color charcoal{0.11F, 0.11F, 0.12F, 1.0F};

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view whiteSpace = " \t\n\v\f\r";
    const auto first = text.find_first_not_of(whiteSpace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(whiteSpace) - first + 1);
}

float component(std::uint32_t rgb, int shift) {
    return static_cast<float>(rgb >> shift & 0xFF) / 255.0F;
}

}  // namespace

Color colorFromHex(std::string_view text) {
    std::string_view digits = trimmed(text);
    if (digits.starts_with('#')) digits.remove_prefix(1);
    if (digits.size() != 6) return charcoal;
    std::uint32_t rgb = 0;
    const char* end = digits.data() + digits.size();
    const auto parsed = std::from_chars(digits.data(), end, rgb, 16);
    if (parsed.ec != std::errc{} || parsed.ptr != end) return charcoal;
    return {component(rgb, 16), component(rgb, 8), component(rgb, 0), 1.0F};
}

}  // namespace tessaloom
