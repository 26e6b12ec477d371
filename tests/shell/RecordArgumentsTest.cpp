// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/RecordArguments.h"

#include <gtest/gtest.h>

#include "shell/UsageErrorOf.h"

namespace tessaloom {
namespace {

std::string errorOf(const QStringList& words) {
    return test::usageErrorOf([&] { return RecordArguments::parse(words); });
}

TEST(RecordArgumentsTest, NothingGivenIsTheMainDisplayAndTheStoredSettings) {
    const auto arguments = RecordArguments::parse({});
    EXPECT_TRUE(std::holds_alternative<MainDisplaySource>(arguments.source));
    EXPECT_EQ(arguments.countdownSeconds, std::nullopt);
    EXPECT_EQ(arguments.durationSeconds, std::nullopt);
    EXPECT_EQ(arguments.microphone, std::nullopt);
    EXPECT_EQ(arguments.camera, std::nullopt);
    EXPECT_EQ(arguments.systemAudio, std::nullopt);
}

TEST(RecordArgumentsTest, DevicesAreSwitchedOnAndOff) {
    const auto on = RecordArguments::parse({"--microphone", "--camera", "--system-audio"});
    EXPECT_TRUE(on.microphone == true && on.camera == true && on.systemAudio == true);
    const auto off = RecordArguments::parse({"--no-microphone", "--no-camera", "--no-system-audio"});
    EXPECT_TRUE(off.microphone == false && off.camera == false && off.systemAudio == false);
    EXPECT_EQ(errorOf({"--camera", "--no-camera"}), "Choose one of --camera and --no-camera.");
}

TEST(RecordArgumentsTest, EachSourceHasAnOption) {
    EXPECT_EQ(std::get<DisplaySource>(RecordArguments::parse({"--display", "1"}).source).number, 1);
    EXPECT_EQ(std::get<RegionSource>(RecordArguments::parse({"--area", "-5,2.5,300,200"}).source).area,
              (Rect{-5, 2.5, 300, 200}));
    const auto window =
        std::get<AppWindowSource>(RecordArguments::parse({"--window", "firefox", "--title", "News"}).source);
    EXPECT_EQ(window.app, "firefox");
    EXPECT_EQ(window.title, "News");
    EXPECT_EQ(std::get<AppWindowSource>(RecordArguments::parse({"--window", "firefox"}).source).title,
              std::nullopt);
}

TEST(RecordArgumentsTest, AnAreaMayBeLeftToTheMouse) {
    EXPECT_TRUE(RecordArguments::parse({"--area", "select"}).selectsArea);
    EXPECT_FALSE(RecordArguments::parse({"--area", "0,0,300,200"}).selectsArea);
    EXPECT_FALSE(RecordArguments::parse({}).selectsArea);
    EXPECT_EQ(errorOf({"--area", "select", "--display", "0"}),
              "Choose one of --display, --area, --window and --pick.");
}

TEST(RecordArgumentsTest, TheSourceMayBePickedBySight) {
    EXPECT_TRUE(std::holds_alternative<PickerSource>(RecordArguments::parse({"--pick"}).source));
}

TEST(RecordArgumentsTest, TimesAreSeconds) {
    const auto arguments = RecordArguments::parse({"--countdown", "0", "--duration", "2.5"});
    EXPECT_EQ(arguments.countdownSeconds, 0);
    EXPECT_EQ(arguments.durationSeconds, 2.5);
}

TEST(RecordArgumentsTest, OnlyOneSourceCanBeChosen) {
    const std::string message = "Choose one of --display, --area, --window and --pick.";
    EXPECT_EQ(errorOf({"--display", "0", "--window", "firefox"}), message);
    EXPECT_EQ(errorOf({"--display", "0", "--area", "0,0,100,100"}), message);
    EXPECT_EQ(errorOf({"--area", "0,0,100,100", "--window", "firefox"}), message);
    EXPECT_EQ(errorOf({"--pick", "--area", "select"}), message);
}

TEST(RecordArgumentsTest, ATitleNeedsAWindow) {
    EXPECT_EQ(errorOf({"--title", "News"}), "--title narrows down --window, which is missing.");
    EXPECT_EQ(errorOf({"--window", ""}), "--window takes an application's name.");
}

TEST(RecordArgumentsTest, AnAreaIsFourNumbersAndMoreThanASlipOfTheHand) {
    for (const char* area : {"", "1,2,3", "1,2,3,4,5", "0,0,x,100", "0,0,nan,100", "0,0,inf,100", "100x100"})
        EXPECT_EQ(errorOf({"--area", area}),
                  "--area takes four numbers, X,Y,WIDTH,HEIGHT, or the word select.")
            << area;
    for (const char* area : {"0,0,8,100", "0,0,100,8", "0,0,-100,100"})
        EXPECT_EQ(errorOf({"--area", area}), "The area must be wider and taller than 8 points.") << area;
    EXPECT_EQ(errorOf({"--area", "0,0,8.5,8.5"}), "");
}

TEST(RecordArgumentsTest, TimesThatMakeNoSenseAreRefused) {
    for (const char* duration : {"0", "-1"})
        EXPECT_EQ(errorOf({"--duration", duration}), "--duration takes a number of seconds above 0.");
    EXPECT_EQ(errorOf({"--countdown", "-1"}), "--countdown takes a number of seconds, 0 for none.");
    EXPECT_EQ(errorOf({"--countdown", "1.5"}), "--countdown takes a whole number, not \"1.5\".");
    EXPECT_EQ(errorOf({"--display", "first"}), "--display takes a whole number, not \"first\".");
}

TEST(RecordArgumentsTest, ItTakesNoWords) {
    EXPECT_EQ(errorOf({"firefox"}), "Don't know what to do with \"firefox\".");
}

}  // namespace
}  // namespace tessaloom
