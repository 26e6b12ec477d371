// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/VirtualDesktop.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <stdexcept>

#include "support/TestWindow.h"
#include "support/XInjector.h"

namespace tessaloom::test {
namespace {

// The colour of one pixel of the screen, as 0xRRGGBB.
std::uint32_t screenColor(const XInjector& injector, ScreenPoint point) {
    xcb_connection_t* connection = injector.connection();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto request =
        xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, static_cast<std::int16_t>(point.x),
                      static_cast<std::int16_t>(point.y), 1, 1, ~0U);
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
        xcb_get_image_reply(connection, request, nullptr), std::free);
    if (!reply) throw std::runtime_error("no picture of the screen");
    const std::uint8_t* pixel = xcb_get_image_data(reply.get());
    return static_cast<std::uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
}

TEST(VirtualDesktop, TwoAtATimeHaveScreensOfTheirOwn) {
    const VirtualDesktop first(320, 240);
    const VirtualDesktop second(640, 480);
    EXPECT_NE(first.displayName(), second.displayName());
    const XInjector injector(second.displayName());
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(injector.connection())).data;
    EXPECT_EQ(screen->width_in_pixels, 640);
    EXPECT_EQ(screen->height_in_pixels, 480);
}

TEST(VirtualDesktop, LeavesNothingBehind) {
    std::string display;
    std::string folder;
    {
        const VirtualDesktop desktop(320, 240, WindowManager::Openbox);
        display = desktop.displayName();
        folder = desktop.environment().at("XDG_RUNTIME_DIR");
        struct stat status {};
        ASSERT_EQ(stat(folder.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, 0700U);
    }
    EXPECT_FALSE(std::filesystem::exists(folder));
    EXPECT_THROW(XInjector{display}, std::runtime_error);
}

TEST(XInjector, MovesThePointerWhereItIsTold) {
    const VirtualDesktop desktop(320, 240);
    XInjector injector(desktop.displayName());
    injector.moveTo({123, 45});
    EXPECT_EQ(injector.pointer().x, 123);
    EXPECT_EQ(injector.pointer().y, 45);
}

TEST(XInjector, KeysFollowTheServersLayout) {
    const VirtualDesktop desktop(320, 240);
    const XInjector injector(desktop.displayName());
    const auto keyForZ = [&] { return injector.keyboard().forCharacter(U'z')->keycode; };
    const auto position = [&](const char* name) { return *injector.keyboard().forPosition(name); };
    EXPECT_EQ(keyForZ(), position("AB01"));
    ASSERT_TRUE(setKeyboardLayout(desktop.environment(), "de"));
    EXPECT_EQ(keyForZ(), position("AD06"));
    EXPECT_TRUE(injector.keyboard().forCharacter(U'ö'));
}

TEST(XInjector, CapitalsNeedShiftAndUnknownCharactersHaveNoKey) {
    const VirtualDesktop desktop(320, 240);
    const KeyboardMap keyboard = XInjector(desktop.displayName()).keyboard();
    EXPECT_FALSE(keyboard.forCharacter(U'a')->shift);
    EXPECT_TRUE(keyboard.forCharacter(U'A')->shift);
    EXPECT_EQ(keyboard.forCharacter(U'a')->keycode, keyboard.forCharacter(U'A')->keycode);
    EXPECT_FALSE(keyboard.forCharacter(U'漢'));
}

TEST(TestWindow, CoversMovesAndGoes) {
    const VirtualDesktop desktop(320, 240);
    const XInjector injector(desktop.displayName());
    TestWindow below(injector.connection(), {{10, 10, 100, 100}, 0x2040C0});
    std::optional<TestWindow> above;
    above.emplace(injector.connection(), WindowDescription{{50, 50, 100, 100}, 0xE02010});
    EXPECT_EQ(screenColor(injector, {60, 60}), 0xE02010U);
    below.raise();
    EXPECT_EQ(screenColor(injector, {60, 60}), 0x2040C0U);
    below.fill({0, 0, 5, 5}, 0x10FF20);
    EXPECT_EQ(screenColor(injector, {12, 12}), 0x10FF20U);
    below.moveResize({200, 10, 20, 20});
    EXPECT_EQ(screenColor(injector, {60, 60}), 0xE02010U);
    EXPECT_EQ(screenColor(injector, {215, 25}), 0x2040C0U);
    above.reset();
    EXPECT_EQ(screenColor(injector, {60, 60}), 0U);
}

}  // namespace
}  // namespace tessaloom::test
