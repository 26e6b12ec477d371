// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/ReferenceBlur.h"

#include <algorithm>
#include <cmath>

#include "support/PixelAt.h"

namespace tessaloom::test {
namespace {

std::vector<double> gaussian(double sigma) {
    const int radius = static_cast<int>(std::ceil(5 * sigma));
    std::vector<double> weights;
    double sum = 0;
    for (int i = -radius; i <= radius; ++i)
        sum += weights.emplace_back(std::exp(-0.5 * i * i / (sigma * sigma)));
    for (double& weight : weights)
        weight /= sum;
    return weights;
}

ReferenceCanvas blurredAlong(const ReferenceCanvas& source, const std::vector<double>& weights, int stepX,
                             int stepY) {
    const int radius = static_cast<int>(weights.size() / 2);
    ReferenceCanvas result(source.width, source.height);
    for (int y = 0; y < source.height; ++y) {
        for (int x = 0; x < source.width; ++x) {
            for (int i = -radius; i <= radius; ++i) {
                const double weight = weights[static_cast<std::size_t>(i + radius)];
                const ReferencePixel& tap = source.at(std::clamp(x + i * stepX, 0, source.width - 1),
                                                      std::clamp(y + i * stepY, 0, source.height - 1));
                for (std::size_t channel = 0; channel < 4; ++channel)
                    result.at(x, y)[channel] += weight * tap[channel];
            }
        }
    }
    return result;
}

}  // namespace

ReferenceCanvas referenceBlur(BgraView picture, double sigma) {
    ReferenceCanvas canvas(picture.width, picture.height);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x)
            std::copy_n(pixelAt(picture, x, y), 4, canvas.at(x, y).begin());
    }
    const std::vector<double> weights = gaussian(sigma);
    return blurredAlong(blurredAlong(canvas, weights, 1, 0), weights, 0, 1);
}

BgraImage rounded(const ReferenceCanvas& canvas) {
    BgraImage image(canvas.width, canvas.height);
    for (int y = 0; y < canvas.height; ++y) {
        for (int x = 0; x < canvas.width; ++x) {
            for (std::size_t channel = 0; channel < 4; ++channel) {
                const double value = std::clamp(canvas.at(x, y)[channel], 0.0, 255.0);
                pixelAt(image, x, y)[channel] = static_cast<std::uint8_t>(std::lround(value));
            }
        }
    }
    return image;
}

}  // namespace tessaloom::test
