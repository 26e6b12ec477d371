// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/WebcamRecorder.h"

#include <gtest/gtest.h>

#include <QCoroTask>
#include <algorithm>

#include "capture/ScriptedDevices.h"
#include "media/MovieReader.h"
#include "support/LogLines.h"
#include "support/MovieProbe.h"
#include "support/PixelAt.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

class Webcam : public ::testing::Test {
  protected:
    void deliver(double hostTime, int width = 64, int height = 48, std::uint8_t level = 0) {
        BgraImage picture(width, height);
        for (int y = 0; y < height; ++y)
            std::fill_n(picture.row(y), 4 * width, level);
        control.deliver({hostTime, picture.view()});
    }
    void stop() { QCoro::waitFor(recorder->stop()); }

    test::TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "webcam.mov";
    test::SourceControl<CameraPicture> control;
    std::unique_ptr<WebcamRecorder> recorder =
        WebcamRecorder::start(std::make_unique<test::ScriptedCamera>(control, false));
    double begin = HostClock::seconds() - 3;
};

TEST_F(Webcam, TheFileBeginsWithTheFirstPictureAfterItWasAskedFor) {
    deliver(begin - 0.5);
    recorder->startRecording(file);
    EXPECT_EQ(recorder->fileStartHostTime(), std::nullopt);
    deliver(begin);
    deliver(begin + 0.5);
    EXPECT_EQ(recorder->fileStartHostTime(), begin);
    EXPECT_EQ(control.starts(), 1);
    const test::LogLines log;
    stop();
    EXPECT_GE(log.find("Webcam recording finished"), 0);
    EXPECT_GT(log.find("Webcam session stopped"), log.find("Webcam recording finished"));
    const auto times = test::probeMovie(file).times();
    ASSERT_EQ(times.size(), 3U) << "the last one is carried on to the stop";
    EXPECT_EQ(times[0], 0.0);
    EXPECT_NEAR(times[1], 0.5, 0.001);
    EXPECT_NEAR(MovieReader::scanDuration(file), HostClock::seconds() - begin, 0.5);
}

TEST_F(Webcam, CanBePlayedFromItsFirstPictureOn) {
    recorder->startRecording(file);
    deliver(begin);
    EXPECT_EQ(test::probeMovie(file).packets.size(), 1U);
    stop();
}

TEST_F(Webcam, AnotherCamerasPicturesAreScaledToTheFilesSize) {
    recorder->startRecording(file);
    deliver(begin);
    deliver(begin + 0.5, 32, 32, 200);
    deliver(begin + 1, 1280, 720, 100);
    stop();
    EXPECT_EQ(test::probeMovie(file).width, 64);
    EXPECT_EQ(test::probeMovie(file).height, 48);
    std::vector<int> levels;
    const auto movie = MovieReader::open(file);
    BgraImage picture;
    while (const auto frame = movie->next()) {
        frame->toBgra(picture);
        levels.push_back(*test::pixelAt(picture, 60, 40));
    }
    ASSERT_EQ(levels.size(), 4U) << "the last one is carried on to the stop";
    EXPECT_NEAR(levels[0], 0, 2);
    EXPECT_NEAR(levels[1], 200, 2);
    EXPECT_NEAR(levels[2], 100, 2);
}

TEST_F(Webcam, APictureThatIsNoLaterThanTheLastOneIsLeftOut) {
    recorder->startRecording(file);
    for (const double time : {0.0, 0.5, 0.5, 0.5 + 1e-7, 0.3, 0.4, 0.6, 1.0})
        deliver(begin + time);
    stop();
    const auto times = test::probeMovie(file).times();
    ASSERT_EQ(times.size(), 5U) << "the last one is carried on to the stop";
    EXPECT_NEAR(times[1], 0.5, 0.001);
    EXPECT_NEAR(times[2], 0.6, 0.001);
    EXPECT_NEAR(times[3], 1.0, 0.001);
}

TEST_F(Webcam, AWaitForACameraThatIsStuckEnds) {
    recorder->startRecording(file);
    QCoro::waitFor(recorder->waitForFileStart(50ms));
    EXPECT_EQ(recorder->fileStartHostTime(), std::nullopt);
    stop();
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(Webcam, StoppedWithoutAFileItStillLetsGoOfTheCamera) {
    deliver(begin);
    stop();
    EXPECT_FALSE(control.running());
}

}  // namespace
}  // namespace tessaloom
