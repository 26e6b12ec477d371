// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "media/BgraImage.h"
#include "render/Uniforms.h"

namespace tessaloom::test {

/// Blue, green, red, alpha, 0 to 255.
using ReferencePixel = std::array<double, 4>;

/// A picture that is never rounded.
struct ReferenceCanvas {
    ReferenceCanvas(int canvasWidth, int canvasHeight);

    ReferencePixel& at(int x, int y) { return pixels[index(x, y)]; }
    const ReferencePixel& at(int x, int y) const { return pixels[index(x, y)]; }
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }

    int width;
    int height;
    std::vector<ReferencePixel> pixels;
    /// Pixels so close to a hard edge that rounding decides on which side they are.
    std::vector<bool> onHardEdge;
};

// The drawing stages, read plainly off their formulas in double precision, pixel by pixel: slow and without
// any of the structure that the renderer makes use of.

void referenceComposite(ReferenceCanvas& canvas, const CompositeUniforms& uniforms, BgraView recording,
                        BgraView wallpaper);
void referenceRipple(ReferenceCanvas& canvas, const RippleUniforms& ripple);
void referenceCursor(ReferenceCanvas& canvas, const CursorUniforms& cursor, BgraView image);
/// The pictures of a camera bubble; without a matte (empty) nothing is blurred.
struct ReferenceCamera {
    BgraView camera;
    BgraView matte;
    BgraView blurred;
};
void referenceWebcam(ReferenceCanvas& canvas, const WebcamUniforms& webcam, const ReferenceCamera& pictures);
void referenceRoundedRect(ReferenceCanvas& canvas, const RoundedRectUniforms& rounded);
void referenceChip(ReferenceCanvas& canvas, const ChipUniforms& chip, BgraView raster);

/// A Gaussian, tap by tap, as if the picture's edge pixels went on for ever; rounded to bytes.
BgraImage referenceBlur(BgraView picture, double sigma);

}  // namespace tessaloom::test
