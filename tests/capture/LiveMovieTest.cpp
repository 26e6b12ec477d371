// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/LiveMovie.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <random>
#include <thread>

#include "base/HostClock.h"
#include "base/Log.h"
#include "media/MediaError.h"
#include "media/MovieReader.h"
#include "support/LogLines.h"
#include "support/SoundProbe.h"
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
        file, {.container = MovieWriter::Container::fragmentedMovie, .video = H264Settings::capture(64, 48)},
        Log::screenCapture);
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
    LiveMovie movie(file,
                    {.container = MovieWriter::Container::fragmentedMovie,
                     .video = H264Settings::capture(64, 48),
                     .sound = AacSettings{.sampleRate = 48'000, .channels = 2}},
                    Log::screenCapture);
    const double begin = HostClock::seconds();
    movie.append(whole, begin);
    // The first regular flush comes later.
    while (lengthNow(file) == 0 && HostClock::seconds() < begin + 0.4)
        std::this_thread::sleep_for(5ms);
    EXPECT_GT(lengthNow(file), 0);
    movie.finish(HostClock::seconds());
}

TEST(LiveMovie, AFlushThatFailsIsLoggedByWhoeverRecords) {
    const test::LogLines log;
    const BgraImage picture(64, 48);
    const std::vector<ScreenPatch> whole{{picture.view(), 0, 0}};
    LiveMovie movie(
        "/dev/full",
        {.container = MovieWriter::Container::fragmentedMovie, .video = H264Settings::capture(64, 48)},
        Log::webcam);
    EXPECT_THROW(movie.append(whole, HostClock::seconds()), MediaError);
    for (int round = 0; round < 300 && log.find("Failed to write the recording") < 0; ++round)
        std::this_thread::sleep_for(10ms);
    EXPECT_GT(log.count("Webcam: Failed to write the recording"), 0);
    EXPECT_EQ(log.count("ScreenCapture: "), 0);
}

/// A picture that no encoder is soon done with.
BgraImage noise(int width, int height) {
    BgraImage picture(width, height);
    std::minstd_rand random(1);
    for (int y = 0; y < height; ++y)
        std::generate_n(picture.row(y), 4 * width, [&] { return static_cast<std::uint8_t>(random() >> 8); });
    return picture;
}

TEST(LiveMovie, SoundDoesNotWaitForPictures) {
    constexpr int chunks = 20;
    constexpr int chunkFrames = 1024;
    const test::TemporaryFolder folder;
    const auto file = folder.path() / "screen.mov";
    const BgraImage picture = noise(1920, 1080);
    const std::vector<ScreenPatch> whole{{picture.view(), 0, 0}};
    LiveMovie movie(file,
                    {.container = MovieWriter::Container::fragmentedMovie,
                     .video = H264Settings::capture(1920, 1080),
                     .sound = AacSettings{.sampleRate = 48'000, .channels = 2}},
                    Log::screenCapture);
    const double begin = HostClock::seconds();
    std::atomic<int> pictures = 0;
    std::jthread busy([&](const std::stop_token& stop) {
        for (; !stop.stop_requested(); ++pictures)
            movie.append(whole, begin + pictures * frameDuration);
    });
    while (pictures == 0)
        std::this_thread::sleep_for(1ms);
    const double first = 0.2;  // in the beginning the movie makes do without sound
    const std::vector<float> tone(2 * chunkFrames, 0.5F);
    int waitedFor = 0;
    for (int i = 0; i < chunks; ++i) {
        const int before = pictures;
        movie.appendSound({.hostTime = begin + first + i * chunkFrames / 48'000.0, .samples = tone});
        waitedFor += pictures - before;
        std::this_thread::sleep_for(10ms);
    }
    busy.request_stop();
    busy.join();
    EXPECT_LT(waitedFor, chunks / 4);
    const double length = first + chunks * chunkFrames / 48'000.0;
    movie.finish(begin + std::max(length, pictures * frameDuration));
    const auto sound = test::decodeSound(file);
    for (double time = first + 0.01; time < length - 0.03; time += 0.02)
        EXPECT_GT(sound.peak(time, time + 0.02), 0.2F) << time;
}

}  // namespace
}  // namespace tessaloom
