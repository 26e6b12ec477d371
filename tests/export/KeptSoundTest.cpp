// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/KeptSound.h"

#include <gtest/gtest.h>

#include <cmath>

#include <random>

#include "support/SoundMaker.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

class KeptSoundTest : public ::testing::Test {
  protected:
    std::vector<StereoSample> kept(const test::Sound& sound, std::vector<TimeSegment> segments,
                                   double offset = 0, double extraSeconds = 0) const {
        test::writeWave(file_, sound);
        double length = extraSeconds;
        for (const TimeSegment& segment : segments)
            length += segment.length();
        KeptSound source(AudioReader::open(file_), segments, offset);
        return test::pull(source, std::llround(length * soundRate));
    }

  private:
    test::TemporaryFolder folder_;
    std::filesystem::path file_ = folder_.path() / "a.wav";
};

TEST_F(KeptSoundTest, UncutItIsTheSoundItselfToTheLastSamplesFade) {
    const test::Sound sound = test::sine(1, 440, 0.5);
    const auto result = kept(sound, {{0, 1}}, 0, 0.1);
    for (std::size_t i = 0; i + 200 < sound.size(); ++i)
        ASSERT_NEAR(result[i].left, sound[i], 1e-4) << i;
    EXPECT_EQ(test::peakBetween(result, 1, 1.1), 0);
}

TEST_F(KeptSoundTest, EachPieceIsWhereThePictureShowsIt) {
    const std::vector<double> times{0.5, 2.5, 4.5};
    const auto found = test::onsets(kept(test::beeps(6, times), {{0, 1}, {2.25, 3}, {4.5, 6}}));
    ASSERT_EQ(found.size(), 3U);
    EXPECT_NEAR(found[0], 0.5, 0.0005);
    EXPECT_NEAR(found[1], 1.25, 0.0005);
    EXPECT_NEAR(found[2], 1.75, 0.0025);
}

TEST_F(KeptSoundTest, SilenceStandsWhereTheSoundDoesNotReach) {
    // It runs from 2 s to 3 s of the recording.
    const std::vector<double> times{0.1, 0.6};
    const auto result = kept(test::beeps(1, times), {{0, 1}, {1.5, 2.5}, {2.55, 10}}, 2);
    const auto found = test::onsets(result);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_NEAR(found[0], 1.6, 0.0005);
    EXPECT_NEAR(found[1], 2.05, 0.0005);
    EXPECT_EQ(test::peakBetween(result, 0, 1.59), 0);
    EXPECT_EQ(test::peakBetween(result, 2.2, 9), 0);
}

TEST_F(KeptSoundTest, ASoundThatBeganBeforeTheRecordingIsHeardFromThere) {
    const std::vector<double> times{0.25, 0.75};
    const auto found = test::onsets(kept(test::beeps(1, times), {{0, 1}}, -0.5));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_NEAR(found[0], 0.25, 0.0005);
}

TEST_F(KeptSoundTest, FiveHundredCutsAddUpNoError) {
    std::mt19937 generator(5);
    std::vector<TimeSegment> segments;
    std::vector<double> times;
    std::vector<double> expected;
    double at = 0;
    double sum = 0;
    for (int n = 0; n < 500; ++n) {
        const double length = 0.06 + static_cast<double>(generator() % 1000) * 1e-5;
        segments.push_back({at, at + length});
        times.push_back(at + 0.007);
        expected.push_back(sum + 0.007);
        sum += length;
        at += length + 0.013 + static_cast<double>(generator() % 1000) * 1e-5;
    }
    test::Sound sound(static_cast<std::size_t>(at * soundRate));
    for (const double time : times)
        for (std::size_t i = 0; i < 500; ++i)
            sound[static_cast<std::size_t>(time * soundRate) + i] = 0.5F;
    const auto found = test::onsets(kept(sound, segments));
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        ASSERT_NEAR(found[i], expected[i], 3.0 / soundRate) << i;
}

TEST_F(KeptSoundTest, AJointIsNoLouderThanTheMaterial) {
    const test::Sound sound = test::sine(3, 220, 0.8);
    const double steepest = 0.8 * 2 * 3.1416 * 220 / soundRate;
    // From one peak of the wave to a trough, and in and out at peaks.
    const double peak = 0.25 / 220;
    const auto result =
        kept(sound, {{1 + peak, 1.5 + peak}, {1.7 + 3 * peak, 2 + peak}, {2.1 + peak, 2.12}}, 0, 0.1);
    EXPECT_LT(test::steepestStep(result), 1.5 * steepest);
    EXPECT_LT(test::peakBetween(result, 0, 2), 0.801);
    EXPECT_GT(test::peakBetween(result, 0.49, 0.51), 0.5);
}

TEST_F(KeptSoundTest, ASplitThatLeavesNothingOutChangesNothing) {
    const test::Sound sound = test::sine(1, 440, 0.5);
    std::vector<TimeSegment> segments;
    for (int n = 0; n < 30; ++n)
        segments.push_back({n / 30.0, (n + 1) / 30.0});
    const auto result = kept(sound, segments);
    for (std::size_t i = 0; i + 200 < sound.size(); ++i)
        ASSERT_NEAR(result[i].left, sound[i], 1e-4) << i;
}

}  // namespace
}  // namespace tessaloom
