// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/TextShadow.h"

#include <cmath>
#include <vector>

#include "render/GaussianBlur.h"
#include "render/OverlayRaster.h"
#include "render/PictureReader.h"

namespace tessaloom {
namespace {

constexpr double opacity = 0.65;
/// Raster points. The blur fades to nothing over its radius, which is two sigmas.
constexpr double blurRadius = 8;
constexpr double drop = 2;

void layUnder(const std::uint8_t* shadow, std::uint8_t* row, int pixels) {
    for (int alpha = 3; alpha < pixels * 4; alpha += 4) {
        const double below = shadow[alpha] * opacity * (255 - row[alpha]) / 255;
        row[alpha] = static_cast<std::uint8_t>(row[alpha] + std::lround(below));
    }
}

}  // namespace

void addTextShadow(BgraImage& raster) {
    WorkerPool alone(1);
    GaussianBlur blur;
    blur.blur(raster.view(), blurRadius * rasterScale / 2, alone);
    const PixelSpan columns{0, raster.width()};
    PictureReader reader;
    reader.prepare(blur.reduced(), blur.across({0, static_cast<double>(raster.width()), 0, 1}),
                   blur.down({drop * rasterScale, static_cast<double>(raster.height()), 0, 1}), columns);
    RowScratch scratch;
    scratch.grow(blur.reduced().width, raster.width());
    for (int y = 0; y < raster.height(); ++y) {
        reader.readRow(y, columns, scratch, scratch.canvas.data());
        layUnder(scratch.canvas.data(), raster.row(y), raster.width());
    }
}

}  // namespace tessaloom
