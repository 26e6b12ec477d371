// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/EditParams.h"

#include <gtest/gtest.h>

#include <limits>

#include "core/DecodeError.h"
#include "support/EditedThroughout.h"

namespace tessaloom {
namespace {

CaptionStyle decodeStyle(const std::string& json) {
    return decodeEditParams("{\"captionStyle\":" + json + "}").captionStyle;
}

TEST(EditParams, AnEmptyObjectIsTheFreshEdit) {
    EXPECT_EQ(decodeEditParams("{}"), EditParams{});
}

TEST(EditParams, TheFreshEditHasTheDocumentedLook) {
    const EditParams edit = decodeEditParams("{}");
    EXPECT_EQ(edit.version, 1);
    EXPECT_EQ(edit.background, (Background{Background::Style::color, "#1C1C1E", std::nullopt}));
    EXPECT_EQ(edit.padding, 40);
    EXPECT_EQ(edit.cornerRadius, 12);
    EXPECT_EQ(edit.shadow, 0.35);
    EXPECT_EQ(edit.musicVolume, 0.7);
    EXPECT_EQ(edit.cursorSmoothing, 0.3);
    EXPECT_EQ(edit.webcam.relativeSize, 0.2);
    EXPECT_EQ(edit.webcam.position, (RelativePoint{0.85, 0.85}));
    EXPECT_EQ(edit.captionStyle.backgroundOpacity, 0.78);
    EXPECT_EQ(edit.captionStyle.highlight, CaptionHighlight::box);
    EXPECT_TRUE(edit.cursorVisible && edit.cursorBounce && edit.cursorHideIdle && edit.gifLoop &&
                edit.showKeystrokes);
    EXPECT_FALSE(edit.clickSounds || edit.micEnhanced || edit.removeSilences || edit.removeFillers ||
                 edit.showCaptions || edit.webcam.enabled);
}

TEST(EditParams, EveryValueSurvivesTheWayToTheFileAndBack) {
    const EditParams edit = editedThroughout();
    EXPECT_EQ(decodeEditParams(encode(edit)), edit);
}

TEST(EditParams, WhatIsNoJsonObjectIsRefused) {
    EXPECT_THROW(decodeEditParams("[{}]"), DecodeError);
    EXPECT_THROW(decodeEditParams(""), DecodeError);
}

TEST(EditParams, DeepNestingCostsNoStack) {
    std::string opened;
    for (int depth = 0; depth < 100'000; ++depth)
        opened += R"({"webcam":)";
    EXPECT_THROW(decodeEditParams(opened), DecodeError);
    const std::string closed = opened + "1" + std::string(100'000, '}');
    EXPECT_EQ(decodeEditParams(closed).webcam, WebcamConfig{});
}

TEST(EditParams, ABadValueCostsThatValueOnly) {
    const EditParams edit = decodeEditParams(
        R"({"version": 7, "padding": "wide", "aspect": "round", "shadow": 1, "cursorVisible": 0,
            "gifLoop": false, "music": "polka", "cursorStyle": null, "crop": [0, 0, 1, 1], "speed": 2})");
    EXPECT_EQ(edit.version, 7);
    EXPECT_EQ(edit.padding, 40);
    EXPECT_EQ(edit.aspect, AspectPreset::native);
    EXPECT_EQ(edit.shadow, 1);
    EXPECT_TRUE(edit.cursorVisible);
    EXPECT_FALSE(edit.gifLoop);
    EXPECT_EQ(edit.music, MusicPreset::none);
    EXPECT_EQ(edit.cursorStyle, CursorStyle::system);
    EXPECT_EQ(edit.crop, RelativeRect{});
    EXPECT_EQ(edit.speed, 2);
}

TEST(EditParams, TheBubblesPlaceHasADefaultAsAWholeAndOneForEachPart) {
    EXPECT_EQ(decodeEditParams(R"({"webcam": {"position": {"x": 0.1}}})").webcam.position,
              (RelativePoint{0.1, 0.5}));
    EXPECT_EQ(decodeEditParams(R"({"webcam": {"enabled": true}})").webcam.position,
              (RelativePoint{0.85, 0.85}));
    EXPECT_EQ(decodeEditParams(R"({"webcam": {"position": 3}})").webcam.position,
              (RelativePoint{0.85, 0.85}));
}

TEST(EditParams, AKeyframeWithoutATimeIsDropped) {
    const EditParams edit = decodeEditParams(
        R"({"zoomKeyframes": [{"startPTS": 1}, {"startPTS": 2, "endPTS": 3}, {"endPTS": 4}]})");
    ASSERT_EQ(edit.zoomKeyframes.size(), 1U);
    const ZoomKeyframe& keyframe = edit.zoomKeyframes[0];
    EXPECT_EQ(keyframe.startPTS, 2);
    EXPECT_EQ(keyframe.targetRect, RelativeRect{});
    EXPECT_EQ(keyframe.easeIn, 0.4);
    EXPECT_EQ(keyframe.easeOut, 0.8);
}

TEST(EditParams, AKeyframeWithoutAReadableIdentityGetsAFreshOneOnEachLoad) {
    for (const char* id : {"", R"("id": "me",)", R"("id": 5,)"}) {
        const std::string json =
            std::string("{\"zoomKeyframes\": [{") + id + R"("startPTS": 2, "endPTS": 3}]})";
        const EditParams first = decodeEditParams(json);
        const EditParams second = decodeEditParams(json);
        EXPECT_NE(first.zoomKeyframes.at(0).id, second.zoomKeyframes.at(0).id) << id;
        EXPECT_EQ(decodeEditParams(encode(first)), first) << "kept once saved";
    }
}

TEST(EditParams, OneBadSplitPointCostsTheWholeList) {
    EXPECT_TRUE(decodeEditParams(R"({"splitPoints": [1.0, "x"]})").splitPoints.empty());
    EXPECT_EQ(decodeEditParams(R"({"splitPoints": [2, 1.5]})").splitPoints, (std::vector<double>{2, 1.5}));
}

TEST(EditParams, OneBadSegmentCostsThatSegment) {
    const EditParams edit =
        decodeEditParams(R"({"removedRanges": [{"start":1,"end":2},{"start":"x"},{"end":3}],
                             "keptSegments": {"start":1,"end":2}, "fillerRanges": [null]})");
    EXPECT_EQ(edit.removedRanges, (std::vector<TimeSegment>{{1, 2}}));
    EXPECT_TRUE(edit.keptSegments.empty() && edit.fillerRanges.empty());
}

TEST(EditParams, AnOpenTrimStaysOpen) {
    const EditParams edit = decodeEditParams(R"({"trim": {"start": 3}})");
    EXPECT_EQ(edit.trim, (TrimRange{3, std::nullopt}));
    EXPECT_EQ(encode(edit).find("\"end\""), std::string::npos);
    EXPECT_EQ(decodeEditParams(R"({"trim": {"start": "x", "end": "y"}})").trim, TrimRange{});
    EXPECT_EQ(decodeEditParams(R"({"trim": {"end": 4}})").trim, (TrimRange{0, 4}));
}

TEST(EditParams, AnUnreadableSecondColourIsNone) {
    EXPECT_EQ(decodeEditParams(R"({"background": {"style": "gradient", "secondary": 7}})").background,
              (Background{Background::Style::gradient, "#1C1C1E", std::nullopt}));
}

TEST(EditParams, ACaptionNeedsItsTimesAndAWordItsOwn) {
    const EditParams edit = decodeEditParams(R"({"captions": [
        {"start": 1, "text": "lost"},
        {"start": 1, "end": 2, "text": 5, "words": [{"text": "a", "start": 1}, {"start": 1, "end": 2}]},
        {"start": 3, "end": 4, "text": "b", "words": "b"}]})");
    ASSERT_EQ(edit.captions.size(), 2U);
    EXPECT_EQ(edit.captions[0], (Caption{1, 2, "", {{"", 1, 2}}}));
    EXPECT_EQ(edit.captions[1], (Caption{3, 4, "b", {}}));
}

