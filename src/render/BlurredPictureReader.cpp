// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/BlurredPictureReader.h"

#include <algorithm>

#include "render/PictureReader.h"

namespace tessaloom {
namespace {

AxisMapping shifted(AxisMapping mapping, double fraction) {
    mapping.shownOrigin += fraction;
    return mapping;
}

}  // namespace

void BlurredPictureReader::prepare(BgraView picture, const AxisMapping& across, const AxisMapping& down,
                                   double radius, PixelSpan columns) {
    picture_ = picture;
    down_ = down;
    const double stepAcross = radius * 0.5;
    stepDown_ = stepAcross * picture.width / picture.height;
    for (int tap = 0; tap < taps; ++tap) {
        columns_[static_cast<std::size_t>(tap)].prepare(shifted(across, (tap - middleTap) * stepAcross),
                                                        picture.width, columns);
    }
}

void BlurredPictureReader::readRow(int y, PixelSpan span, RowScratch& scratch, std::uint8_t* out) const {
    if (span.empty()) return;
    averageRows(y, texels(span), scratch);
    const std::size_t channels = static_cast<std::size_t>(span.length()) * 4;
    std::fill_n(scratch.sums.begin(), channels, std::uint16_t{0});
    for (const ColumnTable& column : columns_) {
        column.resample(scratch.averaged.data(), span, scratch.canvas.data());
        PixelKernels::addRow(scratch.canvas.data(), scratch.sums.data(), channels);
    }
    PixelKernels::fifthOfRow(scratch.sums.data(), out, channels);
}

PixelSpan BlurredPictureReader::texels(PixelSpan span) const {
    PixelSpan all = columns_.front().texels(span);
    for (const ColumnTable& column : columns_) {
        const PixelSpan some = column.texels(span);
        all = {std::min(all.first, some.first), std::max(all.last, some.last)};
    }
    return all;
}

void BlurredPictureReader::averageRows(int y, PixelSpan texels, RowScratch& scratch) const {
    const std::ptrdiff_t start = static_cast<std::ptrdiff_t>(texels.first) * 4;
    const std::size_t channels = static_cast<std::size_t>(texels.length()) * 4;
    std::fill_n(scratch.sums.begin(), channels, std::uint16_t{0});
    for (int tap = 0; tap < taps; ++tap) {
        const double fraction = down_.fractionAt(y) + (tap - middleTap) * stepDown_;
        const TexelPosition position = texelPosition(fixedTexel(fraction, picture_.height), picture_.height);
        const std::uint8_t* row = mixedRow(picture_, position, texels, scratch);
        PixelKernels::addRow(row + start, scratch.sums.data(), channels);
    }
    PixelKernels::fifthOfRow(scratch.sums.data(), scratch.averaged.data() + start, channels);
}

}  // namespace tessaloom
