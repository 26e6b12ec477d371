// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/ContentMask.h"

#include <cmath>

namespace tessaloom {

void ContentMask::prepare(const RoundedBox& outline, int canvasWidth, int canvasHeight) {
    const auto height = static_cast<std::size_t>(canvasHeight);
    if (outline == outline_ && canvasWidth == canvasWidth_ && height == rows_.size()) return;
    outline_ = outline;
    canvasWidth_ = canvasWidth;
    rows_.clear();
    coverage_.clear();
    rows_.reserve(height);
    for (int y = 0; y < canvasHeight; ++y)
        addRow(y);
}

void ContentMask::addRow(int y) {
    Row row{outline_.rowSpan(y, 1, canvasWidth_), outline_.rowSpan(y, -1, canvasWidth_), coverage_.size()};
    if (row.covered.empty()) row.covered = {row.touched.last, row.touched.last};
    for (int x = row.touched.first; x < row.touched.last; ++x) {
        if (row.covered.contains(x)) {
            x = row.covered.last - 1;
            continue;
        }
        const double coverage = hermiteStep(1, -1, outline_.distance(x + 0.5, y + 0.5));
        coverage_.push_back(static_cast<std::uint16_t>(std::lround(coverage * 32768)));
    }
    rows_.push_back(row);
}

}  // namespace tessaloom
