// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/LiveMovie.h"

#include <gtest/gtest.h>

#include "media/MovieReader.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

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

TEST(LiveMovie, ItsLastFrameLastsUntilTheEnd) {
    EXPECT_NEAR(lengthOfMovie(1.0, 3.5), 3.5, 0.001);
}

TEST(LiveMovie, CanEndAnywhereAfterItsLastFrame) {
    for (const double rest : {0.0, 0.005, frameDuration, frameDuration + 2e-6, frameDuration + 1e-5}) {
        EXPECT_NEAR(lengthOfMovie(1.0, 1.0 + rest), 1.0 + frameDuration, 0.001) << rest;
    }
}

}  // namespace
}  // namespace tessaloom
