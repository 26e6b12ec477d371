// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/BubbleMask.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace tessaloom {
namespace {

constexpr int bandHeight = 16;
/// Thinner borders are not drawn.
constexpr float leastBorder = 0.5F;

std::uint16_t toPart(double value) {
    return static_cast<std::uint16_t>(std::lround(std::clamp(value, 0.0, 1.0) * 32768));
}

// The shadow's strength relative to its own darkest; a margin of nothing has a hard edge.
double shadowAt(double distance, double margin) {
    if (!(margin > 0)) return distance > 0 ? 0 : 1;
    return 1 - hermiteStep(0, margin, distance);
}

bool sameShape(WebcamUniforms a, const WebcamUniforms& b) {
    a.blur = b.blur;
    return a == b;
}

}  // namespace

Rect bubbleExtent(const WebcamUniforms& uniforms) {
    const Rect rect = toRect(uniforms.rect);
    const double margin = uniforms.params.w;
    return {rect.x - margin, rect.y - margin, rect.width + 2 * margin, rect.height + 2 * margin};
}

void BubbleMask::prepare(const WebcamUniforms& uniforms, int canvasWidth, int canvasHeight,
                         WorkerPool& pool) {
    if (sameShape(uniforms, bubble_) && canvasWidth == canvasWidth_ && canvasHeight == canvasHeight_) return;
    bubble_ = uniforms;
    canvasWidth_ = canvasWidth;
    canvasHeight_ = canvasHeight;
    const Rect rect = toRect(uniforms.rect);
    const float shape = uniforms.params.x;
    isCircle_ = shape < 0.5F;
    const double half = std::min(rect.width, rect.height) * 0.5;
    outline_ = {rect, shape < 1.5F ? half : uniforms.params.y};
    const Rect quad = bubbleExtent(uniforms);
    rows_ = pixelsBetween(quad.minY(), quad.maxY(), canvasHeight);
    columns_ = pixelsBetween(quad.minX(), quad.maxX(), canvasWidth);
    list_.clear();
    std::size_t count = 0;
    for (int y = rows_.first; y < rows_.last; ++y) {
        Row row = rowAt(y);
        row.start = count;
        count += static_cast<std::size_t>(row.touched.length() - row.inner.length());
        list_.push_back(row);
    }
    mixes_.resize(count);
    const auto fillBand = [&](int first, int last, int) {
        for (int i = first; i < last; ++i)
            fillRow(rows_.first + i);
    };
    pool.forEachBand(rows_.length(), bandHeight, std::cref(fillBand));
}

double BubbleMask::distance(double x, double y) const {
    if (!isCircle_) return outline_.distance(x, y);
    return std::hypot(x - outline_.rect.midX(), y - outline_.rect.midY()) - outline_.corner;
}

BubbleMask::Row BubbleMask::rowAt(int y) const {
    const auto span = [&](double limit) {
        return intersection(columns_, spanAround(outline_.rect.midX(), canvasWidth_,
                                                 [&](int x) { return distance(x + 0.5, y + 0.5) <= limit; }));
    };
    const float border = bubble_.border.w;
    Row row{span(std::max(1.0F, bubble_.params.w)), span(border > leastBorder ? -border - 1 : -1)};
    if (row.touched.empty()) row.touched = {};
    if (row.inner.empty()) row.inner = {row.touched.last, row.touched.last};
    return row;
}

// The shape's colour and its shadow are one straight-alpha colour laid over the canvas: the shares are those
// of camera and border in it, times its alpha, and what that leaves of the canvas.
BubbleMask::Mix BubbleMask::mixAt(int x, int y) const {
    const double d = distance(x + 0.5, y + 0.5);
    const double fade = std::clamp(bubble_.meta.z, 0.0F, 1.0F);
    const double fill = hermiteStep(1, -1, d);
    const double border = bubble_.border.w;
    double ring = 0;
    if (border > leastBorder) ring = hermiteStep(-border - 1, -border, d) * (1 - hermiteStep(-1, 0, d));
    const double shadow = (1 - fill) * shadowAt(d, bubble_.params.w) * bubble_.meta.w;
    const double alpha = (fill + shadow * (1 - fill)) * fade;
    return {toPart(fill * fade * (1 - ring)), toPart(fill * fade * ring), toPart(1 - alpha)};
}

void BubbleMask::fillRow(int y) {
    const Row& row = this->row(y);
    Mix* mix = mixes_.data() + row.start;
    for (int x = row.touched.first; x < row.inner.first; ++x)
        *mix++ = mixAt(x, y);
    for (int x = row.inner.last; x < row.touched.last; ++x)
        *mix++ = mixAt(x, y);
}

}  // namespace tessaloom
