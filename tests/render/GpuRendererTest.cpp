// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuRenderer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <thread>

#include "media/ColorConversion.h"
#include "render/CaptionDrawing.h"
#include "render/CpuRenderer.h"
#include "render/GpuTestDevice.h"
#include "render/KeystrokeDrawing.h"
#include "render/RandomFrame.h"
#include "render/ReferenceComparison.h"
#include "render/TextRasters.h"
#include "support/PictureFiles.h"
#include "support/PixelAt.h"
#include "support/SamePixels.h"

namespace tessaloom {
namespace {

using test::Chance;
using test::ReferenceCanvas;

struct CanvasSize {
    int width;
    int height;
};

// Few, since a software GPU compiles anew for pictures of other shapes.
constexpr std::array<CanvasSize, 5> canvasSizes{{{7, 5}, {37, 53}, {160, 90}, {90, 160}, {101, 7}}};

/// What frames are drawn from, besides their records.
struct Pictures {
    explicit Pictures(Chance& chance)
        : recording(test::randomPicture(chance, 160, 100)),
          wallpaper(test::randomPicture(chance, 45, 80)),
          camera(test::randomPicture(chance, 64, 48)),
          matte(test::randomPicture(chance, 32, 24)),
          cursor(makeCursorImage(CursorStyle::system, {}).pixels) {}

    FrameSources sources() const { return {{recording.view(), 0}, {camera.view(), 0}, {matte.view(), 0}}; }

