// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/Backdrop.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <utility>

#include "render/CoverFit.h"

namespace tessaloom {
namespace {

constexpr int bandHeight = 16;

constexpr double leastBlur = 0.0001;
constexpr double fullBlur = 0.03;
/// A blurred recording is soft even when no blur is asked for.
constexpr double recordingBlur = 0.012;

std::uint8_t toByte(double value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
}

std::array<std::uint8_t, 4> toPixel(const Float4& from, const Float4& to, double t) {
    const auto mixed = [t](float a, float b) { return toByte(a + (static_cast<double>(b) - a) * t); };
    return {mixed(from.z, to.z), mixed(from.y, to.y), mixed(from.x, to.x), mixed(from.w, to.w)};
}

}  // namespace

void Backdrop::prepare(const CompositeUniforms& uniforms, const ContentMask& mask, const Pictures& pictures,
                       WorkerPool& pool, std::span<RowScratch> scratch) {
    const int width = static_cast<int>(uniforms.a.x);
    const int height = static_cast<int>(uniforms.a.y);
    Look look{uniforms.a, uniforms.b,   uniforms.bgTop, uniforms.bgBottom,
              uniforms.d, uniforms.c.z, uniforms.c.w};
    look.content.z = look.content.w = 0;  // The crop moves with every zoom and does not show here.
    std::swap(look_, look);
    if (showsPicture()) {
        look_.pictureIdentity = showsRecording() ? pictures.recordingIdentity : pictures.wallpaperIdentity;
    }
    const bool known = !showsPicture() || look_.pictureIdentity != 0;
    if (drawn_ && known && look_ == look) return;
    if (image_.width() != width || image_.height() != height) image_ = BgraImage(width, height);
    if (showsPicture()) preparePicture(pictures);
    shadow_.prepare(mask, look_.d.x, width, height);
    const auto drawBand = [&](int first, int last, int participant) {
        RowScratch& rows = scratch[static_cast<std::size_t>(participant)];
        for (int y = first; y < last; ++y)
            drawRow(y, mask.row(y), rows);
    };
    pool.forEachBand(height, bandHeight, std::cref(drawBand));
    drawn_ = true;
}

void Backdrop::preparePicture(const Pictures& pictures) {
    const BgraView picture = showsRecording() ? pictures.recording : pictures.wallpaper;
    const double radius = (showsRecording() ? recordingBlur : 0) + static_cast<double>(look_.d.y) * fullBlur;
    const auto [across, down] = coverFit(picture, {0, 0, look_.a.x, look_.a.y});
    const PixelSpan columns{0, image_.width()};
    blurs_ = radius > leastBlur;
    if (blurs_) {
        blurred_.prepare(picture, across, down, radius, columns);
    } else {
        sharp_.prepare(picture, across, down, columns);
    }
}

void Backdrop::drawRow(int y, const ContentMask::Row& row, RowScratch& scratch) {
    for (const PixelSpan span :
         {PixelSpan{0, row.covered.first}, PixelSpan{row.covered.last, image_.width()}}) {
        if (!span.empty()) fill(y, span, scratch);
    }
    shadow_.shadeRow(y, image_.row(y));
}

void Backdrop::fill(int y, PixelSpan span, RowScratch& scratch) {
    std::uint8_t* out = image_.row(y) + static_cast<std::ptrdiff_t>(span.first) * 4;
    if (showsPicture()) {
        blurs_ ? blurred_.readRow(y, span, scratch, out) : sharp_.readRow(y, span, scratch, out);
        return;
    }
    const double t = look_.style > 0.5F ? (y + 0.5) / look_.a.y : 0;
    const auto pixel = toPixel(look_.bgTop, look_.bgBottom, t);
    for (int i = 0; i < span.length(); ++i, out += 4)
        std::memcpy(out, pixel.data(), pixel.size());
}

}  // namespace tessaloom
