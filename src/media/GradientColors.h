// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

#include "media/BgraImage.h"

namespace tessaloom {

/// Which colours pictures show mostly in soft gradients, where a step between two colours would be seen as a
/// band. Near colours (four steps a channel) are told apart no further.
class GradientColors {
  public:
    GradientColors();

    void add(const BgraView& picture);
    void clear();

    /// Whether more than half of what has this colour, 0xRRGGBB, rises or falls softly. Flat areas, text and
    /// noise don't.
    bool contains(std::uint32_t color) const;

  private:
    /// By cell: samples in gradients, less the others.
    std::vector<std::int32_t> lead_;
};

}  // namespace tessaloom
