// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "media/ColorMemo.h"
#include "media/ColorPalette.h"
#include "media/GradientColors.h"

namespace tessaloom {

/// A palette that shows the colours of soft gradients by a pattern of two of its own, where the nearest one
/// would make a visible band. The pattern depends on colour and place alone, so that what stands still shows
/// the same pixels. One thread at a time.
class DitheredPalette {
  public:
    /// What a pixel is shown by.
    struct Choice {
        std::uint8_t index = 0;
        /// 0xRRGGBB: what the chosen one comes nearest to. The pixel's own colour, or what the pattern makes
        /// of it.
        std::uint32_t aim = 0;
    };

    DitheredPalette(ColorPalette palette, GradientColors gradients);

    ColorPalette& palette() { return palette_; }
    const ColorPalette& palette() const { return palette_; }

    /// For a pixel of this colour, 0xRRGGBB, in column `x` and row `y`, neither negative.
    Choice choose(std::uint32_t color, int x, int y);

  private:
    /// `second` takes this share of the pixels, up to a half.
    struct Mix {
        std::uint8_t first = 0;
        std::uint8_t second = 0;
        float share = 0;
    };

    Mix mixFor(std::uint32_t color);

    ColorPalette palette_;
    GradientColors gradients_;
    ColorMemo<Mix> mixes_;
};

}  // namespace tessaloom
