// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <fstream>
#include <numeric>

#include "export/ExporterFixture.h"
#include "media/MediaError.h"
#include "support/GifProbe.h"
#include "support/PixelAt.h"

namespace tessaloom::test {
namespace {

namespace fs = std::filesystem;

class ExportGIFTest : public ExporterTest {
  protected:
    void exportGIF(const Exporter::Settings& wanted) {
        prepared(wanted).exportGIF(destination_, [](double) {}, {});
    }

    std::vector<std::size_t> brightGIFFrames() const {
        std::vector<std::size_t> bright;
        const auto pictures = shownPictures(destination_);
        for (std::size_t n = 0; n < pictures.size(); ++n)
            if (pixelAt(pictures[n], 0, 0)[1] > 128) bright.push_back(n);
        return bright;
    }

    Exporter::Failure::Reason failureOf(const Exporter::Settings& wanted) {
        try {
            exportGIF(wanted);
        } catch (const Exporter::Failure& failure) {
            return failure.reason();
        }
        throw std::logic_error("the export succeeded");
    }
};

TEST_F(ExportGIFTest, ShowsEachMomentAtTheWantedRate) {
    recordFlash(2, 60, 1, 1.2);
    auto wanted = settings({{0, 2}});
    wanted.gifFPS = 10;
    exportGIF(wanted);
    const GifFacts facts = probeGif(destination_);
    EXPECT_EQ(facts.delays(), std::vector<int>(20, 10));
    EXPECT_EQ(facts.loopCount, 0);
    EXPECT_EQ(brightGIFFrames(), (std::vector<std::size_t>{10, 11}));
    EXPECT_EQ(filesAtDestination(), 1);
}

TEST_F(ExportGIFTest, TrimCutsAndSpeedMoveTheFlash) {
    recordFlash(6, 60, 4.0, 4.2);
    auto wanted = settings({{1, 2}, {3.5, 5}});
    wanted.speed = 2;
    wanted.gifFPS = 24;
    exportGIF(wanted);
    EXPECT_EQ(probeGif(destination_).frames.size(), 30U);
    // 1.5 s of kept time lie before the flash, 0.75 s at double speed; it lasts for 0.1 s.
    EXPECT_EQ(brightGIFFrames(), (std::vector<std::size_t>{18, 19, 20}));
}

TEST_F(ExportGIFTest, ItPlaysOnceWhereTheSettingsSaySo) {
    recordFlash(1, 30, 0, 1);
    auto wanted = settings({{0, 1}});
    wanted.gifLoop = false;
    exportGIF(wanted);
    EXPECT_EQ(probeGif(destination_).loopCount, std::nullopt);
}

TEST_F(ExportGIFTest, TheLongSideHasALimitAndSidesAreEven) {
    const struct {
        int width, height;
        double aspect;
        int expectedWidth, expectedHeight;
    } cases[] = {{1000, 600, 1000.0 / 601, 720, 432},
                 {1000, 600, 0.5625, 404, 720},
                 {300, 200, 1.5, 300, 200},
                 {300, 202, 300.0 / 202, 300, 202}};
    for (const auto& one : cases) {
        writeRecordedMovie(bundle_.file(TakeBundle::screenFile), one.width, one.height,
                           std::vector<PlainPicture>{{0, white}});
        auto wanted = settings({{0, 0.1}});
        wanted.aspect = one.aspect;
        wanted.outputLongEdge = 100;
        exportGIF(wanted);
        const GifFacts facts = probeGif(destination_);
        EXPECT_EQ(facts.width, one.expectedWidth) << one.aspect;
        EXPECT_EQ(facts.height, one.expectedHeight) << one.aspect;
    }
}

TEST_F(ExportGIFTest, AStillScreenIsDrawnOnceAndCostsNextToNothing) {
    record(std::vector<PlainPicture>{{0, white}});
    exportGIF(settings({{0, 60}}));
    const GifFacts facts = probeGif(destination_);
    EXPECT_EQ(facts.frames.size(), 900U);
    const auto delays = facts.delays();
    EXPECT_EQ(std::accumulate(delays.begin(), delays.end(), 0), 6000);
    EXPECT_EQ(drawn_, 1);
    EXPECT_LT(fs::file_size(destination_), 900U * 30);
}

TEST_F(ExportGIFTest, AnUnevenRecordingIsSampledEvenly) {
    record(std::vector<PlainPicture>{{0, black}, {0.01, white}, {0.05, black}, {0.4, white}, {0.95, black}});
    exportGIF(settings({{0, 1}}));
    EXPECT_EQ(brightGIFFrames(), (std::vector<std::size_t>{6, 7, 8, 9, 10, 11, 12, 13, 14}));
}

TEST_F(ExportGIFTest, TheGifBeginsLaterWhereTheRecordingDoes) {
    record(std::vector<PlainPicture>{{0.5, white}});
    exportGIF(settings({{0, 1}}));
    EXPECT_EQ(probeGif(destination_).delays(), (std::vector<int>{7, 6, 7, 7, 6, 7, 7}));
}

TEST_F(ExportGIFTest, WithoutSegmentsOrWithEmptyOnesOneFrameIsWritten) {
    recordFlash(1, 30, 0, 1);
    for (const auto& segments : {std::vector<TimeSegment>{}, std::vector<TimeSegment>{{0.5, 0.5}}}) {
        exportGIF(settings(segments));
        EXPECT_EQ(probeGif(destination_).frames.size(), 1U);
    }
}

TEST_F(ExportGIFTest, ProgressRisesToOne) {
    recordFlash(1, 30, 0, 1);
    std::vector<double> fractions;
    prepared(settings({{0, 1}})).exportGIF(destination_, [&](double f) { fractions.push_back(f); }, {});
    EXPECT_TRUE(std::ranges::is_sorted(fractions));
    EXPECT_NEAR(fractions.front(), 1.0 / 15, 1e-12);
    EXPECT_EQ(fractions.back(), 1);
}

TEST_F(ExportGIFTest, CancellingLeavesTheOldFileAndNothingElse) {
    recordFlash(8, 30, 0, 1);
    std::ofstream(destination_) << "old";
    std::stop_source stop;
    Exporter exporter = prepared(settings({{0, 8}}));
    const auto cancelHalfWay = [&](double fraction) {
        if (fraction > 0.5) stop.request_stop();
    };
    EXPECT_THROW(exporter.exportGIF(destination_, cancelHalfWay, stop.get_token()), ExportCancelled);
    EXPECT_EQ(fs::file_size(destination_), 3U);
    EXPECT_EQ(filesAtDestination(), 1);
}

TEST_F(ExportGIFTest, ARecordingThatVanishesMeanwhileIsExportedToItsEnd) {
    recordFlash(4, 30, 1, 2);
    Exporter exporter = prepared(settings({{0, 4}}));
    const auto removeIt = [&](double) { fs::remove_all(bundle_.url); };
    exporter.exportGIF(destination_, removeIt, {});
    EXPECT_EQ(brightGIFFrames().size(), 15U);
}

TEST_F(ExportGIFTest, ARecordingWithoutPicturesFails) {
    record({});
    EXPECT_EQ(failureOf(settings({{0, 1}})), Exporter::Failure::Reason::gifFailed);
    EXPECT_EQ(filesAtDestination(), 0);
}

TEST_F(ExportGIFTest, ARecordingWithoutAVideoTrackFails) {
    writeSoundFile(bundle_.file(TakeBundle::screenFile));
    EXPECT_EQ(failureOf(settings({{0, 1}})), Exporter::Failure::Reason::noVideoTrack);
    EXPECT_EQ(filesAtDestination(), 0);
}

TEST_F(ExportGIFTest, TheCameraIsShown) {
    record(std::vector<PlainPicture>{{0, black}});
    writeRecordedMovie(bundle_.file(TakeBundle::webcamFile), 64, 48,
                       std::vector<PlainPicture>{{0, black}, {0.5, white}});
    EditParams edit;
    edit.webcam.enabled = true;
    bundle_.write(edit);
    auto wanted = settings({{0, 1}});
    wanted.webcam = edit.webcam;
    exportGIF(wanted);
    EXPECT_EQ(brightGIFFrames().size(), 7U);
}

}  // namespace
}  // namespace tessaloom::test
