// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/ReferenceStages.h"

#include <algorithm>
#include <cmath>
#include <numeric>

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

void referenceWebcam(ReferenceCanvas& canvas, const WebcamUniforms& webcam, const ReferenceCamera& pictures) {
    const Vec origin{webcam.rect.x, webcam.rect.y};
    const Vec size{webcam.rect.z, webcam.rect.w};
    const Float4& params = webcam.params;
    const double margin = params.w;
    const double half = std::min(size.x, size.y) * 0.5;
    const Float4 quad{webcam.rect.x - params.w, webcam.rect.y - params.w, webcam.rect.z + 2 * params.w,
                      webcam.rect.w + 2 * params.w};
    forEachPixel(canvas, quad, [&](Vec px, Vec, ReferencePixel& pixel, std::size_t) {
        const Vec fromCentre = px - (origin + size * 0.5);
        double dist = std::hypot(fromCentre.x, fromCentre.y) - half;
        if (params.x >= 0.5F) dist = boxDistance(px, origin, size, params.x < 1.5F ? half : params.y);
        Vec uv = coverUV((px - origin) / size, pictures.camera, size);
        if (params.z > 0.5F) uv.x = 1 - uv.x;
        ReferencePixel color = sample(pictures.camera, uv);
        if (webcam.blur.x > 0.001F && !pictures.matte.empty()) {
            color = mix(sample(pictures.blurred, uv), color, sample(pictures.matte, uv)[2] / 255);
        }
        const double fill = smoothstep(1, -1, dist);
        const double border = webcam.border.w;
        double ring = 0;
        if (border > 0.5) ring = smoothstep(-border - 1, -border, dist) * (1 - smoothstep(-1, 0, dist));
        color = mix(color, toPixel(webcam.border), ring);
        const double shadow = (1 - fill) * (1 - smoothstep(0, margin, dist)) * webcam.meta.w;
        const double alpha = fill + shadow * (1 - fill);
        for (double& channel : color)
            channel = channel * fill / std::max(alpha, 0.0001);
        blendStraight(pixel, color, alpha * std::clamp(double(webcam.meta.z), 0.0, 1.0));
    });
}

void referenceRoundedRect(ReferenceCanvas& canvas, const RoundedRectUniforms& rounded) {
    const Float4& rect = rounded.rect;
    const double radius = std::min<double>(rounded.meta.z, std::min(rect.z, rect.w) * 0.5);
    forEachPixel(canvas, rect, [&](Vec px, Vec, ReferencePixel& pixel, std::size_t) {
        const double fill = smoothstep(1, -1, boxDistance(px, {rect.x, rect.y}, {rect.z, rect.w}, radius));
        blendStraight(pixel, toPixel(rounded.color), rounded.color.w * fill * rounded.meta.w);
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

BgraImage referenceBlur(BgraView picture, double sigma) {
    const int radius = static_cast<int>(std::ceil(5 * sigma));
    std::vector<double> weights;
    for (int tap = -radius; tap <= radius; ++tap)
        weights.push_back(std::exp(-tap * tap / (2 * sigma * sigma)));
    const double sum = std::accumulate(weights.begin(), weights.end(), 0.0);
    // The mean of the pixels of `source` around (x, y) along an axis.
    const auto blurredAt = [&](const ReferenceCanvas& source, int x, int y, int dx, int dy) {
        ReferencePixel mean{};
        for (int tap = -radius; tap <= radius; ++tap) {
            const ReferencePixel& pixel = source.at(std::clamp(x + tap * dx, 0, source.width - 1),
                                                    std::clamp(y + tap * dy, 0, source.height - 1));
            for (std::size_t i = 0; i < 4; ++i)
                mean[i] += pixel[i] * weights[static_cast<std::size_t>(tap + radius)] / sum;
        }
        return mean;
    };
    ReferenceCanvas sharp(picture.width, picture.height);
    ReferenceCanvas across(picture.width, picture.height);
    BgraImage result(picture.width, picture.height);
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            sharp.at(x, y) = texel(picture, x, y);
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            across.at(x, y) = blurredAt(sharp, x, y, 1, 0);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const ReferencePixel pixel = blurredAt(across, x, y, 0, 1);
            for (std::size_t i = 0; i < 4; ++i)
                pixelAt(result, x, y)[i] = static_cast<std::uint8_t>(std::lround(pixel[i]));
        }
    }
    return result;
}

}  // namespace tessaloom::test
