// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/LiveMovie.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "base/HostClock.h"
#include "media/MediaError.h"
#include "media/MovieReader.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

constexpr double frameDuration = 1.0 / 60.0;

/// The length of a movie of one frame at 0 and one at `lastFrame`, finished at `endTime`.
double lengthOfMovie(double lastFrame, double endTime) {
    const test::TemporaryFolder folder;
    const auto file = folder.path() / "screen.mov";
    const BgraImage picture(64, 48);
    const std::vector<ScreenPatch> whole{{picture.view(), 0, 0}};
    LiveMovie movie(
        file, {.container = MovieWriter::Container::fragmentedMovie, .video = H264Settings::capture(64, 48)});
    movie.append(whole, 0);
    movie.append(whole, lastFrame);
    movie.finish(endTime);
    return MovieReader::scanDuration(file);
}

/// Of the file as it would be left behind; 0 for one that can't be played.
double lengthNow(const std::filesystem::path& file) {
    try {
        return MovieReader::scanDuration(file);
    } catch (const MediaError&) {
        return 0;
    }
}

TEST(LiveMovie, ItsLastFrameLastsUntilTheEnd) {
    EXPECT_NEAR(lengthOfMovie(1.0, 3.5), 3.5, 0.001);
}

TEST(LiveMovie, CanEndAnywhereAfterItsLastFrame) {
    for (const double rest : {0.0, 0.005, frameDuration, frameDuration + 2e-6, frameDuration + 1e-5}) {
        EXPECT_NEAR(lengthOfMovie(1.0, 1.0 + rest), 1.0 + frameDuration, 0.001) << rest;
    }
}

TEST(LiveMovie, CanSoonBePlayedThoughTheSpeakersAreNotHeard) {
    const test::TemporaryFolder folder;
    const auto file = folder.path() / "screen.mov";
    const BgraImage picture(64, 48);
    const std::vector<ScreenPatch> whole{{picture.view(), 0, 0}};
    LiveMovie movie(file, {.container = MovieWriter::Container::fragmentedMovie,
                           .video = H264Settings::capture(64, 48),
                           .sound = AacSettings{.sampleRate = 48'000, .channels = 2}});
    const double begin = HostClock::seconds();
    movie.append(whole, begin);
    // The first regular flush comes later.
    while (lengthNow(file) == 0 && HostClock::seconds() < begin + 0.4)
        std::this_thread::sleep_for(5ms);
    EXPECT_GT(lengthNow(file), 0);
    movie.finish(HostClock::seconds());
}

}  // namespace
}  // namespace tessaloom
