// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tessaloom {

/// One pixel of an indexed picture that is about to be compressed. Where two indices would look the same, the
/// encoder takes the one that compresses better.
struct IndexedPixel {
    std::uint8_t index = 0;
    std::uint8_t alternative = 0;
};

/// The LZW compression of GIF pictures (GIF89a, appendix F): codes of growing length, up to 12 bits.
class LzwEncoder {
  public:
    LzwEncoder();

    /// Appends the picture's data: the minimum code size, sub-blocks, and the empty block at the end. All
    /// indices are below 2^`bitsPerPixel`; `bitsPerPixel` is 2 to 8.
    void encode(std::span<const IndexedPixel> pixels, int bitsPerPixel, std::string& target);

  private:
    /// A known string: its first part's code and its last index, and its own code.
    struct Slot {
        std::uint32_t text = 0;
        std::uint16_t dictionary = 0;  ///< another one's slots are free
        std::uint16_t code = 0;
    };

    std::size_t slotOf(std::uint32_t text) const;
    std::optional<int> find(int prefix, std::uint8_t index) const;
    void add(int prefix, std::uint8_t index, int code);
    void clear();

    std::vector<Slot> slots_;
    std::uint16_t dictionary_ = 0;
};

}  // namespace tessaloom
