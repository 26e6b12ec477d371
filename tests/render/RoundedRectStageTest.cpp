// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/RoundedRectStage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "render/RandomFrame.h"
#include "render/ReferenceComparison.h"
#include "support/PixelAt.h"

namespace tessaloom {
namespace {

using test::Chance;
using test::ReferenceCanvas;

ReferenceCanvas asReference(const BgraImage& picture) {
    ReferenceCanvas canvas(picture.width(), picture.height());
    for (int y = 0; y < picture.height(); ++y) {
        for (int i = 0; i < picture.width() * 4; ++i)
            canvas.at(i / 4, y)[static_cast<std::size_t>(i % 4)] = picture.row(y)[i];
    }
    return canvas;
}

void draw(const RoundedRectUniforms& rounded, BgraImage& canvas) {
    RoundedRectStage stage;
    stage.prepare(rounded, canvas.width(), canvas.height());
    for (int y = 0; y < canvas.height(); ++y)
        stage.drawRow(y, {0, canvas.width()}, canvas.row(y));
}

TEST(RoundedRectStageTest, DrawsWhatTheFormulaSays) {
    Chance chance(31);
    for (int round = 0; round < 200; ++round) {
        BgraImage canvas = test::randomPicture(chance, chance.whole(1, 120), chance.whole(1, 90));
        const RoundedRectUniforms rounded = test::randomRoundedRect(chance, canvas.width(), canvas.height());
        ReferenceCanvas expected = asReference(canvas);
        referenceRoundedRect(expected, rounded);
        draw(rounded, canvas);
        ASSERT_TRUE(test::matchesReference(canvas, expected, "rounded-" + std::to_string(round)));
    }
}

TEST(RoundedRectStageTest, BecomesACapsuleWhenTheRadiusIsTooLarge) {
    BgraImage huge(80, 40);
    BgraImage half(80, 40);
    for (BgraImage* canvas : {&huge, &half}) {
        for (int y = 0; y < 40; ++y)
            std::fill_n(canvas->row(y), test::bytesOf(80), std::uint8_t{255});
        draw({{10, 10, 60, 20}, {1, 0, 0, 1}, {80, 40, canvas == &huge ? 500.0F : 10.0F, 1}}, *canvas);
    }
    for (int y = 0; y < 40; ++y)
        ASSERT_EQ(std::memcmp(huge.row(y), half.row(y), test::bytesOf(80)), 0);
    EXPECT_EQ(test::pixelAt(huge, 40, 20)[1], 0);
    EXPECT_EQ(test::pixelAt(huge, 10, 10)[1], 255) << "corner";
}

}  // namespace
}  // namespace tessaloom
