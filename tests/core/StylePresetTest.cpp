// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/StylePreset.h"

#include <gtest/gtest.h>

#include <limits>

#include "core/DecodeError.h"
#include "support/EditedThroughout.h"

namespace tessaloom {
namespace {

StylePreset named(std::string name, double padding = 40) {
    StylePreset preset;
    preset.name = std::move(name);
    preset.padding = padding;
    return preset;
}

StylePreset decodeOne(const std::string& json) {
    return decodeStylePresets("[" + json + "]").at(0);
}

TEST(StylePreset, HasAFreshEditsLookByDefault) {
    const StylePreset fresh;
    StylePreset captured = capturePreset("", EditParams{});
    captured.id = fresh.id;
    EXPECT_EQ(captured, fresh);
}

TEST(StylePreset, GivesItsWholeLookToAnotherEditAndNothingElse) {
    const EditParams look = editedThroughout();
    EditParams edit;
    applyPreset(capturePreset("Evening", look), edit);

    EditParams expected;
    expected.aspect = look.aspect;
    expected.background = look.background;
    expected.backgroundBlur = look.backgroundBlur;
    expected.padding = look.padding;
    expected.cornerRadius = look.cornerRadius;
    expected.shadow = look.shadow;
    expected.cursorVisible = look.cursorVisible;
    expected.cursorStyle = look.cursorStyle;
    expected.cursorScale = look.cursorScale;
    expected.cursorSmoothing = look.cursorSmoothing;
    expected.cursorBounce = look.cursorBounce;
    expected.showKeystrokes = look.showKeystrokes;
    expected.showCaptions = look.showCaptions;
    expected.captionStyle = look.captionStyle;
    expected.music = look.music;
    expected.musicVolume = look.musicVolume;
    expected.micVolume = look.micVolume;
    expected.webcam = look.webcam;
    EXPECT_EQ(edit, expected);
}

TEST(StylePreset, LeavesTheRecordingsOwnPartOfAnEditAlone) {
    EditParams edit = editedThroughout();
    applyPreset(StylePreset{}, edit);

    const EditParams before = editedThroughout();
    EXPECT_EQ(edit.trim, before.trim);
    EXPECT_EQ(edit.crop, before.crop);
    EXPECT_EQ(edit.speed, before.speed);
    EXPECT_EQ(edit.captions, before.captions);
    EXPECT_EQ(edit.zoomKeyframes.size(), before.zoomKeyframes.size());
    EXPECT_EQ(edit.cursorHideIdle, before.cursorHideIdle);
    EXPECT_EQ(edit.clickSounds, before.clickSounds);
    EXPECT_EQ(edit.micEnhanced, before.micEnhanced);
    EXPECT_EQ(edit.padding, StylePreset{}.padding);
}

TEST(StylePreset, TakesAFreshIdentityAndTheGivenName) {
    const EditParams edit;
    const StylePreset first = capturePreset("Evening", edit);
    EXPECT_EQ(first.name, "Evening");
    EXPECT_NE(first.id, capturePreset("Evening", edit).id);
}

TEST(StylePreset, EveryValueSurvivesTheWayToTheFileAndBack) {
    const std::vector<StylePreset> presets{capturePreset("Grüße, \"世界\"\n", editedThroughout()),
                                           capturePreset("", EditParams{})};
    EXPECT_EQ(decodeStylePresets(encode(presets)), presets);
    EXPECT_EQ(encode(std::vector<StylePreset>{}), "[]");
}

TEST(StylePreset, IsStoredOnOneLineUnderItsOwnKeys) {
    StylePreset preset = named("Plain");
    preset.id = Uuid::fromText("0F8FAD5B-D9CB-469F-A165-70867728950E").value();
    EXPECT_EQ(encode({preset}),
              R"([{"aspect":"native","background":{"primary":"#1C1C1E","style":"color"},"backgroundBlur":0,)"
              R"("captionStyle":{"background":"#000000","backgroundOpacity":0.78,"color":"#FFFFFF",)"
              R"("fontScale":1,"highlight":"box","highlightColor":"#FFD60A","plate":"bar",)"
              R"("uppercase":false,"verticalPosition":1},"cornerRadius":12,"cursorBounce":true,)"
              R"("cursorScale":1,"cursorSmoothing":0.3,"cursorStyle":"system","cursorVisible":true,)"
              R"("id":"0F8FAD5B-D9CB-469F-A165-70867728950E","keystrokesVisible":true,"micVolume":1,)"
              R"("music":"none","musicVolume":0.7,"name":"Plain","padding":40,"shadow":0.35,)"
              R"("showCaptions":false,"webcam":{"blur":0,"borderColor":"#FFFFFF","borderWidth":0,)"
              R"("enabled":false,"mirrored":false,"position":{"x":0.85,"y":0.85},"relativeSize":0.2,)"
              R"("shape":"circle"}}])");
}

TEST(StylePreset, NeedsANameOnly) {
    StylePreset expected = named("Bare");
    const StylePreset preset = decodeOne(R"({"name": "Bare"})");
    expected.id = preset.id;
    EXPECT_EQ(preset, expected);
    EXPECT_EQ(decodeOne("{}").name, "");
}

TEST(StylePreset, ABadValueCostsThatValueOnly) {
    const StylePreset preset = decodeOne(
        R"({"name": 5, "aspect": "round", "background": "red", "padding": "wide", "shadow": 1,
            "music": "polka", "cursorStyle": null, "keystrokesVisible": 0, "micVolume": 0.5,
            "captionStyle": {"plate": "none", "highlight": "glow"}, "webcam": {"position": {"x": 0.1}}})");
    EXPECT_EQ(preset.name, "");
    EXPECT_EQ(preset.aspect, AspectPreset::native);
    EXPECT_EQ(preset.background, Background{});
    EXPECT_EQ(preset.padding, 40);
    EXPECT_EQ(preset.shadow, 1);
    EXPECT_EQ(preset.music, MusicPreset::none);
    EXPECT_EQ(preset.cursorStyle, CursorStyle::system);
    EXPECT_TRUE(preset.keystrokesVisible);
    EXPECT_EQ(preset.micVolume, 0.5);
    EXPECT_EQ(preset.captionStyle.plate, CaptionPlate::none);
    EXPECT_EQ(preset.captionStyle.highlight, CaptionHighlight::box);
    EXPECT_EQ(preset.webcam.position, (RelativePoint{0.1, 0.5}));
}

TEST(StylePreset, AnUnreadableIdentityBecomesAFreshOne) {
    for (const char* json : {"{}", R"({"id": "me"})", R"({"id": 5})"})
        EXPECT_NE(decodeOne(json).id, decodeOne(json).id) << json;
    const char* stored = "0F8FAD5B-D9CB-469F-A165-70867728950E";
    EXPECT_EQ(decodeOne(std::string(R"({"id": ")") + stored + "\"}").id.text(), stored);
}

TEST(StylePreset, WhatIsNoListOfObjectsIsRefusedAsAWhole) {
    for (const char* text : {"", "{}", "null", "[", "[{}", R"([{"name": "a"}, 5])",
                             R"([{"name": "a"}, null])", R"([{"name": "a"}, []])", "[{}] x"})
        EXPECT_THROW(decodeStylePresets(text), DecodeError) << text;
    EXPECT_TRUE(decodeStylePresets(" [ ] ").empty());
}

TEST(StylePreset, DeepNestingCostsNoStack) {
    const std::string deep(2'000'000, '[');
    EXPECT_THROW(decodeStylePresets(deep), DecodeError);
    const std::string closed = deep + std::string(deep.size(), ']');
    EXPECT_EQ(decodeOne("{\"webcam\":" + closed + ",\"padding\":7}").padding, 7);
}

TEST(StylePreset, NumbersThatAreNotFiniteNeverReachTheFile) {
    StylePreset preset = named("Broken", std::numeric_limits<double>::quiet_NaN());
    preset.shadow = std::numeric_limits<double>::infinity();
    EXPECT_EQ(decodeStylePresets(encode({preset})).at(0).padding, 40);
    EXPECT_EQ(decodeStylePresets(encode({preset})).at(0).shadow, 0.35);
}

TEST(StylePreset, SavingUnderANameInAnotherCaseKeepsPlaceAndIdentityAndTakesTheNewForm) {
    std::vector<StylePreset> presets{named("First"), named("Grün", 1), named("Last")};
    const Uuid id = presets[1].id;
    savePresets({named("GRÜN", 2)}, presets);
    ASSERT_EQ(presets.size(), 3U);
    EXPECT_EQ(presets[1].name, "GRÜN");
    EXPECT_EQ(presets[1].padding, 2);
    EXPECT_EQ(presets[1].id, id);
}

TEST(StylePreset, SavingUnderANewNameAppends) {
    std::vector<StylePreset> presets{named("First")};
    const StylePreset added = named("Second", 2);
    savePresets({added}, presets);
    ASSERT_EQ(presets.size(), 2U);
    EXPECT_EQ(presets[1], added);
}

TEST(StylePreset, OfTwoImportedUnderOneNameTheLaterStays) {
    std::vector<StylePreset> presets;
    savePresets(
        decodeStylePresets(R"([{"name": "a", "padding": 1}, {"name": "b"}, {"name": "A", "padding": 2}])"),
        presets);
    ASSERT_EQ(presets.size(), 2U);
    EXPECT_EQ(presets[0].name, "A");
    EXPECT_EQ(presets[0].padding, 2);
    EXPECT_EQ(presets[1].name, "b");
}

TEST(StylePreset, NamesThatAreNoUtf8AreKeptApart) {
    std::vector<StylePreset> presets{named("A\xFF"), named("A\xFE")};
    const std::vector<StylePreset> before = presets;
    savePresets(before, presets);
    EXPECT_EQ(presets, before);
}

TEST(StylePreset, ImportingAnEmptyListChangesNothing) {
    const std::vector<StylePreset> before{named("First"), named("Second")};
    std::vector<StylePreset> presets = before;
    savePresets(decodeStylePresets("[]"), presets);
    EXPECT_EQ(presets, before);
}

TEST(StylePreset, DeletingTakesEachOneWithThatIdentityAndAnUnknownOneNone) {
    std::vector<StylePreset> presets{named("First"), named("Second"), named("Third")};
    presets[2].id = presets[0].id;
    deletePreset(Uuid::random(), presets);
    EXPECT_EQ(presets.size(), 3U);
    deletePreset(Uuid(presets[0].id), presets);
    ASSERT_EQ(presets.size(), 1U);
    EXPECT_EQ(presets[0].name, "Second");
}

}  // namespace
}  // namespace tessaloom
