// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/Exporter.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <future>
#include <iterator>
#include <thread>

#include "media/ColorConversion.h"
#include "media/MediaError.h"
#include "media/MovieReader.h"
#include "render/CpuRenderer.h"
#include "support/MovieMaker.h"
#include "support/MovieProbe.h"
#include "support/TemporaryFolder.h"
#include "take/OpenTake.h"

namespace tessaloom {
namespace {

namespace fs = std::filesystem;

constexpr int width = 160;
constexpr int height = 90;

/// Fills the canvas with the recording's first pixel and counts.
class PlainRenderer final : public Renderer {
  public:
    explicit PlainRenderer(int& drawn) : drawn_(drawn) {}

    void render(const FrameComposer::Frame&, const FrameSources& sources, BgraImage& target) override {
        ++drawn_;
        const std::uint8_t* pixel = sources.recording.pixels.row(0);
        for (int y = 0; y < target.height(); ++y)
            for (int x = 0; x < target.width(); ++x)
                std::copy_n(pixel, 4, target.row(y) + std::ptrdiff_t{4} * x);
    }
    void render(const FrameComposer::Frame& frame, const FrameSources& sources, YuvImage& target) override {
        BgraImage picture(target.width(), target.height());
        render(frame, sources, picture);
        bgraToYuv(picture.view(), target, 0, 0);
    }
    void makeCursorTexture(CursorStyle style) override { style_ = style; }
    CursorStyle cursorStyle() const override { return style_; }
    Size cursorImageSize() const override { return {24, 24}; }
    Point cursorHotspot() const override { return {0, 0}; }
    void loadWallpaper(const std::optional<fs::path>&) override {}
    void prewarmKeystrokes(std::span<const std::string_view>) override {}
    void prewarmCaptions(std::span<const std::string_view>, const CaptionStyle&) override {}

  private:
    int& drawn_;
    CursorStyle style_ = CursorStyle::system;
};

/// Which of the exported frames are bright.
std::vector<std::size_t> brightFrames(const fs::path& movie) {
    const auto reader = MovieReader::open(movie);
    std::vector<std::size_t> bright;
    BgraImage image;
    for (std::size_t n = 0; const auto frame = reader->next(); ++n) {
        frame->toBgra(image);
        if (image.row(0)[1] > 128) bright.push_back(n);
    }
    return bright;
}

class ExporterTest : public ::testing::Test {
  protected:
    ExporterTest() : bundle_(TakeBundle::create(folder_.path() / "a.takes")) {
        fs::create_directory(destination_.parent_path());
    }

    void record(std::span<const test::PlainPicture> pictures) const {
        test::writeRecordedMovie(bundle_.file(TakeBundle::screenFile), width, height, pictures);
    }

    /// Black, with a white flash that lasts from `start` to `end`.
    void recordFlash(double duration, double rate, double start, double end) const {
        auto pictures = test::plainPictures(static_cast<int>(duration * rate), rate, test::black);
        for (auto& picture : pictures)
            if (picture.time >= start - 1e-9 && picture.time < end - 1e-9) picture.color = test::white;
        record(pictures);
    }

    Exporter::Settings settings(std::vector<TimeSegment> segments) const {
        Exporter::Settings settings;
        settings.segments = std::move(segments);
        settings.makeComposer = [take = OpenTake::open(bundle_)](Size cursor, Point hotspot) {
            return take.composer(cursor, hotspot);
        };
        return settings;
    }

    Exporter prepared(const Exporter::Settings& settings) {
        return Exporter::prepare(bundle_, settings,
                                 [this] { return std::make_unique<PlainRenderer>(drawn_); });
    }

    void run(const Exporter::Settings& settings) {
        prepared(settings).exportVideo(destination_, [](double) {}, {});
    }

    auto filesAtDestination() const {
        return std::distance(fs::directory_iterator(destination_.parent_path()), {});
    }

