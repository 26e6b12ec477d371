// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/ClickEffects.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace tessaloom {
namespace {

using EventType = InputEvent::EventType;

InputEvent click(double pts, double x = 0.5, double y = 0.5, EventType type = EventType::leftClick) {
    return {pts, type, RelativePoint{x, y}, std::nullopt};
}

ClickEffects effects(const std::vector<InputEvent>& events) {
    return ClickEffects(events);
}

TEST(ClickEffects, TakesTheClicksThatHaveAPlace) {
    const ClickEffects some = effects({click(1),
                                       click(2, 0.1, 0.2, EventType::rightClick),
                                       click(3, 0.5, 0.5, EventType::doubleClick),
                                       click(4, 0.5, 0.5, EventType::scroll),
                                       click(5, 0.5, 0.5, EventType::keyDown),
                                       {6, EventType::leftClick, std::nullopt, std::nullopt}});
    ASSERT_EQ(some.clicks().size(), 3U);
    EXPECT_EQ(some.clicks()[1], (ClickEffects::Click{2, {0.1, 0.2}}));
}

TEST(ClickEffects, ARippleRunsForHalfASecond) {
    const ClickEffects one = effects({click(2, 0.25, 0.75)});
    EXPECT_TRUE(one.ripples(1.999).empty());
    EXPECT_EQ(one.ripples(2), (std::vector<ClickEffects::Ripple>{{{0.25, 0.75}, 0}}));
    EXPECT_EQ(one.ripples(2.25), (std::vector<ClickEffects::Ripple>{{{0.25, 0.75}, 0.5}}));
    EXPECT_EQ(one.ripples(2.5), (std::vector<ClickEffects::Ripple>{{{0.25, 0.75}, 1}}));
    EXPECT_TRUE(one.ripples(2.501).empty());
}

TEST(ClickEffects, SeveralRipplesRunAtOnceInTheListsOrder) {
    const auto ripples = effects({click(2, 0.1), click(2.25, 0.2)}).ripples(2.25);
    ASSERT_EQ(ripples.size(), 2U);
    EXPECT_EQ(ripples[0].point.x, 0.1);
    EXPECT_EQ(ripples[1].point.x, 0.2);
}

TEST(ClickEffects, ABounceRisesAndFalls) {
    const ClickEffects one = effects({click(2)});
    EXPECT_EQ(effects({}).bounce(2), 1);
    EXPECT_EQ(one.bounce(1.99), 1);
    EXPECT_DOUBLE_EQ(one.bounce(2), 1);
    EXPECT_NEAR(one.bounce(2.11), 1.35, 1e-12);
    EXPECT_NEAR(one.bounce(2.22), 1, 1e-9);
    EXPECT_EQ(one.bounce(2.3), 1);
}

TEST(ClickEffects, BouncesDoNotAddUp) {
    const double greater = std::sin(0.15 / 0.22 * std::numbers::pi);
    EXPECT_NEAR(effects({click(2), click(2.1)}).bounce(2.15), 1 + 0.35 * greater, 1e-12);
    EXPECT_NEAR(effects({click(2), click(2.1)}).bounce(2.21), 1.35, 1e-12);
}

TEST(ClickEffects, KnowsTheTimeSinceTheLastClick) {
    const ClickEffects two = effects({click(2), click(5)});
    EXPECT_EQ(two.secondsSinceClick(1), std::nullopt);
    EXPECT_EQ(two.secondsSinceClick(2), 0);
    EXPECT_EQ(two.secondsSinceClick(4), 2);
    EXPECT_EQ(two.secondsSinceClick(6), 1);
    EXPECT_EQ(effects({click(5), click(2)}).secondsSinceClick(6), 4) << "the last in the list";
}

TEST(ClickEffects, FindsWhatAWalkOverAllClicksFinds) {
    std::mt19937 random(6);
    std::uniform_int_distribution<int> ticks(0, 300);
    for (int round = 0; round < 100; ++round) {
        std::vector<InputEvent> events;
        for (int index = 0; index < 20; ++index)
            events.push_back(click(ticks(random) / 50.0, index / 20.0));
        if (round % 2 == 0) std::ranges::sort(events, {}, &InputEvent::pts);
        const ClickEffects all = effects(events);
        for (int look = 0; look < 100; ++look) {
            const double time = ticks(random) / 50.0;
            std::vector<ClickEffects::Ripple> ripples;
            double greatest = 0;
            for (const InputEvent& event : events) {
                const double age = time - event.pts;
                if (age >= 0 && age <= 0.5) ripples.push_back({*event.location, age / 0.5});
                if (age >= 0 && age <= 0.22)
                    greatest = std::max(greatest, std::sin(age / 0.22 * std::numbers::pi));
            }
            ASSERT_EQ(all.ripples(time), ripples);
            ASSERT_EQ(all.bounce(time), 1 + 0.35 * greatest);
            const auto last = std::find_if(events.rbegin(), events.rend(),
                                           [time](const InputEvent& event) { return event.pts <= time; });
            const auto since = all.secondsSinceClick(time);
            ASSERT_EQ(since.has_value(), last != events.rend());
            if (since) {
                ASSERT_EQ(*since, time - last->pts);
            }
        }
    }
}

}  // namespace
}  // namespace tessaloom