    BgraImage recording;
    BgraImage wallpaper;
    BgraImage camera;
    BgraImage matte;
    PictureLevels cursor;
    TextRasters<PictureLevels> texts{[](BgraImage raster) { return PictureLevels(std::move(raster)); }};
};

void referenceBubble(ReferenceCanvas& canvas, const WebcamUniforms& webcam, const FrameSources& sources) {
    const BgraView camera = sources.camera.pixels;
    if (camera.empty()) return;
    const BgraView matte = sources.matte.pixels;
    if (matte.empty() || webcam.blur.x <= 0.001F) {
        return referenceWebcam(canvas, webcam, {camera, {}, {}});
    }
    const double sigma = std::max(double(webcam.blur.x) * camera.width * 0.035, 1.0);
    const BgraImage blurred = test::referenceBlur(camera, sigma);
    referenceWebcam(canvas, webcam, {camera, matte, blurred.view()});
}

void referenceCaption(ReferenceCanvas& canvas, const FrameComposer::Frame& frame, Pictures& pictures) {
    const CaptionChip& chip = *frame.caption;
    const auto* line = pictures.texts.captionLine(chip.text, chip.colorHex, chip.uppercase);
    const CaptionDrawing drawing =
        captionDrawing(chip, line->layout, frame.uniforms.a.x, frame.uniforms.a.y, frame.webcamKeepOut);
    if (drawing.plate) referenceRoundedRect(canvas, *drawing.plate);
    if (drawing.underline) referenceRoundedRect(canvas, *drawing.underline);
    referenceChip(canvas, drawing.text, line->picture.forWidth(drawing.text.rect.z));
    if (!drawing.boxedWord) return;
    const auto* word = pictures.texts.wordChip(drawing.boxedWord->word, chip.highlightHex, chip.uppercase);
    referenceChip(canvas, drawing.boxedWord->chip, word->picture.forWidth(drawing.boxedWord->chip.rect.z));
}

ReferenceCanvas referenceFrame(const FrameComposer::Frame& frame, const FrameSources& sources,
                               Pictures& pictures) {
    const Float4& a = frame.uniforms.a;
    ReferenceCanvas canvas(static_cast<int>(a.x), static_cast<int>(a.y));
    referenceComposite(canvas, frame.uniforms, sources.recording.pixels, pictures.wallpaper.view());
    for (const RippleUniforms& ripple : frame.ripples)
        referenceRipple(canvas, ripple);
    if (frame.cursor) referenceCursor(canvas, *frame.cursor, pictures.cursor.forWidth(frame.cursor->rect.z));
    if (frame.webcam) referenceBubble(canvas, *frame.webcam, sources);
    if (frame.keystroke) {
        const auto* chip = pictures.texts.keystroke(frame.keystroke->text);
        const ChipUniforms drawing = keystrokeDrawing(*frame.keystroke, chip->pixels, a.x, a.y);
        referenceChip(canvas, drawing, chip->picture.forWidth(drawing.rect.z));
    }
    if (frame.caption) referenceCaption(canvas, frame, pictures);
    return canvas;
}

CaptionChip randomCaption(Chance& chance) {
    CaptionChip chip;
    chip.text = chance.oneIn(2) ? "Every word counts" : "one";
    chip.alpha = chance.between(0.01F, 1);
    chip.fontScale = chance.between(0.5F, 3);
    chip.verticalPosition = chance.between(0, 1);
    if (chance.oneIn(2)) chip.activeWord = chance.whole(0, 3);
    chip.highlight = static_cast<CaptionHighlight>(chance.whole(0, 2));
    chip.plate = static_cast<CaptionPlate>(chance.whole(0, 1));
    chip.uppercase = chance.oneIn(2);
    return chip;
}

FrameComposer::Frame randomFrame(Chance& chance, CanvasSize canvas, int style) {
    FrameComposer::Frame frame;
    frame.uniforms = randomComposite(chance, canvas.width, canvas.height, static_cast<float>(style));
    for (int count = chance.whole(0, 2); count > 0; --count)
        frame.ripples.push_back(randomRipple(chance, frame.uniforms));
    if (chance.oneIn(2)) frame.cursor = randomCursor(chance, frame.uniforms);
    if (chance.oneIn(2)) frame.webcam = randomWebcam(chance, canvas.width, canvas.height);
    if (chance.oneIn(3)) frame.keystroke = KeystrokeChip{"⇧⌘K", chance.between(0.01F, 1)};
    if (chance.oneIn(3)) frame.caption = randomCaption(chance);
    return frame;
}

BgraImage drawn(Renderer& renderer, const FrameComposer::Frame& frame, const FrameSources& sources) {
    BgraImage target(static_cast<int>(frame.uniforms.a.x), static_cast<int>(frame.uniforms.a.y));
    renderer.render(frame, sources, target);
    return target;
}

/// A recording that fills a canvas of 64 x 36 and lies in the middle of it.
FrameComposer::Frame plainFrame() {
    FrameComposer::Frame frame;
    frame.uniforms.a = {64, 36, 8, 8};
    frame.uniforms.b = {48, 20, 0, 0};
    frame.uniforms.c = {1, 1, 4, 0};
    frame.uniforms.bgTop = frame.uniforms.bgBottom = {0.2F, 0.4F, 0.6F, 1};
    return frame;
}

class GpuRendererTest : public ::testing::TestWithParam<GpuApi> {
  protected:
    void SetUp() override {
        renderer_ = test::openGpuRenderer(GetParam());
        if (!renderer_) GTEST_SKIP() << "this machine has no " << test::nameOf(GetParam());
        EXPECT_EQ(renderer_->pipelineError(), std::nullopt);
    }

