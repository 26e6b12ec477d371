// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/FrameComposer.h"

#include <algorithm>
#include <array>

#include "core/Color.h"
#include "render/BubbleRect.h"

namespace tessaloom {
namespace {

// Everything about one moment that several parts of the frame need.
struct Moment {
    double time = 0;
    Float4 canvas;
    ContentGeometry content;
    /// What is shown of the recording: the zoom inside the crop.
    RelativeRect shown;
    /// Canvas pixels per captured point, with the zoom.
    double scale = 0;

    Float4 meta(float w) const { return {canvas.x, canvas.y, content.cornerRadius, w}; }

    /// Where a place in the recording lands on the canvas; nothing when it isn't shown.
    std::optional<Point> onCanvas(RelativePoint point) const {
        if (!(shown.width > 0 && shown.height > 0)) return std::nullopt;
        const double x = (point.x - shown.x) / shown.width;
        const double y = (point.y - shown.y) / shown.height;
        if (!(x >= 0 && x <= 1 && y >= 0 && y <= 1)) return std::nullopt;
        return Point{content.rect.x + content.rect.width * x, content.rect.y + content.rect.height * y};
    }
};

RelativeRect zoomInside(const RelativeRect& crop, const RelativeRect& zoom) {
    return {crop.x + zoom.x * crop.width, crop.y + zoom.y * crop.height, zoom.width * crop.width,
            zoom.height * crop.height};
}

ContentGeometry contentOf(const FrameComposer& composer, Float4 canvas) {
    const RelativeRect& crop = composer.crop;
    const double aspect =
        crop.height > 0 ? composer.recordingAspect * crop.width / crop.height : composer.recordingAspect;
    const auto fraction = [&composer](double points) {
        return composer.capturePointWidth > 0 ? static_cast<float>(points / composer.capturePointWidth)
                                              : 0.0F;
    };
    return contentGeometry(canvas.x, canvas.y, static_cast<float>(aspect), fraction(composer.padding),
                           fraction(composer.cornerRadius));
}

Moment momentOf(const FrameComposer& composer, double time, int canvasWidth, int canvasHeight) {
    Moment moment;
    moment.time = time;
    moment.canvas = {static_cast<float>(canvasWidth), static_cast<float>(canvasHeight), 0, 0};
    moment.content = contentOf(composer, moment.canvas);
    moment.shown = zoomInside(composer.crop, composer.zoom.rect(time));
    if (moment.shown.width > 0 && composer.capturePointWidth > 0)
        moment.scale = moment.content.rect.width / moment.shown.width / composer.capturePointWidth;
    return moment;
}

Float4 colorVector(std::string_view hex) {
    const Color color = colorFromHex(hex);
    return {color.red, color.green, color.blue, color.alpha};
}

Float4 backgroundTop(const Background& background) {
    const bool isColored =
        background.style == Background::Style::color || background.style == Background::Style::gradient;
    return isColored ? colorVector(background.primary) : Float4{};
}

Float4 backgroundBottom(const Background& background) {
    if (background.style == Background::Style::gradient && background.secondary)
        return colorVector(*background.secondary);
    return backgroundTop(background);
}

CompositeUniforms compositeUniforms(const FrameComposer& composer, const Moment& moment) {
    const Float4 content = toFloat4(moment.content.rect);
    const RelativeRect& shown = moment.shown;
    return {{moment.canvas.x, moment.canvas.y, content.x, content.y},
            {content.z, content.w, static_cast<float>(shown.x), static_cast<float>(shown.y)},
            {static_cast<float>(shown.width), static_cast<float>(shown.height), moment.content.cornerRadius,
             static_cast<float>(composer.background.style)},
            backgroundTop(composer.background),
            backgroundBottom(composer.background),
            {static_cast<float>(composer.shadow), static_cast<float>(composer.backgroundBlur), 0, 0}};
}

// Full up to 2 s of rest, gone at 2.5 s. A click wakes a pointer that didn't move.
double cursorOpacity(const FrameComposer& composer, double time) {
    if (!composer.cursorHideIdle) return 1;
    double idle = composer.cursorTrack.idleSeconds(time, 0.004, 4.0);
    if (const auto sinceClick = composer.clicks.secondsSinceClick(time)) idle = std::min(idle, *sinceClick);
    return 1 - std::clamp((idle - 2.0) * 2.0, 0.0, 1.0);
}

std::optional<CursorUniforms> cursorUniforms(const FrameComposer& composer, const Moment& moment) {
    if (!composer.cursorVisible) return std::nullopt;
    const auto place = composer.cursorTrack.position(moment.time);
    const auto tip = place ? moment.onCanvas(*place) : std::nullopt;
    if (!tip) return std::nullopt;
    const double opacity = cursorOpacity(composer, moment.time);
    if (opacity < 0.01) return std::nullopt;
    const double bounce = composer.cursorBounce ? composer.clicks.bounce(moment.time) : 1;
    const double size = composer.cursorScale * bounce * moment.scale;
    const Rect rect{tip->x - size * composer.cursorHotspot.x, tip->y - size * composer.cursorHotspot.y,
                    size * composer.cursorImageSize.width, size * composer.cursorImageSize.height};
    return CursorUniforms{toFloat4(rect), moment.meta(static_cast<float>(opacity)),
                          toFloat4(moment.content.rect)};
}

std::vector<RippleUniforms> rippleUniforms(const ClickEffects& clicks, const Moment& moment) {
    constexpr double radiusInPoints = 44;
    std::vector<RippleUniforms> uniforms;
    const double radius = radiusInPoints * moment.scale;
    for (const ClickEffects::Ripple& ripple : clicks.ripples(moment.time)) {
        const auto tip = moment.onCanvas(ripple.point);
        if (!tip) continue;
        uniforms.push_back({toFloat4({tip->x - radius, tip->y - radius, 2 * radius, 2 * radius}),
                            {static_cast<float>(ripple.progress), 0, 0, 0},
                            {1, 1, 1, 0.55F},
                            moment.meta(0),
                            toFloat4(moment.content.rect)});
    }
    return uniforms;
}

std::optional<WebcamUniforms> webcamUniforms(const std::optional<WebcamConfig>& config, Float4 canvas,
                                             float fade) {
    constexpr std::array<float, 3> cornerFactors{0.5F, 0.31F, 0.16F};
    if (!config || !config->enabled || fade <= 0.004F) return std::nullopt;
    const float pop = 0.94F + 0.06F * fade;
    const float base = bubbleBase(*config, canvas.x);
    const auto shape = static_cast<std::size_t>(config->shape);
    const Color border = colorFromHex(config->borderColor);
    return WebcamUniforms{
        toFloat4(bubbleRect(*config, canvas.x, canvas.y, pop)),
        {static_cast<float>(shape), pop * base * cornerFactors[shape], config->mirrored ? 1.0F : 0.0F,
         std::max(base * 0.08F, 6.0F)},
        {canvas.x, canvas.y, fade, 0.45F},
        {border.red, border.green, border.blue, base * static_cast<float>(config->borderWidth) * pop},
        {std::clamp(static_cast<float>(config->blur), 0.0F, 1.0F), 0, 0, 0}};
}

std::optional<CaptionChip> captionChip(const CaptionTrack& captions, const CaptionStyle& style, double time) {
    auto chip = captions.chip(time);
    if (!chip) return std::nullopt;
    chip->fontScale = static_cast<float>(style.fontScale);
    chip->colorHex = style.color;
    chip->bgHex = style.background;
    chip->bgAlpha = static_cast<float>(style.backgroundOpacity);
    chip->verticalPosition = static_cast<float>(style.verticalPosition);
    chip->highlight = style.highlight;
    chip->highlightHex = style.highlightColor;
    chip->plate = style.plate;
    chip->uppercase = style.uppercase;
    return chip;
}

std::optional<Rect> webcamKeepOut(const FrameComposer& composer, Float4 canvas) {
    const bool isEverShown = composer.cameraInitiallyShown || !composer.cameraTransitions.empty();
    if (!composer.webcamConfig || !composer.webcamConfig->enabled || !isEverShown) return std::nullopt;
    return bubbleRect(*composer.webcamConfig, canvas.x, canvas.y, 1.0F);
}

}  // namespace

FrameComposer::Frame FrameComposer::composeFrame(double time, int canvasWidth, int canvasHeight) const& {
    const Moment moment = momentOf(*this, time, canvasWidth, canvasHeight);
    Frame frame;
    frame.uniforms = compositeUniforms(*this, moment);
    frame.cursor = cursorUniforms(*this, moment);
    frame.ripples = rippleUniforms(clicks, moment);
    frame.webcam = webcamUniforms(webcamConfig, moment.canvas, static_cast<float>(webcamOpacity(time)));
    if (keystrokesVisible) frame.keystroke = keystrokes.chip(time);
    if (captionsVisible) frame.caption = captionChip(captions, captionStyle, time);
    frame.webcamKeepOut = webcamKeepOut(*this, moment.canvas);
    return frame;
}

double FrameComposer::webcamOpacity(double time) const {
    constexpr double halfFade = 0.15;
    double shown = cameraInitiallyShown ? 1 : 0;
    for (const double transition : cameraTransitions) {
        const double start = transition - halfFade;
        if (time < start) return shown;
        if (time <= transition + halfFade) {
            const double progress = (time - start) / (2 * halfFade);
            return shown * (1 - progress) + (1 - shown) * progress;
        }
        shown = 1 - shown;
    }
    return shown;
}

}  // namespace tessaloom
