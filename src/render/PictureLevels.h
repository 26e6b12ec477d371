// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <span>
#include <vector>

#include "media/BgraImage.h"

namespace tessaloom {

/// Of levels from the full picture down, the smallest that is not magnified when it is drawn `width` pixels
/// wide, else the full one.
template <class Level>
const Level& levelForWidth(const std::vector<Level>& levels, double width) {
    const auto wideEnough = [width](const Level& level) { return level.width() >= width; };
    const auto level = std::find_if(levels.rbegin(), levels.rend(), wideEnough);
    return level == levels.rend() ? levels.front() : *level;
}

/// A premultiplied picture with copies of half, quarter … its size, so that it stays smooth when it is drawn
/// much smaller than it was made.
class PictureLevels {
  public:
    explicit PictureLevels(BgraImage full);

    /// As `levelForWidth`.
    BgraView forWidth(double width) const { return levelForWidth(levels_, width).view(); }
    /// The full picture first.
    std::span<const BgraImage> levels() const { return levels_; }

  private:
    std::vector<BgraImage> levels_;
};

}  // namespace tessaloom
