// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/CanvasSize.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

struct Case {
    int naturalWidth;
    int naturalHeight;
    double aspect;
    std::optional<int> limit;
    CanvasSize expected;
};

class CanvasSizeOfACase : public ::testing::TestWithParam<Case> {};

TEST_P(CanvasSizeOfACase, FitsShapeAndLimit) {
    const Case& c = GetParam();
    EXPECT_EQ(CanvasSize::fitting(c.naturalWidth, c.naturalHeight, c.aspect, c.limit), c.expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, CanvasSizeOfACase,
                         ::testing::Values(Case{1920, 1080, 16.0 / 9, {}, {1920, 1080}},
                                           Case{1920, 1080, 16.0 / 9, 1280, {1280, 720}},
                                           // Never scaled up.
                                           Case{1280, 720, 16.0 / 9, 3840, {1280, 720}},
                                           // Sides come out even, rounded down.
                                           Case{1000, 601, 1.664, {}, {1000, 600}},
                                           Case{1001, 601, 1.0, {}, {1000, 1000}},
                                           Case{1080, 1920, 0.5625, {}, {1080, 1920}},
                                           Case{1920, 1080, 0.5625, 1920, {1080, 1920}},
                                           Case{1920, 1080, 0.8, {}, {1536, 1920}},
                                           // Never below two pixels.
                                           Case{1, 1, 1, {}, {2, 2}}, Case{64, 64, 1000, {}, {64, 2}}));

}  // namespace
}  // namespace tessaloom
