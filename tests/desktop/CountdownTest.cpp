// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <csignal>
#include <thread>

#include "desktop/DesktopRecording.h"
#include "desktop/ScreenPicture.h"
#include "support/TestWindow.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t green = 0x20A040;
constexpr ScreenPoint plate{320, 170};  ///< above the number

/// `tessaloom record` with a countdown before a green background.
class CountdownOnScreen : public ::testing::Test {
  protected:
    void record(const std::string& seconds) {
        program.emplace(std::vector<std::string>{TESSALOOM_PROGRAM, "record", "--countdown", seconds,
                                                 "--no-microphone", "--no-system-audio"},
                        programEnvironment(desktop.environment(), library.path()));
    }
    bool isShown() const { return screenColorAt(injector, plate.x, plate.y) != green; }
    bool hasStarted() const { return program->errors().find("Recording started") != std::string::npos; }
    TakeBundle finishedBundle() {
        program->signal(SIGINT);
        EXPECT_EQ(program->waitForExit(10s), 0) << program->errors();
        const std::string output = program->output();
        return {output.substr(0, output.find('\n'))};
    }

    const VirtualDesktop desktop{640, 480};
    XInjector injector{desktop.displayName()};
    TestWindow background{injector.connection(), {.rect = {0, 0, 640, 480}, .rgb = green}};
    const TemporaryFolder library;
    std::optional<ChildProcess> program;
};

TEST_F(CountdownOnScreen, IsARoundPlateInTheMiddle) {
    record("60");
    ASSERT_TRUE(waitUntil([&] { return isShown(); })) << program->errors();
    for (const ScreenPoint inside : {ScreenPoint{238, 240}, {402, 240}, {320, 158}, {320, 322}})
        EXPECT_NE(screenColorAt(injector, inside.x, inside.y), green) << inside.x << ' ' << inside.y;
    for (const ScreenPoint outside : {ScreenPoint{232, 240}, {408, 240}, {320, 152}, {250, 170}, {390, 310}})
        EXPECT_EQ(screenColorAt(injector, outside.x, outside.y), green) << outside.x << ' ' << outside.y;
}

TEST_F(CountdownOnScreen, IsSkippedByTheSpaceBarWhicheverWindowHasTheFocus) {
    xcb_set_input_focus(injector.connection(), XCB_INPUT_FOCUS_POINTER_ROOT, background.id(),
                        XCB_CURRENT_TIME);
    record("60");
    ASSERT_TRUE(waitUntil([&] { return isShown(); })) << program->errors();
    injector.tapKey("space");
    ASSERT_TRUE(waitUntil([&] { return hasStarted(); }));
    EXPECT_FALSE(isShown());
    const BgraImage picture = recordedPicture(finishedBundle(), 0);
    EXPECT_TRUE(isNearly(colorAt(picture, plate.x, plate.y), green));
}

TEST_F(CountdownOnScreen, GoesOnAfterEscapeAndLetsClicksThrough) {
    record("60");
    ASSERT_TRUE(waitUntil([&] { return isShown(); })) << program->errors();
    injector.moveTo(plate);
    injector.click();
    injector.tapKey("Escape");
    const auto cookie = xcb_query_pointer(
        injector.connection(), xcb_setup_roots_iterator(xcb_get_setup(injector.connection())).data->root);
    const std::unique_ptr<xcb_query_pointer_reply_t, decltype(&std::free)> pointer(
        xcb_query_pointer_reply(injector.connection(), cookie, nullptr), std::free);
    EXPECT_EQ(pointer->child, background.id());
    std::this_thread::sleep_for(500ms);
    EXPECT_TRUE(isShown());
    EXPECT_TRUE(program->running());
    EXPECT_FALSE(hasStarted());
}

TEST_F(CountdownOnScreen, TakesNoFocus) {
    xcb_set_input_focus(injector.connection(), XCB_INPUT_FOCUS_POINTER_ROOT, background.id(),
                        XCB_CURRENT_TIME);
    record("60");
    ASSERT_TRUE(waitUntil([&] { return isShown(); })) << program->errors();
    std::this_thread::sleep_for(200ms);
    const auto cookie = xcb_get_input_focus(injector.connection());
    const std::unique_ptr<xcb_get_input_focus_reply_t, decltype(&std::free)> focus(
        xcb_get_input_focus_reply(injector.connection(), cookie, nullptr), std::free);
    EXPECT_EQ(focus->focus, background.id());
}

}  // namespace
}  // namespace tessaloom::test
