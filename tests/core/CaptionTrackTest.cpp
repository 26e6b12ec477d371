// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CaptionTrack.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace tessaloom {
namespace {

TEST(CaptionTrack, FadesALineInAndOutWithinItsOwnTime) {
    const CaptionTrack track({{1, 3, "hello", {}}});
    EXPECT_FALSE(track.chip(0.99));
    EXPECT_FLOAT_EQ(track.chip(1)->alpha, 0);
    EXPECT_FLOAT_EQ(track.chip(1.06)->alpha, 0.5F);
    EXPECT_FLOAT_EQ(track.chip(2)->alpha, 1);
    EXPECT_NEAR(track.chip(2.94)->alpha, 0.5F, 1e-5);
    ASSERT_TRUE(track.chip(3));
    EXPECT_FLOAT_EQ(track.chip(3)->alpha, 0);
    EXPECT_FALSE(track.chip(3.01));
}

TEST(CaptionTrack, ALineWithoutWordsMarksNone) {
    EXPECT_EQ(CaptionTrack({{1, 3, "hello", {}}}).chip(2)->activeWord, std::nullopt);
    EXPECT_EQ(CaptionTrack({{1, 3, "hello", {{"hello", 1, 3}}}}).chip(2)->activeWord, 0);
}

TEST(CaptionTrack, WhereLinesTouchTheLaterOneIsChosenInvisible) {
    const auto chip = CaptionTrack({{1, 5, "first", {}}, {5, 9, "second", {}}}).chip(5);
    ASSERT_TRUE(chip);
    EXPECT_EQ(chip->text, "second");
    EXPECT_FLOAT_EQ(chip->alpha, 0);
}

TEST(CaptionTrack, ALineInsideAnotherGivesWayAfterItsEnd) {
    const CaptionTrack track({{0, 10, "outer", {}}, {2, 3, "inner", {}}});
    EXPECT_EQ(track.chip(2.5)->text, "inner");
    EXPECT_EQ(track.chip(5)->text, "outer");
}

TEST(CaptionTrack, HasNoLineBeforeBetweenAndAfter) {
    EXPECT_FALSE(CaptionTrack().chip(0));
    const CaptionTrack track({{1, 2, "a", {}}, {3, 4, "b", {}}});
    for (const double time : {-1.0, 0.5, 2.5, 4.5})
        EXPECT_FALSE(track.chip(time)) << time;
}

TEST(CaptionTrack, ChoosesAsAWalkFromTheLastLineDoes) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> times(0, 20);
    for (int round = 0; round < 200; ++round) {
        std::vector<Caption> lines;
        for (int index = 0; index < 8; ++index) {
            const double start = times(random);
            lines.push_back({start, start + times(random) / 8, std::to_string(index), {}});
        }
        if (round % 2 == 0) std::ranges::sort(lines, {}, &Caption::start);
        const CaptionTrack track(lines);
        for (int look = 0; look < 50; ++look) {
            const double time =
                look % 5 == 0 ? lines[static_cast<std::size_t>(look / 10)].end : times(random);
            const auto line = std::find_if(lines.rbegin(), lines.rend(), [time](const Caption& each) {
                return each.start <= time + 0.000001 && time <= each.end + 0.000001;
            });
            const auto chip = track.chip(time);
            ASSERT_EQ(chip.has_value(), line != lines.rend());
            if (chip) {
                ASSERT_EQ(chip->text, line->text);
            }
        }
    }
}

TEST(CaptionTrack, ListsEachTextOnce) {
    const CaptionTrack track({{0, 1, "b", {}}, {1, 2, "a", {}}, {2, 3, "b", {}}});
    auto unique = track.uniqueTexts();
    std::ranges::sort(unique);
    EXPECT_EQ(unique, (std::vector<std::string_view>{"a", "b"}));
}

}  // namespace
}  // namespace tessaloom
