// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/SubpixelGrid.h"

#include <gtest/gtest.h>

#include "render/CpuRenderer.h"
#include "render/RandomFrame.h"
#include "render/ReferenceComparison.h"
#include "render/ReferenceStages.h"

namespace tessaloom {
namespace {

constexpr int width = 1920;
constexpr int height = 1080;

/// The recording zoomed to `shown` fractions of it, from (x, y).
FrameComposer::Frame zoomedFrame(float x, float y, float shown) {
    FrameComposer::Frame frame;
    frame.uniforms.a = {1280, 720, 40, 30};
    frame.uniforms.b = {1200, 660, x, y};
    frame.uniforms.c = {shown, shown, 8, 0};
    return frame;
}

TEST(SubpixelGridTest, PlacesLessThanHalfAStepApartBecomeOne) {
    const float step = 1.0F / 128 / width;
    const float onGrid = 0.25F;
    const auto atRest = onSubpixelGrid(zoomedFrame(onGrid, 0.25F, 0.5F), width, height);
    EXPECT_EQ(onSubpixelGrid(zoomedFrame(onGrid + 0.4F * step, 0.25F, 0.5F), width, height), atRest);
    EXPECT_NE(onSubpixelGrid(zoomedFrame(onGrid + 0.7F * step, 0.25F, 0.5F), width, height), atRest);
    EXPECT_NE(onSubpixelGrid(zoomedFrame(onGrid, 0.25F, 0.5F + 0.7F * step), width, height), atRest);
}

TEST(SubpixelGridTest, ThePointersPlaceIsOnTheCanvassGrid) {
    const auto withCursor = [](float x) {
        FrameComposer::Frame frame = zoomedFrame(0, 0, 1);
        frame.cursor = CursorUniforms{{x, 20, 24.5F, 24.5F}, {}, {}};
        return onSubpixelGrid(frame, width, height);
    };
    EXPECT_EQ(withCursor(100.003F), withCursor(100));
    EXPECT_NE(withCursor(100.005F), withCursor(100));
}

TEST(SubpixelGridTest, TheWholeFrameStaysExactlyThat) {
    const FrameComposer::Frame whole = zoomedFrame(0, 0, 1);
    EXPECT_EQ(onSubpixelGrid(whole, 1919, 1079), whole);
}

TEST(SubpixelGridTest, ASecondTimeMovesNothing) {
    test::Chance chance(3);
    for (int round = 0; round < 1000; ++round) {
        FrameComposer::Frame frame =
            zoomedFrame(chance.between(0, 0.6F), chance.between(0, 0.6F), chance.between(0.1F, 0.4F));
        frame.cursor =
            CursorUniforms{{chance.between(-30, 1900), chance.between(-30, 1000), 37.3F, 41.7F}, {}, {}};
        const auto once = onSubpixelGrid(frame, width, height);
        ASSERT_EQ(onSubpixelGrid(once, width, height), once) << "round " << round;
    }
}

TEST(SubpixelGridTest, CannotBeSeen) {
    test::Chance chance(4);
    CpuRenderer renderer(1, {});
    for (int round = 0; round < 10; ++round) {
        const BgraImage recording = test::randomPicture(chance, 200, 120);
        FrameComposer::Frame frame;
        frame.uniforms = test::randomComposite(chance, 160, 90, 0);
        BgraImage target(160, 90);
        renderer.render(onSubpixelGrid(frame, 200, 120), {{recording.view(), 0}}, target);
        test::ReferenceCanvas exact(160, 90);
        test::referenceComposite(exact, frame.uniforms, recording.view(), recording.view());
        ASSERT_TRUE(test::matchesReference(target, exact, "grid-round" + std::to_string(round)));
    }
}

}  // namespace
}  // namespace tessaloom
