// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Uuid.h"

#include <random>

namespace tessaloom {
namespace {

constexpr std::size_t textLength = 36;

constexpr bool isHyphenPlace(std::size_t place) {
    return place == 8 || place == 13 || place == 18 || place == 23;
}

std::optional<unsigned> hexDigit(char digit) {
    if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
    if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a' + 10);
    if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A' + 10);
    return std::nullopt;
}

}  // namespace

Uuid Uuid::random() {
    std::random_device source;
    Uuid uuid;
    for (auto& byte : uuid.bytes_)
        byte = static_cast<std::uint8_t>(source());
    uuid.bytes_[6] = static_cast<std::uint8_t>((uuid.bytes_[6] & 0x0F) | 0x40);
    uuid.bytes_[8] = static_cast<std::uint8_t>((uuid.bytes_[8] & 0x3F) | 0x80);
    return uuid;
}

std::optional<Uuid> Uuid::fromText(std::string_view text) {
    if (text.size() != textLength) return std::nullopt;
    Uuid uuid;
    std::size_t nibble = 0;
    for (std::size_t place = 0; place < textLength; ++place) {
        if (isHyphenPlace(place)) {
            if (text[place] != '-') return std::nullopt;
            continue;
        }
        const auto digit = hexDigit(text[place]);
        if (!digit) return std::nullopt;
        auto& byte = uuid.bytes_[nibble / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | *digit);
        ++nibble;
    }
    return uuid;
}

std::string Uuid::text() const {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(textLength);
    for (const auto byte : bytes_) {
        if (isHyphenPlace(text.size())) text += '-';
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

}  // namespace tessaloom
