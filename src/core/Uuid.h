// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tessaloom {

/// A universally unique identifier (RFC 4122).
class Uuid {
  public:
    /// A fresh random one, version 4.
    static Uuid random();

    /// Reads the 36-character form, letters of either case; nothing for any other text.
    static std::optional<Uuid> fromText(std::string_view text);

    /// The 36-character form in capitals.
    std::string text() const;

    bool operator==(const Uuid&) const = default;

  private:
    std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace tessaloom
