// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/JsonMending.h"

#include <algorithm>
#include <charconv>

#include "core/JsonNumber.h"

namespace tessaloom {
namespace {

bool isNumberCharacter(char c) {
    return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E';
}

/// Nothing for a number that a double can hold.
std::optional<std::string_view> replacementForHuge(std::string_view number) {
    if (number.find_first_of("0123456789") == number.npos) return std::nullopt;  // the e of true or false
    const auto value = readJsonNumber(number);
    if (!value) return "null";
    if (*value == 0) return "0";  // as in 0e999
    return std::nullopt;
}

constexpr std::size_t escapeLength = 6;

/// The UTF-16 unit that an escape such as \uD83D at this place spells.
std::optional<unsigned> escapedUnit(std::string_view text, std::size_t at) {
    if (at >= text.size() || !text.substr(at).starts_with("\\u")) return std::nullopt;
    const std::string_view digits = text.substr(at).substr(2, 4);
    unsigned unit = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
    if (error != std::errc{} || end != digits.data() + 4) return std::nullopt;
    return unit;
}

bool isLeading(std::optional<unsigned> unit) {
    return unit && *unit >= 0xD800 && *unit <= 0xDBFF;
}

bool isTrailing(std::optional<unsigned> unit) {
    return unit && *unit >= 0xDC00 && *unit <= 0xDFFF;
}

}  // namespace

std::string withHugeNumbersAsNull(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    bool inString = false;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        if (inString || !isNumberCharacter(text[at])) {
            if (inString && text[at] == '\\')
                ++at;
            else if (text[at] == '"')
                inString = !inString;
            at = std::min(at + 1, text.size());
            result += text.substr(start, at - start);
            continue;
        }
        while (at < text.size() && isNumberCharacter(text[at]))
            ++at;
        const std::string_view number = text.substr(start, at - start);
        result += replacementForHuge(number).value_or(number);
    }
    return result;
}

std::optional<std::string> withLoneSurrogatesReplaced(std::string_view text) {
    std::optional<std::string> result;
    for (std::size_t at = text.find('\\'); at != std::string_view::npos;) {
        const auto unit = escapedUnit(text, at);
        const std::size_t next = at + (unit ? escapeLength : 2);
        const bool isPair = isLeading(unit) && isTrailing(escapedUnit(text, next));
        if (!isPair && (isLeading(unit) || isTrailing(unit))) {
            if (!result) result = text;
            result->replace(at, escapeLength, "\\uFFFD");
        }
        at = text.find('\\', isPair ? next + escapeLength : next);
    }
    return result;
}

}  // namespace tessaloom
