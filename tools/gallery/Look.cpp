// SPDX-License-Identifier: GPL-3.0-or-later
#include "gallery/Look.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "core/CaptionPreset.h"
#include "core/GradientPreset.h"
#include "gallery/ScreenPicture.h"

namespace tessaloom::gallery {
namespace {

// The recording's course in source seconds.
constexpr double arrives = 1.5;
constexpr double clicks = 2.0;
constexpr double pressesKey = 5.0;
constexpr double speaks = 6.0;
constexpr double ends = 10.0;

// Moments to look at.
constexpr double pointerRests = 1.9;
constexpr double rippleSpreads = clicks + 0.16;
constexpr double pointerFades = clicks + 2.25;
constexpr double labelShows = pressesKey + 0.5;
constexpr double thirdWord = speaks + 1.25;

constexpr RelativePoint pathStart{0.36, 0.78};

Background gradient(const char* id) {
    const auto preset =
        std::ranges::find(gradientPresets, std::string_view(id), [](const auto& each) { return each.id; });
    return {Background::Style::gradient, std::string(preset->from), std::string(preset->to)};
}

/// What every look begins with.
EditParams plainEdit() {
    EditParams edit;
    edit.background = gradient("Indigo");
    edit.padding = 56;
    edit.cornerRadius = 14;
    edit.shadow = 0.6;
    return edit;
}

RelativeRect aroundSave(double size) {
    const RelativePoint save = saveButton();
    return {std::clamp(save.x - size / 2, 0.0, 1 - size), std::clamp(save.y - size / 2, 0.0, 1 - size), size,
            size};
}

/// Where the form is.
constexpr RelativeRect form{0.48, 0.28, 0.52, 0.52};

EditParams zoomedIn(const RelativeRect& target) {
    EditParams edit = plainEdit();
    edit.zoomKeyframes = {
        {.startPTS = 0.5, .endPTS = ends, .targetRect = target, .easeIn = 0.4, .easeOut = 0.4}};
    return edit;
}

Look backdrop(std::string name, const Background& background, double blur = 0) {
    EditParams edit = plainEdit();
    edit.background = background;
    edit.backgroundBlur = blur;
    edit.padding = 88;
    return {std::move(name), edit, pointerRests};
}

std::vector<Look> backdrops() {
    const Background wallpaper{Background::Style::wallpaper, wallpaperFile, {}};
    return {backdrop("backdrop-solid", {Background::Style::color, "#2F5D62", {}}),
            backdrop("backdrop-gradient", gradient("Sunset")), backdrop("backdrop-wallpaper", wallpaper),
            backdrop("backdrop-wallpaper-blurred", wallpaper, 0.8),
            backdrop("backdrop-recording", {Background::Style::blurredScreen, "", {}})};
}

std::vector<Look> framings() {
    Look plain{"plain", plainEdit(), pointerRests};
    plain.edit.padding = plain.edit.cornerRadius = plain.edit.shadow = 0;
    Look framed{"frame", plainEdit(), pointerRests};
    framed.edit.background = gradient("Ocean");
    framed.edit.padding = 130;
    framed.edit.cornerRadius = 44;
    framed.edit.shadow = 1;
    Look cropped{"crop", plainEdit(), pointerRests};
    cropped.edit.crop = {0.48, 0.12, 0.52, 0.72};
    Look square{"canvas-square", plainEdit(), pointerRests, 1};
    square.edit.background = gradient("Forest");
    Look zoomed{"zoom", zoomedIn(form), pointerRests};
    return {plain, framed, cropped, zoomed, square};
}

std::vector<Look> pointers() {
    std::vector<Look> looks;
    for (const auto style :
         {CursorStyle::system, CursorStyle::hand, CursorStyle::large, CursorStyle::dot, CursorStyle::ring}) {
        Look look{"cursor-" + std::string(rawString(style)), zoomedIn(aroundSave(0.25)), pointerRests};
        look.edit.cursorStyle = style;
        looks.push_back(look);
    }
    looks.push_back({"cursor-idle", zoomedIn(aroundSave(0.25)), pointerFades});
    looks.push_back({"click", zoomedIn(aroundSave(0.25)), rippleSpreads});
    return looks;
}

Look camera(std::string name, WebcamConfig::Shape shape, double size) {
    Look look{std::move(name), plainEdit(), pointerRests};
    look.edit.webcam = {.enabled = true, .shape = shape, .relativeSize = size};
    return look;
}

std::vector<Look> cameras() {
    using enum WebcamConfig::Shape;
    Look bordered = camera("camera-border", circle, 0.27);
    bordered.edit.webcam.borderWidth = 0.03;
    Look mirrored = camera("camera-mirrored", rectangle, 0.34);
    mirrored.edit.webcam.mirrored = true;
    Look blurred = camera("camera-blurred", rectangle, 0.34);
    blurred.edit.webcam.blur = 0.6;
    return {camera("camera-circle", circle, 0.27),
            camera("camera-pill", pill, 0.34),
            camera("camera-rectangle", rectangle, 0.34),
            bordered,
            mirrored,
            blurred};
}

Caption spokenLine() {
    constexpr double wordSeconds = 0.5;
    Caption caption{speaks, speaks + 3, "One click saves the visit", {}};
    for (int index = 0; const auto word = caption.word(index); ++index) {
        const double start = speaks + wordSeconds * index;
        caption.words.push_back({std::string(*word), start, start + wordSeconds});
    }
    return caption;
}

void showCaption(EditParams& edit, CaptionPreset preset) {
    edit.captions = {spokenLine()};
    edit.showCaptions = true;
    edit.captionStyle = captionStyle(preset, edit.captionStyle);
}

std::vector<Look> captions() {
    static constexpr std::array presets{std::pair{"caption-plate", CaptionPreset::classic},
                                        std::pair{"caption-underline", CaptionPreset::minimal},
                                        std::pair{"caption-word", CaptionPreset::karaoke},
                                        std::pair{"caption-capitals", CaptionPreset::bold}};
    std::vector<Look> looks{{"keystroke", plainEdit(), labelShows}};
    for (const auto& [name, preset] : presets) {
        looks.push_back({name, plainEdit(), thirdWord});
        showCaption(looks.back().edit, preset);
    }
    return looks;
}

std::vector<Look> captionsWithCamera() {
    Look aside = camera("caption-aside", WebcamConfig::Shape::circle, 0.27);
    showCaption(aside.edit, CaptionPreset::karaoke);
    aside.time = thirdWord;
    Look vertical = camera("canvas-vertical", WebcamConfig::Shape::circle, 0.5);
    vertical.edit.background = {Background::Style::blurredScreen, "", {}};
    vertical.edit.padding = 48;
    vertical.edit.webcam.position = {0.5, 0.85};
    showCaption(vertical.edit, CaptionPreset::karaoke);
    vertical.time = thirdWord;
    vertical.aspect = 9.0 / 16;
    return {aside, vertical};
}

}  // namespace

CanvasExtent canvasOf(const Look& look, int longSide) {
    const auto shortened = [longSide](double factor) {
        return static_cast<int>(std::lround(longSide * factor));
    };
    return look.aspect < 1 ? CanvasExtent{shortened(look.aspect), longSide}
                           : CanvasExtent{longSide, shortened(1 / look.aspect)};
}

EventLog sampleLog() {
    constexpr double samplesPerSecond = 120;
    const RelativePoint save = saveButton();
    EventLog log;
    log.captureRect = capturedArea;
    for (int n = 0; n <= ends * samplesPerSecond; ++n) {
        const double time = n / samplesPerSecond;
        const double t = std::min(time / arrives, 1.0);
        const double way = t * t * (3 - 2 * t);
        log.cursorSamples.push_back(
            {time, pathStart.x + way * (save.x - pathStart.x), pathStart.y + way * (save.y - pathStart.y)});
    }
    log.events = {{clicks, InputEvent::EventType::leftClick, save, {}},
                  {pressesKey, InputEvent::EventType::keyDown, {}, "⌃S"}};
    return log;
}

std::vector<Look> allLooks() {
    std::vector<Look> looks;
    for (const auto& group :
         {backdrops(), framings(), pointers(), cameras(), captions(), captionsWithCamera()})
        looks.insert(looks.end(), group.begin(), group.end());
    return looks;
}

}  // namespace tessaloom::gallery
