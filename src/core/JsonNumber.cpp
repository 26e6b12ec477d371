// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/JsonNumber.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace tessaloom {
namespace {

/// Far beyond any double, and far from overflowing together with the length of a text.
constexpr std::int64_t greatestExponent = 1'000'000'000'000;

std::int64_t exponentOf(std::string_view digits) {
    std::int64_t exponent = 0;
    const bool isNegative = digits.starts_with('-');
    if (isNegative || digits.starts_with('+')) digits.remove_prefix(1);
    const auto error = std::from_chars(digits.data(), digits.data() + digits.size(), exponent).ec;
    if (error == std::errc::result_out_of_range) exponent = greatestExponent;
    exponent = std::min(exponent, greatestExponent);
    return isNegative ? -exponent : exponent;
}

/// Whether a number other than 0 is smaller than 1.
bool isFraction(std::string_view spelled) {
    const std::size_t exponentMark = std::min(spelled.find_first_of("eE"), spelled.size());
    const std::string_view mantissa = spelled.substr(0, exponentMark);
    const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
    const auto firstDigit = static_cast<std::int64_t>(mantissa.find_first_of("123456789"));
    const std::int64_t exponent =
        exponentMark == spelled.size() ? 0 : exponentOf(spelled.substr(exponentMark + 1));
    // The first digit's power of ten; the point takes a place of its own.
    return (firstDigit < point ? point - firstDigit - 1 : point - firstDigit) + exponent < 0;
}

}  // namespace

std::optional<double> readJsonNumber(std::string_view spelled) {
    double number = 0;
    const auto [end, error] = std::from_chars(spelled.data(), spelled.data() + spelled.size(), number);
    if (end != spelled.data() + spelled.size()) return std::nullopt;
    if (error == std::errc::result_out_of_range)
        return isFraction(spelled) ? std::optional(0.0) : std::nullopt;
    return error == std::errc{} ? std::optional(number) : std::nullopt;
}

}  // namespace tessaloom
