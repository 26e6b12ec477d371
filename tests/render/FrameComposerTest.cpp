// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/FrameComposer.h"

#include <gtest/gtest.h>

#include <limits>

#include "core/Color.h"
#include "render/BubbleRect.h"
#include "support/AllocationCounter.h"

namespace tessaloom {
namespace {

using EventType = InputEvent::EventType;
using Frame = FrameComposer::Frame;

constexpr int width = 1600;
constexpr int height = 900;

InputEvent click(double pts, double x, double y) {
    return {pts, EventType::leftClick, RelativePoint{x, y}, std::nullopt};
}

CursorTrack restingAt(double x, double y) {
    return CursorTrack({{0, x, y}, {100, x, y}});
}

// Fills a canvas of 1600 x 900 exactly, two canvas pixels per captured point.
FrameComposer plain() {
    FrameComposer composer;
    composer.recordingAspect = 16.0 / 9.0;
    composer.capturePointWidth = 800;
    composer.cursorImageSize = {24, 32};
    composer.cursorHotspot = {4, 6};
    composer.cursorHideIdle = false;
    return composer;
}

FrameComposer zoomedTo(const RelativeRect& target) {
    FrameComposer composer = plain();
    composer.zoom = ZoomTimeline({{Uuid::random(), -1, 1000, target, 0, 0}}, 1000);
    return composer;
}

FrameComposer withBubble() {
    FrameComposer composer = plain();
    composer.webcamConfig = WebcamConfig{};
    composer.webcamConfig->enabled = true;
    return composer;
}

void expectNear(const Float4& actual, const Float4& expected, float tolerance = 1e-3F) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
    EXPECT_NEAR(actual.w, expected.w, tolerance);
}

TEST(FrameComposer, ThePlainFrameIsTheRecordingOnItsColour) {
    FrameComposer composer = plain();
    composer.background.primary = "#FF0000";
    composer.shadow = 0.25;
    composer.backgroundBlur = 0.5;
    const Frame frame = composer.composeFrame(1, width, height);
    EXPECT_EQ(frame.uniforms.a, (Float4{1600, 900, 0, 0}));
    EXPECT_EQ(frame.uniforms.b, (Float4{1600, 900, 0, 0}));
    EXPECT_EQ(frame.uniforms.c, (Float4{1, 1, 0, 0}));
    EXPECT_EQ(frame.uniforms.bgTop, (Float4{1, 0, 0, 1}));
    EXPECT_EQ(frame.uniforms.bgBottom, (Float4{1, 0, 0, 1}));
    EXPECT_EQ(frame.uniforms.d, (Float4{0.25, 0.5, 0, 0}));
    EXPECT_FALSE(frame.cursor || frame.webcam || frame.keystroke || frame.caption || frame.webcamKeepOut);
    EXPECT_TRUE(frame.ripples.empty());
}

TEST(FrameComposer, PaddingAndCornersScaleWithTheCanvas) {
    FrameComposer composer = plain();
    composer.padding = 40;
    composer.cornerRadius = 12;
    const Frame frame = composer.composeFrame(0, width, height);
    expectNear(frame.uniforms.a, {1600, 900, 142.2222F, 80});
    expectNear(frame.uniforms.b, {1315.5556F, 740, 0, 0});
    EXPECT_NEAR(frame.uniforms.c.z, 24, 1e-3);
    const Frame square = composer.composeFrame(0, 800, 800);
    expectNear(square.uniforms.a, {800, 800, 40, 197.5F});
    expectNear(square.uniforms.b, {720, 405, 0, 0});
}

TEST(FrameComposer, WithoutACaptureWidthThereIsNoPaddingAndNoCorner) {
    FrameComposer composer = plain();
    composer.capturePointWidth = 0;
    composer.padding = 40;
    composer.cornerRadius = 12;
    composer.cursorTrack = restingAt(0.5, 0.5);
    const std::vector<InputEvent> events{click(0, 0.5, 0.5)};
    composer.clicks = ClickEffects(events);
    const Frame frame = composer.composeFrame(0, width, height);
    EXPECT_EQ(frame.uniforms.b, (Float4{1600, 900, 0, 0}));
    EXPECT_EQ(frame.uniforms.c.z, 0);
    EXPECT_EQ(frame.cursor.value().rect, (Float4{800, 450, 0, 0})) << "no size rather than an endless one";
    EXPECT_EQ(frame.ripples.at(0).rect, (Float4{800, 450, 0, 0}));
}

TEST(FrameComposer, EachBackgroundStyleHasItsColours) {
    const Color charcoal = colorFromHex("");
    const Float4 charcoalVector{charcoal.red, charcoal.green, charcoal.blue, 1};
    const Float4 red{1, 0, 0, 1};
    const Float4 blue{0, 0, 1, 1};
    using Style = Background::Style;
    struct Case {
        Background background;
        float style;
        Float4 top;
        Float4 bottom;
    };
    const Case cases[] = {
        {{Style::color, "#FF0000", "#0000FF"}, 0, red, red},
        {{Style::gradient, "#FF0000", "#0000FF"}, 1, red, blue},
        {{Style::gradient, "#FF0000", std::nullopt}, 1, red, red},
        {{Style::gradient, "#FF0000", "x"}, 1, red, charcoalVector},
        {{Style::wallpaper, "wallpaper-1.png", std::nullopt}, 2, {}, {}},
        {{Style::blurredScreen, "#FF0000", "#0000FF"}, 3, {}, {}},
    };
    for (const Case& each : cases) {
        FrameComposer composer = plain();
        composer.background = each.background;
        const Frame frame = composer.composeFrame(0, width, height);
        EXPECT_EQ(frame.uniforms.c.w, each.style);
        EXPECT_EQ(frame.uniforms.bgTop, each.top) << each.style;
        EXPECT_EQ(frame.uniforms.bgBottom, each.bottom) << each.style;
    }
}

TEST(FrameComposer, TheZoomLiesInsideTheCrop) {
    FrameComposer composer = zoomedTo({0.5, 0.25, 0.5, 0.5});
    composer.crop = {0.2, 0.4, 0.5, 0.5};
    const Frame frame = composer.composeFrame(5, width, height);
    expectNear(frame.uniforms.b, {1600, 900, 0.45F, 0.525F}, 1e-5F);
    expectNear(frame.uniforms.c, {0.25F, 0.25F, 0, 0}, 1e-5F);
}

TEST(FrameComposer, TheCropShapesTheContentAndTheZoomDoesNot) {
    FrameComposer composer = zoomedTo({0, 0, 0.5, 0.25});
    composer.crop = {0, 0, 0.5, 1};
    expectNear(composer.composeFrame(5, width, height).uniforms.b, {800, 900, 0, 0});
    composer.crop = {0, 0, 0.5, 0};
    expectNear(composer.composeFrame(5, width, height).uniforms.b, {1600, 900, 0, 0});
}

TEST(FrameComposer, ThePointersTipIsOnItsPlaceAndItsSizeFollowsTheZoom) {
    FrameComposer composer = plain();
    composer.cursorTrack = restingAt(0.75, 0.5);
    EXPECT_EQ(composer.composeFrame(1, width, height).cursor.value().rect, (Float4{1192, 438, 48, 64}));
    composer.zoom = zoomedTo({0.5, 0.25, 0.5, 0.5}).zoom;
    expectNear(composer.composeFrame(5, width, height).cursor.value().rect, {784, 426, 96, 128}, 0.01F);
    composer.cursorScale = 2;
    expectNear(composer.composeFrame(5, width, height).cursor.value().rect, {768, 402, 192, 256}, 0.01F);
}

TEST(FrameComposer, ThePointerKnowsTheContentItIsClippedTo) {
    FrameComposer composer = plain();
    composer.padding = 40;
    composer.cornerRadius = 12;
    composer.cursorTrack = restingAt(0.5, 0.5);
    const CursorUniforms cursor = composer.composeFrame(1, width, height).cursor.value();
    expectNear(cursor.meta, {1600, 900, 24, 1});
    expectNear(cursor.content, {142.2222F, 80, 1315.5556F, 740});
}

TEST(FrameComposer, ThePointerBouncesOnAClickIfAsked) {
    FrameComposer composer = plain();
    composer.cursorTrack = restingAt(0.5, 0.5);
    const std::vector<InputEvent> events{click(1, 0.5, 0.5)};
    composer.clicks = ClickEffects(events);
    EXPECT_NEAR(composer.composeFrame(1.11, width, height).cursor.value().rect.z, 48 * 1.35, 1e-3);
    composer.cursorBounce = false;
    EXPECT_NEAR(composer.composeFrame(1.11, width, height).cursor.value().rect.z, 48, 1e-3);
}

TEST(FrameComposer, APointerOutsideTheShownPartIsNotDrawn) {
    FrameComposer composer = plain();
    composer.crop = {0.25, 0.25, 0.5, 0.5};
    const std::pair<RelativePoint, bool> cases[] = {{{0.25, 0.75}, true},   {{0.75, 0.25}, true},
                                                    {{0.2499, 0.5}, false}, {{0.7501, 0.5}, false},
                                                    {{0.5, 0.2499}, false}, {{0.5, 0.7501}, false}};
    for (const auto& [place, isShown] : cases) {
        composer.cursorTrack = restingAt(place.x, place.y);
        EXPECT_EQ(composer.composeFrame(1, width, height).cursor.has_value(), isShown)
            << place.x << ", " << place.y;
    }
}

TEST(FrameComposer, WithoutAPathOrSwitchedOffThereIsNoPointer) {
    FrameComposer composer = plain();
    EXPECT_FALSE(composer.composeFrame(1, width, height).cursor);
    composer.cursorTrack = restingAt(0.5, 0.5);
    composer.cursorVisible = false;
    EXPECT_FALSE(composer.composeFrame(1, width, height).cursor);
}

TEST(FrameComposer, NothingIsPlacedInAnEmptyCrop) {
    for (const RelativeRect crop :
         {RelativeRect{0, 0, 0, 1}, RelativeRect{0, 0, 1, 0}, RelativeRect{0, 0, -1, 1}}) {
        FrameComposer composer = plain();
        composer.crop = crop;
        composer.cursorTrack = restingAt(0, 0);
        const std::vector<InputEvent> events{click(1, 0, 0)};
        composer.clicks = ClickEffects(events);
        const Frame frame = composer.composeFrame(1, width, height);
        EXPECT_FALSE(frame.cursor);
        EXPECT_TRUE(frame.ripples.empty());
    }
}

// The pointer moves at 10 s and then rests; rest is known in quarters of a second.
FrameComposer restingFrom10() {
    FrameComposer composer = plain();
    composer.cursorHideIdle = true;
    composer.cursorTrack = CursorTrack({{0, 0, 0}, {9.99, 0, 0}, {10, 0.5, 0.5}, {100, 0.5, 0.5}});
    return composer;
}

TEST(FrameComposer, ARestingPointerFadesAfterTwoSeconds) {
    const FrameComposer composer = restingFrom10();
    EXPECT_EQ(composer.composeFrame(12.1, width, height).cursor.value().meta.w, 1);
    EXPECT_EQ(composer.composeFrame(12.3, width, height).cursor.value().meta.w, 0.5);
    EXPECT_FALSE(composer.composeFrame(12.6, width, height).cursor);
    EXPECT_FALSE(composer.composeFrame(50, width, height).cursor);
}

TEST(FrameComposer, APointerThatNeverHidesStays) {
    FrameComposer composer = restingFrom10();
    composer.cursorHideIdle = false;
    EXPECT_EQ(composer.composeFrame(50, width, height).cursor.value().meta.w, 1);
}

TEST(FrameComposer, AClickWakesARestingPointer) {
    FrameComposer composer = restingFrom10();
    const std::vector<InputEvent> events{click(12.4, 0.5, 0.5), click(90, 0.5, 0.5)};
    composer.clicks = ClickEffects(events);
    EXPECT_EQ(composer.composeFrame(12.4, width, height).cursor.value().meta.w, 1);
    EXPECT_EQ(composer.composeFrame(14.4, width, height).cursor.value().meta.w, 1);
    EXPECT_NEAR(composer.composeFrame(14.65, width, height).cursor.value().meta.w, 0.5, 1e-5);
    EXPECT_TRUE(composer.composeFrame(14.894, width, height).cursor) << "still 0.012";
    EXPECT_FALSE(composer.composeFrame(14.896, width, height).cursor) << "0.008 is too faint to draw";
}

TEST(FrameComposer, AClickLongAgoDoesNotHideAMovingPointer) {
    FrameComposer composer = restingFrom10();
    const std::vector<InputEvent> events{click(1, 0.5, 0.5)};
    composer.clicks = ClickEffects(events);
    EXPECT_EQ(composer.composeFrame(10.1, width, height).cursor.value().meta.w, 1);
}

TEST(FrameComposer, RipplesRunWhereTheClicksWere) {
    FrameComposer composer = zoomedTo({0.5, 0.25, 0.5, 0.5});
    composer.cornerRadius = 10;
    const std::vector<InputEvent> events{click(4.875, 0.75, 0.5), click(4.9, 0.1, 0.5), click(5, 1, 0.75)};
    composer.clicks = ClickEffects(events);
    const auto ripples = composer.composeFrame(5, width, height).ripples;
    ASSERT_EQ(ripples.size(), 2U) << "the second click is outside the zoom";
    expectNear(ripples[0].rect, {800 - 176, 450 - 176, 352, 352}, 0.05F);
    EXPECT_EQ(ripples[0].params, (Float4{0.25, 0, 0, 0}));
    EXPECT_EQ(ripples[0].color, (Float4{1, 1, 1, 0.55F}));
    EXPECT_EQ(ripples[0].meta, (Float4{1600, 900, 20, 0}));
    EXPECT_EQ(ripples[0].content, (Float4{0, 0, 1600, 900}));
    expectNear(ripples[1].rect, {1600 - 176, 900 - 176, 352, 352}, 0.05F);
}

TEST(FrameComposer, TheBubbleFadesAcrossATransition) {
    FrameComposer composer = plain();
    composer.cameraTransitions = {10};
    const std::pair<double, double> cases[] = {{0, 1},    {9.85, 1},  {9.925, 0.75},
                                               {10, 0.5}, {10.15, 0}, {99, 0}};
    for (const auto& [time, opacity] : cases)
        EXPECT_NEAR(composer.webcamOpacity(time), opacity, 1e-9) << time;
    composer.cameraInitiallyShown = false;
    for (const auto& [time, opacity] : cases)
        EXPECT_NEAR(composer.webcamOpacity(time), 1 - opacity, 1e-9) << time;
}

TEST(FrameComposer, OfTransitionsThatOverlapTheFirstWins) {
    FrameComposer composer = plain();
    composer.cameraTransitions = {10, 10.1, 20};
    EXPECT_NEAR(composer.webcamOpacity(10.1), 1 - 0.25 / 0.3, 1e-9);
    EXPECT_NEAR(composer.webcamOpacity(10.2), 0.3 * 0 + (10.2 - 9.95) / 0.3, 1e-9);
    EXPECT_EQ(composer.webcamOpacity(15), 1);
    EXPECT_EQ(composer.webcamOpacity(21), 0);
}

TEST(FrameComposer, TheBubbleIsAbsentWithoutACameraOrWhileItIsOff) {
    EXPECT_FALSE(plain().webcamConfig);
    FrameComposer composer = withBubble();
    EXPECT_TRUE(composer.composeFrame(1, width, height).webcam);
    composer.cameraInitiallyShown = false;
    EXPECT_FALSE(composer.composeFrame(1, width, height).webcam);
    composer.cameraInitiallyShown = true;
    composer.webcamConfig->enabled = false;
    EXPECT_FALSE(composer.composeFrame(1, width, height).webcam);
    EXPECT_FALSE(composer.composeFrame(1, width, height).webcamKeepOut);
}

TEST(FrameComposer, TheBubbleCarriesItsWholeLook) {
    FrameComposer composer = withBubble();
    WebcamConfig& config = *composer.webcamConfig;
    config.shape = WebcamConfig::Shape::pill;
    config.relativeSize = 0.25;
    config.borderWidth = 0.02;
    config.borderColor = "#FF0000";
    config.mirrored = true;
    config.blur = 7;
    const WebcamUniforms webcam = composer.composeFrame(1, width, height).webcam.value();
    EXPECT_EQ(webcam.rect, toFloat4(bubbleRect(config, width, height, 1)));
    expectNear(webcam.params, {1, 124, 1, 32});
    expectNear(webcam.meta, {1600, 900, 1, 0.45F});
    expectNear(webcam.border, {1, 0, 0, 8});
    EXPECT_EQ(webcam.blur, (Float4{1, 0, 0, 0}));
}

TEST(FrameComposer, TheBubblePopsWhileItFades) {
    FrameComposer composer = withBubble();
    composer.cameraTransitions = {10};
    const WebcamUniforms webcam = composer.composeFrame(10, width, height).webcam.value();
    EXPECT_NEAR(webcam.meta.z, 0.5, 1e-6);
    EXPECT_NEAR(webcam.rect.z, 320 * 0.97, 1e-2);
    EXPECT_NEAR(webcam.params.y, 160 * 0.97, 1e-2);
    EXPECT_NEAR(webcam.params.w, 25.6, 1e-3) << "the shadow's margin doesn't shrink";
    EXPECT_FALSE(composer.composeFrame(10.149, width, height).webcam) << "too faint to draw";
}

TEST(FrameComposer, ABubbleBeyondTheLimitsIsTheSameInEveryPart) {
    for (const auto& [asked, drawn] : {std::pair{0.001, 0.05}, std::pair{7.0, 0.6}}) {
        FrameComposer composer = withBubble();
        composer.webcamConfig->relativeSize = drawn;
        const Frame expected = composer.composeFrame(1, width, height);
        composer.webcamConfig->relativeSize = asked;
        const Frame frame = composer.composeFrame(1, width, height);
        EXPECT_EQ(frame.webcam, expected.webcam) << asked;
        EXPECT_EQ(frame.webcamKeepOut, bubbleRect(*composer.webcamConfig, width, height, 1)) << asked;
        EXPECT_EQ(frame.webcamKeepOut, expected.webcamKeepOut) << asked;
    }
}

TEST(FrameComposer, ASmallBubbleStillHasRoomForItsShadow) {
    FrameComposer composer = withBubble();
    composer.webcamConfig->relativeSize = 0.05;
    EXPECT_EQ(composer.composeFrame(1, 800, 450).webcam.value().params.w, 6);
}

TEST(FrameComposer, CaptionsKeepOutOfTheBubblesRestingPlaceAlsoWhileItIsOff) {
    FrameComposer composer = withBubble();
    composer.cameraTransitions = {10};
    const Rect rest = bubbleRect(*composer.webcamConfig, width, height, 1);
    for (const double time : {0.0, 10.0, 20.0})
        EXPECT_EQ(composer.composeFrame(time, width, height).webcamKeepOut, rest) << time;
    composer.cameraInitiallyShown = false;
    composer.cameraTransitions.clear();
    EXPECT_FALSE(composer.composeFrame(1, width, height).webcamKeepOut) << "never on";
}

TEST(FrameComposer, KeysShowIfAsked) {
    FrameComposer composer = plain();
    const std::vector<InputEvent> events{{1, EventType::keyDown, std::nullopt, "⌃S"}};
    composer.keystrokes = KeystrokeTrack(events);
    EXPECT_EQ(composer.composeFrame(1.5, width, height).keystroke, (KeystrokeChip{"⌃S", 1}));
    composer.keystrokesVisible = false;
    EXPECT_FALSE(composer.composeFrame(1.5, width, height).keystroke);
}

TEST(FrameComposer, CaptionsTakeTheStyleOfTheEdit) {
    FrameComposer composer = plain();
    composer.captions = CaptionTrack({{1, 3, "hello", {{"hello", 1, 3}}}});
    composer.captionStyle = {1.5,       "#111111",          "#222222", 0.5, 0.25, CaptionHighlight::underline,
                             "#333333", CaptionPlate::none, true};
    EXPECT_FALSE(composer.composeFrame(2, width, height).caption);
    composer.captionsVisible = true;
    EXPECT_EQ(composer.composeFrame(2, width, height).caption,
              (CaptionChip{"hello", 1, 1.5F, "#111111", "#222222", 0.5F, 0.25F, 0,
                           CaptionHighlight::underline, "#333333", CaptionPlate::none, true}));
    EXPECT_FALSE(composer.composeFrame(5, width, height).caption);
}

TEST(FrameComposer, AnyInputGivesAFrame) {
    FrameComposer composer = withBubble();
    composer.padding = 1e9;
    const Frame frame = composer.composeFrame(-5, 0, 0);
    EXPECT_EQ(frame.uniforms.b.x, 0);
    EXPECT_EQ(composer.composeFrame(1, width, height).uniforms.b, (Float4{0, 0, 0, 0}));
    EXPECT_EQ(FrameComposer{}.webcamOpacity(std::numeric_limits<double>::infinity()), 1);
}

TEST(FrameComposer, EqualMomentsMakeEqualFrames) {
    FrameComposer composer = plain();
    composer.cursorTrack = CursorTrack({{0, 0, 0}, {10, 1, 1}});
    EXPECT_EQ(composer.composeFrame(2, width, height), composer.composeFrame(2, width, height));
    EXPECT_NE(composer.composeFrame(2, width, height), composer.composeFrame(2.1, width, height));
    EXPECT_EQ(composer.composeFrame(20, width, height), composer.composeFrame(21, width, height));
}

TEST(FrameComposer, AllocatesNothingUnlessARippleRuns) {
    FrameComposer composer = withBubble();
    const std::vector<InputEvent> events{
        click(0.2, 0.5, 0.5), click(5, 0.5, 0.5), {1, EventType::keyDown, std::nullopt, "⌃⌥⇧⌘ Backspace"}};
    composer.clicks = ClickEffects(events);
    composer.keystrokes = KeystrokeTrack(events);
    composer.cursorTrack = restingAt(0.5, 0.5);
    composer.cursorHideIdle = true;
    composer.zoom = zoomedTo({0.25, 0.25, 0.5, 0.5}).zoom;
    composer.captions = CaptionTrack({{0, 9, "a line longer than any short string optimisation", {}}});
    composer.captionsVisible = true;
    const test::AllocationCounter counter;
    const Frame still = composer.composeFrame(1.2, width, height);
    EXPECT_EQ(counter.count(), 0U);
    EXPECT_TRUE(still.keystroke && still.caption && still.cursor && still.webcam);
    const Frame rippling = composer.composeFrame(5.1, width, height);
    EXPECT_GT(counter.count(), 0U) << "the counter works";
    EXPECT_EQ(rippling.ripples.size(), 1U);
}

}  // namespace
}  // namespace tessaloom
