// SPDX-License-Identifier: GPL-3.0-or-later
#include "soak/SoakOptions.h"

#include <span>
#include <stdexcept>
#include <string_view>

namespace tessaloom::test {
namespace {

constexpr double shortestTake = 20;

/// Throws std::logic_error for anything else.
double number(const std::string& text) {
    std::size_t end = 0;
    const double value = std::stod(text, &end);
    if (end != text.size()) throw std::invalid_argument(text);
    return value;
}

}  // namespace

std::optional<SoakOptions> SoakOptions::parse(int count, char** arguments) try {
    if (count < 3) return std::nullopt;
    SoakOptions options;
    options.recorder = arguments[1];
    options.scene = arguments[2];
    const std::span words(arguments + 3, arguments + count);
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        const auto value = [&] {
            return ++i < words.size() ? number(words[i]) : throw std::invalid_argument("none");
        };
        if (word == "--camera") {
            options.camera = true;
        } else if (word == "--clock-ppm") {
            options.clockError = value() * 1e-6;
        } else if (word == "--most-missed") {
            options.mostMissed = static_cast<long>(value());
        } else {
            options.seconds = number(words[i]);
        }
    }
    if (!(options.seconds >= shortestTake)) return std::nullopt;
    return options;
} catch (const std::logic_error&) {
    return std::nullopt;
}

}  // namespace tessaloom::test
