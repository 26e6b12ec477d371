// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>

#include "commands/CommandTest.h"
#include "core/EventJournal.h"
#include "core/Json.h"
#include "core/TakeBundle.h"
#include "render/CursorImage.h"
#include "render/Uniforms.h"

namespace tessaloom {
namespace {

using test::CommandResult;

/// One recording without any media.
class InspectCommand : public test::CommandTest {
  protected:
    InspectCommand() : bundle_(TakeBundle::create(library() / "a.takes")) {}

    CommandResult inspect(std::vector<std::string> words) const {
        words.insert(words.begin(), "inspect");
        return run(words);
    }

    /// Of a run that should succeed without a word on stderr.
    std::string facts(const std::vector<std::string>& words) const {
        const CommandResult result = inspect(words);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.errors, "");
        return result.output;
    }

    TakeBundle bundle_;
};

/// Two seconds at rest in the middle of a 1000 x 500 area, with a click and a shortcut at 1 s.
EventLog restingLog() {
    EventLog log;
    log.captureRect = {.x = 0, .y = 0, .width = 1000, .height = 500, .displayScaleFactor = 2};
    log.cursorSamples = {{.pts = 0, .x = 0.5, .y = 0.5}, {.pts = 2, .x = 0.5, .y = 0.5}};
    log.events = {
        {.pts = 1, .type = InputEvent::EventType::leftClick, .location = {{0.5, 0.5}}, .keyLabel = {}},
        {.pts = 1, .type = InputEvent::EventType::keyDown, .location = {}, .keyLabel = "⌃C"}};
    return log;
}

/// Nothing around the frame and a dot for a cursor, whose size no theme decides.
EditParams plainEdit() {
    EditParams edit;
    edit.padding = 0;
    edit.cornerRadius = 0;
    edit.shadow = 0.5;
    edit.background.primary = "#FF0000";
    edit.cursorStyle = CursorStyle::dot;
    edit.cursorBounce = false;
    return edit;
}

std::string withoutWhiteSpace(std::string text) {
    std::erase_if(text, [](char each) { return each == ' ' || each == '\n'; });
    return text;
}

/// The one object of an array of one.
JsonDocument onlyObject(const std::string& array) {
    const auto start = array.find('[');
    const auto end = array.rfind(']');
    if (start == std::string::npos || end == std::string::npos) return {};
    return parseJsonObject(array.substr(start + 1, end - start - 1)).value_or(JsonDocument());
}

std::string at(const JsonDocument& object, const char* key) {
    if (!object.IsObject() || !object.HasMember(key)) return "absent";
    return compactJson(object[key]);
}

using Numbers = std::vector<double>;

Numbers numbersAt(const JsonDocument& object, const char* key) {
    Numbers numbers;
    if (object.IsObject()) JsonReader(object).field(key, numbers);
    return numbers;
}

TEST_F(InspectCommand, TheLogIsPrintedInItsStoredForm) {
    EventLog log = restingLog();
    log.streamStartHostTime = 18'446'744'073'709'551'615U;
    bundle_.write(log);
    EXPECT_EQ(facts({"log", "a"}), encode(log) + "\n");
}

TEST_F(InspectCommand, TheEditIsPrintedAsDecoded) {
    test::writeFile(bundle_.file(TakeBundle::editFile),
                    R"({"padding": 7, "aspect": "unheard of", "more": 1})");
    EditParams edit;
    edit.padding = 7;
    EXPECT_EQ(facts({"edit", bundle_.url.string()}), encode(edit) + "\n");
}

TEST_F(InspectCommand, TheZoomsAreThoseGeneratedFromTheLog) {
    EventLog log = restingLog();
    log.cursorSamples.back().pts = 10;
    log.events.front().pts = 5;
    bundle_.write(log);
    const JsonDocument zoom = onlyObject(facts({"zooms", "a"}));
    EXPECT_EQ(at(zoom, "startPTS"), "4.7");
    EXPECT_EQ(at(zoom, "endPTS"), "6.2");
    EXPECT_EQ(at(zoom, "targetRect"), R"({"height":0.5,"width":0.5,"x":0.25,"y":0.25})");
    EXPECT_EQ(at(zoom, "easeIn"), "0.4");
    EXPECT_EQ(at(zoom, "easeOut"), "0.8");
    EXPECT_EQ(at(zoom, "id").size(), 38U) << "36 characters in quotes";
}

TEST_F(InspectCommand, DurationAndZoomFactorCanBeChosen) {
    EventLog log = restingLog();
    log.events.front().pts = 5;
    bundle_.write(log);
    EXPECT_EQ(facts({"zooms", "a"}), "[]\n") << "the log ends at 2 s";
    const JsonDocument zoom = onlyObject(facts({"zooms", "a", "--duration", "6", "--zoom-factor=4"}));
    EXPECT_EQ(at(zoom, "endPTS"), "6");
    EXPECT_EQ(at(zoom, "targetRect"), R"({"height":0.25,"width":0.25,"x":0.375,"y":0.375})");
}

TEST_F(InspectCommand, CutsTellWhatIsKeptAndForHowLong) {
    EventLog log = restingLog();
    log.cursorSamples.back().pts = 20;
    bundle_.write(log);
    EditParams edit;
    edit.trim = {2, 18};
    edit.splitPoints = {10, 4};
    edit.removedRanges = {{4, 10}};
    edit.cameraHiddenRanges = {{10, 18}};
    edit.speed = 2;
    bundle_.write(edit);
    EXPECT_EQ(withoutWhiteSpace(facts({"cuts", "a"})),
              R"({"cameraBands":[{"end":4,"shown":true,"start":2},{"end":10,"shown":true,"start":4},)"
              R"({"end":18,"shown":false,"start":10}],"kept":[[2,4],[10,18]],"outputDuration":5,)"
              R"("playable":[[0,4],[10,20]],"segments":[{"end":4,"removed":false,"start":2},)"
              R"({"end":10,"removed":true,"start":4},{"end":18,"removed":false,"start":10}],)"
              R"("speed":2,"totalDuration":20,"trimEnd":18,"trimStart":2})");
}

TEST_F(InspectCommand, ASpeedOfNothingStillTellsThatThereIsNoLength) {
    bundle_.write(restingLog());
    EditParams edit;
    edit.speed = 0;
    bundle_.write(edit);
    EXPECT_NE(withoutWhiteSpace(facts({"cuts", "a"})).find(R"("outputDuration":null,)"), std::string::npos);
}

TEST_F(InspectCommand, AFrameIsToldInCanvasPixels) {
    bundle_.write(restingLog());
    bundle_.write(plainEdit());
    const JsonDocument frame = onlyObject(facts({"frame", "a", "--at", "1.25", "--size", "500x250"}));
    EXPECT_EQ(at(frame, "time"), "1.25");
    EXPECT_EQ(at(frame, "canvas"), "[500,250]");
    EXPECT_EQ(at(frame, "uniforms"), R"({"a":[500,250,0,0],"b":[500,250,0,0],"bgBottom":[1,0,0,1],)"
                                     R"("bgTop":[1,0,0,1],"c":[1,1,0,0],"d":[0.5,0,0,0]})");
    EXPECT_EQ(at(frame, "ripples"),
              R"([{"color":[1,1,1,0.550000011920929],"content":[0,0,500,250],"meta":[500,250,0,0],)"
              R"("params":[0.5,0,0,0],"rect":[228,103,44,44]}])");
    EXPECT_EQ(at(frame, "keystroke"), R"({"alpha":1,"text":"⌃C"})");
    EXPECT_EQ(at(frame, "webcam"), "absent");
    EXPECT_EQ(at(frame, "caption"), "absent");
    EXPECT_EQ(at(frame, "webcamKeepOut"), "absent");
}

TEST_F(InspectCommand, TheCursorIsTheOneThatIsDrawn) {
    bundle_.write(restingLog());
    for (const CursorStyle style : {CursorStyle::large, CursorStyle::dot}) {
        EditParams edit = plainEdit();
        edit.cursorStyle = style;
        bundle_.write(edit);
        const CursorImage image = makeCursorImage(style, cursorThemes());
        const JsonDocument frame = onlyObject(facts({"frame", "a", "--at=1", "--size=1000x500"}));
        EXPECT_EQ(numbersAt(frame, "cursorImageSize"), (Numbers{image.size.width, image.size.height}));
        EXPECT_EQ(numbersAt(frame, "cursorHotspot"), (Numbers{image.hotspot.x, image.hotspot.y}));
        ASSERT_NE(at(frame, "cursor"), "absent");
        const Float4 rect =
            toFloat4({500 - image.hotspot.x, 250 - image.hotspot.y, image.size.width, image.size.height});
        Numbers told;
        JsonReader(frame["cursor"]).field("rect", told);
        EXPECT_EQ(told, (Numbers{rect.x, rect.y, rect.z, rect.w}));
    }
}

TEST_F(InspectCommand, CameraAndCaptionAreTold) {
    bundle_.write(restingLog());
    EditParams edit = plainEdit();
    edit.webcam.enabled = true;
    edit.webcam.position = {0.5, 0.5};
    edit.captions = {{.start = 0, .end = 2, .text = "two words", .words = {{"two", 0, 1}, {"words", 1, 2}}}};
    edit.showCaptions = true;
    bundle_.write(edit);
    test::writeFile(bundle_.file(TakeBundle::webcamFile), "camera");
    const JsonDocument frame = onlyObject(facts({"frame", "a", "--at", "1.5", "--size", "1000x500"}));
    EXPECT_EQ(at(frame, "webcam"),
              R"({"blur":[0,0,0,0],"border":[1,1,1,0],"meta":[1000,500,1,0.44999998807907104],)"
              R"("params":[0,100,0,16],"rect":[400,150,200,200]})");
    EXPECT_EQ(at(frame, "webcamKeepOut"), "[400,150,200,200]");
    EXPECT_EQ(
        at(frame, "caption"),
        R"({"activeWord":1,"alpha":1,"bgAlpha":0.7799999713897705,"bgHex":"#000000","colorHex":"#FFFFFF",)"
        R"("fontScale":1,"highlight":"box","highlightHex":"#FFD60A","plate":"bar","text":"two words",)"
        R"("uppercase":false,"verticalPosition":1})");
}

TEST_F(InspectCommand, ANumberThatIsNotFiniteIsNullAndKeepsItsPlace) {
    bundle_.write(restingLog());
    EditParams edit = plainEdit();
    edit.cursorScale = 1e300;
    edit.captions = {{.start = 0, .end = 2, .text = "line", .words = {}}};
    edit.showCaptions = true;
    edit.captionStyle.fontScale = 1e300;
    edit.captionStyle.backgroundOpacity = -1e300;
    edit.captionStyle.verticalPosition = 1e300;
    edit.speed = 1e-320;
    bundle_.write(edit);
    const JsonDocument frame = onlyObject(facts({"frame", "a", "--at", "1", "--size", "1000x500"}));
    EXPECT_EQ(at(frame, "cursor"),
              R"({"content":[0,0,1000,500],"meta":[1000,500,0,1],"rect":[null,null,null,null]})");
    EXPECT_EQ(at(frame, "caption"),
              R"({"alpha":1,"bgAlpha":null,"bgHex":"#000000","colorHex":"#FFFFFF","fontScale":null,)"
              R"("highlight":"box","highlightHex":"#FFD60A","plate":"bar","text":"line","uppercase":false,)"
              R"("verticalPosition":null})");
    const std::string cuts = withoutWhiteSpace(facts({"cuts", "a"}));
    EXPECT_NE(cuts.find(R"("outputDuration":null)"), std::string::npos) << cuts;
}

TEST_F(InspectCommand, EachTimeHasItsObjectInTheOrderAskedFor) {
    bundle_.write(restingLog());
    const std::string text =
        withoutWhiteSpace(facts({"frame", "a", "--at", "1", "--at=-0.5", "--at", "0.25", "--size", "64x32"}));
    const auto first = text.find(R"("time":1,)");
    const auto second = text.find(R"("time":-0.5,)");
    const auto third = text.find(R"("time":0.25,)");
    EXPECT_LT(first, second);
    EXPECT_LT(second, third);
    EXPECT_NE(third, std::string::npos);
    EXPECT_NE(text.find(R"("ripples":[])"), std::string::npos) << "there also without a click";
}

TEST_F(InspectCommand, DamagedRecordsCountAsEmptyWithOneWarning) {
    test::writeFile(bundle_.file(TakeBundle::eventsFile), "{ not json");
    const CommandResult log = inspect({"log", "a"});
    EXPECT_EQ(log.status, 0);
    EXPECT_EQ(log.output, encode(EventLog{}) + "\n");
    EXPECT_EQ(std::ranges::count(log.errors, '\n'), 1);
    std::filesystem::remove(bundle_.file(TakeBundle::eventsFile));
    const CommandResult cuts = inspect({"cuts", "a"});
    EXPECT_EQ(cuts.status, 0);
    EXPECT_EQ(withoutWhiteSpace(cuts.output),
              R"({"cameraBands":[],"kept":[[0,0]],"outputDuration":0,"playable":[[0,0.01]],"segments":[],)"
              R"("speed":1,"totalDuration":0,"trimEnd":0,"trimStart":0})");
    EXPECT_EQ(std::ranges::count(cuts.errors, '\n'), 1);
    test::writeFile(bundle_.file(TakeBundle::editFile), "[]");
    const CommandResult both = inspect({"cuts", "a"});
    EXPECT_EQ(both.status, 0);
    EXPECT_EQ(both.output, cuts.output);
    EXPECT_EQ(std::ranges::count(both.errors, '\n'), 1);
    for (const char* file : {"edit.json", "events.json"})
        EXPECT_NE(both.errors.find(file), std::string::npos);
}

TEST_F(InspectCommand, ARecordThatIsNotAskedForIsNotMissed) {
    std::filesystem::remove(bundle_.file(TakeBundle::editFile));
    EXPECT_EQ(facts({"log", "a"}), encode(EventLog{}) + "\n");
    EXPECT_EQ(facts({"zooms", "a"}), "[]\n");
    const CommandResult edit = inspect({"edit", "a"});
    EXPECT_EQ(edit.status, 0);
    EXPECT_EQ(edit.output, encode(EditParams{}) + "\n");
    EXPECT_EQ(std::ranges::count(edit.errors, '\n'), 1);
}

TEST_F(InspectCommand, ATakeWhoseRecorderDiedIsCompletedFirst) {
    const EventLog log = restingLog();
    {
        auto journal = EventJournal::create(bundle_, log);
        journal.append(log.cursorSamples, log.events);
    }
    EXPECT_EQ(facts({"log", "a"}), encode(log) + "\n");
    EXPECT_EQ(decodeEditParams(facts({"edit", "a"})).zoomKeyframes.size(), 1U);
}

TEST_F(InspectCommand, AFolderWithoutARecordingsFilesFails) {
    test::expectRefused(inspect({"log", outputs().string()}), 1, "is no recording");
    test::expectRefused(inspect({"log", "nowhere"}), 1, "tessaloom list");
}

TEST_F(InspectCommand, WrongWordsAreExplainedWithStatus2) {
    const std::vector<std::vector<std::string>> wrong = {{},
                                                         {"colours", "a"},
                                                         {"log"},
                                                         {"log", "a", "b"},
                                                         {"edit", "a", "--at", "1"},
                                                         {"zooms", "a", "--duration", "long"},
                                                         {"frame", "a", "--at", "1"},
                                                         {"frame", "a", "--size", "64x32"},
                                                         {"frame", "a", "--at", "1", "--size", "64"},
                                                         {"frame", "a", "--at", "nan", "--size", "64x32"}};
    for (const auto& words : wrong)
        test::expectRefused(inspect(words), 2, "tessaloom inspect --help");
}

}  // namespace
}  // namespace tessaloom
