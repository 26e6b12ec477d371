// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SceneCounter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "demo-scene/CounterCode.h"

namespace tessaloom::test {
namespace {

namespace CounterCode = demo::CounterCode;

constexpr int left = 9;
constexpr int top = 5;

struct Look {
    int dark = 30;
    int light = 240;
    int noise = 0;
    int cellPixels = CounterCode::cellPixels;
};

BgraImage pictureOf(const CounterCode::Cells& cells, const Look& look) {
    BgraImage image(left * 2 + look.cellPixels * CounterCode::cellCount, top * 2 + look.cellPixels);
    std::mt19937 random(7);
    std::uniform_int_distribution<int> noise(-look.noise, look.noise);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int cell = std::clamp((x - left) / look.cellPixels, 0, CounterCode::cellCount - 1);
            const int level = cells[static_cast<std::size_t>(cell)] ? look.light : look.dark;
            for (int channel = 0; channel < 3; ++channel) {
                image.row(y)[x * 4 + channel] =
                    static_cast<std::uint8_t>(std::clamp(level + noise(random), 0, 255));
            }
        }
    }
    return image;
}

QRectF stripOf(const Look& look) {
    return QRectF(left, top, look.cellPixels * CounterCode::cellCount, look.cellPixels);
}

TEST(SceneCounter, ReadsEveryCounterThatWasWritten) {
    for (unsigned counter = 0; counter < CounterCode::counterLimit; ++counter) {
        EXPECT_EQ(CounterCode::decode(CounterCode::encode(counter)), counter);
    }
}

TEST(SceneCounter, ReadsThroughNoiseAndScaling) {
    for (const Look& look : {Look{}, Look{60, 200, 60, 12}, Look{30, 240, 40, 7}, Look{30, 240, 0, 31}}) {
        const BgraImage picture = pictureOf(CounterCode::encode(1234), look);
        EXPECT_EQ(readSceneCounter(picture.view(), stripOf(look)), 1234U) << look.cellPixels;
    }
}

TEST(SceneCounter, OneWrongCellIsNoticedWhicheverItIs) {
    for (std::size_t wrong = 0; wrong < CounterCode::cellCount; ++wrong) {
        auto cells = CounterCode::encode(4711);
        cells[wrong] = !cells[wrong];
        EXPECT_EQ(readSceneCounter(pictureOf(cells, {}).view(), stripOf({})), std::nullopt) << wrong;
    }
}

TEST(SceneCounter, GreyCellsSayNothing) {
    const Look grey{30, 130};
    EXPECT_EQ(readSceneCounter(pictureOf(CounterCode::encode(3), grey).view(), stripOf(grey)), std::nullopt);
}

TEST(SceneCounter, AStripOutsideThePictureSaysNothing) {
    const BgraImage picture = pictureOf(CounterCode::encode(3), {});
    EXPECT_EQ(readSceneCounter(picture.view(), stripOf({}).translated(2 * left, 0)), std::nullopt);
}

}  // namespace
}  // namespace tessaloom::test
