// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Geometry.h"

namespace tessaloom {

/// Four 32-bit floats as a drawing stage reads them.
struct alignas(16) Float4 {
    float x = 0;
    float y = 0;
    float z = 0;
    float w = 0;

    bool operator==(const Float4&) const = default;
};

/// Left, top, width, height.
inline Float4 toFloat4(const Rect& rect) {
    return {static_cast<float>(rect.x), static_cast<float>(rect.y), static_cast<float>(rect.width),
            static_cast<float>(rect.height)};
}

inline Rect toRect(const Float4& value) {
    return {value.x, value.y, value.z, value.w};
}

// The records the drawing stages read, as raw memory: the order of the fields is fixed. Lengths are canvas
// pixels, origin top left. A `rect` is (left, top, width, height).

/// The framed recording on its background.
struct CompositeUniforms {
    /// Canvas width and height, content origin x and y.
    Float4 a;
    /// Content width and height, crop origin x and y (fractions of the recording).
    Float4 b;
    /// Crop width and height (fractions), corner radius, background style (0 solid, 1 gradient, 2 wallpaper,
    /// 3 blurred recording).
    Float4 c;
    Float4 bgTop;
    Float4 bgBottom;
    /// Shadow strength, background blur, 0, 0.
    Float4 d;

    bool operator==(const CompositeUniforms&) const = default;
};

struct CursorUniforms {
    Float4 rect;
    /// Canvas width and height, corner radius, opacity.
    Float4 meta;
    /// Content rectangle.
    Float4 content;

    bool operator==(const CursorUniforms&) const = default;
};

struct RippleUniforms {
    Float4 rect;
    /// Age 0 to 1, 0, 0, 0.
    Float4 params;
    Float4 color;
    /// Canvas width and height, corner radius, 0.
    Float4 meta;
    /// Content rectangle.
    Float4 content;

    bool operator==(const RippleUniforms&) const = default;
};

struct WebcamUniforms {
    Float4 rect;
    /// Shape (0 circle, 1 pill, 2 rectangle), corner radius, mirrored 0 or 1, shadow margin.
    Float4 params;
    /// Canvas width and height, opacity of the bubble, opacity of its shadow.
    Float4 meta;
    /// Red, green, blue, border width.
    Float4 border;
    /// Blur 0 to 1, 0, 0, 0.
    Float4 blur;

    bool operator==(const WebcamUniforms&) const = default;
};

/// The plate behind a caption and the mark under its spoken word.
struct RoundedRectUniforms {
    Float4 rect;
    Float4 color;
    /// Canvas width and height, corner radius, opacity.
    Float4 meta;

    bool operator==(const RoundedRectUniforms&) const = default;
};

/// A premultiplied text raster.
struct ChipUniforms {
    Float4 rect;
    /// Canvas width and height, alpha, 0.
    Float4 meta;

    bool operator==(const ChipUniforms&) const = default;
};

static_assert(sizeof(CompositeUniforms) == 6 * sizeof(Float4) && sizeof(Float4) == 16);
static_assert(sizeof(CursorUniforms) == 3 * sizeof(Float4) && sizeof(RippleUniforms) == 5 * sizeof(Float4));
static_assert(sizeof(WebcamUniforms) == 5 * sizeof(Float4));
static_assert(sizeof(RoundedRectUniforms) == 3 * sizeof(Float4) &&
              sizeof(ChipUniforms) == 2 * sizeof(Float4));

}  // namespace tessaloom
