// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "media/BgraImage.h"

namespace tessaloom {

/// Counts the colours of pictures, near ones (four steps a channel) together.
class ColorHistogram {
  public:
    /// A group of near colours: how many pixels, and their mean.
    struct Group {
        double count = 0;
        /// Blue, green, red, 0 to 255.
        std::array<double, 3> mean{};
    };

    ColorHistogram();

    void add(const BgraView& picture);
    void clear();

    std::vector<Group> groups() const;

  private:
    struct Cell {
        std::uint64_t count = 0;
        std::array<std::uint64_t, 3> sums{};
    };

    void add(std::uint32_t color, std::uint64_t count);

    std::vector<Cell> cells_;
    std::vector<std::size_t> used_;
};

}  // namespace tessaloom
