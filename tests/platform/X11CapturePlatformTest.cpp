// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11CapturePlatform.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <csignal>

#include "capture/CaptureError.h"
#include "support/VirtualDesktop.h"

namespace tessaloom {
namespace {

TEST(X11CapturePlatform, AsksTheServerOnceWhetherItCanLeaveOutOurWindows) {
    test::VirtualDesktop desktop{320, 240};
    qputenv("DISPLAY", desktop.displayName().c_str());
    X11CapturePlatform platform;
    EXPECT_TRUE(platform.leavesOutOwnWindows());
    desktop.server().signal(SIGKILL);
    EXPECT_TRUE(desktop.server().waitForExit(std::chrono::seconds(10)));
    EXPECT_TRUE(platform.leavesOutOwnWindows());
}

TEST(X11CapturePlatform, DoesNotTakeAMissingServerForOneThatCannot) {
    X11CapturePlatform platform;
    qputenv("DISPLAY", ":7654");
    EXPECT_THROW(platform.leavesOutOwnWindows(), CaptureError);
    const test::VirtualDesktop desktop{320, 240};
    qputenv("DISPLAY", desktop.displayName().c_str());
    EXPECT_TRUE(platform.leavesOutOwnWindows());
}

}  // namespace
}  // namespace tessaloom
