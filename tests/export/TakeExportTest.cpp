// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/TakeExport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "base/Resources.h"

#include <fstream>

#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

class TakeExportTest : public ::testing::Test {
  protected:
    OpenTake opened(const EditParams& edit, double duration = 10) const {
        EventLog log;
        log.captureRect = {.x = 0, .y = 0, .width = 1280, .height = 800, .displayScaleFactor = 1};
        if (duration > 0) log.cursorSamples = {{.pts = duration, .x = 0, .y = 0}};
        bundle_.write(log);
        bundle_.write(edit);
        return OpenTake::open(bundle_);
    }

    test::TemporaryFolder folder_;
    TakeBundle bundle_ = TakeBundle::create(folder_.path() / "a.takes");
};

TEST_F(TakeExportTest, EachShapeHasItsAspect) {
    const OpenTake take = opened({});
    const std::pair<AspectPreset, double> cases[] = {{AspectPreset::native, 1.6},
                                                     {AspectPreset::wide, 16.0 / 9.0},
                                                     {AspectPreset::square, 1},
                                                     {AspectPreset::portrait, 0.8},
                                                     {AspectPreset::vertical, 0.5625}};
    for (const auto& [shape, aspect] : cases) {
        ExportChoices choices;
        choices.shape = shape;
        EXPECT_DOUBLE_EQ(canvasAspect(take, choices), aspect);
        EXPECT_DOUBLE_EQ(exportSettings(take, choices, 0).aspect, aspect);
    }
}

TEST_F(TakeExportTest, TheEditsShapeCountsWhereNoneIsChosen) {
    EditParams edit;
    edit.aspect = AspectPreset::square;
    const OpenTake take = opened(edit);
    EXPECT_DOUBLE_EQ(canvasAspect(take, {}), 1);
    ExportChoices choices;
    choices.shape = AspectPreset::vertical;
    EXPECT_DOUBLE_EQ(canvasAspect(take, choices), 0.5625);
}

TEST_F(TakeExportTest, TheResolutionIsTheShortEdgeOfTheChosenShape) {
    ExportChoices choices{.resolution = ResolutionPreset::p720, .quality = {}, .shape = AspectPreset::wide};
    EXPECT_EQ(exportSettings(opened({}), choices, 0).outputLongEdge, 1280);
    choices.shape = AspectPreset::vertical;
    EXPECT_EQ(exportSettings(opened({}), choices, 0).outputLongEdge, 1280);
    choices.shape = AspectPreset::square;
    EXPECT_EQ(exportSettings(opened({}), choices, 0).outputLongEdge, 720);
}

TEST_F(TakeExportTest, TheQualityIsBitsForEachPixel) {
    ExportChoices choices;
    EXPECT_DOUBLE_EQ(exportSettings(opened({}), choices, 0).bitsPerPixel, 0.1);
    choices.quality = QualityPreset::small;
    EXPECT_DOUBLE_EQ(exportSettings(opened({}), choices, 0).bitsPerPixel, 0.045);
}

TEST_F(TakeExportTest, TheRestIsTheEdits) {
    EditParams edit;
    edit.trim = {1, 9};
    edit.removedRanges = {{3, 5}};
    edit.speed = 2;
    edit.cursorStyle = CursorStyle::dot;
    edit.padding = 77;
    edit.background = {.style = Background::Style::wallpaper, .primary = "wallpaper-1.png", .secondary = {}};
    const auto settings = exportSettings(opened(edit), {}, 100);
    EXPECT_EQ(settings.segments, (std::vector<TimeSegment>{{1, 3}, {5, 9}}));
    EXPECT_EQ(settings.speed, 2);
    EXPECT_EQ(settings.cursorStyle, CursorStyle::dot);
    EXPECT_EQ(settings.wallpaper, bundle_.file("wallpaper-1.png"));
    const FrameComposer composer = settings.makeComposer({24, 25}, {3, 4});
    EXPECT_EQ(composer.padding, 77);
    EXPECT_EQ(composer.cursorImageSize, (Size{24, 25}));
}

TEST_F(TakeExportTest, AGifLoopsAsTheEditSaysUnlessToldOtherwise) {
    EditParams edit;
    edit.gifLoop = false;
    ExportChoices choices;
    EXPECT_FALSE(exportSettings(opened(edit), choices, 0).gifLoop);
    choices.gifLoop = true;
    EXPECT_TRUE(exportSettings(opened(edit), choices, 0).gifLoop);
}

