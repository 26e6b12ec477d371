// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/WebcamStage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "render/RandomFrame.h"
#include "render/ReferenceComparison.h"
#include "support/AllocationCounter.h"
#include "support/PixelAt.h"

namespace tessaloom {
namespace {

using test::Chance;
using test::ReferenceCanvas;

BgraImage plain(int width, int height, std::uint8_t level) {
    BgraImage picture(width, height);
    for (int y = 0; y < height; ++y) {
        for (int i = 0; i < width * 4; ++i)
            picture.row(y)[i] = i % 4 == 3 ? std::uint8_t{255} : level;
    }
    return picture;
}

/// Draws bubbles one after the other, as frames do.
class WebcamStageTest : public ::testing::Test {
  protected:
    void draw(const WebcamUniforms& webcam, const SourcePicture& camera, const SourcePicture& matte,
              BgraImage& canvas) {
        scratch_.grow(std::max(camera.pixels.width + 2, matte.pixels.width), canvas.width());
        stage_.prepare(webcam, camera, matte, canvas.width(), canvas.height(), pool_);
        for (int y = 0; y < canvas.height(); ++y)
            stage_.drawRow(y, {0, canvas.width()}, scratch_, canvas.row(y));
    }

    WorkerPool pool_{2};
    WebcamStage stage_;
    RowScratch scratch_;
};

WebcamUniforms bubble(float blur) {
    WebcamUniforms webcam;
    webcam.rect = {20, 20, 60, 60};
    webcam.params = {2, 10, 0, 8};
    webcam.meta = {100, 100, 1, 0.45F};
    webcam.border = {1, 1, 1, 0};
    webcam.blur.x = blur;
    return webcam;
}

double sigmaFor(const WebcamUniforms& webcam, BgraView camera) {
    return std::max(static_cast<double>(webcam.blur.x) * camera.width * 0.035, 1.0);
}

TEST_F(WebcamStageTest, DrawsWhatTheFormulaSays) {
    Chance chance(41);
    for (int round = 0; round < 200; ++round) {
        BgraImage canvas = plain(chance.whole(1, 160), chance.whole(1, 120), 170);
        const WebcamUniforms webcam = test::randomWebcam(chance, canvas.width(), canvas.height());
        const BgraImage camera = test::randomPicture(chance, chance.whole(1, 90), chance.whole(1, 60));
        BgraImage matte;
        if (chance.oneIn(2)) matte = test::randomPicture(chance, chance.whole(1, 30), chance.whole(1, 20));
        const BgraImage blurred = test::referenceBlur(camera.view(), sigmaFor(webcam, camera.view()));
        ReferenceCanvas expected(canvas.width(), canvas.height());
        std::fill(expected.pixels.begin(), expected.pixels.end(), test::ReferencePixel{170, 170, 170, 255});
        referenceWebcam(expected, webcam, {camera.view(), matte.view(), blurred.view()});
        draw(webcam, {camera.view(), 0}, {matte.view(), 0}, canvas);
        ASSERT_TRUE(test::matchesReference(canvas, expected, "webcam-" + std::to_string(round)));
    }
}

TEST_F(WebcamStageTest, ShowsTheSharpCameraWithoutAMatte) {
    Chance chance(43);
    const BgraImage camera = test::randomPicture(chance, 60, 60);
    BgraImage blurWanted = plain(100, 100, 0);
    BgraImage sharp = plain(100, 100, 0);
    draw(bubble(1), {camera.view(), 1}, {}, blurWanted);
    draw(bubble(0), {camera.view(), 1}, {}, sharp);
    for (int y = 0; y < 100; ++y)
        ASSERT_EQ(std::memcmp(blurWanted.row(y), sharp.row(y), test::bytesOf(100)), 0);
    EXPECT_EQ(std::memcmp(test::pixelAt(sharp, 40, 50), test::pixelAt(camera, 20, 30), 3), 0);
}

TEST_F(WebcamStageTest, BlursWhereTheMatteIsBlackAlsoWhenMirrored) {
    // Stripes blur to grey; the person is in the left half.
    BgraImage camera = plain(60, 60, 0);
    BgraImage matte = plain(60, 60, 0);
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 60; ++x) {
            if (x % 2 == 0) std::fill_n(test::pixelAt(camera, x, y), 3, std::uint8_t{255});
            if (x < 30) std::fill_n(test::pixelAt(matte, x, y), 3, std::uint8_t{255});
        }
    }
    for (const bool mirrored : {false, true}) {
        WebcamUniforms webcam = bubble(1);
        webcam.params.z = mirrored ? 1 : 0;
        BgraImage canvas = plain(100, 100, 0);
        draw(webcam, {camera.view(), 0}, {matte.view(), 0}, canvas);
        const auto contrastAt = [&](int x) {
            return std::abs(test::pixelAt(canvas, x, 50)[1] - test::pixelAt(canvas, x + 1, 50)[1]);
        };
        EXPECT_EQ(contrastAt(mirrored ? 65 : 35), 255);
        EXPECT_LT(contrastAt(mirrored ? 35 : 65), 3);
    }
}

TEST_F(WebcamStageTest, BlursAgainOnlyForAnotherPictureOrStrength) {
    const BgraImage white = plain(60, 60, 255);
    const BgraImage black = plain(60, 60, 0);
    const auto middle = [&](const BgraImage& camera, std::uint64_t identity, float blur) {
        BgraImage canvas = plain(100, 100, 128);
        draw(bubble(blur), {camera.view(), identity}, {black.view(), 0}, canvas);
        return int{test::pixelAt(canvas, 50, 50)[1]};
    };
    EXPECT_EQ(middle(white, 1, 0.5F), 255);
    EXPECT_EQ(middle(black, 1, 0.5F), 255) << "the same identity";
    EXPECT_EQ(middle(black, 1, 0.6F), 0) << "another strength";
    EXPECT_EQ(middle(white, 2, 0.6F), 255) << "another identity";
    EXPECT_EQ(middle(black, 0, 0.6F), 0) << "nothing known";
    EXPECT_EQ(middle(white, 0, 0.6F), 255);
}

TEST_F(WebcamStageTest, HasNoRingForAHairlineBorder) {
    const BgraImage black = plain(60, 60, 0);
    for (const float width : {0.5F, 0.51F}) {
        WebcamUniforms webcam = bubble(0);
        webcam.border.w = width;
        BgraImage canvas = plain(100, 100, 0);
        draw(webcam, {black.view(), 1}, {}, canvas);
        EXPECT_EQ(test::pixelAt(canvas, 50, 20)[1] > 0, width > 0.5F);
    }
}

TEST_F(WebcamStageTest, AllocatesNothingOnceRunning) {
    Chance chance(47);
    const BgraImage camera = test::randomPicture(chance, 64, 48);
    const BgraImage matte = test::randomPicture(chance, 16, 12);
    BgraImage canvas = plain(100, 100, 0);
    for (int round = 0; round < 2; ++round) {
        const test::AllocationCounter counter;
        for (const float blur : {0.1F, 0.9F})
            draw(bubble(blur), {camera.view(), 0}, {matte.view(), 0}, canvas);
        if (round == 1) {
            EXPECT_EQ(counter.count(), 0U);
        }
    }
}

}  // namespace
}  // namespace tessaloom
