// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/WebcamStage.h"

#include <algorithm>
#include <cmath>

#include "render/CoverFit.h"
#include "render/PixelKernels.h"

namespace tessaloom {
namespace {

constexpr float leastBlur = 0.001F;
/// Sigma at full blur, as a fraction of the camera's width, and the least one in its pixels.
constexpr double fullSigma = 0.035;
constexpr double leastSigma = 1;
constexpr int wholePart = 32768;

std::uint8_t toByte(float value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0F, 1.0F) * 255));
}

CoverFit cameraFit(BgraView camera, const WebcamUniforms& uniforms) {
    CoverFit fit = coverFit(camera, toRect(uniforms.rect));
    if (uniforms.params.z > 0.5F) {
        fit.across.shownOrigin = 1 - fit.across.shownOrigin;
        fit.across.shownSize = -fit.across.shownSize;
    }
    return fit;
}

}  // namespace

void WebcamStage::prepare(const WebcamUniforms& uniforms, const SourcePicture& camera,
                          const SourcePicture& matte, int canvasWidth, int canvasHeight, WorkerPool& pool) {
    mask_.prepare(uniforms, canvasWidth, canvasHeight, pool);
    const PixelSpan columns = mask_.columns();
    draws_ = !mask_.rows().empty() && !columns.empty();
    if (!draws_) return;
    border_ = {toByte(uniforms.border.z), toByte(uniforms.border.y), toByte(uniforms.border.x)};
    opacity_ = static_cast<int>(std::lround(std::clamp(uniforms.meta.z, 0.0F, 1.0F) * wholePart));
    const auto [across, down] = cameraFit(camera.pixels, uniforms);
    camera_.prepare(camera.pixels, across, down, columns);
    blurs_ = uniforms.blur.x > leastBlur && !matte.pixels.empty();
    if (!blurs_) return;
    matte_.prepare(matte.pixels, across, down, columns);
    prepareBlur(uniforms.blur.x, camera, pool);
    background_.prepare(blur_.reduced(), blur_.across(across), blur_.down(down), columns);
}

void WebcamStage::prepareBlur(double amount, const SourcePicture& camera, WorkerPool& pool) {
    const double sigma = std::max(amount * camera.pixels.width * fullSigma, leastSigma);
    const bool isKept = camera.identity != 0 && camera.identity == blurredIdentity_ && sigma == blurSigma_;
    if (isKept) return;
    blur_.blur(camera.pixels, sigma, pool);
    blurSigma_ = sigma;
    blurredIdentity_ = camera.identity;
}

void WebcamStage::drawRow(int y, PixelSpan columns, RowScratch& scratch, std::uint8_t* canvasRow) const {
    if (!draws_ || !mask_.rows().contains(y)) return;
    const BubbleMask::Row& row = mask_.row(y);
    const PixelSpan touched = intersection(columns, row.touched);
    if (touched.empty()) return;
    const std::uint8_t* camera = cameraRow(y, touched, scratch);
    const auto cameraAt = [&](PixelSpan span) {
        return camera + static_cast<std::ptrdiff_t>(span.first - touched.first) * 4;
    };
    const BubbleMask::Mix* mixes = mask_.mixes(row);
    const PixelSpan left = intersection(touched, {row.touched.first, row.inner.first});
    if (!left.empty()) mixEdge(left, mixes + (left.first - row.touched.first), cameraAt(left), canvasRow);
    const PixelSpan inner = intersection(touched, row.inner);
    if (!inner.empty()) drawInner(inner, cameraAt(inner), canvasRow);
    const PixelSpan right = intersection(touched, {row.inner.last, row.touched.last});
    if (right.empty()) return;
    mixEdge(right, mixes + (right.first - row.touched.first - row.inner.length()), cameraAt(right),
            canvasRow);
}

void WebcamStage::drawInner(PixelSpan span, const std::uint8_t* camera, std::uint8_t* canvasRow) const {
    std::uint8_t* inner = canvasRow + static_cast<std::ptrdiff_t>(span.first) * 4;
    const std::size_t bytes = static_cast<std::size_t>(span.length()) * 4;
    if (opacity_ == wholePart) {
        std::copy_n(camera, bytes, inner);
    } else {
        PixelKernels::mixRows(inner, camera, static_cast<std::int16_t>(opacity_), inner, bytes);
    }
}

const std::uint8_t* WebcamStage::cameraRow(int y, PixelSpan span, RowScratch& scratch) const {
    std::uint8_t* camera = scratch.canvas.data();
    camera_.readRow(y, span, scratch, camera);
    if (!blurs_) return camera;
    background_.readRow(y, span, scratch, scratch.blurred.data());
    matte_.readRow(y, span, scratch, scratch.matte.data());
    PixelKernels::mixByMatte(scratch.blurred.data(), camera, scratch.matte.data(), camera,
                             static_cast<std::size_t>(span.length()));
    return camera;
}

void WebcamStage::mixEdge(PixelSpan span, const BubbleMask::Mix* mixes, const std::uint8_t* camera,
                          std::uint8_t* canvasRow) const {
    std::uint8_t* pixel = canvasRow + static_cast<std::ptrdiff_t>(span.first) * 4;
    for (int x = span.first; x < span.last; ++x, ++mixes, camera += 4, pixel += 4) {
        for (std::size_t channel = 0; channel < border_.size(); ++channel) {
            const int sum = camera[channel] * mixes->camera + border_[channel] * mixes->border +
                            pixel[channel] * mixes->canvas;
            pixel[channel] = static_cast<std::uint8_t>(std::min((sum + wholePart / 2) / wholePart, 255));
        }
    }
}

}  // namespace tessaloom
