// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/DesktopIconHider.h"

#include <gtest/gtest.h>

#include <QGuiApplication>

#include "capture/ScriptedPlatform.h"

namespace tessaloom {
namespace {

TEST(DesktopIconHider, CalledTwiceLeavesOneCoverAScreen) {
    test::ScriptedPlatform platform;
    DesktopIconHider icons(platform);
    icons.restore();
    icons.hide();
    icons.hide();
    EXPECT_EQ(QGuiApplication::allWindows().size(), QGuiApplication::screens().size());
    icons.restore();
    EXPECT_TRUE(QGuiApplication::allWindows().isEmpty());
}

}  // namespace
}  // namespace tessaloom
