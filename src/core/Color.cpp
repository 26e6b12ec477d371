// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Color.h"

#include <array>
#include <charconv>
#include <cstdint>

namespace tessaloom {
namespace {

constexpr Color charcoal{0.11F, 0.11F, 0.12F, 1.0F};

/// Unicode's White_Space, in UTF-8.
constexpr std::array<std::string_view, 25> whiteSpace = {
    " ",      "\t",     "\n",     "\v",     "\f",     "\r",     "\u0085", "\u00A0", "\u1680",
    "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
    "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"};

std::string_view trimmed(std::string_view text) {
    for (bool found = true; found;) {
        found = false;
        for (const std::string_view space : whiteSpace) {
            const bool leads = text.starts_with(space);
            if (leads) text.remove_prefix(space.size());
            const bool trails = text.ends_with(space);
            if (trails) text.remove_suffix(space.size());
            found = found || leads || trails;
        }
    }
    return text;
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
