// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/WorkerPool.h"
#include "media/BgraImage.h"
#include "render/AxisMapping.h"

namespace tessaloom {

/// A picture softened by a Gaussian of any width, as if its edge pixels went on for ever. A soft picture
/// needs few pixels: the result is smaller than the picture in proportion to the blur, so that a wide one
/// costs little more than reading the picture once. Read bilinearly it is within 1.5 % of full scale of the
/// true one.
class GaussianBlur {
  public:
    /// `picture` is not empty, `sigma` in its pixels, at least 1. Allocates only to grow.
    void blur(BgraView picture, double sigma, WorkerPool& pool);

    /// The result, with a border of its own. Valid until the next `blur`.
    BgraView reduced() const { return {result_.data(), across_.cells + 2, down_.cells + 2, resultStride()}; }

    /// The mappings that show of `reduced()` what these show of the picture.
    AxisMapping across(const AxisMapping& mapping) const { return across_.reduced(mapping, step_); }
    AxisMapping down(const AxisMapping& mapping) const { return down_.reduced(mapping, step_); }

  private:
    /// A row or column of the picture, and the number of cells of `step_` pixels that hold all of it.
    struct Axis {
        int length = 0;
        int cells = 0;

        AxisMapping reduced(AxisMapping mapping, int step) const;
    };

    std::ptrdiff_t resultStride() const { return (std::ptrdiff_t{across_.cells} + 2) * 4; }
    std::size_t cellChannels() const;
    std::uint16_t* cellRow(int row);
    int heldRow(int row) const;
    void chooseKernel(double sigma);
    void grow(int participants);
    void reduceRow(int row, BgraView picture, std::uint16_t* sums);
    void convolveRow(int row, std::size_t participant);

    Axis across_;
    Axis down_;
    int step_ = 1;
    int radius_ = 0;
    /// 2 * radius_ + 1 fractions of 65536.
    std::vector<std::uint16_t> weights_;
    /// Means of cells in 1/256 levels: a row for each row of cells, then one for what lies above the picture
    /// and one for what lies below. Each has radius_ + 1 cells of the edge pixels before and behind.
    std::vector<std::uint16_t> cells_;
    std::vector<std::uint8_t> result_;
    /// Per participant.
    struct Scratch {
        std::vector<std::uint16_t> sums;
        std::vector<std::uint16_t> row;
        std::vector<const std::uint16_t*> taps;
    };
    std::vector<Scratch> scratch_;
};

}  // namespace tessaloom
