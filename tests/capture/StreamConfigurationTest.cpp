// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "capture/CaptureError.h"
#include "capture/ScreenCaptureEngine.h"

namespace tessaloom {
namespace {

TEST(StreamConfiguration, ADisplayIsTakenInPixels) {
    const auto stream = streamConfiguration({{{}, {100, 50, 960, 540}, 2.0}, {}, {}});
    EXPECT_EQ(stream.source, (PixelRect{0, 0, 1920, 1080}));
}

TEST(StreamConfiguration, ARegionIsRelativeToItsDisplay) {
    const auto stream = streamConfiguration({{{}, {1000, 0, 600, 800}, 1.5}, {}, Rect{1100, 100, 200, 100}});
    EXPECT_EQ(stream.source, (PixelRect{150, 150, 300, 150}));
}

TEST(StreamConfiguration, OddSidesLoseTheirLastPixel) {
    const auto stream = streamConfiguration({{{}, {0, 0, 401, 301}, 1.0}, {}, {}});
    EXPECT_EQ(stream.source, (PixelRect{0, 0, 400, 300}));
}

TEST(StreamConfiguration, AFractionalScaleLosesNoPixel) {
    for (int dotsPerInch = 72; dotsPerInch < 400; ++dotsPerInch) {
        const double scale = dotsPerInch / 96.0;
        for (const int width : {1280, 1440, 1920, 2560, 3840}) {
            const auto stream =
                streamConfiguration({{{}, {0, 0, width / scale, 1080 / scale}, scale}, {}, {}});
            EXPECT_EQ(stream.source, (PixelRect{0, 0, width, 1080})) << dotsPerInch;
        }
    }
}

TEST(StreamConfiguration, ATargetWithoutExtentCannotBeCaptured) {
    EXPECT_THROW(streamConfiguration({{{}, {0, 0, 0, 300}, 1.0}, {}, {}}), CaptureError);
    EXPECT_THROW(streamConfiguration({{{}, {0, 0, 300, 1}, 1.0}, {}, {}}), CaptureError);
}

}  // namespace
}  // namespace tessaloom
