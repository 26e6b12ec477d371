// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/ReferenceStages.h"

#include <algorithm>
#include <cmath>

#include "support/PixelAt.h"

namespace tessaloom::test {
namespace {

constexpr double hardEdgeWidth = 0.01;

struct Vec {
    double x = 0;
    double y = 0;
};

Vec operator+(Vec a, Vec b) {
    return {a.x + b.x, a.y + b.y};
}
Vec operator-(Vec a, Vec b) {
    return {a.x - b.x, a.y - b.y};
}
Vec operator*(Vec a, Vec b) {
    return {a.x * b.x, a.y * b.y};
}
Vec operator/(Vec a, Vec b) {
    return {a.x / b.x, a.y / b.y};
}
Vec operator*(Vec a, double s) {
    return {a.x * s, a.y * s};
}

double smoothstep(double e0, double e1, double x) {
    const double t = std::clamp((x - e0) / (e1 - e0), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

ReferencePixel mix(const ReferencePixel& a, const ReferencePixel& b, double t) {
    ReferencePixel result{};
    for (std::size_t i = 0; i < 4; ++i)
        result[i] = a[i] + (b[i] - a[i]) * t;
    return result;
}

double roundedBoxSDF(Vec q, double corner) {
    const double outside = std::pow(std::pow(std::max(q.x, 0.0), 4) + std::pow(std::max(q.y, 0.0), 4), 0.25);
    return outside + std::min(std::max(q.x, q.y), 0.0) - corner;
}

double boxDistance(Vec px, Vec origin, Vec size, double corner) {
    const Vec fromCentre = px - (origin + size * 0.5);
    const Vec q = Vec{std::abs(fromCentre.x), std::abs(fromCentre.y)} - (size * 0.5 - Vec{corner, corner});
    return roundedBoxSDF(q, corner);
}

double clampedTexel(double fraction, int length) {
    const double texel = fraction * length - 0.5;
    return texel > 0 ? std::min(texel, length - 1.0) : 0;
}

ReferencePixel texel(BgraView picture, double x, double y) {
    const int column = std::min(static_cast<int>(x), picture.width - 1);
    const std::uint8_t* bytes = pixelAt(picture, column, std::min(static_cast<int>(y), picture.height - 1));
    return {double(bytes[0]), double(bytes[1]), double(bytes[2]), double(bytes[3])};
}

ReferencePixel sample(BgraView picture, Vec uv) {
    const double x = clampedTexel(uv.x, picture.width);
    const double y = clampedTexel(uv.y, picture.height);
    const ReferencePixel upper = mix(texel(picture, x, y), texel(picture, x + 1, y), x - std::floor(x));
    const ReferencePixel lower =
        mix(texel(picture, x, y + 1), texel(picture, x + 1, y + 1), x - std::floor(x));
    return mix(upper, lower, y - std::floor(y));
}

Vec coverUV(Vec uv, BgraView picture, Vec res) {
    const double textureAspect = double(picture.width) / picture.height;
    const double canvasAspect = res.x / res.y;
    if (canvasAspect > textureAspect) return {uv.x, 0.5 + (uv.y - 0.5) * (textureAspect / canvasAspect)};
    return {0.5 + (uv.x - 0.5) * (canvasAspect / textureAspect), uv.y};
}

ReferencePixel blurredSample(BgraView picture, Vec uv, double radius) {
    if (radius <= 0.0001) return sample(picture, uv);
    const Vec step{radius * 0.5, radius * 0.5 * picture.width / picture.height};
    ReferencePixel sum{};
    for (int dy = -2; dy <= 2; ++dy) {
        for (int dx = -2; dx <= 2; ++dx) {
            const ReferencePixel tap = sample(picture, uv + Vec{double(dx), double(dy)} * step);
            for (std::size_t i = 0; i < 4; ++i)
                sum[i] += tap[i] / 25;
        }
    }
    return sum;
}

ReferencePixel toPixel(const Float4& color) {
    return {color.z * 255.0, color.y * 255.0, color.x * 255.0, color.w * 255.0};
}

ReferencePixel background(const CompositeUniforms& u, Vec uv, BgraView recording, BgraView wallpaper) {
    const Vec res{u.a.x, u.a.y};
    if (u.c.w > 2.5F) return blurredSample(recording, coverUV(uv, recording, res), 0.012 + u.d.y * 0.03);
    if (u.c.w > 1.5F) return blurredSample(wallpaper, coverUV(uv, wallpaper, res), u.d.y * 0.03);
    if (u.c.w > 0.5F) return mix(toPixel(u.bgTop), toPixel(u.bgBottom), uv.y);
    return toPixel(u.bgTop);
}

void castShadow(ReferencePixel& pixel, Vec px, Vec origin, Vec size, double corner, double strength) {
    if (strength <= 0.001) return;
    const double feather = std::max(8.0, std::min(size.x, size.y) * 0.06);
    const double distance = boxDistance(px, origin + Vec{0, size.y * 0.02}, size, corner);
    const double mask = 1 - smoothstep(0, feather, distance);
    for (std::size_t i = 0; i < 3; ++i)
        pixel[i] *= 1 - strength * 0.55 * mask;
}

void blendStraight(ReferencePixel& target, const ReferencePixel& color, double alpha) {
    for (std::size_t i = 0; i < 3; ++i)
        target[i] = color[i] * alpha + target[i] * (1 - alpha);
}

// Calls `draw(px, uv, pixel)` for each pixel of a quad.
template <class Draw>
void forEachPixel(ReferenceCanvas& canvas, const Float4& rect, Draw draw) {
    for (int y = 0; y < canvas.height; ++y) {
        for (int x = 0; x < canvas.width; ++x) {
            const Vec px{x + 0.5, y + 0.5};
            const Vec uv = (px - Vec{rect.x, rect.y}) / Vec{rect.z, rect.w};
            const Vec toEdge{std::min(std::abs(px.x - rect.x), std::abs(px.x - rect.x - rect.z)),
                             std::min(std::abs(px.y - rect.y), std::abs(px.y - rect.y - rect.w))};
            if (std::min(toEdge.x, toEdge.y) < hardEdgeWidth) canvas.onHardEdge[canvas.index(x, y)] = true;
            if (uv.x >= 0 && uv.x < 1 && uv.y >= 0 && uv.y < 1)
                draw(px, uv, canvas.at(x, y), canvas.index(x, y));
        }
    }
}

// Whether an overlay's pixel is cut off by the rounded content rectangle.
bool outsideContent(ReferenceCanvas& canvas, std::size_t index, Vec px, const Float4& meta,
                    const Float4& content) {
    const double distance = boxDistance(px, {content.x, content.y}, {content.z, content.w}, meta.z);
    if (std::abs(distance) < hardEdgeWidth) canvas.onHardEdge[index] = true;
    return distance > 0;
}

}  // namespace

ReferenceCanvas::ReferenceCanvas(int canvasWidth, int canvasHeight)
    : width(canvasWidth),
      height(canvasHeight),
      pixels(static_cast<std::size_t>(canvasWidth) * static_cast<std::size_t>(canvasHeight)),
      onHardEdge(pixels.size()) {}

void referenceComposite(ReferenceCanvas& canvas, const CompositeUniforms& u, BgraView recording,
                        BgraView wallpaper) {
    const Vec origin{u.a.z, u.a.w};
    const Vec size{u.b.x, u.b.y};
    for (int y = 0; y < canvas.height; ++y) {
        for (int x = 0; x < canvas.width; ++x) {
            const Vec px{x + 0.5, y + 0.5};
            ReferencePixel bg = background(u, px / Vec{u.a.x, u.a.y}, recording, wallpaper);
            castShadow(bg, px, origin, size, u.c.z, u.d.x);
            const double distance = boxDistance(px, origin, size, u.c.z);
            if (distance <= 1) {
                const Vec uv = Vec{u.b.z, u.b.w} + (px - origin) / size * Vec{u.c.x, u.c.y};
                bg = mix(bg, sample(recording, uv), smoothstep(1, -1, distance));
            }
            canvas.at(x, y) = bg;
        }
    }
}

void referenceRipple(ReferenceCanvas& canvas, const RippleUniforms& ripple) {
    const double age = ripple.params.x;
    const double thickness = 0.16;
    forEachPixel(canvas, ripple.rect, [&](Vec px, Vec uv, ReferencePixel& pixel, std::size_t index) {
        if (outsideContent(canvas, index, px, ripple.meta, ripple.content)) return;
        const double d = std::hypot(uv.x - 0.5, uv.y - 0.5) * 2;
        const double ring = smoothstep(age - thickness, age, d) - smoothstep(age, age + thickness, d);
        blendStraight(pixel, toPixel(ripple.color), ring * (1 - age) * ripple.color.w);
    });
}

void referenceCursor(ReferenceCanvas& canvas, const CursorUniforms& cursor, BgraView image) {
    forEachPixel(canvas, cursor.rect, [&](Vec px, Vec uv, ReferencePixel& pixel, std::size_t index) {
        if (outsideContent(canvas, index, px, cursor.meta, cursor.content)) return;
        ReferencePixel color = sample(image, uv);
        const double alpha = color[3] / 255;
        for (std::size_t i = 0; i < 3; ++i)
            color[i] = alpha > 0 ? color[i] / alpha : color[i];
        blendStraight(pixel, color, alpha * std::clamp(double(cursor.meta.w), 0.0, 1.0));
    });
}

void referenceWebcam(ReferenceCanvas& canvas, const WebcamUniforms& webcam, BgraView camera, BgraView matte,
                     BgraView blurred) {
    const Vec origin{webcam.rect.x, webcam.rect.y};
    const Vec size{webcam.rect.z, webcam.rect.w};
    const double shortHalf = std::min(size.x, size.y) * 0.5;
    const double margin = webcam.params.w;
    const double borderPx = webcam.border.w;
    const Float4 quad{webcam.rect.x - webcam.params.w, webcam.rect.y - webcam.params.w,
                      webcam.rect.z + 2 * webcam.params.w, webcam.rect.w + 2 * webcam.params.w};
    forEachPixel(canvas, quad, [&](Vec px, Vec, ReferencePixel& pixel, std::size_t) {
        const Vec fromCentre = px - (origin + size * 0.5);
        const double dist =
            webcam.params.x < 0.5F
                ? std::hypot(fromCentre.x, fromCentre.y) - shortHalf
                : boxDistance(px, origin, size, webcam.params.x < 1.5F ? shortHalf : webcam.params.y);
        Vec cuv = coverUV((px - origin) / size, camera, size);
        if (webcam.params.z > 0.5F) cuv.x = 1 - cuv.x;
        ReferencePixel cam = sample(camera, cuv);
        if (webcam.blur.x > 0.001F) cam = mix(sample(blurred, cuv), cam, sample(matte, cuv)[2] / 255);
        const double fill = smoothstep(1, -1, dist);
        const double ring =
            borderPx > 0.5 ? smoothstep(-borderPx - 1, -borderPx, dist) * (1 - smoothstep(-1, 0, dist)) : 0;
        ReferencePixel color = mix(cam, toPixel(webcam.border), ring);
        const double shadow = (1 - fill) * (1 - smoothstep(0, margin, dist)) * webcam.meta.w;
        const double alpha = fill + shadow * (1 - fill);
        for (double& channel : color)
            channel = channel * fill / std::max(alpha, 0.0001);
        blendStraight(pixel, color, alpha * std::clamp(double(webcam.meta.z), 0.0, 1.0));
    });
}

void referenceRoundedRect(ReferenceCanvas& canvas, const RoundedRectUniforms& box) {
    const Vec size{box.rect.z, box.rect.w};
    const double radius = std::min(double(box.meta.z), std::min(size.x, size.y) * 0.5);
    forEachPixel(canvas, box.rect, [&](Vec px, Vec, ReferencePixel& pixel, std::size_t) {
        const double fill = smoothstep(1, -1, boxDistance(px, {box.rect.x, box.rect.y}, size, radius));
        blendStraight(pixel, toPixel(box.color), box.color.w * fill * box.meta.w);
    });
}

void referenceChip(ReferenceCanvas& canvas, const ChipUniforms& chip, BgraView raster) {
    forEachPixel(canvas, chip.rect, [&](Vec, Vec uv, ReferencePixel& pixel, std::size_t) {
        const ReferencePixel color = sample(raster, uv);
        const double alpha = color[3] / 255 * chip.meta.z;
        for (std::size_t i = 0; i < 3; ++i)
            pixel[i] = color[i] * chip.meta.z + pixel[i] * (1 - alpha);
    });
}

}  // namespace tessaloom::test
