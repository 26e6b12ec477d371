// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/KeyframeSweep.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace tessaloom {
namespace {

using Keyframes = std::vector<ZoomKeyframe>;
using Index = std::optional<std::size_t>;

template <typename Matches>
Index firstThat(const Keyframes& keyframes, Matches matches) {
    for (std::size_t index = 0; index < keyframes.size(); ++index) {
        if (matches(keyframes[index])) return index;
    }
    return std::nullopt;
}

template <typename Matches>
Index lastThat(const Keyframes& keyframes, Matches matches) {
    for (std::size_t index = keyframes.size(); index-- > 0;) {
        if (matches(keyframes[index])) return index;
    }
    return std::nullopt;
}

// Whole seconds, so that times meet; overlapping, repeated, reversed and in no order.
Keyframes damagedKeyframes(std::mt19937& random) {
    Keyframes keyframes(random() % 12);
    for (ZoomKeyframe& keyframe : keyframes) {
        keyframe.startPTS = static_cast<double>(random() % 20);
        keyframe.endPTS = keyframe.startPTS + static_cast<double>(random() % 6) - 2;
    }
    return keyframes;
}

TEST(KeyframeSweep, FindsWhatASearchThroughTheListFinds) {
    std::mt19937 random(3);
    for (int round = 0; round < 500; ++round) {
        const Keyframes keyframes = damagedKeyframes(random);
        KeyframeSweep sweep(keyframes);
        for (double time = -1; time < 26; time += 0.5) {
            sweep.advance(time);
            ASSERT_EQ(sweep.inForce(), firstThat(keyframes, [time](const ZoomKeyframe& each) {
                          return each.startPTS <= time && time <= each.endPTS;
                      }));
            ASSERT_EQ(sweep.before(),
                      lastThat(keyframes, [time](const ZoomKeyframe& each) { return each.endPTS < time; }));
            ASSERT_EQ(sweep.after(), firstThat(keyframes, [time](const ZoomKeyframe& each) {
                          return time < each.startPTS;
                      }));
        }
    }
}

TEST(KeyframeSweep, StandsUntilAnAnswerChanges) {
    std::mt19937 random(6);
    const auto answers = [](const KeyframeSweep& sweep) {
        return std::array{sweep.inForce(), sweep.before(), sweep.after()};
    };
    for (int round = 0; round < 200; ++round) {
        const Keyframes keyframes = damagedKeyframes(random);
        KeyframeSweep sweep(keyframes);
        const double start = static_cast<double>(random() % 20);
        sweep.advance(start);
        KeyframeSweep later = sweep;
        bool stands = true;
        for (double time = start; time < 26; time += 0.5) {
            later.advance(time);
            stands = stands && answers(later) == answers(sweep);
            if (sweep.standsUntil(time)) {
                ASSERT_TRUE(stands) << time;
            }
        }
    }
    KeyframeSweep sweep(std::span<const ZoomKeyframe>{});
    EXPECT_TRUE(sweep.standsUntil(1e9));
    const Keyframes one{{Uuid::random(), 2, 5, {}, 0, 0}};
    KeyframeSweep before(one);
    before.advance(0);
    EXPECT_TRUE(before.standsUntil(1.9));
    EXPECT_FALSE(before.standsUntil(2));
    before.advance(2);
    EXPECT_TRUE(before.standsUntil(5));
    EXPECT_FALSE(before.standsUntil(5.1));
}

}  // namespace
}  // namespace tessaloom
