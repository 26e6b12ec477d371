// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/FrameChanges.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

constexpr PixelSpan nothing;
constexpr PixelSpan wholeRow{0, 200};
/// The first row of the only band that a test's overlay lies in.
constexpr int band = 32;

/// Two looks that are the same until a test changes them, on a canvas of 200 x 96.
class FrameChangesTest : public ::testing::Test {
  protected:
    FrameChangesTest() {
        before_.uniforms.a = after_.uniforms.a = {200, 96, 0, 0};
        sourcesBefore_.recording = sourcesAfter_.recording = 1;
    }

    void find() {
        area_.clear(200, 96);
        addChanges({before_, sourcesBefore_, textBefore_, {}}, {after_, sourcesAfter_, textAfter_, {}},
                   area_);
    }

    void expectOnly(PixelSpan columns) {
        find();
        EXPECT_EQ(area_.columns(0), nothing);
        EXPECT_EQ(area_.columns(band), columns);
        EXPECT_EQ(area_.columns(band + ChangedArea::bandHeight), nothing);
    }

    void expectAll() {
        find();
        for (int y = 0; y < 96; y += ChangedArea::bandHeight)
            EXPECT_EQ(area_.columns(y), wholeRow) << y;
    }

    void showBubble() {
        WebcamUniforms webcam;
        webcam.rect = {50, 38, 4, 4};
        webcam.params.w = 5;
        before_.webcam = after_.webcam = webcam;
    }

    FrameComposer::Frame before_;
    FrameComposer::Frame after_;
    SourceContents sourcesBefore_;
    SourceContents sourcesAfter_;
    std::optional<Rect> textBefore_;
    std::optional<Rect> textAfter_;
    ChangedArea area_;
};

TEST_F(FrameChangesTest, EqualFramesOfKnownPicturesDifferNowhere) {
    before_.cursor.emplace().rect = {10, 34, 5, 5};
    after_ = before_;
    expectOnly(nothing);
}

TEST_F(FrameChangesTest, AMissingRecordingIsTheSameAsAMissingOne) {
    sourcesBefore_.recording = sourcesAfter_.recording = std::nullopt;
    expectOnly(nothing);
}

TEST_F(FrameChangesTest, AnotherViewIsAnotherCanvas) {
    after_.uniforms.c.x = 0.5F;
    expectAll();
}

TEST_F(FrameChangesTest, AnotherPictureOfTheRecordingIsAnotherCanvas) {
    sourcesAfter_.recording = 2;
    expectAll();
}

TEST_F(FrameChangesTest, AnUnknownPictureOfTheRecordingMayBeAnother) {
    sourcesBefore_.recording = sourcesAfter_.recording = 0;
    expectAll();
}

TEST_F(FrameChangesTest, NothingIsKnownOfANewTarget) {
    before_ = {};
    sourcesBefore_ = {};
    expectAll();
}

TEST_F(FrameChangesTest, APointerLeavesOnePlaceAndAppearsInAnother) {
    before_.cursor.emplace().rect = {10, 34, 5, 5};
    after_.cursor.emplace().rect = {20, 36, 5, 5};
    expectOnly({10, 26});
    after_.cursor.reset();
    expectOnly({10, 16});
}

TEST_F(FrameChangesTest, ARingGrowsWhereItIs) {
    RippleUniforms ripple;
    ripple.rect = {30, 33, 12, 12};
    before_.ripples = {ripple};
    ripple.params.x = 0.5F;
    after_.ripples = {ripple};
    expectOnly({30, 42});
}

TEST_F(FrameChangesTest, ABubbleChangesWithItsShadow) {
    showBubble();
    after_.webcam->meta.z = 0.5F;
    expectOnly({44, 60});
}

TEST_F(FrameChangesTest, ANewCameraPictureOrMatteShowsInTheBubble) {
    showBubble();
    sourcesAfter_.camera = 7;
    expectOnly({44, 60});
    sourcesBefore_.camera = 7;
    sourcesAfter_.matte = 8;
    expectOnly({44, 60});
}

TEST_F(FrameChangesTest, ANewCameraPictureWithoutABubbleShowsNowhere) {
    sourcesAfter_.camera = 7;
    expectOnly(nothing);
}

TEST_F(FrameChangesTest, AFadingKeyLabelChangesItsPlace) {
    textBefore_ = textAfter_ = Rect{80, 33, 20, 6};
    before_.keystroke = KeystrokeChip{"⌘K", 1};
    after_.keystroke = KeystrokeChip{"⌘K", 1};
    expectOnly(nothing);
    after_.keystroke->alpha = 0.5F;
    expectOnly({80, 100});
}

TEST_F(FrameChangesTest, ACaptionChangesWithItsWordAndWithWhatItAvoids) {
    const FrameLook shown{before_, sourcesBefore_, {}, Rect{90, 33, 10, 6}};
    const FrameLook moved{after_, sourcesAfter_, {}, Rect{120, 33, 10, 6}};
    before_.caption = after_.caption = CaptionChip{};
    after_.webcamKeepOut = Rect{90, 30, 10, 10};
    area_.clear(200, 96);
    addChanges(shown, moved, area_);
    EXPECT_EQ(area_.columns(band), (PixelSpan{90, 130}));
    after_.webcamKeepOut.reset();
    after_.caption->activeWord = 1;
    area_.clear(200, 96);
    addChanges(shown, shown, area_);
    EXPECT_TRUE(area_.empty());
    addChanges(shown, moved, area_);
    EXPECT_EQ(area_.columns(band), (PixelSpan{90, 130}));
}

}  // namespace
}  // namespace tessaloom
