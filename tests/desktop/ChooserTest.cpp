// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <csignal>
#include <optional>
#include <thread>

#include "desktop/DesktopRecording.h"
#include "desktop/ScreenPicture.h"
#include "support/TestWindow.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t gray = 0x505860;
constexpr std::uint32_t green = 0x20A040;
constexpr std::uint32_t orange = 0xE08020;
constexpr std::uint32_t blue = 0x3060F0;

/// `tessaloom record --pick` on a desktop with two windows, of which the orange one covers the green one.
class ChooserOnScreen : public ::testing::Test {
  protected:
    void SetUp() override { start("0"); }

    void start(const std::string& countdown) {
        std::vector<std::string> command{TESSALOOM_PROGRAM,  "record",     "--pick", "--countdown",
                                         countdown,          "--duration", "0.5",    "--no-microphone",
                                         "--no-system-audio"};
        program.emplace(command, programEnvironment(desktop.environment(), library.path()));
        ASSERT_TRUE(waitUntil([&] { return placeOf(orange) && placeOf(green); })) << program->errors();
    }

    /// Where in a card that colour is shown. The screen behind the cards is dimmed.
    std::optional<ScreenPoint> placeOf(std::uint32_t rgb) const {
        if (screenColorAt(injector, 5, 5) == gray) return std::nullopt;  // nothing is dimmed yet
        return placeOfColor(injector, rgb, 1000);
    }
    int exitStatus() { return program->waitForExit(10s).value_or(-1); }
    TakeBundle finishedBundle() {
        EXPECT_EQ(exitStatus(), 0) << program->errors();
        const std::string output = program->output();
        return {output.substr(0, output.find('\n'))};
    }
    static WindowDescription application(PixelRect rect, std::uint32_t rgb, const std::string& name) {
        return {
            .rect = rect, .rgb = rgb, .kind = WindowKind::Managed, .title = name, .applicationName = name};
    }

    const VirtualDesktop desktop{800, 600};
    XInjector injector{desktop.displayName()};
    TestWindow background{injector.connection(), {.rect = {0, 0, 800, 600}, .rgb = gray}};
    std::optional<TestWindow> covered{std::in_place, injector.connection(),
                                      application({100, 80, 300, 200}, green, "Greenhouse")};
    TestWindow above{injector.connection(), application({60, 40, 400, 300}, orange, "Orangery")};
    const TemporaryFolder library;
    std::optional<ChildProcess> program;
};

TEST_F(ChooserOnScreen, AClickPicksACoveredWindow) {
    const auto place = placeOf(green);
    ASSERT_TRUE(place);
    injector.moveTo(*place);
    injector.click();
    const TakeBundle bundle = finishedBundle();
    EXPECT_EQ(bundle.readLog().captureRect, (CaptureRect{100, 80, 300, 200, 1}));
    EXPECT_TRUE(isNearly(colorAt(recordedPicture(bundle, 0), 150, 100), green));
}

TEST_F(ChooserOnScreen, ArrowsAndEnterPickToo) {
    injector.tapKey("Right");
    injector.tapKey("Return");
    EXPECT_EQ(finishedBundle().readLog().captureRect, (CaptureRect{60, 40, 400, 300, 1})) << "the topmost";
}

TEST_F(ChooserOnScreen, IsNotInTheRecordingOfADisplay) {
    injector.tapKey("Return");
    const TakeBundle bundle = finishedBundle();
    EXPECT_EQ(bundle.readLog().captureRect, (CaptureRect{0, 0, 800, 600, 1}));
    const BgraImage picture = recordedPicture(bundle, 0);
    EXPECT_TRUE(isNearly(colorAt(picture, 5, 5), gray));
    EXPECT_TRUE(isNearly(colorAt(picture, 200, 200), orange));
}

TEST_F(ChooserOnScreen, FollowsAWindowThatIsDrawnToBehindIt) {
    covered->fill({0, 0, 300, 200}, blue);
    EXPECT_TRUE(waitUntil([&] { return placeOf(blue).has_value(); }));
    EXPECT_FALSE(placeOf(green));
}

TEST_F(ChooserOnScreen, AWindowThatIsClosedMeanwhileIsShownAsGoneAndStaysUnpicked) {
    const auto place = placeOf(green);
    ASSERT_TRUE(place);
    covered.reset();
    ASSERT_TRUE(waitUntil([&] { return !placeOf(green); })) << "its card still shows it";
    injector.moveTo(*place);
    injector.click();
    EXPECT_FALSE(program->waitForExit(300ms)) << program->errors();
    injector.tapKey("Escape");
    EXPECT_EQ(exitStatus(), 130);
}

class ChooserBeforeACountdown : public ChooserOnScreen {
    void SetUp() override { start("2"); }
};

TEST_F(ChooserBeforeACountdown, AWindowThatIsClosedOnceItWasPickedIsAPlainFailure) {
    const auto place = placeOf(green);
    ASSERT_TRUE(place);
    injector.moveTo(*place);
    injector.click();
    ASSERT_TRUE(waitUntil([&] { return screenColorAt(injector, 5, 5) == gray; })) << "the sheet stays";
    covered.reset();
    EXPECT_EQ(exitStatus(), 1);
    EXPECT_NE(program->errors().find(
                  "tessaloom: Couldn't start recording: The selected source never produced a frame."),
              std::string::npos)
        << program->errors();
    EXPECT_EQ(program->output(), "");
}

TEST_F(ChooserOnScreen, EscapeCancels) {
    injector.tapKey("Escape");
    EXPECT_EQ(exitStatus(), 130);
    EXPECT_EQ(program->output(), "");
    EXPECT_NE(program->errors().find("Source selection cancelled / unavailable"), std::string::npos);
    EXPECT_TRUE(isWithoutRecordings(library.path()));
    EXPECT_EQ(screenColorAt(injector, 5, 5), gray);
}

TEST_F(ChooserOnScreen, AClickBesideTheSheetCancels) {
    injector.moveTo({5, 5});
    injector.click();
    EXPECT_EQ(exitStatus(), 130);
}

TEST_F(ChooserOnScreen, CtrlCCancels) {
    program->signal(SIGINT);
    EXPECT_EQ(exitStatus(), 130);
}

}  // namespace
}  // namespace tessaloom::test
