// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GaussianBlur.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

#include "render/PixelKernels.h"

namespace tessaloom {
namespace {

/// At least so many steps make a sigma, so that reading between them bilinearly stays accurate.
constexpr double sigmaPerStep = 3;
/// So many bytes still add up in 16 bits.
constexpr int largestStep = 128;
/// The kernel reaches so many sigmas out.
constexpr double reach = 3;
constexpr int bandHeight = 4;

// In 1/256 levels, rounded.
std::uint16_t toMean(std::uint32_t sum, int pixels) {
    const auto count = static_cast<std::uint32_t>(pixels);
    return static_cast<std::uint16_t>((sum * 256 + count / 2) / count);
}

// Each cell takes `step` pixels; what the last one lacks is its last pixel again.
void meanOfCells(const std::uint16_t* sums, int width, int step, std::uint16_t* out) {
    if (step == 1) {
        std::transform(sums, sums + std::ptrdiff_t{width} * 4, out,
                       [](std::uint16_t level) { return static_cast<std::uint16_t>(level << 8); });
        return;
    }
    for (int first = 0; first < width; first += step) {
        std::array<std::uint32_t, 4> total{};
        for (int x = first; x < first + step; ++x) {
            const std::uint16_t* pixel = sums + std::ptrdiff_t{std::min(x, width - 1)} * 4;
            for (std::size_t channel = 0; channel < total.size(); ++channel)
                total[channel] += pixel[channel];
        }
        for (const std::uint32_t sum : total)
            *out++ = toMean(sum, step * step);
    }
}

// Cells that hold nothing but one pixel, whose sum over a cell's rows is given.
void fillCells(const std::uint16_t* sum, int step, std::ptrdiff_t count, std::uint16_t* out) {
    for (std::ptrdiff_t i = 0; i < count * 4; ++i)
        out[i] = toMean(sum[i % 4], step);
}

}  // namespace

// The picture ends at the centres of its outermost pixels; the cell beyond is there to read up to them.
AxisMapping GaussianBlur::Axis::reduced(AxisMapping mapping, int step) const {
    const auto atPixel = [&](double position) { return (position / step + 1) / (cells + 2); };
    mapping.shownSize *= atPixel(length) - atPixel(0);
    mapping.shownOrigin = atPixel(mapping.shownOrigin * length);
    mapping.least = atPixel(0.5);
    mapping.greatest = atPixel(length - 0.5);
    return mapping;
}

void GaussianBlur::blur(BgraView picture, double sigma, WorkerPool& pool) {
    chooseKernel(sigma);
    across_ = {picture.width, (picture.width + step_ - 1) / step_};
    down_ = {picture.height, (picture.height + step_ - 1) / step_};
    grow(pool.participants());
    const auto reduceBand = [&](int first, int last, int participant) {
        for (int row = first; row < last; ++row)
            reduceRow(row, picture, scratch_[static_cast<std::size_t>(participant)].sums.data());
    };
    pool.forEachBand(down_.cells + 2, bandHeight, std::cref(reduceBand));
    const auto convolveBand = [&](int first, int last, int participant) {
        for (int row = first; row < last; ++row)
            convolveRow(row, static_cast<std::size_t>(participant));
    };
    pool.forEachBand(down_.cells + 2, bandHeight, std::cref(convolveBand));
}

// Taking means of cells and reading between their centres blurs too, by a variance of (step^2 - 1) / 12 and,
// on average over all places, (step^2 - 1) / 6; the kernel does the rest.
void GaussianBlur::chooseKernel(double sigma) {
    step_ = static_cast<int>(std::clamp(std::floor(sigma / sigmaPerStep), 1.0, double{largestStep}));
    const double variance = (sigma * sigma - (step_ * step_ - 1) / 4.0) / (step_ * step_);
    radius_ = static_cast<int>(std::ceil(reach * std::sqrt(variance)));
    weights_.clear();
    const auto bell = [&](int offset) { return std::exp(-offset * offset / (2 * variance)); };
    double sum = 0;
    for (int offset = -radius_; offset <= radius_; ++offset)
        sum += bell(offset);
    for (int offset = -radius_; offset <= radius_; ++offset) {
        const double weight = std::round(bell(offset) / sum * 65536);
        weights_.push_back(static_cast<std::uint16_t>(weight));
    }
}

std::size_t GaussianBlur::cellChannels() const {
    return (static_cast<std::size_t>(across_.cells) + 2 * static_cast<std::size_t>(radius_) + 2) * 4;
}

std::uint16_t* GaussianBlur::cellRow(int row) {
    return cells_.data() + static_cast<std::size_t>(row) * cellChannels();
}

void GaussianBlur::grow(int participants) {
    const auto rows = static_cast<std::size_t>(down_.cells) + 2;
    cells_.resize(std::max(cells_.size(), rows * cellChannels()));
    result_.resize(std::max(result_.size(), rows * static_cast<std::size_t>(resultStride())));
    scratch_.resize(static_cast<std::size_t>(participants));
    for (Scratch& scratch : scratch_) {
        scratch.sums.resize(std::max(scratch.sums.size(), static_cast<std::size_t>(across_.length) * 4));
        scratch.row.resize(std::max(scratch.row.size(), cellChannels()));
        scratch.taps.resize(std::max(scratch.taps.size(), weights_.size()));
    }
}

// Rows of cells, then the one above the picture and the one below.
void GaussianBlur::reduceRow(int row, BgraView picture, std::uint16_t* sums) {
    const int below = down_.cells + 1;
    const int top = row < down_.cells ? row * step_ : (row == below ? picture.height - 1 : -step_);
    std::fill_n(sums, static_cast<std::size_t>(picture.width) * 4, std::uint16_t{0});
    for (int y = top; y < top + step_; ++y) {
        PixelKernels::addRow(picture.row(std::clamp(y, 0, picture.height - 1)), sums,
                             static_cast<std::size_t>(picture.width) * 4);
    }
    std::uint16_t* out = cellRow(row);
    const std::ptrdiff_t border = std::ptrdiff_t{radius_} + 1;
    const std::ptrdiff_t last = picture.width - 1;
    fillCells(sums, step_, border, out);
    meanOfCells(sums, picture.width, step_, out + border * 4);
    fillCells(sums + last * 4, step_, border, out + (border + across_.cells) * 4);
}

// Where the row of cells number `row`, counted from the picture's top, is held.
int GaussianBlur::heldRow(int row) const {
    if (row < 0) return down_.cells;
    return row < down_.cells ? row : down_.cells + 1;
}

// Row 0 of the result lies above the picture.
void GaussianBlur::convolveRow(int row, std::size_t participant) {
    Scratch& scratch = scratch_[participant];
    const std::size_t taps = weights_.size();
    for (std::size_t tap = 0; tap < taps; ++tap) {
        scratch.taps[tap] = cellRow(heldRow(row - 1 - radius_ + static_cast<int>(tap)));
    }
    PixelKernels::weightedSum(scratch.taps.data(), weights_.data(), taps, scratch.row.data(), cellChannels());
    for (std::size_t tap = 0; tap < taps; ++tap)
        scratch.taps[tap] = scratch.row.data() + 4 * tap;
    PixelKernels::weightedSumToBytes(scratch.taps.data(), weights_.data(), taps,
                                     result_.data() + row * resultStride(),
                                     static_cast<std::size_t>(resultStride()));
}

}  // namespace tessaloom
