// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ExporterFixture.h"

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

#include "media/MediaError.h"
#include "media/MovieReader.h"
#include "render/CpuRenderer.h"
#include "support/MovieProbe.h"

namespace tessaloom::test {
namespace {

namespace fs = std::filesystem;

TEST_F(ExporterTest, WritesSixtyFramesASecondWithTagsAndTheIndexInFront) {
    recordFlash(2, 30, 1, 1.5);
    run(settings({{0, 2}}));
    const MovieFacts facts = probeMovie(destination_);
    EXPECT_EQ(facts.width, width);
    EXPECT_EQ(facts.height, height);
    EXPECT_EQ(facts.colors, "bt709 bt709 bt709 tv");
    EXPECT_EQ(facts.profile, "High");
    ASSERT_EQ(facts.packets.size(), 120U);
    for (std::size_t n = 0; n < 120; ++n)
        EXPECT_NEAR(facts.packets[n].time, static_cast<double>(n) / 60, 1e-9);
    const auto boxes = topLevelBoxes(destination_);
    EXPECT_LT(std::ranges::find(boxes, "moov"), std::ranges::find(boxes, "mdat"));
    EXPECT_EQ(filesAtDestination(), 1);
}

TEST_F(ExporterTest, AFlashLandsOnTheFirstFrameWhoseSourceTimeReachesIt) {
    recordFlash(2, 25, 1.0, 1.04);
    run(settings({{0, 2}}));
    // 1.04 s is frame 62.4: the flash shows on frames 60, 61 and 62.
    EXPECT_EQ(brightFrames(destination_), (std::vector<std::size_t>{60, 61, 62}));
}

TEST_F(ExporterTest, TrimCutsAndSpeedMoveTheFlash) {
    recordFlash(6, 60, 4.0, 4.1);
    auto fast = settings({{1, 2}, {3.5, 5}});
    fast.speed = 2;
    run(fast);
    // 1.5 s of kept time lie before the flash, 0.75 s at double speed.
    EXPECT_EQ(probeMovie(destination_).packets.size(), 75U);
    EXPECT_EQ(brightFrames(destination_), (std::vector<std::size_t>{45, 46, 47}));
}

TEST_F(ExporterTest, AStillScreenHoldsItsPictureAndIsDrawnOnce) {
    record(std::vector<PlainPicture>{{0, black}, {3, white}, {4, white}});
    run(settings({{0, 5}}));
    const auto bright = brightFrames(destination_);
    EXPECT_EQ(probeMovie(destination_).packets.size(), 300U);
    ASSERT_EQ(bright.size(), 120U);
    EXPECT_EQ(bright.front(), 180U);
    EXPECT_EQ(drawn_, 3);
}

TEST_F(ExporterTest, WhatTheComposerMovesIsDrawnAgain) {
    EventLog log;
    log.captureRect = {.x = 0, .y = 0, .width = width, .height = height, .displayScaleFactor = 1};
    log.cursorSamples = {{.pts = 0, .x = 0.1, .y = 0.1}, {.pts = 0.5, .x = 0.9, .y = 0.9}};
    bundle_.write(log);
    EditParams edit;
    edit.cursorSmoothing = 0;
    edit.cursorHideIdle = false;
    bundle_.write(edit);
    record(std::vector<PlainPicture>{{0, black}});
    run(settings({{0, 1}}));
    // The pointer travels for half a second and rests for the other half.
    EXPECT_NEAR(drawn_, 31, 1);
}

TEST_F(ExporterTest, AZoomThatHasPracticallyArrivedIsNotDrawnAgain) {
    EventLog log;
    log.captureRect = {.x = 0, .y = 0, .width = width, .height = height, .displayScaleFactor = 1};
    log.cursorSamples = {{.pts = 0, .x = 0.5, .y = 0.5}, {.pts = 6, .x = 0.5, .y = 0.5}};
    bundle_.write(log);
    EditParams edit;
    edit.cursorHideIdle = false;
    ZoomKeyframe zoom;
    zoom.endPTS = 6;
    zoom.targetRect = {0.2, 0.1, 0.5, 0.5};
    edit.zoomKeyframes = {zoom};
    bundle_.write(edit);
    record(std::vector<PlainPicture>{{0, black}});
    run(settings({{0, 5}}));
    // Half a second of easing; then the filter closes in on the target for ever: less than 1/128 pixel is
    // left of 160 after 0.18 s * ln(160 * 256), 1.9 s.
    EXPECT_GT(drawn_, 60);
    EXPECT_LT(drawn_, 150);
}

TEST_F(ExporterTest, TheMovieStartsLaterWhereTheRecordingDoes) {
    record(std::vector<PlainPicture>{{0.5, white}, {1, white}});
    run(settings({{0, 1}}));
    const auto times = probeMovie(destination_).times();
    ASSERT_EQ(times.size(), 30U);
    EXPECT_NEAR(times.front(), 0.5, 1e-9);
}

TEST_F(ExporterTest, ShowsTheRecordingFramedByItsBackground) {
    EditParams edit;
    edit.background.primary = "#C82828";
    edit.padding = 20;
    bundle_.write(edit);
    EventLog log;
    log.captureRect = {.x = 0, .y = 0, .width = width, .height = height, .displayScaleFactor = 1};
    bundle_.write(log);
    record(std::vector<PlainPicture>{{0, pureGreen}});
    Exporter exporter =
        Exporter::prepare(bundle_, settings({{0, 0.5}}), [] { return std::make_unique<CpuRenderer>(); });
    exporter.exportVideo(destination_, [](double) {}, {});

    BgraImage image;
    MovieReader::open(destination_)->next()->toBgra(image);
    const auto expectColor = [&image](int x, int y, Bgr expected) {
        const std::uint8_t* pixel = image.row(y) + std::ptrdiff_t{4} * x;
        EXPECT_NEAR(pixel[0], expected.blue, 8) << x << "," << y;
        EXPECT_NEAR(pixel[1], expected.green, 8) << x << "," << y;
        EXPECT_NEAR(pixel[2], expected.red, 8) << x << "," << y;
    };
    expectColor(2, 2, {0x28, 0x28, 0xC8});
    expectColor(width / 2, height / 2, pureGreen);
}

TEST_F(ExporterTest, WithoutSegmentsOneFrameIsWritten) {
    recordFlash(1, 30, 0, 1);
    run(settings({}));
    EXPECT_EQ(brightFrames(destination_), (std::vector<std::size_t>{0}));
}

TEST_F(ExporterTest, TheCanvasHasTheWantedShapeAndLimit) {
    recordFlash(0.5, 30, 0, 1);
    auto portrait = settings({{0, 0.1}});
    portrait.aspect = 0.8;
    portrait.outputLongEdge = 101;
    run(portrait);
    const MovieFacts facts = probeMovie(destination_);
    EXPECT_EQ(facts.width, 80);
    EXPECT_EQ(facts.height, 100);
}

TEST_F(ExporterTest, ProgressRisesToOne) {
    recordFlash(1, 30, 0, 1);
    std::vector<double> fractions;
    prepared(settings({{0, 1}})).exportVideo(destination_, [&](double f) { fractions.push_back(f); }, {});
    EXPECT_TRUE(std::ranges::is_sorted(fractions));
    EXPECT_NEAR(fractions.front(), 1.0 / 60, 1e-12);
    EXPECT_EQ(fractions.back(), 1);
    EXPECT_EQ(fractions.size(), 61U);
}

TEST_F(ExporterTest, CancellingLeavesTheOldFileAndNothingElse) {
    recordFlash(4, 30, 0, 1);
    std::ofstream(destination_) << "old";
    std::stop_source stop;
    Exporter exporter = prepared(settings({{0, 4}}));
    const auto cancelHalfWay = [&](double fraction) {
        if (fraction > 0.5) stop.request_stop();
    };
    EXPECT_THROW(exporter.exportVideo(destination_, cancelHalfWay, stop.get_token()), ExportCancelled);
    EXPECT_EQ(fs::file_size(destination_), 3U);
    EXPECT_EQ(filesAtDestination(), 1);
}

TEST_F(ExporterTest, ARecordingThatWasCutOffIsExportedAsFarAsItGoes) {
    recordFlash(4, 30, 0, 1);
    const auto movie = bundle_.file(TakeBundle::screenFile);
    fs::resize_file(movie, fs::file_size(movie) * 7 / 10);
    run(settings({{0, 4}}));
    EXPECT_EQ(probeMovie(destination_).packets.size(), 240U);
    EXPECT_EQ(brightFrames(destination_).size(), 60U);
}

TEST_F(ExporterTest, AMissingRecordingIsNamed) {
    try {
        run(settings({{0, 1}}));
        FAIL() << "exported nothing";
    } catch (const MediaError& error) {
        EXPECT_STREQ(error.what(), "\"screen.mov\" can't be read: No such file or directory.");
    }
    EXPECT_EQ(filesAtDestination(), 0);
}

TEST_F(ExporterTest, AFileThatIsNoMovieFails) {
    std::ofstream(bundle_.file(TakeBundle::screenFile)) << "words, words, words";
    EXPECT_THROW(run(settings({{0, 1}})), MediaError);
    EXPECT_EQ(filesAtDestination(), 0);
}

TEST_F(ExporterTest, ARecordingWithoutAVideoTrackFails) {
    writeSoundFile(bundle_.file(TakeBundle::screenFile));
    try {
        run(settings({{0, 1}}));
        FAIL() << "exported a sound";
    } catch (const Exporter::Failure& failure) {
        EXPECT_EQ(failure.reason(), Exporter::Failure::Reason::noVideoTrack);
        EXPECT_STREQ(failure.what(), "The recording has no video track.");
    }
    EXPECT_EQ(filesAtDestination(), 0);
}

TEST_F(ExporterTest, ARecordingWithoutPicturesFails) {
    record({});
    try {
        run(settings({{0, 1}}));
        FAIL() << "exported nothing";
    } catch (const Exporter::Failure& failure) {
        EXPECT_STREQ(failure.what(), "Couldn't read the recording.");
    }
    EXPECT_EQ(filesAtDestination(), 0);
}

TEST_F(ExporterTest, PicturesThatFindNoMemoryAreAFailureToWrite) {
    class Exhausted final : public PlainRenderer {
      public:
        using PlainRenderer::PlainRenderer;
        void render(const FrameComposer::Frame&, const FrameSources&, YuvImage&) override {
            throw std::bad_alloc();
        }
    };
    recordFlash(1, 30, 0, 1);
    Exporter exporter = Exporter::prepare(bundle_, settings({{0, 1}}),
                                          [this] { return std::make_unique<Exhausted>(drawn_); });
    try {
        exporter.exportVideo(destination_, [](double) {}, {});
        FAIL() << "drew without memory";
    } catch (const Exporter::Failure& failure) {
        EXPECT_STREQ(failure.what(), "Couldn't write the exported file.");
    }
    EXPECT_EQ(filesAtDestination(), 0);
}

TEST_F(ExporterTest, AtDoubleSpeedTenSecondsAreThreeHundredFrames) {
    recordFlash(10, 30, 5, 5.1);
    auto fast = settings({{0, 10}});
    fast.speed = 2;
    run(fast);
    EXPECT_EQ(probeMovie(destination_).packets.size(), 300U);
    EXPECT_EQ(brightFrames(destination_), (std::vector<std::size_t>{150, 151, 152}));
}

TEST_F(ExporterTest, ADestinationThatCannotBeWrittenFails) {
    recordFlash(1, 30, 0, 1);
    destination_ = folder_.path() / "no such folder" / "movie.mp4";
    try {
        run(settings({{0, 1}}));
        FAIL() << "wrote into a folder that isn't there";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.what(),
                  "\"" + destination_.string() + "\" can't be written: No such file or directory");
    }
}

TEST_F(ExporterTest, AFullDiskIsReportedAndLeavesNothing) {
    recordFlash(4, 30, 0, 4);
    const auto wanted = settings({{0, 4}});
    constexpr int reported = 7;
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1500, 1500};
        setrlimit(RLIMIT_FSIZE, &limit);
        try {
            run(wanted);
        } catch (const MediaError& error) {
            _exit(std::string(error.what()) == "The movie can't be written: File too large." ? reported : 1);
        }
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), reported);
    EXPECT_EQ(filesAtDestination(), 0);
}

}  // namespace
}  // namespace tessaloom::test
