// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/BubbleRect.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

using Shape = WebcamConfig::Shape;

WebcamConfig bubble(double size, RelativePoint position, Shape shape = Shape::circle) {
    WebcamConfig config;
    config.relativeSize = size;
    config.position = position;
    config.shape = shape;
    return config;
}

void expectNear(const Rect& actual, const Rect& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-3);
    EXPECT_NEAR(actual.y, expected.y, 1e-3);
    EXPECT_NEAR(actual.width, expected.width, 1e-3);
    EXPECT_NEAR(actual.height, expected.height, 1e-3);
}

TEST(BubbleRect, IsCentredOnItsPosition) {
    expectNear(bubbleRect(bubble(0.25, {0.5, 0.25}), 1000, 800, 1), {375, 75, 250, 250});
}

TEST(BubbleRect, EachShapeHasItsHeight) {
    expectNear(bubbleRect(bubble(0.2, {0.5, 0.5}, Shape::pill), 1000, 800, 1), {400, 338, 200, 124});
    expectNear(bubbleRect(bubble(0.2, {0.5, 0.5}, Shape::rectangle), 1000, 800, 1), {400, 334, 200, 132});
}

TEST(BubbleRect, PopsAboutItsPlace) {
    expectNear(bubbleRect(bubble(0.2, {0.5, 0.5}), 1000, 800, 0.5F), {450, 350, 100, 100});
}

TEST(BubbleRect, StopsThreePercentOfTheWidthFromEveryEdge) {
    expectNear(bubbleRect(bubble(0.2, {0, 0}), 1000, 800, 1), {30, 30, 200, 200});
    expectNear(bubbleRect(bubble(0.2, {1, 1}), 1000, 800, 1), {770, 570, 200, 200});
}

TEST(BubbleRect, TooLargeForTheCanvasStartsAtTheMargin) {
    expectNear(bubbleRect(bubble(0.5, {0.5, 1}), 1000, 400, 1), {250, 30, 500, 500});
}

TEST(BubbleRect, ItsSizeIsBounded) {
    EXPECT_FLOAT_EQ(bubbleBase(bubble(0.01, {}), 1000), 50);
    EXPECT_FLOAT_EQ(bubbleBase(bubble(9, {}), 1000), 600);
    EXPECT_NEAR(bubbleRect(bubble(0.01, {}), 1000, 800, 1).width, 50, 1e-3);
}

}  // namespace
}  // namespace tessaloom
