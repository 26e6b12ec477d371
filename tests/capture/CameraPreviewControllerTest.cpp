// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/CameraPreviewController.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

TEST(BubbleShape, FollowsTheChoice) {
    using Shape = WebcamConfig::Shape;
    const struct {
        CameraChoice choice;
        QSizeF size;
        double radius;
    } cases[] = {
        {{.shape = Shape::circle, .relativeSize = 0.2}, {180, 180}, 90},
        {{.shape = Shape::pill, .relativeSize = 0.2}, {180, 111.6}, 55.8},
        {{.shape = Shape::rectangle, .relativeSize = 0.2}, {180, 118.8}, 28.8},
        {{.shape = Shape::circle, .relativeSize = 0.4}, {240, 240}, 120},
    };
    for (const auto& [choice, size, radius] : cases) {
        const BubbleShape shape = bubbleShape(choice);
        EXPECT_NEAR(shape.size.width(), size.width(), 1e-9);
        EXPECT_NEAR(shape.size.height(), size.height(), 1e-9);
        EXPECT_NEAR(shape.radius, radius, 1e-9);
    }
}

}  // namespace
}  // namespace tessaloom
