// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/ClickCounter.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

TEST(ClickCounter, APressAloneIsTheFirst) {
    ClickCounter counter;
    EXPECT_EQ(counter.press(1.0, Point{10, 10}), 1);
    EXPECT_EQ(counter.press(2.0, Point{10, 10}), 1);
}

TEST(ClickCounter, QuickPressesAtOnePlaceCountUp) {
    ClickCounter counter;
    counter.press(1.0, Point{10, 10});
    EXPECT_EQ(counter.press(1.3, Point{12, 11}), 2);
    EXPECT_EQ(counter.press(1.6, Point{12, 11}), 3);
}

TEST(ClickCounter, APressElsewhereStartsAnew) {
    ClickCounter counter;
    counter.press(1.0, Point{10, 10});
    EXPECT_EQ(counter.press(1.2, Point{16, 10}), 1);
}

TEST(ClickCounter, APressTooLateStartsAnew) {
    ClickCounter counter;
    counter.press(1.0, Point{10, 10});
    EXPECT_EQ(counter.press(1.41, Point{10, 10}), 1);
}

TEST(ClickCounter, TheUserMaySetPauseAndDistance) {
    ClickCounter counter({.longestPauseSeconds = 1.0, .greatestDistancePoints = 20});
    counter.press(1.0, Point{10, 10});
    EXPECT_EQ(counter.press(1.9, Point{29, 10}), 2);
    EXPECT_EQ(counter.press(2.0, Point{50, 10}), 1);
    EXPECT_EQ(counter.press(3.1, Point{50, 10}), 1);
}

TEST(ClickCounter, UnknownPlacesCountByTimeAlone) {
    ClickCounter counter;
    counter.press(1.0, std::nullopt);
    EXPECT_EQ(counter.press(1.2, std::nullopt), 2);
}

}  // namespace
}  // namespace tessaloom
