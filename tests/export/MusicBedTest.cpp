// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/MusicBed.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/SoundMaker.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

class MusicBedTest : public ::testing::Test {
  protected:
    std::vector<StereoSample> bed(const test::Sound& music, double seconds) const {
        test::writeWave(file_, music);
        const auto length = std::llround(seconds * soundRate);
        MusicBed source(AudioReader::open(file_), length);
        return test::pull(source, length);
    }

  private:
    test::TemporaryFolder folder_;
    std::filesystem::path file_ = folder_.path() / "music.wav";
};

TEST_F(MusicBedTest, ItBeginsAgainWithoutAGap) {
    // Whole periods, so that the joint is part of the wave.
    const auto music = test::sine(0.5, 441, 0.5);
    const auto result = bed(music, 5);
    for (std::size_t i = soundRate; i < 4 * soundRate; ++i)
        ASSERT_NEAR(result[i].left, music[i % music.size()], 1e-4) << i;
}

TEST_F(MusicBedTest, TheLastRoundIsCutShort) {
    const auto result = bed(test::sine(3, 441, 0.5), 4);
    EXPECT_GT(test::peakBetween(result, 3.3, 3.5), 0.49);
}

TEST_F(MusicBedTest, ItFadesInAndOutOverHalfASecond) {
    const auto result = bed(test::Sound(2 * soundRate, 0.8F), 10);
    const std::pair<double, double> levels[] = {{0, 0},     {0.125, 0.2}, {0.25, 0.4},  {0.5, 0.8}, {5, 0.8},
                                                {9.5, 0.8}, {9.75, 0.4},  {9.875, 0.2}, {9.9999, 0}};
    for (const auto& [time, level] : levels)
        EXPECT_NEAR(result[static_cast<std::size_t>(time * soundRate)].left, level, 0.001) << time;
}

TEST_F(MusicBedTest, InAShortResultTheFadesMeet) {
    const auto result = bed(test::Sound(2 * soundRate, 0.8F), 0.6);
    EXPECT_NEAR(result[static_cast<std::size_t>(0.15 * soundRate)].left, 0.24, 0.001);
    EXPECT_NEAR(result[static_cast<std::size_t>(0.3 * soundRate)].left, 0.48, 0.001);
    EXPECT_NEAR(result[static_cast<std::size_t>(0.45 * soundRate)].left, 0.24, 0.001);
}

TEST_F(MusicBedTest, AnEmptyFileIsSilent) {
    EXPECT_EQ(test::peakBetween(bed({}, 1), 0, 1), 0);
}

}  // namespace
}  // namespace tessaloom
