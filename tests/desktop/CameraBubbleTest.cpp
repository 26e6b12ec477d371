// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <thread>

#include "desktop/DesktopRecording.h"
#include "desktop/ScreenPicture.h"
#include "support/SoundServer.h"
#include "support/TestWindow.h"
#include "support/VirtualCamera.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t green = 0x20A040;
constexpr ScreenPoint middle{640 - 24 - 90, 480 - 24 - 90};

TEST(CameraBubble, IsOnTheScreenWhileRecordingButNotInThePicture) {
    const VirtualDesktop desktop(640, 480);
    const XInjector injector(desktop.displayName());
    TestWindow background(injector.connection(), {.rect = {0, 0, 640, 480}, .rgb = green});
    SoundServer sound(desktop.environment());
    const VirtualCamera camera(sound.socket(), "test_camera");
    Environment environment = sound.environment();
    environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:";
    DesktopRecording recording(environment, {"--camera", "--no-microphone", "--no-system-audio"});

    const auto inTheMiddle = [&] { return screenColorAt(injector, middle.x, middle.y); };
    EXPECT_TRUE(waitUntil([&] { return inTheMiddle() == 0xFFFFFF; })) << recording.program().errors();
    EXPECT_TRUE(waitUntil([&] { return inTheMiddle() == 0x000000; })) << "the picture doesn't move";
    EXPECT_EQ(screenColorAt(injector, middle.x - 80, middle.y - 80), green) << "the bubble isn't round";
    EXPECT_NE(screenColorAt(injector, middle.x - 89, middle.y), green) << "the bubble has no border";
    background.fill({0, 0, 640, 480}, 0x3060F0);
    std::this_thread::sleep_for(500ms);
    const TakeBundle bundle = recording.stop();
    EXPECT_EQ(inTheMiddle(), 0x3060F0U) << "the bubble has stayed";
    for (const ScreenPoint& at : {middle, ScreenPoint{middle.x - 88, middle.y}, ScreenPoint{10, 10}}) {
        EXPECT_TRUE(isNearly(colorAt(recordedPicture(bundle, 0), at.x, at.y), green)) << at.x;
        const BgraImage last = recordedPicture(bundle, logDuration(bundle.readLog()));
        EXPECT_TRUE(isNearly(colorAt(last, at.x, at.y), 0x3060F0)) << at.x;
    }
}

}  // namespace
}  // namespace tessaloom::test
