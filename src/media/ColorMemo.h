// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessaloom {

/// Remembers the last answers to a question about colours 0xRRGGBB.
template <typename Answer>
class ColorMemo {
  public:
    ColorMemo() : entries_(std::size_t{1} << placeBits) {}

    /// What is remembered, or else what `find` answers.
    template <typename Find>
    Answer of(std::uint32_t color, Find find) {
        Entry& entry = entries_[(color * 0x9E3779B1U) >> (32 - placeBits)];
        if (entry.color != color) entry = {color, find(color)};
        return entry.answer;
    }

  private:
    static constexpr int placeBits = 15;
    static constexpr std::uint32_t noColor = 0xFFFFFFFF;

    struct Entry {
        std::uint32_t color = noColor;
        Answer answer{};
    };

    std::vector<Entry> entries_;
};

}  // namespace tessaloom