    test::TemporaryFolder folder_;
    TakeBundle bundle_;
    fs::path destination_ = folder_.path() / "out" / "movie.mp4";
    int drawn_ = 0;
};

TEST_F(ExporterTest, WritesSixtyFramesASecondWithTagsAndTheIndexInFront) {
    recordFlash(2, 30, 1, 1.5);
    run(settings({{0, 2}}));
    const test::MovieFacts facts = test::probeMovie(destination_);
    EXPECT_EQ(facts.width, width);
    EXPECT_EQ(facts.height, height);
    EXPECT_EQ(facts.colors, "bt709 bt709 bt709 tv");
    EXPECT_EQ(facts.profile, "High");
    ASSERT_EQ(facts.packets.size(), 120U);
    for (std::size_t n = 0; n < 120; ++n)
        EXPECT_NEAR(facts.packets[n].time, static_cast<double>(n) / 60, 1e-9);
    const auto boxes = test::topLevelBoxes(destination_);
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
    EXPECT_EQ(test::probeMovie(destination_).packets.size(), 75U);
    EXPECT_EQ(brightFrames(destination_), (std::vector<std::size_t>{45, 46, 47}));
}

TEST_F(ExporterTest, AStillScreenHoldsItsPictureAndIsDrawnOnce) {
    record(std::vector<test::PlainPicture>{{0, test::black}, {3, test::white}, {4, test::white}});
    run(settings({{0, 5}}));
    const auto bright = brightFrames(destination_);
    EXPECT_EQ(test::probeMovie(destination_).packets.size(), 300U);
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
    record(std::vector<test::PlainPicture>{{0, test::black}});
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
    record(std::vector<test::PlainPicture>{{0, test::black}});
    run(settings({{0, 5}}));
    // Half a second of easing; then the filter closes in on the target for ever: less than 1/128 pixel is
    // left of 160 after 0.18 s * ln(160 * 256), 1.9 s.
    EXPECT_GT(drawn_, 60);
    EXPECT_LT(drawn_, 150);
}

TEST_F(ExporterTest, TheMovieStartsLaterWhereTheRecordingDoes) {
    record(std::vector<test::PlainPicture>{{0.5, test::white}, {1, test::white}});
    run(settings({{0, 1}}));
    const auto times = test::probeMovie(destination_).times();
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
    record(std::vector<test::PlainPicture>{{0, test::pureGreen}});
    Exporter exporter =
        Exporter::prepare(bundle_, settings({{0, 0.5}}), [] { return std::make_unique<CpuRenderer>(); });
    exporter.exportVideo(destination_, [](double) {}, {});

    BgraImage image;
    MovieReader::open(destination_)->next()->toBgra(image);
    const auto expectColor = [&image](int x, int y, test::Bgr expected) {
        const std::uint8_t* pixel = image.row(y) + std::ptrdiff_t{4} * x;
        EXPECT_NEAR(pixel[0], expected.blue, 8) << x << "," << y;
        EXPECT_NEAR(pixel[1], expected.green, 8) << x << "," << y;
        EXPECT_NEAR(pixel[2], expected.red, 8) << x << "," << y;
    };
    expectColor(2, 2, {0x28, 0x28, 0xC8});
    expectColor(width / 2, height / 2, test::pureGreen);
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
    const test::MovieFacts facts = test::probeMovie(destination_);
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
    EXPECT_EQ(test::probeMovie(destination_).packets.size(), 240U);
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
    test::writeSoundFile(bundle_.file(TakeBundle::screenFile));
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

TEST_F(ExporterTest, ADestinationThatCannotBeWrittenFails) {
    recordFlash(1, 30, 0, 1);
    destination_ = folder_.path() / "no such folder" / "movie.mp4";
    try {
        run(settings({{0, 1}}));
        FAIL() << "wrote into a folder that isn't there";
    } catch (const MediaError& error) {
        EXPECT_STREQ(error.what(), "The movie can't be written: No such file or directory.");
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
}  // namespace tessaloom
