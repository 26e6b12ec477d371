// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/CpuRenderer.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <vector>

#include "media/ColorConversion.h"
#include "render/KeystrokeChipRaster.h"
#include "render/KeystrokePlacement.h"
#include "render/RandomFrame.h"
#include "render/ReferenceComparison.h"
#include "support/PictureFiles.h"
#include "support/PixelAt.h"
#include "support/SamePixels.h"

namespace tessaloom {
namespace {

using test::Chance;
using test::ReferenceCanvas;

constexpr std::string_view label = "⇧⌘K";

struct CanvasSize {
    int width;
    int height;
};

constexpr std::array<CanvasSize, 8> canvasSizes{
    {{1, 1}, {2, 3}, {37, 53}, {64, 64}, {101, 7}, {160, 90}, {90, 160}, {333, 187}}};

const std::vector<std::string> noThemes;

BgraImage blackPixel() {
    BgraImage pixel(1, 1);
    constexpr std::array<std::uint8_t, 4> black{0, 0, 0, 255};
    std::memcpy(pixel.row(0), black.data(), black.size());
    return pixel;
}

ReferenceCanvas referenceFrame(const FrameComposer::Frame& frame, BgraView recording, BgraView wallpaper,
                               const PictureLevels& cursor, const PictureLevels& chip, Size chipSize) {
    const Float4& a = frame.uniforms.a;
    ReferenceCanvas canvas(static_cast<int>(a.x), static_cast<int>(a.y));
    referenceComposite(canvas, frame.uniforms, recording, wallpaper);
    for (const RippleUniforms& ripple : frame.ripples)
        referenceRipple(canvas, ripple);
    if (frame.cursor) referenceCursor(canvas, *frame.cursor, cursor.forWidth(frame.cursor->rect.z));
    if (frame.keystroke) {
        const Rect place = keystrokePlacement(chipSize, a.x, a.y);
        referenceChip(canvas, {toFloat4(place), {a.x, a.y, frame.keystroke->alpha, 0}},
                      chip.forWidth(place.width));
    }
    return canvas;
}

FrameComposer::Frame randomFrame(Chance& chance, int width, int height, float style) {
    FrameComposer::Frame frame;
    frame.uniforms = randomComposite(chance, width, height, style);
    for (int count = chance.whole(0, 2); count > 0; --count) {
        frame.ripples.push_back(randomRipple(chance, frame.uniforms));
    }
    if (chance.oneIn(2)) frame.cursor = randomCursor(chance, frame.uniforms);
    if (chance.oneIn(3)) frame.keystroke = KeystrokeChip{label, chance.between(0.01F, 1)};
    return frame;
}

class CpuRendererStageTest : public ::testing::TestWithParam<int> {};

TEST_P(CpuRendererStageTest, DrawsWhatTheFormulasSay) {
    const int style = GetParam();
    Chance chance(static_cast<unsigned>(style) + 1);
    BgraImage wallpaper = blackPixel();
    CpuRenderer renderer(2, noThemes);
    if (style == 2) {
        wallpaper = test::randomPicture(chance, 45, 80);
        renderer.loadWallpaper(test::writePicture(wallpaper.view(), "wallpaper"));
    }
    const PictureLevels cursor(makeCursorImage(CursorStyle::system, noThemes).pixels);
    OverlayRaster chip = keystrokeChipRaster(label).value();
    const Size chipSize{static_cast<double>(chip.pixels.width()), static_cast<double>(chip.pixels.height())};
    const PictureLevels chipLevels(std::move(chip.pixels));
    for (int round = 0; round < 60; ++round) {
        const auto [width, height] = canvasSizes[static_cast<std::size_t>(round) % canvasSizes.size()];
        const int narrowest = round % 5 == 0 ? 1 : 40;
        const BgraImage recording =
            test::randomPicture(chance, chance.whole(narrowest, 200), chance.whole(narrowest, 120));
        const FrameComposer::Frame frame = randomFrame(chance, width, height, static_cast<float>(style));
        BgraImage target(width, height);
        renderer.render(frame, {{recording.view(), 0}}, target);
        const ReferenceCanvas expected =
            referenceFrame(frame, recording.view(), wallpaper.view(), cursor, chipLevels, chipSize);
        ASSERT_TRUE(test::matchesReference(
            target, expected, "style" + std::to_string(style) + "-round" + std::to_string(round)));
    }
}

INSTANTIATE_TEST_SUITE_P(EachBackground, CpuRendererStageTest, ::testing::Values(0, 1, 2, 3));

TEST(CpuRendererBandsTest, GiveTheSameBytesOnAnyNumberOfThreads) {
    Chance chance(7);
    const BgraImage recording = test::randomPicture(chance, 320, 200);
    CpuRenderer alone(1, noThemes);
    CpuRenderer together(4, noThemes);
    for (int round = 0; round < 20; ++round) {
        const FrameComposer::Frame frame = randomFrame(chance, 333, 187, static_cast<float>(round % 4));
        BgraImage one(333, 187);
        BgraImage four(333, 187);
        alone.render(frame, {{recording.view(), 0}}, one);
        together.render(frame, {{recording.view(), 0}}, four);
        ASSERT_TRUE(test::samePixels(one, four)) << "round " << round;
    }
}

TEST(CpuRendererYuvTest, IsTheConvertedPictureBitForBit) {
    Chance chance(13);
    const BgraImage recording = test::randomPicture(chance, 320, 200);
    CpuRenderer renderer(3, noThemes);
    CpuRenderer fresh(1, noThemes);
    for (int round = 0; round < 40; ++round) {
        const int width = 2 * chance.whole(1, 170);
        const int height = 2 * chance.whole(1, 100);
        const FrameComposer::Frame frame =
            randomFrame(chance, width, height, static_cast<float>(chance.whole(0, 3)));
        BgraImage whole(width, height);
        fresh.render(frame, {{recording.view(), 5}}, whole);
        YuvImage expected(width, height);
        bgraToYuv(whole.view(), expected, 0, 0);
        YuvImage drawn(width, height);
        renderer.render(frame, {{recording.view(), 5}}, drawn);
        ASSERT_TRUE(test::samePixels(drawn, expected)) << "round " << round;
    }
}

TEST(CpuRendererTest, KeepsNothingOfAnEarlierFrame) {
    Chance chance(11);
    const BgraImage recording = test::randomPicture(chance, 320, 200);
    CpuRenderer used(1, noThemes);
    for (int round = 0; round < 40; ++round) {
        const auto [width, height] = canvasSizes[static_cast<std::size_t>(round) % canvasSizes.size()];
        const FrameComposer::Frame frame =
            randomFrame(chance, width, height, static_cast<float>(chance.whole(0, 3)));
        BgraImage fromUsed(width, height);
        BgraImage fromFresh(width, height);
        used.render(frame, {{recording.view(), 5}}, fromUsed);
        CpuRenderer fresh(1, noThemes);
        fresh.render(frame, {{recording.view(), 5}}, fromFresh);
        ASSERT_TRUE(test::samePixels(fromUsed, fromFresh)) << "round " << round;
    }
}

TEST(CpuRendererTest, CopiesAnUnscaledRecordingExactly) {
    Chance chance(3);
    const BgraImage recording = test::randomPicture(chance, 160, 90);
    FrameComposer::Frame frame;
    // One pixel beyond the canvas on each side keeps the soft edge out of it.
    frame.uniforms.a = {158, 88, -1, -1};
    frame.uniforms.b = {160, 90, 0, 0};
    frame.uniforms.c = {1, 1, 0, 0};
    BgraImage target(158, 88);
    CpuRenderer(1, noThemes).render(frame, {{recording.view(), 0}}, target);
    for (int y = 0; y < 88; ++y) {
        ASSERT_EQ(std::memcmp(target.row(y), test::pixelAt(recording, 1, y + 1), test::bytesOf(158)), 0)
            << "row " << y;
    }
}

TEST(CpuRendererTest, RedrawsABlurredBackdropOnlyForAnotherPicture) {
    Chance chance(5);
    const BgraImage first = test::randomPicture(chance, 64, 64);
    const BgraImage second = test::randomPicture(chance, 64, 64);
    FrameComposer::Frame frame;
    frame.uniforms.a = {64, 64, 32, 32};
    frame.uniforms.c = {1, 1, 0, 3};
    CpuRenderer renderer(1, noThemes);
    BgraImage before(64, 64);
    BgraImage after(64, 64);
    renderer.render(frame, {{first.view(), 1}}, before);
    renderer.render(frame, {{second.view(), 1}}, after);
    EXPECT_EQ(std::memcmp(before.row(0), after.row(0), test::bytesOf(64)), 0) << "same identity";
    renderer.render(frame, {{second.view(), 2}}, after);
    EXPECT_NE(std::memcmp(before.row(0), after.row(0), test::bytesOf(64)), 0) << "another identity";
    renderer.render(frame, {{first.view(), 0}}, after);
    EXPECT_EQ(std::memcmp(before.row(0), after.row(0), test::bytesOf(64)), 0) << "unknown identity";
}

TEST(CpuRendererTest, DrawsAMissingRecordingBlackAndAMissingWallpaperDark) {
    FrameComposer::Frame frame;
    frame.uniforms.a = {32, 32, 8, 8};
    frame.uniforms.b = {16, 16, 0, 0};
    frame.uniforms.c = {1, 1, 0, 2};
    CpuRenderer renderer(1, noThemes);
    renderer.loadWallpaper("/nowhere/at/all.png");
    BgraImage target(32, 32);
    renderer.render(frame, {}, target);
    for (const int x : {0, 16}) {
        const std::uint8_t* pixel = test::pixelAt(target, x, 16);
        EXPECT_EQ(pixel[0] + pixel[1] + pixel[2], 0);
        EXPECT_EQ(pixel[3], 255);
    }
}

TEST(CpuRendererTest, ForgetsTheWallpaperWhenThereIsNone) {
    Chance chance(9);
    const BgraImage wallpaper = test::randomPicture(chance, 32, 32);
    const std::string file = test::writePicture(wallpaper.view(), "wallpaper-forgotten");
    FrameComposer::Frame frame;
    frame.uniforms.a = {32, 32, 16, 16};
    frame.uniforms.c = {1, 1, 0, 2};
    CpuRenderer renderer(1, noThemes);
    BgraImage target(32, 32);
    renderer.loadWallpaper(file);
    renderer.render(frame, {}, target);
    EXPECT_EQ(std::memcmp(target.row(2), wallpaper.row(2), test::bytesOf(32)), 0);
    renderer.loadWallpaper(std::nullopt);
    renderer.render(frame, {}, target);
    EXPECT_EQ(test::pixelAt(target, 3, 2)[0], 0);
}

TEST(CpuRendererTest, TellsSizeAndTipOfTheChosenCursor) {
    CpuRenderer renderer(1, noThemes);
    EXPECT_EQ(renderer.cursorStyle(), CursorStyle::system);
    const Size system = renderer.cursorImageSize();
    const Point tip = renderer.cursorHotspot();
    renderer.makeCursorTexture(CursorStyle::large);
    EXPECT_EQ(renderer.cursorStyle(), CursorStyle::large);
    EXPECT_EQ(renderer.cursorImageSize(), (Size{system.width * 1.7, system.height * 1.7}));
    EXPECT_EQ(renderer.cursorHotspot(), (Point{tip.x * 1.7, tip.y * 1.7}));
}

}  // namespace
}  // namespace tessaloom
