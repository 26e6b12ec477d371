// SPDX-License-Identifier: GPL-3.0-or-later
// Whole frames with a camera bubble and captions.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "render/CaptionDrawing.h"
#include "render/CpuRenderer.h"
#include "render/RandomFrame.h"
#include "render/ReferenceComparison.h"
#include "support/AllocationCounter.h"
#include "support/PictureFiles.h"
#include "support/PixelAt.h"
#include "support/SamePixels.h"

namespace tessaloom {
namespace {

using test::Chance;
using test::ReferenceCanvas;

const std::vector<std::string> noThemes;
constexpr std::array<std::string_view, 3> lines{"Now click the button", "and", "one  word boxed"};

CaptionChip randomCaption(Chance& chance) {
    CaptionChip chip;
    chip.text = lines[static_cast<std::size_t>(chance.whole(0, 2))];
    chip.alpha = chance.oneIn(2) ? 1 : chance.between(0.01F, 1);
    chip.fontScale = chance.between(0.3F, 3);
    chip.bgAlpha = chance.between(0, 1);
    chip.verticalPosition = chance.between(-0.1F, 1.1F);
    chip.activeWord = chance.whole(-1, 3);
    chip.highlight = static_cast<CaptionHighlight>(chance.whole(0, 2));
    chip.plate = static_cast<CaptionPlate>(chance.whole(0, 1));
    chip.uppercase = chance.oneIn(2);
    return chip;
}

void referenceCaption(ReferenceCanvas& canvas, const FrameComposer::Frame& frame) {
    const CaptionChip& chip = *frame.caption;
    CaptionRaster line = captionRaster(chip.text, chip.colorHex, chip.uppercase).value();
    const CaptionDrawing drawing =
        captionDrawing(chip, line.layout, frame.uniforms.a.x, frame.uniforms.a.y, frame.webcamKeepOut);
    if (drawing.plate) referenceRoundedRect(canvas, *drawing.plate);
    if (drawing.underline) referenceRoundedRect(canvas, *drawing.underline);
    const PictureLevels text(std::move(line.pixels));
    referenceChip(canvas, drawing.text, text.forWidth(drawing.text.rect.z));
    if (!drawing.boxedWord) return;
    const ChipUniforms& box = drawing.boxedWord->chip;
    const PictureLevels word(
        wordChip(drawing.boxedWord->word, chip.highlightHex, wordChipPadding, wordChipRadius, chip.uppercase)
            .value()
            .pixels);
    referenceChip(canvas, box, word.forWidth(box.rect.z));
}

FrameComposer::Frame randomFrame(Chance& chance, int width, int height) {
    FrameComposer::Frame frame;
    frame.uniforms = test::randomComposite(chance, width, height, static_cast<float>(chance.whole(0, 1)));
    if (!chance.oneIn(3)) frame.webcam = test::randomWebcam(chance, width, height);
    if (frame.webcam && chance.oneIn(2)) frame.webcamKeepOut = toRect(frame.webcam->rect);
    if (!chance.oneIn(3)) frame.caption = randomCaption(chance);
    return frame;
}

TEST(CpuRendererOverlayTest, DrawsBubbleAndCaptionAsTheFormulasSay) {
    Chance chance(51);
    CpuRenderer renderer(2, noThemes);
    for (int round = 0; round < 120; ++round) {
        const int width = chance.whole(1, 240);
        const int height = chance.whole(1, 180);
        const FrameComposer::Frame frame = randomFrame(chance, width, height);
        const BgraImage recording = test::randomPicture(chance, 80, 60);
        const BgraImage camera = test::randomPicture(chance, chance.whole(1, 40), chance.whole(1, 30));
        const BgraImage matte = test::randomPicture(chance, 8, 8);
        BgraImage target(width, height);
        renderer.render(frame, {{recording.view(), 0}, {camera.view(), 0}, {matte.view(), 0}}, target);

        ReferenceCanvas expected(width, height);
        referenceComposite(expected, frame.uniforms, recording.view(), {});
        if (frame.webcam) {
            const double sigma =
                std::max(static_cast<double>(frame.webcam->blur.x) * camera.width() * 0.035, 1.0);
            const BgraImage blurred = test::referenceBlur(camera.view(), sigma);
            referenceWebcam(expected, *frame.webcam, {camera.view(), matte.view(), blurred.view()});
        }
        if (frame.caption) referenceCaption(expected, frame);
        ASSERT_TRUE(test::matchesReference(target, expected, "overlays-" + std::to_string(round)));
    }
}

/// A frame of everything at once, the caption and the bubble in each other's way.
FrameComposer::Frame fullFrame(int width, int height) {
    const auto w = static_cast<float>(width);
    const auto h = static_cast<float>(height);
    FrameComposer::Frame frame;
    frame.uniforms.a = {w, h, w * 0.1F, h * 0.1F};
    frame.uniforms.b = {w * 0.8F, h * 0.8F, 0.1F, 0.1F};
    frame.uniforms.c = {0.8F, 0.8F, 6, 3};
    frame.uniforms.d = {1, 1, 0, 0};
    const Float4 content{w * 0.1F, h * 0.1F, w * 0.8F, h * 0.8F};
    frame.cursor = CursorUniforms{{w * 0.4F, h * 0.4F, 24, 24}, {w, h, 6, 1}, content};
    frame.ripples.push_back(
        {{w * 0.3F, h * 0.3F, 60, 60}, {0.4F, 0, 0, 0}, {1, 1, 1, 0.55F}, {w, h, 6, 0}, content});
    WebcamUniforms webcam;
    webcam.rect = {w * 0.4F, h * 0.6F, w * 0.2F, w * 0.2F};
    webcam.params = {1, 0, 1, 12};
    webcam.meta = {w, h, 1, 0.45F};
    webcam.border = {1, 1, 1, 2};
    webcam.blur = {0.7F, 0, 0, 0};
    frame.webcam = webcam;
    frame.webcamKeepOut = toRect(webcam.rect);
    frame.keystroke = KeystrokeChip{"⇧⌘K", 1};
    CaptionChip caption;
    caption.text = lines[0];
    caption.alpha = 1;
    caption.activeWord = 1;
    caption.uppercase = true;
    frame.caption = caption;
    return frame;
}

TEST(CpuRendererOverlayTest, AllocatesNothingOnceRunning) {
    Chance chance(53);
    const BgraImage recording = test::randomPicture(chance, 200, 120);
    const BgraImage camera = test::randomPicture(chance, 90, 60);
    const BgraImage matte = test::randomPicture(chance, 30, 20);
    FrameComposer::Frame frame = fullFrame(320, 180);
    BgraImage target(320, 180);
    YuvImage converted(320, 180);
    CpuRenderer renderer(1, noThemes);
    const auto draw = [&](std::uint64_t round) {
        frame.uniforms.b.z = 0.01F * static_cast<float>(round);
        frame.cursor->rect.x += 3;
        frame.caption->activeWord = static_cast<int>(round % 2);
        const FrameSources sources{{recording.view(), round}, {camera.view(), round}, {matte.view(), round}};
        renderer.render(frame, sources, target);
        renderer.render(frame, sources, converted);
    };
    draw(1);
    draw(2);
    const test::AllocationCounter counter;
    for (std::uint64_t round = 3; round < 8; ++round)
        draw(round);
    EXPECT_EQ(counter.count(), 0U);
}

TEST(CpuRendererOverlayTest, PrewarmsAllThatACaptionNeeds) {
    const FrameComposer::Frame frame = fullFrame(64, 36);
    BgraImage target(64, 36);
    CpuRenderer renderer(1, noThemes);
    CaptionStyle style;
    style.uppercase = true;
    const std::array<std::string_view, 1> keys{frame.keystroke->text};
    renderer.prewarmKeystrokes(keys);
    renderer.prewarmCaptions(lines, style);
    const test::AllocationCounter counter;
    renderer.render(frame, {}, target);
    EXPECT_LT(counter.count(), 100U) << "rasters take thousands";
}

TEST(CpuRendererOverlayTest, LeavesOutABubbleWithoutACamera) {
    FrameComposer::Frame frame = fullFrame(160, 90);
    BgraImage without(160, 90);
    BgraImage missing(160, 90);
    CpuRenderer renderer(1, noThemes);
    renderer.render(frame, {}, missing);
    frame.webcam.reset();
    renderer.render(frame, {}, without);
    EXPECT_TRUE(test::samePixels(missing, without));
}

TEST(CpuRendererOverlayTest, LeavesOutWhatIsAllButInvisibleAndWhatCannotBeRastered) {
    const std::string endless(5000, 'x');
    FrameComposer::Frame frame = fullFrame(160, 90);
    frame.caption.reset();
    BgraImage without(160, 90);
    BgraImage with(160, 90);
    CpuRenderer renderer(1, noThemes);
    renderer.render(frame, {}, without);
    frame.caption.emplace();
    for (const auto& [text, alpha] : {std::pair<std::string_view, float>{"text", 0.001F}, {endless, 1.0F}}) {
        frame.caption->text = text;
        frame.caption->alpha = alpha;
        renderer.render(frame, {}, with);
        EXPECT_TRUE(test::samePixels(with, without));
    }
    frame.caption->text = "text";
    renderer.render(frame, {}, with);
    EXPECT_FALSE(test::samePixels(with, without));
}

TEST(CpuRendererOverlayTest, DrawsACaptionOfFiveThousandLettersOrLeavesItOut) {
    std::string speech;
    while (speech.size() < 5000)
        speech += "words and ";
    FrameComposer::Frame frame = fullFrame(160, 90);
    frame.caption->text = speech;
    BgraImage target(160, 90);
    CpuRenderer(1, noThemes).render(frame, {}, target);
    EXPECT_EQ(test::pixelAt(target, 80, 45)[3], 255);
}

TEST(CpuRendererOverlayTest, DrawsOnTheSmallestAndOnHugeCanvases) {
    Chance chance(57);
    const BgraImage camera = test::randomPicture(chance, 64, 48);
    const BgraImage matte = test::randomPicture(chance, 16, 12);
    CpuRenderer renderer(2, noThemes);
    for (const int side : {1, 8192}) {
        const FrameComposer::Frame frame = fullFrame(side, side);
        BgraImage target(side, side);
        renderer.render(frame, {{camera.view(), 1}, {camera.view(), 1}, {matte.view(), 1}}, target);
        for (const int place : {0, side / 2, side - 1})
            EXPECT_EQ(test::pixelAt(target, place, place)[3], 255);
    }
}

TEST(CpuRendererOverlayTest, DrawsABubbleLargerThanTheCanvas) {
    Chance chance(59);
    const BgraImage camera = test::randomPicture(chance, 64, 48);
    FrameComposer::Frame frame = fullFrame(64, 36);
    frame.webcam->rect = {-500, -400, 1000, 900};
    frame.webcam->blur = {};
    BgraImage target(64, 36);
    CpuRenderer renderer(1, noThemes);
    renderer.render(frame, {{}, {camera.view(), 1}, {}}, target);
    EXPECT_EQ(test::pixelAt(target, 0, 0)[3], 255);
    EXPECT_NE(test::pixelAt(target, 2, 2)[1], 0) << "the camera, not the black recording";
}

TEST(CpuRendererOverlayTest, TakesBadColorsAsCharcoal) {
    FrameComposer::Frame bad = fullFrame(160, 90);
    bad.caption->colorHex = "no colour";
    bad.caption->bgHex = "";
    bad.caption->highlightHex = "#12345";
    FrameComposer::Frame charcoal = fullFrame(160, 90);
    charcoal.caption->colorHex = charcoal.caption->bgHex = charcoal.caption->highlightHex = "#1C1C1F";
    BgraImage one(160, 90);
    BgraImage other(160, 90);
    CpuRenderer renderer(1, noThemes);
    renderer.render(bad, {}, one);
    renderer.render(charcoal, {}, other);
    for (int y = 0; y < 90; ++y) {
        for (int i = 0; i < 160 * 4; ++i)
            ASSERT_NEAR(one.row(y)[i], other.row(y)[i], 1);
    }
}

TEST(CpuRendererOverlayTest, DrawsABlackBackdropForAWallpaperThatIsNoPicture) {
    FrameComposer::Frame frame = fullFrame(64, 36);
    frame.uniforms.c.w = 2;
    CpuRenderer renderer(1, noThemes);
    renderer.loadWallpaper(std::filesystem::path("/dev/null"));
    BgraImage target(64, 36);
    renderer.render(frame, {}, target);
    EXPECT_EQ(test::pixelAt(target, 1, 1)[1], 0);
}

}  // namespace
}  // namespace tessaloom
