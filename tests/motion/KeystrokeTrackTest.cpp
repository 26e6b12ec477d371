// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/KeystrokeTrack.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tessaloom {
namespace {

using EventType = InputEvent::EventType;

InputEvent press(double pts, std::string label) {
    return {pts, EventType::keyDown, std::nullopt, std::move(label)};
}

KeystrokeTrack track(const std::vector<InputEvent>& events) {
    return KeystrokeTrack(events);
}

TEST(KeystrokeTrack, WithoutStrokesThereIsNeverAChip) {
    EXPECT_EQ(KeystrokeTrack().chip(1), std::nullopt);
}

TEST(KeystrokeTrack, TakesThePressesThatHaveALabel) {
    const KeystrokeTrack some = track({press(1, "⌃S"),
                                       press(2, ""),
                                       {3, EventType::keyDown, std::nullopt, std::nullopt},
                                       {4, EventType::scroll, std::nullopt, "x"}});
    EXPECT_EQ(some.strokes(), (std::vector<KeystrokeTrack::Stroke>{{1, "⌃S"}}));
}

TEST(KeystrokeTrack, ALabelShowsForASecondAndFades) {
    const KeystrokeTrack one = track({press(5, "⌘K")});
    EXPECT_EQ(one.chip(4.9), std::nullopt);
    EXPECT_EQ(one.chip(4.9999995), std::nullopt) << "close enough to be chosen, too early to show";
    EXPECT_EQ(one.chip(5), (KeystrokeChip{"⌘K", 1}));
    EXPECT_EQ(one.chip(6), (KeystrokeChip{"⌘K", 1}));
    EXPECT_NEAR(one.chip(6.175)->alpha, 0.5, 1e-6);
    EXPECT_NEAR(one.chip(6.3499999)->alpha, 0, 1e-6);
    ASSERT_TRUE(one.chip(6.35)) << "there to the last, though invisible";
    EXPECT_NEAR(one.chip(6.35)->alpha, 0, 1e-6);
    EXPECT_EQ(one.chip(6.36), std::nullopt);
}

TEST(KeystrokeTrack, TheNextPressReplacesALabelAtOnce) {
    const KeystrokeTrack two = track({press(5, "A"), press(5.5, "B")});
    EXPECT_EQ(two.chip(5.4), (KeystrokeChip{"A", 1}));
    EXPECT_EQ(two.chip(5.6), (KeystrokeChip{"B", 1}));
}

TEST(KeystrokeTrack, AnEarlierPressNeverComesBack) {
    EXPECT_EQ(track({press(5, "A"), press(5.5, "B"), press(5.0, "C")}).chip(6.9), std::nullopt);
    EXPECT_EQ(track({press(5, "A"), press(3, "B")}).chip(5.1), std::nullopt)
        << "the last in the list is the latest";
}

TEST(KeystrokeTrack, StrokesOutOfOrderAreWalkedFromTheEnd) {
    const KeystrokeTrack mixed = track({press(5, "A"), press(9, "B"), press(5.2, "C")});
    EXPECT_EQ(mixed.chip(5.1), (KeystrokeChip{"A", 1}));
    EXPECT_EQ(mixed.chip(5.3), (KeystrokeChip{"C", 1}));
    EXPECT_EQ(mixed.chip(9.1), std::nullopt) << "C is not in the future and has expired";
}

TEST(KeystrokeTrack, ListsEachLabelOnce) {
    const KeystrokeTrack three = track({press(1, "B"), press(2, "A"), press(3, "B")});
    auto texts = three.uniqueTexts();
    std::ranges::sort(texts);
    EXPECT_EQ(texts, (std::vector<std::string_view>{"A", "B"}));
}

}  // namespace
}  // namespace tessaloom
