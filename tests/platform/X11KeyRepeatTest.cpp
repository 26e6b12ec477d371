// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11KeyRepeat.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

TEST(X11KeyRepeat, AHeldKeyRepeatsAfterTheDelayAtTheInterval) {
    X11KeyRepeat repeat;
    repeat.press(38, 10.0, 0.5, 0.1);
    EXPECT_FALSE(repeat.takeDue(10.49));
    EXPECT_EQ(repeat.nextTime(), 10.5);
    const auto first = repeat.takeDue(10.65);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->key, 38);
    EXPECT_DOUBLE_EQ(first->time, 10.5);
    EXPECT_DOUBLE_EQ(repeat.takeDue(10.65)->time, 10.6);
    EXPECT_FALSE(repeat.takeDue(10.65));
}

TEST(X11KeyRepeat, ReleasingTheKeyEndsIt) {
    X11KeyRepeat repeat;
    repeat.press(38, 10.0, 0.5, 0.1);
    repeat.release(38);
    EXPECT_FALSE(repeat.nextTime());
    EXPECT_FALSE(repeat.takeDue(20));
}

TEST(X11KeyRepeat, OnlyTheKeyPressedLastRepeats) {
    X11KeyRepeat repeat;
    repeat.press(38, 10.0, 0.5, 0.1);
    repeat.press(39, 10.2, 0.5, 0.1);
    repeat.release(38);
    EXPECT_EQ(repeat.takeDue(10.7)->key, 39);
}

}  // namespace
}  // namespace tessaloom
