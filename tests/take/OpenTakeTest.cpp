// SPDX-License-Identifier: GPL-3.0-or-later
#include "take/OpenTake.h"

#include <gtest/gtest.h>

#include <fstream>

#include "core/EventJournal.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

std::vector<ZoomKeyframe> oneZoom() {
    ZoomKeyframe keyframe;
    keyframe.startPTS = 1;
    keyframe.endPTS = 3;
    keyframe.targetRect = {0.25, 0.25, 0.5, 0.5};
    return {keyframe};
}

EventLog logOf(double duration) {
    EventLog log;
    log.captureRect = {.x = 0, .y = 0, .width = 1280, .height = 800, .displayScaleFactor = 2};
    log.cursorSamples = {{.pts = 0, .x = 0.1, .y = 0.1}, {.pts = duration, .x = 0.9, .y = 0.9}};
    return log;
}

class OpenTakeTest : public ::testing::Test {
  protected:
    OpenTakeTest() : bundle_(TakeBundle::create(folder_.path() / "a.takes")) {}

    OpenTake opened(const EventLog& log, const EditParams& edit = {}) const {
        bundle_.write(log);
        bundle_.write(edit);
        return OpenTake::open(bundle_);
    }
    void store(std::string_view name, const std::string& content) const {
        std::ofstream(bundle_.file(name)) << content;
    }
    void damage(std::string_view name) const { store(name, "{ not json"); }

    test::TemporaryFolder folder_;
    TakeBundle bundle_;
};

TEST_F(OpenTakeTest, FixedValuesFollowTheLog) {
    const OpenTake take = opened(logOf(12));
    EXPECT_TRUE(take.warnings.empty());
    EXPECT_DOUBLE_EQ(take.recordingAspect, 1.6);
    EXPECT_DOUBLE_EQ(take.capturePointWidth, 1280);
    EXPECT_EQ(take.recordingPixelSize, (Size{2560, 1600}));
    EXPECT_DOUBLE_EQ(take.totalDuration, 12);
    EXPECT_DOUBLE_EQ(take.trimStart, 0);
    EXPECT_DOUBLE_EQ(take.trimEnd, 12);
}

TEST_F(OpenTakeTest, AnEmptyCaptureRectangleHasStandIns) {
    EventLog log = logOf(1);
    log.captureRect = {};
    const OpenTake take = opened(log);
    EXPECT_DOUBLE_EQ(take.recordingAspect, 16.0 / 9.0);
    EXPECT_DOUBLE_EQ(take.capturePointWidth, 2560);
}

TEST_F(OpenTakeTest, DurationIsTheLastEventsWhereNoCursorWasSeen) {
    EventLog log;
    log.events = {{.pts = 3.5, .type = InputEvent::EventType::keyDown, .location = {}, .keyLabel = {}}};
    EXPECT_DOUBLE_EQ(opened(log).totalDuration, 3.5);
}

struct TrimCase {
    TrimRange stored;
    double duration;
    double start;
    double end;
};

class OpenTakeTrim : public OpenTakeTest, public ::testing::WithParamInterface<TrimCase> {};

TEST_P(OpenTakeTrim, IsHeldWithinTheRecording) {
    EditParams edit;
    edit.trim = GetParam().stored;
    const OpenTake take = opened(GetParam().duration > 0 ? logOf(GetParam().duration) : EventLog{}, edit);
    EXPECT_DOUBLE_EQ(take.trimStart, GetParam().start);
    EXPECT_DOUBLE_EQ(take.trimEnd, GetParam().end);
}

INSTANTIATE_TEST_SUITE_P(Cases, OpenTakeTrim,
                         ::testing::Values(TrimCase{{2, 8}, 10, 2, 8}, TrimCase{{0, 99}, 10, 0, 10},
                                           TrimCase{{50, {}}, 10, 9.9, 10}, TrimCase{{-3, {}}, 10, 0, 10},
                                           TrimCase{{1, 0.05}, 10, 0, 0.05}, TrimCase{{0, 5}, 0, 0, 5},
                                           TrimCase{{0, {}}, 0, 0, 0}));

TEST_F(OpenTakeTest, TracksAreMadeOfTheLog) {
    EventLog log = logOf(10);
    log.events = {
        {.pts = 2, .type = InputEvent::EventType::leftClick, .location = {{0.5, 0.5}}, .keyLabel = {}}};
    EditParams edit;
    edit.cursorSmoothing = 0.8;
    edit.zoomKeyframes = oneZoom();
    const OpenTake take = opened(log, edit);
    EXPECT_EQ(take.cursorTrack, CursorTrack(log.cursorSamples).smoothed(0.8));
    EXPECT_EQ(take.clickEffects, ClickEffects(log.events));
    EXPECT_EQ(take.zoomTimeline, ZoomTimeline(edit.zoomKeyframes, 10));
}

TEST_F(OpenTakeTest, ZoomsOfATakeWithoutALengthDoNotCount) {
    EditParams edit;
    edit.zoomKeyframes = oneZoom();
    EXPECT_EQ(opened({}, edit).zoomTimeline, ZoomTimeline());
}