TEST_F(TakeExportTest, AGifHasFifteenFramesASecondAndALongSideOf720) {
    ExportChoices choices{.resolution = ResolutionPreset::p2160, .quality = {}};
    EXPECT_EQ(exportSettings(opened({}), choices, 0).gifFPS, 15);
    EXPECT_EQ(exportSettings(opened({}), choices, 0).gifMaxDimension, 720);
    choices.gifFPS = 24;
    EXPECT_EQ(exportSettings(opened({}), choices, 0).gifFPS, 24);
}

TEST_F(TakeExportTest, TheCameraCountsWhereTheTakeHasOne) {
    EditParams edit;
    edit.webcam.enabled = true;
    edit.webcam.blur = 0.5;
    EXPECT_EQ(exportSettings(opened(edit), {}, 0).webcam, std::nullopt);
    std::ofstream(bundle_.file(TakeBundle::webcamFile)) << "pictures";
    EXPECT_EQ(exportSettings(opened(edit), {}, 0).webcam, edit.webcam);
}

TEST_F(TakeExportTest, TheMoviesLengthCountsForAnEmptyLogOnly) {
    EXPECT_EQ(exportSettings(opened({}, 0), {}, 7.5).segments, (std::vector<TimeSegment>{{0, 7.5}}));
    EXPECT_EQ(exportSettings(opened({}, 10), {}, 7.5).segments, (std::vector<TimeSegment>{{0, 10}}));
}

TEST_F(TakeExportTest, TheSoundIsTheEdits) {
    EditParams edit;
    edit.music = MusicPreset::ambient;
    edit.musicVolume = 0.3;
    edit.micVolume = 1.7;
    edit.micEnhanced = true;
    auto settings = exportSettings(opened(edit), {}, 0);
    EXPECT_EQ(settings.musicURL, resource("ambient.m4a"));
    EXPECT_EQ(settings.musicVolume, 0.3);
    // Without a microphone there is nothing to set.
    EXPECT_EQ(settings.micURL, std::nullopt);
    EXPECT_EQ(settings.micVolume, 1);
    const auto microphone = bundle_.file(TakeBundle::microphoneFile);
    std::ofstream(microphone) << "sound";
    settings = exportSettings(opened(edit), {}, 0);
    EXPECT_EQ(settings.micURL, microphone);
    EXPECT_EQ(settings.micVolume, 1.7);
    const auto enhanced = bundle_.file(TakeBundle::enhancedAudioFile);
    std::ofstream(enhanced) << "sound";
    EXPECT_EQ(exportSettings(opened(edit), {}, 0).micURL, enhanced);
    edit.micEnhanced = false;
    edit.music = MusicPreset::none;
    settings = exportSettings(opened(edit), {}, 0);
    EXPECT_EQ(settings.micURL, microphone);
    EXPECT_EQ(settings.musicURL, std::nullopt);
}

TEST_F(TakeExportTest, ClicksSoundWhereTheEditWantsThem) {
    OpenTake take = opened({});
    const auto click = [](double time, std::optional<RelativePoint> location) {
        return InputEvent{
            .pts = time, .type = InputEvent::EventType::leftClick, .location = location, .keyLabel = {}};
    };
    const InputEvent clicks[] = {click(1, RelativePoint{}), click(2, std::nullopt),
                                 click(3, RelativePoint{})};
    take.clickEffects = ClickEffects(clicks);
    EXPECT_TRUE(exportSettings(take, {}, 0).clickSoundTimes.empty());
    take.edit.clickSounds = true;
    EXPECT_EQ(exportSettings(take, {}, 0).clickSoundTimes, (std::vector<double>{1, 3}));
}

TEST_F(TakeExportTest, ASpeedThatIsNoneIsExportedAsOne) {
    OpenTake take = opened({});
    for (const double speed : {0.0, -1.0, std::nan("")}) {
        take.edit.speed = speed;
        EXPECT_EQ(exportSettings(take, {}, 0).speed, 1) << speed;
    }
}

TEST_F(TakeExportTest, LaterChangesToTheTakeDoNotReachTheSettings) {
    OpenTake take = opened({});
    const auto settings = exportSettings(take, {}, 0);
    const double padding = take.edit.padding;
    take.edit.padding = padding + 50;
    EXPECT_EQ(settings.makeComposer({}, {}).padding, padding);
}

}  // namespace
}  // namespace tessaloom
