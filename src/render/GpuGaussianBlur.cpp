// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuGaussianBlur.h"

#include <array>
#include <cmath>

namespace tessaloom {
namespace {

/// Narrow enough to be quick, wide enough for the grid not to show.
constexpr double widestShrunkSigma = 6;
/// Further out lie less than three thousandths of a Gaussian.
constexpr double reach = 3;

/// How a picture is shrunk for a Gaussian of some width.
struct Plan {
    Plan(QSize size, double sigma);

    /// Source texels to a shrunk one.
    int factor = 1;
    /// In shrunk texels.
    double sigma = 0;
    int radius = 0;
    /// Source texels around the picture.
    int padding = 0;
    QSize shrunk;
};

Plan::Plan(QSize size, double sourceSigma) {
    while (sourceSigma / factor >= widestShrunkSigma)
        factor *= 2;
    sigma = sourceSigma / factor;
    radius = static_cast<int>(std::ceil(reach * sigma));
    padding = factor * (radius + 1);
    const auto shrunkSide = [this](int side) { return (side + 2 * padding + factor - 1) / factor; };
    shrunk = {shrunkSide(size.width()), shrunkSide(size.height())};
    if (factor == 1) return;
    // Shrinking (a box of `factor`) and growing (a triangle of one shrunk texel) blur too: variances add up.
    const double box = (1 - 1.0 / (factor * factor)) / 12;
    constexpr double triangle = 1.0 / 6;
    sigma = std::sqrt(sigma * sigma - box - triangle);
}

}  // namespace

GpuGaussianBlur::GpuGaussianBlur(GpuDevice& device, GpuInputs& inputs, const QString& shaderFolder,
                                 const GpuTexture& source)
    : inputs_(&inputs),
      source_(&source),
      shrunk_(device, QRhiTexture::RGBA16F),
      blurredAcross_(device, QRhiTexture::RGBA16F),
      blurred_(device, QRhiTexture::RGBA8) {
    const auto add = [&](const char* fragment, QRhiTexture* from, GpuCanvas& to) {
        passes_.push_back({&to,
                           GpuPipeline::build(device, inputs, *to.pass(), shaderFolder,
                                              {.vertex = "composite", .fragment = fragment, .texture = from}),
                           inputs.bind(std::array{from})});
    };
    add("blur_shrink", source.texture(), shrunk_);
    add("blur_gauss", shrunk_.texture(), blurredAcross_);
    add("blur_gauss", blurredAcross_.texture(), shrunk_);
    add("blur_grow", shrunk_.texture(), blurred_);
}

bool GpuGaussianBlur::prepare(double sourceSigma) {
    const Plan plan(source_->size(), sourceSigma);
    if (!shrunk_.resize(plan.shrunk) || !blurredAcross_.resize(plan.shrunk) ||
        !blurred_.resize(source_->size()))
        return false;
    const auto width = static_cast<float>(plan.shrunk.width());
    const auto height = static_cast<float>(plan.shrunk.height());
    const auto factor = static_cast<float>(plan.factor);
    const auto padding = static_cast<float>(plan.padding);
    const auto sigma = static_cast<float>(plan.sigma);
    const auto radius = static_cast<float>(plan.radius);
    const auto shown = [factor](int side, float shrunkSide) {
        return static_cast<float>(side) / factor / shrunkSide;
    };
    const std::array records{
        Float4{width, height, factor, padding}, Float4{1 / width, 0, sigma, radius},
        Float4{0, 1 / height, sigma, radius},
        Float4{padding / factor / width, padding / factor / height, shown(source_->size().width(), width),
               shown(source_->size().height(), height)}};
    for (std::size_t i = 0; i < passes_.size(); ++i)
        passes_[i].record = inputs_->add(records[i]);
    return true;
}

void GpuGaussianBlur::draw(QRhiCommandBuffer& commands) {
    for (const Pass& pass : passes_) {
        commands.beginPass(pass.target->target(), Qt::black, {1, 0});
        pass.pipeline.draw(commands, pass.target->size(), *pass.bindings, pass.record);
        commands.endPass();
    }
}

}  // namespace tessaloom