TEST_F(OpenTakeTest, TheComposerHoldsTheEdit) {
    EditParams edit;
    edit.padding = 77;
    edit.cornerRadius = 5;
    edit.cursorVisible = false;
    edit.showCaptions = true;
    edit.webcam.enabled = true;
    const OpenTake take = opened(logOf(10), edit);
    const FrameComposer composer = take.composer({24, 25}, {3, 4});
    EXPECT_EQ(composer.cursorImageSize, (Size{24, 25}));
    EXPECT_EQ(composer.cursorHotspot, (Point{3, 4}));
    EXPECT_EQ(composer.padding, 77);
    EXPECT_EQ(composer.cornerRadius, 5);
    EXPECT_FALSE(composer.cursorVisible);
    EXPECT_TRUE(composer.captionsVisible);
    EXPECT_DOUBLE_EQ(composer.recordingAspect, 1.6);
    EXPECT_EQ(composer.webcamConfig, std::nullopt);
    std::ofstream(bundle_.file(TakeBundle::webcamFile)) << "camera";
    EXPECT_EQ(take.composer({}, {}).webcamConfig, edit.webcam);
}

TEST_F(OpenTakeTest, TheComposerTurnsTheCameraOffInHiddenBlocks) {
    EditParams edit;
    edit.splitPoints = {2, 6};
    edit.cameraHiddenRanges = {{2, 6}};
    const OpenTake take = opened(logOf(10), edit);
    EXPECT_EQ(take.cameraBands(),
              (std::vector<CameraBand>{{{0, 2}, true}, {{2, 6}, false}, {{6, 10}, true}}));
    FrameComposer composer = take.composer({}, {});
    EXPECT_TRUE(composer.cameraInitiallyShown);
    EXPECT_EQ(composer.cameraTransitions, (std::vector<double>{2, 6}));
    edit.cameraHiddenRanges = {{0, 2}};
    composer = opened(logOf(10), edit).composer({}, {});
    EXPECT_FALSE(composer.cameraInitiallyShown);
    EXPECT_EQ(composer.cameraTransitions, (std::vector<double>{2}));
}

TEST_F(OpenTakeTest, KeptSegmentsFollowTrimAndCuts) {
    EditParams edit;
    edit.trim = {1, 9};
    edit.removedRanges = {{3, 5}};
    const OpenTake take = opened(logOf(10), edit);
    EXPECT_EQ(take.keptSegments(100), (std::vector<TimeSegment>{{1, 3}, {5, 9}}));
}

TEST_F(OpenTakeTest, TheMoviesLengthStandsInForAnEmptyLog) {
    EXPECT_EQ(opened({}).keptSegments(7.5), (std::vector<TimeSegment>{{0, 7.5}}));
    EditParams edit;
    edit.trim = {2, std::nullopt};
    EXPECT_EQ(opened({}, edit).keptSegments(7.5), (std::vector<TimeSegment>{{2, 7.5}}));
    EXPECT_TRUE(opened({}).keptSegments(0).empty());
}

TEST_F(OpenTakeTest, DamagedFilesReadAsDefaultsWithOneWarningThatNamesThem) {
    damage(TakeBundle::editFile);
    const OpenTake withLog = OpenTake::open(bundle_);
    EXPECT_EQ(withLog.edit, EditParams{});
    EXPECT_EQ(withLog.warnings,
              Warnings{"The recording's \"edit.json\" can't be read and counts as empty: The edit is not a "
                       "JSON object."});
    damage(TakeBundle::eventsFile);
    const OpenTake take = OpenTake::open(bundle_);
    EXPECT_EQ(take.edit, EditParams{});
    EXPECT_EQ(take.log, EventLog{});
    EXPECT_EQ(take.warnings,
              Warnings{"The recording's \"edit.json\" and \"events.json\" can't be read and count as empty: "
                       "The edit is not a JSON object. The event log is not a JSON object."});
}

TEST_F(OpenTakeTest, MissingFilesReadAsDefaultsWithOneWarning) {
    const OpenTake take = OpenTake::open(TakeBundle{folder_.path() / "not there"});
    EXPECT_EQ(take.edit, EditParams{});
    ASSERT_EQ(take.warnings.size(), 1U);
    EXPECT_NE(take.warnings.front().find("\"edit.json\" and \"events.json\""), std::string::npos);
    EXPECT_NE(take.warnings.front().find(": No such file or directory. Can't open"), std::string::npos)
        << "two sentences: " << take.warnings.front();
}

TEST_F(OpenTakeTest, AByteOrderMarkCostsNothing) {
    EditParams edit;
    edit.padding = 7;
    store(TakeBundle::editFile, "\uFEFF" + encode(edit));
    store(TakeBundle::eventsFile, "\uFEFF" + encode(logOf(3)));
    const OpenTake take = OpenTake::open(bundle_);
    EXPECT_EQ(take.edit, edit);
    EXPECT_EQ(take.log, logOf(3));
    EXPECT_TRUE(take.warnings.empty());
}

TEST_F(OpenTakeTest, ATakeWhoseRecorderDiedIsCompleted) {
    const EventLog log = logOf(6);
    {
        auto journal = EventJournal::create(bundle_, log);
        journal.append(log.cursorSamples, log.events);
    }
    const OpenTake take = OpenTake::open(bundle_);
    EXPECT_DOUBLE_EQ(take.totalDuration, 6);
    EXPECT_FALSE(std::filesystem::exists(bundle_.file(TakeBundle::journalFile)));
    EXPECT_EQ(bundle_.readLog().cursorSamples, log.cursorSamples);
}

TEST_F(OpenTakeTest, TheWallpaperLiesInTheBundle) {
    EditParams edit;
    edit.background = {.style = Background::Style::wallpaper, .primary = "wallpaper-1.png", .secondary = {}};
    EXPECT_EQ(opened({}, edit).wallpaper(), bundle_.file("wallpaper-1.png"));
    edit.background.primary.clear();
    EXPECT_EQ(opened({}, edit).wallpaper(), std::nullopt);
    EXPECT_EQ(opened({}).wallpaper(), std::nullopt);
}

}  // namespace
}  // namespace tessaloom
