// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "render/ContentMask.h"

namespace tessaloom {

/// The shadow that the framed recording casts on the background, near and just below it. Kept from frame to
/// frame like the mask.
class DropShadow {
  public:
    /// `strength` is 0 to 1. Computes anew only when something has changed; only what `mask` leaves visible.
    void prepare(const ContentMask& mask, double strength, int canvasWidth, int canvasHeight);

    /// Darkens a row of the background where the recording does not cover it.
    void shadeRow(int y, std::uint8_t* canvasRow) const;

  private:
    struct Row {
        PixelSpan left;
        PixelSpan right;
        /// Where the light of `left`, then `right`, starts.
        std::size_t start = 0;
    };

    void addRow(int y, const RoundedBox& caster, double feather, PixelSpan covered);

    RoundedBox outline_;
    double strength_ = 0;
    int canvasWidth_ = 0;
    std::vector<Row> rows_;
    /// What is left of the background's light, 0 to 32768.
    std::vector<std::uint16_t> light_;
};

}  // namespace tessaloom
