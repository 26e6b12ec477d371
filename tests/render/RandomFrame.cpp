// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/RandomFrame.h"

#include <algorithm>
#include <array>

#include "support/PixelAt.h"

namespace tessaloom::test {
namespace {

Float4 randomColor(Chance& chance) {
    return {chance.between(0, 1), chance.between(0, 1), chance.between(0, 1), 1};
}

void setPixel(BgraImage& picture, int x, int y, const Float4& color) {
    std::uint8_t* pixel = pixelAt(picture, x, y);
    pixel[0] = static_cast<std::uint8_t>(color.z * 255);
    pixel[1] = static_cast<std::uint8_t>(color.y * 255);
    pixel[2] = static_cast<std::uint8_t>(color.x * 255);
    pixel[3] = 255;
}

// A quad of about `size` pixels somewhere on or just off the canvas.
Float4 randomQuad(Chance& chance, const CompositeUniforms& composite, float size) {
    return {chance.between(-size, composite.a.x), chance.between(-size, composite.a.y), size,
            size * chance.between(0.5F, 1.5F)};
}

Float4 contentRect(const CompositeUniforms& composite) {
    return {composite.a.z, composite.a.w, composite.b.x, composite.b.y};
}

Float4 overlayMeta(const CompositeUniforms& composite, float last) {
    return {composite.a.x, composite.a.y, composite.c.z, last};
}

}  // namespace

BgraImage randomPicture(Chance& chance, int width, int height) {
    BgraImage picture(width, height);
    const Float4 left = randomColor(chance);
    const Float4 right = randomColor(chance);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool noise = y > height / 2;
            setPixel(picture, x, y, noise ? randomColor(chance) : (x < width / 2 ? left : right));
        }
    }
    return picture;
}

CompositeUniforms randomComposite(Chance& chance, int width, int height, float style) {
    const auto canvasWidth = static_cast<float>(width);
    const auto canvasHeight = static_cast<float>(height);
    CompositeUniforms u;
    const float contentWidth = chance.oneIn(10) ? 0 : canvasWidth * chance.between(0.1F, 1.3F);
    const float contentHeight = chance.oneIn(10) ? 0 : canvasHeight * chance.between(0.1F, 1.3F);
    u.a = {canvasWidth, canvasHeight, (canvasWidth - contentWidth) * 0.5F,
           (canvasHeight - contentHeight) * 0.5F};
    u.b = {contentWidth, contentHeight, chance.between(-0.2F, 0.6F), chance.between(-0.2F, 0.6F)};
    const float cropSize = chance.oneIn(4) ? chance.between(0.001F, 0.02F) : chance.between(0.1F, 1.2F);
    const float halfSide = std::min(contentWidth, contentHeight) * 0.5F;
    const float corner = chance.oneIn(3) ? 0 : (chance.oneIn(3) ? halfSide : chance.between(0, halfSide));
    u.c = {cropSize, cropSize * chance.between(0.7F, 1.3F), corner, style};
    u.bgTop = randomColor(chance);
    u.bgBottom = randomColor(chance);
    u.d = {chance.oneIn(4) ? 0 : chance.between(0, 1), chance.oneIn(3) ? 0 : chance.between(0, 1), 0, 0};
    return u;
}

CursorUniforms randomCursor(Chance& chance, const CompositeUniforms& composite) {
    return {randomQuad(chance, composite, chance.between(1, 150)),
            overlayMeta(composite, chance.oneIn(2) ? 1 : chance.between(-0.2F, 1.2F)),
            contentRect(composite)};
}

RippleUniforms randomRipple(Chance& chance, const CompositeUniforms& composite) {
    return {randomQuad(chance, composite, chance.between(1, 200)),
            {chance.between(0, 1), 0, 0, 0},
            {1, 1, 1, 0.55F},
            overlayMeta(composite, 0),
            contentRect(composite)};
}

WebcamUniforms randomWebcam(Chance& chance, int width, int height) {
    const auto canvasWidth = static_cast<float>(width);
    const auto canvasHeight = static_cast<float>(height);
    const float side = chance.oneIn(6) ? chance.between(0.5F, 4) : canvasWidth * chance.between(0.05F, 1.5F);
    const float high = side * chance.between(0.5F, 1.2F);
    const std::array<float, 6> borders{0, 0.5F, 0.51F, 1.5F, 6, 40};
    WebcamUniforms webcam;
    webcam.rect = {chance.between(-0.6F, 1) * canvasWidth, chance.between(-0.6F, 1) * canvasHeight, side,
                   high};
    webcam.params = {static_cast<float>(chance.whole(0, 2)), std::min(side, high) * chance.between(0, 0.5F),
                     static_cast<float>(chance.whole(0, 1)), chance.between(0.5F, 30)};
    webcam.meta = {canvasWidth, canvasHeight, chance.oneIn(2) ? 1 : chance.between(-0.1F, 1.1F), 0.45F};
    webcam.border = randomColor(chance);
    webcam.border.w = borders[static_cast<std::size_t>(chance.whole(0, 5))];
    webcam.blur.x = chance.oneIn(3) ? 0 : chance.between(0, 1);
    return webcam;
}

RoundedRectUniforms randomRoundedRect(Chance& chance, int width, int height) {
    const auto canvasWidth = static_cast<float>(width);
    const auto canvasHeight = static_cast<float>(height);
    RoundedRectUniforms rounded;
    rounded.rect = {chance.between(-0.5F, 1) * canvasWidth, chance.between(-0.5F, 1) * canvasHeight,
                    chance.between(0.2F, 1.5F * canvasWidth), chance.between(0.2F, 1.5F * canvasHeight)};
    rounded.color = randomColor(chance);
    rounded.color.w = chance.oneIn(2) ? 1 : chance.between(0, 1);
    rounded.meta = {canvasWidth, canvasHeight, chance.oneIn(3) ? 1000 : chance.between(0, 60),
                    chance.oneIn(2) ? 1 : chance.between(0, 1)};
    return rounded;
}

}  // namespace tessaloom::test
