// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/CompositeStage.h"

#include <cstring>

namespace tessaloom {
namespace {

void copyPixels(const std::uint8_t* from, PixelSpan span, std::uint8_t* to) {
    if (span.empty()) return;
    const std::ptrdiff_t start = static_cast<std::ptrdiff_t>(span.first) * 4;
    std::memcpy(to + start, from + start, static_cast<std::size_t>(span.length()) * 4);
}

// Lays the backdrop back over soft pixels by what their coverage leaves; `coverage` is that of the first.
void soften(const std::uint8_t* backdrop, PixelSpan span, const std::uint16_t* coverage, std::uint8_t* out) {
    for (int x = span.first; x < span.last; ++x, ++coverage) {
        for (int i = 4 * x; i < 4 * x + 4; ++i) {
            const int behind = backdrop[i];
            out[i] = static_cast<std::uint8_t>(behind + (((out[i] - behind) * *coverage + 16384) >> 15));
        }
    }
}

}  // namespace

void CompositeStage::prepare(const CompositeUniforms& uniforms, const Backdrop::Pictures& pictures,
                             WorkerPool& pool, std::span<RowScratch> scratch) {
    width_ = static_cast<int>(uniforms.a.x);
    const int height = static_cast<int>(uniforms.a.y);
    const Rect content{uniforms.a.z, uniforms.a.w, uniforms.b.x, uniforms.b.y};
    mask_.prepare({content, uniforms.c.z}, width_, height);
    backdrop_.prepare(uniforms, mask_, pictures, pool, scratch);
    recording_.prepare(pictures.recording, {content.x, content.width, uniforms.b.z, uniforms.c.x},
                       {content.y, content.height, uniforms.b.w, uniforms.c.y}, {0, width_});
}

void CompositeStage::drawRow(int y, PixelSpan columns, RowScratch& scratch, std::uint8_t* canvasRow) const {
    const ContentMask::Row& row = mask_.row(y);
    const std::uint8_t* backdrop = backdrop_.row(y);
    copyPixels(backdrop, intersection(columns, {0, row.touched.first}), canvasRow);
    copyPixels(backdrop, intersection(columns, {row.touched.last, width_}), canvasRow);
    const PixelSpan content = intersection(columns, row.touched);
    if (content.empty()) return;
    recording_.readRow(y, content, scratch, canvasRow + static_cast<std::ptrdiff_t>(content.first) * 4);
    const std::uint16_t* coverage = mask_.softCoverage(row);
    const PixelSpan left = intersection(columns, {row.touched.first, row.covered.first});
    if (!left.empty()) soften(backdrop, left, coverage + (left.first - row.touched.first), canvasRow);
    const PixelSpan right = intersection(columns, {row.covered.last, row.touched.last});
    if (!right.empty())
        soften(backdrop, right, coverage + (right.first - row.touched.first - row.covered.length()),
               canvasRow);
}

}  // namespace tessaloom