TEST(EditParams, AnOlderCaptionStyleKnewOnlyTopOrBottom) {
    EXPECT_EQ(decodeStyle(R"({"atTop": true})").verticalPosition, 0.1);
    EXPECT_EQ(decodeStyle(R"({"atTop": false})").verticalPosition, 1.0);
    EXPECT_EQ(decodeStyle(R"({"atTop": true, "verticalPosition": 0.5})").verticalPosition, 0.5);
    EXPECT_EQ(decodeStyle(R"({"atTop": true, "verticalPosition": "low"})").verticalPosition, 0.1);
    EXPECT_EQ(decodeStyle(R"({"atTop": 1})").verticalPosition, 1.0);
    EXPECT_EQ(encode(decodeEditParams(R"({"captionStyle": {"atTop": true}})")).find("atTop"),
              std::string::npos);
}

TEST(EditParams, AnUnknownHighlightIsABoxAndTheNextKeysAreStillRead) {
    const CaptionStyle style =
        decodeStyle(R"({"highlight": "glow", "highlightColor": "#123456", "plate": "none"})");
    EXPECT_EQ(style.highlight, CaptionHighlight::box);
    EXPECT_EQ(style.highlightColor, "#123456");
    EXPECT_EQ(style.plate, CaptionPlate::none);
}

TEST(EditParams, NumbersThatAreNotFiniteNeverReachTheFile) {
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    EditParams edit;
    edit.padding = notANumber;
    edit.trim = {2, std::numeric_limits<double>::infinity()};
    edit.splitPoints = {1, notANumber, 2};
    edit.removedRanges = {{notANumber, 1}, {2, 3}};
    const EditParams stored = decodeEditParams(encode(edit));
    EXPECT_EQ(stored.padding, 40);
    EXPECT_EQ(stored.trim, (TrimRange{2, std::nullopt}));
    EXPECT_EQ(stored.splitPoints, (std::vector<double>{1, 2}));
    EXPECT_EQ(stored.removedRanges, (std::vector<TimeSegment>{{2, 3}}));
}

}  // namespace
}  // namespace tessaloom
