// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "core/Geometry.h"
#include "render/PixelSpan.h"

namespace tessaloom {

/// The pixels of a canvas that have to be drawn: one span of columns in each band of rows. Its edges are even
/// or the canvas's own, so that an area of a YUV picture is one too.
class ChangedArea {
  public:
    /// Even, as a YUV picture needs it.
    static constexpr int bandHeight = 16;

    /// Becomes empty, on a canvas of this size (pixels). Allocates only to grow.
    void clear(int width, int height);

    /// Adds every pixel that `rect` touches, and those between it and what its bands have already.
    void add(const Rect& rect);
    void addAll();

    bool empty() const;
    /// What is to be drawn of the band that begins with row `y`.
    PixelSpan columns(int y) const { return bands_[static_cast<std::size_t>(y / bandHeight)]; }

  private:
    int width_ = 0;
    int height_ = 0;
    std::vector<PixelSpan> bands_;
};

}  // namespace tessaloom
