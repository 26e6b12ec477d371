// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <random>

#include "media/BgraImage.h"
#include "render/FrameComposer.h"

namespace tessaloom::test {

/// Random input with a fixed seed.
class Chance {
  public:
    explicit Chance(unsigned seed) : engine_(seed) {}

    float between(float low, float high) { return std::uniform_real_distribution<float>(low, high)(engine_); }
    int whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(engine_); }
    bool oneIn(int count) { return whole(1, count) == 1; }

  private:
    std::mt19937 engine_;
};

/// Opaque, with areas of noise, flat colour and hard edges.
BgraImage randomPicture(Chance& chance, int width, int height);

/// A composite of `style` on a canvas of this size, over the whole range of what may be asked for: content of
/// no size or partly off the canvas, square and huge corners, tiny crops and crops outside the recording.
CompositeUniforms randomComposite(Chance& chance, int width, int height, float style);

/// Overlays for the content of `composite`, some of them across its edge.
CursorUniforms randomCursor(Chance& chance, const CompositeUniforms& composite);
RippleUniforms randomRipple(Chance& chance, const CompositeUniforms& composite);

/// A camera bubble of any shape, some of them tiny, beyond the canvas or larger than it, or hardly visible.
WebcamUniforms randomWebcam(Chance& chance, int width, int height);

/// A rounded rectangle, some with more radius than they have room for.
RoundedRectUniforms randomRoundedRect(Chance& chance, int width, int height);

}  // namespace tessaloom::test