    std::unique_ptr<GpuRenderer> renderer_;
};

TEST_P(GpuRendererTest, DrawsWhatTheFormulasSay) {
    Chance chance(1);
    Pictures pictures(chance);
    renderer_->loadWallpaper(test::writePicture(pictures.wallpaper.view(), "gpu-wallpaper"));
    for (int round = 0; round < 80; ++round) {
        const FrameComposer::Frame frame =
            randomFrame(chance, canvasSizes[static_cast<std::size_t>(round) % canvasSizes.size()], round % 4);
        FrameSources sources = pictures.sources();
        if (round % 3 == 0) sources.matte = {};
        EXPECT_TRUE(test::matchesReference(drawn(*renderer_, frame, sources),
                                           referenceFrame(frame, sources, pictures),
                                           "gpu-round" + std::to_string(round)));
    }
}

ReferenceCanvas asReference(const BgraImage& picture) {
    ReferenceCanvas canvas(picture.width(), picture.height());
    for (int y = 0; y < canvas.height; ++y) {
        for (int x = 0; x < canvas.width; ++x)
            std::copy_n(test::pixelAt(picture, x, y), 4, canvas.at(x, y).begin());
    }
    return canvas;
}

TEST_P(GpuRendererTest, AgreesWithTheCpu) {
    Chance chance(2);
    Pictures pictures(chance);
    const std::string wallpaper = test::writePicture(pictures.wallpaper.view(), "gpu-wallpaper-agrees");
    CpuRenderer cpu(1, {});
    cpu.loadWallpaper(wallpaper);
    renderer_->loadWallpaper(wallpaper);
    for (int round = 0; round < 64; ++round) {
        // Not the smallest, where a mean is that of a few roundings.
        const CanvasSize canvas = canvasSizes[1 + static_cast<std::size_t>(round) % (canvasSizes.size() - 1)];
        FrameComposer::Frame frame = randomFrame(chance, canvas, round / 4 % 4);
        // Each may blur a camera in its own way, within the bounds of its own test.
        if (frame.webcam) frame.webcam->blur.x = 0;
        ReferenceCanvas expected = asReference(drawn(cpu, frame, pictures.sources()));
        expected.onHardEdge = referenceFrame(frame, pictures.sources(), pictures).onHardEdge;
        EXPECT_TRUE(test::matchesReference(drawn(*renderer_, frame, pictures.sources()), expected,
                                           "gpu-agrees" + std::to_string(round)));
    }
}

TEST_P(GpuRendererTest, KeepsNothingOfAnEarlierFrame) {
    Chance chance(3);
    const Pictures pictures(chance);
    for (int round = 0; round < 20; ++round) {
        const FrameComposer::Frame frame = randomFrame(
            chance, canvasSizes[static_cast<std::size_t>(round) % canvasSizes.size()], chance.whole(0, 3));
        FrameSources sources = pictures.sources();
        sources.recording.identity = sources.camera.identity = 1;
        if (chance.oneIn(2)) sources.matte = {};
        const BgraImage fromUsed = drawn(*renderer_, frame, sources);
        if (round < 16) continue;
        EXPECT_TRUE(test::samePixels(fromUsed, drawn(*test::openGpuRenderer(GetParam()), frame, sources)))
            << "round " << round;
    }
}

TEST_P(GpuRendererTest, DrawsOnAnyThread) {
    const FrameComposer::Frame frame = plainFrame();
    const BgraImage here = drawn(*renderer_, frame, {});
    BgraImage there;
    std::jthread([&] { there = drawn(*renderer_, frame, {}); }).join();
    EXPECT_TRUE(test::samePixels(here, there));
}

TEST_P(GpuRendererTest, ConvertsWhatItDraws) {
    Chance chance(4);
    const Pictures pictures(chance);
    const FrameComposer::Frame frame = randomFrame(chance, {160, 90}, 1);
    YuvImage converted(160, 90);
    renderer_->render(frame, pictures.sources(), converted);
    YuvImage expected(160, 90);
    bgraToYuv(drawn(*renderer_, frame, pictures.sources()).view(), expected, 0, 0);
    for (int plane = 0; plane < 3; ++plane) {
        for (int y = 0; y < 90 / (plane == 0 ? 1 : 2); ++y) {
            const auto row = y * expected.stride(plane);
            ASSERT_EQ(
                std::memcmp(converted.plane(plane) + row, expected.plane(plane) + row, plane == 0 ? 160 : 80),
                0)
                << "plane " << plane << " row " << y;
        }
    }
}

TEST_P(GpuRendererTest, AllocatesNoTexturesOnceRunning) {
    Chance chance(5);
    const Pictures pictures(chance);
    constexpr std::array<std::string_view, 1> lines{"Every word counts"};
    constexpr std::array<std::string_view, 1> labels{"⇧⌘K"};
    FrameComposer::Frame frame = randomFrame(chance, {160, 90}, 3);
    frame.webcam = randomWebcam(chance, 160, 90);
    frame.webcam->blur.x = 0.5F;
    renderer_->prewarmCaptions(lines, {});
    renderer_->prewarmKeystrokes(labels);
    drawn(*renderer_, frame, pictures.sources());
    const int before = renderer_->textureAllocations();
    EXPECT_GT(before, 0);
    for (int round = 0; round < 20; ++round) {
        frame.cursor = randomCursor(chance, frame.uniforms);
        frame.ripples.push_back(randomRipple(chance, frame.uniforms));
        frame.keystroke = KeystrokeChip{labels[0], 1};
        frame.caption.emplace().text = lines[0];
        frame.caption->alpha = 1;
        frame.caption->activeWord = round % 3;
        drawn(*renderer_, frame, pictures.sources());
    }
    EXPECT_EQ(renderer_->textureAllocations(), before);
}

TEST_P(GpuRendererTest, UploadsAPictureAgainOnlyWhenItIsAnother) {
    Chance chance(6);
    const BgraImage first = test::randomPicture(chance, 64, 36);
    const BgraImage second = test::randomPicture(chance, 64, 36);
    const FrameComposer::Frame frame = plainFrame();
    const BgraImage before = drawn(*renderer_, frame, {{first.view(), 1}});
    EXPECT_TRUE(test::samePixels(drawn(*renderer_, frame, {{second.view(), 1}}), before)) << "same identity";
    EXPECT_FALSE(test::samePixels(drawn(*renderer_, frame, {{second.view(), 2}}), before))
        << "another identity";
    EXPECT_TRUE(test::samePixels(drawn(*renderer_, frame, {{first.view(), 0}}), before))
        << "unknown identity";
}

TEST_P(GpuRendererTest, BlursTheCameraAgainForAnotherPictureOrWidth) {
    Chance chance(7);
    Pictures pictures(chance);
    const BgraImage second = test::randomPicture(chance, 64, 48);
    FrameComposer::Frame frame = plainFrame();
    frame.webcam = {{10, 4, 40, 28}, {2, 3, 0, 6}, {64, 36, 1, 0.45F}, {1, 1, 1, 0}, {0.6F, 0, 0, 0}};
    FrameSources sources{{}, {pictures.camera.view(), 1}, {pictures.matte.view(), 1}};
    const auto matches = [&](const char* name) {
        return test::matchesReference(
            drawn(*renderer_, frame, sources),
            referenceFrame(frame, {{pictures.recording.view()}, sources.camera, sources.matte}, pictures),
            name);
    };
    sources.recording = {pictures.recording.view(), 1};
    EXPECT_TRUE(matches("gpu-blur-first"));
    EXPECT_TRUE(matches("gpu-blur-kept"));
    sources.camera = {second.view(), 2};
    EXPECT_TRUE(matches("gpu-blur-camera"));
    frame.webcam->blur.x = 1;
    EXPECT_TRUE(matches("gpu-blur-width"));
}

TEST_P(GpuRendererTest, DrawsAMissingRecordingBlackAndAMissingWallpaperDark) {
    FrameComposer::Frame frame = plainFrame();
    frame.uniforms.c.w = 2;
    renderer_->loadWallpaper("/nowhere/at/all.png");
    const BgraImage target = drawn(*renderer_, frame, {});
    for (const int x : {0, 32})
        EXPECT_EQ(*reinterpret_cast<const std::uint32_t*>(test::pixelAt(target, x, 18)), 0xFF000000U);
}

TEST_P(GpuRendererTest, ForgetsTheWallpaperWhenThereIsNone) {
    Chance chance(8);
    const BgraImage wallpaper = test::randomPicture(chance, 64, 36);
    FrameComposer::Frame frame = plainFrame();
    frame.uniforms.c.w = 2;
    renderer_->loadWallpaper(test::writePicture(wallpaper.view(), "gpu-wallpaper-forgotten"));
    const BgraImage shown = drawn(*renderer_, frame, {});
    EXPECT_EQ(std::memcmp(shown.row(1), wallpaper.row(1), test::bytesOf(64)), 0);
    renderer_->loadWallpaper(std::nullopt);
    EXPECT_EQ(test::pixelAt(drawn(*renderer_, frame, {}), 1, 1)[0], 0);
}

TEST_P(GpuRendererTest, TellsSizeAndTipOfTheChosenCursor) {
    const Size system = renderer_->cursorImageSize();
    const Point tip = renderer_->cursorHotspot();
    renderer_->makeCursorTexture(CursorStyle::large);
    EXPECT_EQ(renderer_->cursorStyle(), CursorStyle::large);
    EXPECT_EQ(renderer_->cursorImageSize(), (Size{system.width * 1.7, system.height * 1.7}));
    EXPECT_EQ(renderer_->cursorHotspot(), (Point{tip.x * 1.7, tip.y * 1.7}));
}

TEST_P(GpuRendererTest, DrawsTheNewCursorInTheNextFrame) {
    FrameComposer::Frame frame = plainFrame();
    frame.cursor = {{20, 10, 16, 16}, {64, 36, 4, 1}, {8, 8, 48, 20}};
    const BgraImage before = drawn(*renderer_, frame, {});
    renderer_->makeCursorTexture(CursorStyle::dot);
    const BgraImage after = drawn(*renderer_, frame, {});
    EXPECT_FALSE(test::samePixels(before, after));
    CpuRenderer cpu(1, {});
    cpu.makeCursorTexture(CursorStyle::dot);
    const std::uint8_t* middle = test::pixelAt(drawn(cpu, frame, {}), 28, 18);
    EXPECT_NEAR(test::pixelAt(after, 28, 18)[1], middle[1], 3);
}

/// Wider than any device's textures.
constexpr int tooWide = 70000;

TEST_P(GpuRendererTest, LeavesWhatIsTooLargeForItToTheCpu) {
    Chance chance(9);
    const BgraImage wallpaper = test::randomPicture(chance, 64, 36);
    const std::string file = test::writePicture(wallpaper.view(), "gpu-wallpaper-stand-in");
    const BgraImage recording = test::randomPicture(chance, tooWide, 2);
    FrameComposer::Frame frame = plainFrame();
    frame.uniforms.c.w = 2;
    frame.cursor = {{20, 10, 16, 16}, {64, 36, 4, 1}, {8, 8, 48, 20}};
    CpuRenderer cpu(1, {});
    for (Renderer* each : {static_cast<Renderer*>(&cpu), static_cast<Renderer*>(renderer_.get())}) {
        each->loadWallpaper(file);
        each->makeCursorTexture(CursorStyle::dot);
    }
    const FrameSources sources{{recording.view(), 0}};
    EXPECT_TRUE(test::samePixels(drawn(*renderer_, frame, sources), drawn(cpu, frame, sources)))
        << "recording";
    frame.uniforms.a.x = tooWide;
    EXPECT_TRUE(test::samePixels(drawn(*renderer_, frame, {}), drawn(cpu, frame, {}))) << "canvas";
    frame = plainFrame();
    EXPECT_FALSE(test::samePixels(drawn(*renderer_, frame, {}), drawn(cpu, plainFrame(), sources)))
        << "fits again";
}

INSTANTIATE_TEST_SUITE_P(EachApi, GpuRendererTest, ::testing::ValuesIn(test::everyGpuApi),
                         [](const auto& info) { return test::nameOf(info.param); });

}  // namespace
}  // namespace tessaloom
